#include "kd/status.h"

const wchar_t* kdapiErrorStatusText(Kdapi::ErrorStatus status)
{
    switch (status) {
    case Kdapi::eOk:
        return L"No error";
    case Kdapi::eNotApplicable:
        return L"Not applicable to this object";
    case Kdapi::eInvalidInput:
        return L"Invalid input";
    case Kdapi::eOutOfMemory:
        return L"Out of memory";
    case Kdapi::eNotOpenForRead:
        return L"Object is not open for reading";
    case Kdapi::eNotOpenForWrite:
        return L"Object is not open for writing";
    case Kdapi::eWasOpenForRead:
        return L"Object is open for reading";
    case Kdapi::eWasOpenForWrite:
        return L"Object is open for writing";
    case Kdapi::eWasErased:
        return L"Object is erased";
    case Kdapi::eWasNotErased:
        return L"Object is not erased";
    case Kdapi::eAlreadyInDb:
        return L"Object is in a database already";
    case Kdapi::eNotInDatabase:
        return L"Object is in no database";
    case Kdapi::eWrongDatabase:
        return L"Object is in another database";
    case Kdapi::eInvalidIndex:
        return L"Index is outside the list";
    case Kdapi::eDuplicateKey:
        return L"Name is taken";
    case Kdapi::eNullObjectPointer:
        return L"Null object pointer";
    case Kdapi::eNullObjectId:
        return L"Null object id";
    case Kdapi::eNullDatabase:
        return L"Null database";
    case Kdapi::eInvalidKey:
        return L"Name is not allowed";
    case Kdapi::eOwnerNotSet:
        return L"Object has no owner";
    case Kdapi::eNotThatKindOfClass:
        return L"Object is of another class";
    case Kdapi::eObjectInUse:
        return L"Object is in use";
    case Kdapi::eKeyNotFound:
        return L"Name is not found";
    case Kdapi::eNotAnEntity:
        return L"Object is no entity";
    case Kdapi::eDegenerateGeometry:
        return L"Geometry is degenerate";
    case Kdapi::eInvalidExtents:
        return L"Extents are empty";
    case Kdapi::eCannotExplode:
        return L"Entity cannot be exploded";
    case Kdapi::eCannotScaleNonUniformly:
        return L"Entity cannot be scaled by unequal factors";
    case Kdapi::eSelfReference:
        return L"Block would contain itself";
    case Kdapi::eIteratorDone:
        return L"Iterator is done";
    case Kdapi::eRegappIdNotFound:
        return L"Application name is not registered";
    case Kdapi::eNoDocument:
        return L"No document is open";
    case Kdapi::eLockViolation:
        return L"Document is not locked as needed";
    case Kdapi::eFileNotFound:
        return L"File is not found";
    case Kdapi::eFileAccess:
        return L"File cannot be accessed";
    case Kdapi::eBadDrawingFile:
        return L"File is no whole drawing";
    case Kdapi::eModuleNotLoaded:
        return L"Module is not loaded";
    case Kdapi::ePointNotOnCurve:
        return L"Point is not on the curve";
    case Kdapi::eNothingFound:
        return L"Nothing is found";
    case Kdapi::eBadLineTypeDefinition:
        return L"Linetype definition cannot be used";
    case Kdapi::eInvalidView:
        return L"View is not valid";
    case Kdapi::eUndefinedLineType:
        return L"Linetype is not defined";
    case Kdapi::eNothingMeasured:
        return L"Nothing has extents";
    }
    return L"Unknown status";
}
