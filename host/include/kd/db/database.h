#pragma once

#include "kd/db/block_record.h"
#include "kd/db/dictionary.h"
#include "kd/db/layout.h"
#include "kd/db/transaction.h"
#include "kd/own/own.h"

#include <memory>

/// A drawing: its tables, blocks, layouts, dictionaries and settings.
///
/// Deleting a database deletes every object in it; their ids become invalid.
class KdDbDatabase {
public:
    /// @param buildDefaultDrawing  fill it with what every drawing has: model space and one sheet,
    ///                             layer "0", the standard styles and linetypes; false: no objects
    ///                             at all, ready to be read into
    /// @param noDocument  the database belongs to no document
    explicit KdDbDatabase(bool buildDefaultDrawing = true, bool noDocument = false);
    ~KdDbDatabase();
    KdDbDatabase(const KdDbDatabase&) = delete;
    KdDbDatabase& operator=(const KdDbDatabase&) = delete;

    /// Opens a table. @return eOk; the statuses of opening, the pointer then null
    Kdapi::ErrorStatus getSymbolTable(KdDbBlockTable*& table, KdDb::OpenMode mode);
    Kdapi::ErrorStatus getSymbolTable(KdDbDimStyleTable*& table, KdDb::OpenMode mode);
    Kdapi::ErrorStatus getSymbolTable(KdDbLayerTable*& table, KdDb::OpenMode mode);
    Kdapi::ErrorStatus getSymbolTable(KdDbLinetypeTable*& table, KdDb::OpenMode mode);
    Kdapi::ErrorStatus getSymbolTable(KdDbRegAppTable*& table, KdDb::OpenMode mode);
    Kdapi::ErrorStatus getSymbolTable(KdDbTextStyleTable*& table, KdDb::OpenMode mode);
    Kdapi::ErrorStatus getSymbolTable(KdDbUCSTable*& table, KdDb::OpenMode mode);
    Kdapi::ErrorStatus getSymbolTable(KdDbViewportTable*& table, KdDb::OpenMode mode);

    KdDbObjectId blockTableId() const;
    KdDbObjectId dimStyleTableId() const;
    KdDbObjectId layerTableId() const;
    KdDbObjectId linetypeTableId() const;
    KdDbObjectId regAppTableId() const;
    KdDbObjectId textStyleTableId() const;
    KdDbObjectId UCSTableId() const;
    KdDbObjectId viewportTableId() const;
    KdDbObjectId namedObjectsDictionaryId() const;
    KdDbObjectId layoutDictionaryId() const;

    /// The block that new entities go to: the sheet of the current layout, or model space on the
    /// model tab and while a viewport of the sheet is entered.
    KdDbObjectId currentSpaceId() const;

    /// True while the model tab is current.
    bool tilemode() const;

    /// The sheet's own viewport of the current layout, or of the first one on the model tab; null
    /// when the drawing has no sheet.
    KdDbObjectId paperSpaceVportId() const;

    /// The named coordinate system that is current; null when it has no name.
    KdDbObjectId ucsname() const;

    bool orthomode() const;
    Kdapi::ErrorStatus setOrthomode(bool on);

    KdDbObjectId clayer() const;
    KdDbObjectId textstyle() const;
    KdDbObjectId dimstyle() const;
    KdDbObjectId celtype() const;
    KdDbObjectId continuousLinetype() const;
    KdDb::MeasurementValue measurement() const;

    /// Make a record of this drawing the current one.
    /// @return eOk; eNullObjectId; eWasErased; eNotThatKindOfClass; eWrongDatabase
    Kdapi::ErrorStatus setClayer(KdDbObjectId layer);
    Kdapi::ErrorStatus setTextstyle(KdDbObjectId style);

    /// The current dimension variables keep their values.
    Kdapi::ErrorStatus setDimstyle(KdDbObjectId style);

    /// The colour of new entities; a drawing keeps its index alone. @return eOk
    KdCmColor cecolor() const;
    Kdapi::ErrorStatus setCecolor(const KdCmColor& color);

    /// The line weight of new entities.
    /// @return eOk; eInvalidInput for a weight that is not one of the standard ones
    KdDb::LineWeight celweight() const;
    Kdapi::ErrorStatus setCelweight(KdDb::LineWeight weight);

    /// Defines a linetype as a linetype file has it; one that the drawing has takes the file's
    /// pattern. Names are compared without regard to case.
    /// @return eOk; eUndefinedLineType when the file does not define it; eBadLineTypeDefinition for
    ///         a damaged definition and one with shapes or texts in it; eFileNotFound; eFileAccess;
    ///         eInvalidInput for null; the statuses of opening the table and the record. Nothing
    ///         changes on failure
    Kdapi::ErrorStatus loadLineTypeFile(const wchar_t* name, const wchar_t* path);

    /// Fills a dimension style with the current values of the dimension variables, those included
    /// that differ from the current style. @return eOk; eNullObjectPointer; eNotOpenForWrite
    Kdapi::ErrorStatus getDimstyleData(KdDbDimStyleTableRecord* record) const;

    /// Makes the values of a dimension style the current values of the dimension variables; the
    /// current style stays. @return eOk; eNullObjectPointer, the statuses of opening the record
    Kdapi::ErrorStatus setDimstyleData(const KdDbDimStyleTableRecord* record);
    Kdapi::ErrorStatus setDimstyleData(KdDbObjectId style);

    /// The transactions of the drawing, whether it belongs to a document or not; never null.
    KdDbTransactionManager* transactionManager() const;

    KORRA_OWN()

    korra::DatabaseContents& contents() const { return *contents_; }

private:
    std::unique_ptr<korra::DatabaseContents> contents_;
};

/// What the application that runs the host offers to the database.
class KdDbHostApplicationServices {
public:
    /// The database that operations without one mean; null when there is none.
    KdDbDatabase* workingDatabase() const { return working_; }

    void setWorkingDatabase(KdDbDatabase* database);

private:
    KdDbDatabase* working_ = nullptr;
};

KdDbHostApplicationServices* kddbHostApplicationServices();
