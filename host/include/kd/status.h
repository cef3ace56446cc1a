#pragma once

namespace Kdapi {

/// What a host operation came to. Zero is success.
enum ErrorStatus : int {
    eOk = 0,
    eNotApplicable = 1,            ///< the operation has no meaning for this object
    eInvalidInput = 2,             ///< an argument is outside what the operation accepts
    eOutOfMemory = 3,              ///< the host could not allocate what it needs
    eNotOpenForRead = 4,           ///< the object must be open for reading
    eNotOpenForWrite = 5,          ///< the object must be open for writing
    eWasOpenForRead = 6,           ///< open for reading elsewhere: it cannot be opened for writing
    eWasOpenForWrite = 7,          ///< open for writing elsewhere: it cannot be opened again
    eWasErased = 8,                ///< the object is erased and erased objects were not asked for
    eWasNotErased = 9,             ///< only an erased object can be unerased
    eAlreadyInDb = 10,             ///< the object is in a database already
    eNotInDatabase = 11,           ///< the object is in no database
    eWrongDatabase = 12,           ///< the objects belong to different databases
    eInvalidIndex = 13,            ///< the index is outside the list
    eDuplicateKey = 14,            ///< the name is taken
    eNullObjectPointer = 15,       ///< a null object was given
    eNullObjectId = 16,            ///< the id names no object
    eNullDatabase = 17,            ///< a null database was given
    eInvalidKey = 18,              ///< the name cannot be a name of this table or dictionary
    eOwnerNotSet = 19,             ///< the object has no owner where one is needed
    eNotThatKindOfClass = 20,      ///< the object is of another class
    eObjectInUse = 21,             ///< something still refers to the object
    eKeyNotFound = 22,             ///< the table or dictionary has no entry of that name
    eNotAnEntity = 23,             ///< the object cannot be part of a block
    eDegenerateGeometry = 24,      ///< the geometry has no extent where one is needed
    eInvalidExtents = 25,          ///< the extents are empty
    eCannotExplode = 26,           ///< this kind of entity has no pieces
    eCannotScaleNonUniformly = 27, ///< this kind of entity takes similarities only
    eSelfReference = 28,           ///< a block would contain itself
    eIteratorDone = 29,            ///< the iterator stands behind its last element
    eRegappIdNotFound = 30,        ///< the application name is not registered in the drawing
    eNoDocument = 31,              ///< there is no current document
    eLockViolation = 32,           ///< the document is not locked, or locked by another
    eFileNotFound = 33,            ///< there is no file of that name
    eFileAccess = 34,              ///< the file cannot be read or written
    eBadDrawingFile = 35,          ///< the file is not a whole drawing
    eModuleNotLoaded = 36,         ///< the module could not be loaded or refused to be
    ePointNotOnCurve = 37,         ///< the point is farther from the curve than the tolerance
    eNothingFound = 38,            ///< the search came to no result
    eInvalidView = 39,             ///< the view is of no use: no size or no direction
    eBadLineTypeDefinition = 40, ///< the linetype's definition is damaged or holds shapes or texts
    eUndefinedLineType = 162,    ///< the definition file does not define that linetype
    eNothingMeasured = 20077     ///< an extents walk met nothing that has extents
};

} // namespace Kdapi

/// The host's text of a status, in English; never null.
const wchar_t* kdapiErrorStatusText(Kdapi::ErrorStatus status);
