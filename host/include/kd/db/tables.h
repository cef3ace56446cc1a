#pragma once

#include "kd/db/entity.h"
#include "kd/own/dimension_value.h"
#include "kd/own/own.h"
#include "kd/own/sound_variant.h"

#include <array>
#include <string>
#include <vector>

class KdDbSymbolTableRecord;

/// Walks the records of a symbol table in their order; the caller deletes it.
class KdDbSymbolTableIterator {
public:
    ~KdDbSymbolTableIterator();
    KdDbSymbolTableIterator(const KdDbSymbolTableIterator&) = delete;
    KdDbSymbolTableIterator& operator=(const KdDbSymbolTableIterator&) = delete;

    void start(bool atBeginning = true, bool skipErased = true);

    bool done() const { return next_ >= records_.size(); }

    void step(bool forward = true, bool skipErased = true);

    /// @return eOk and the id; eIteratorDone, the id untouched, behind the last record
    Kdapi::ErrorStatus getRecordId(KdDbObjectId& id) const;

    KORRA_OWN()
    KdDbSymbolTableIterator(std::vector<KdDbObjectId> records, bool skipErased);

private:
    std::vector<KdDbObjectId> records_;
    std::size_t next_ = 0;
};

/// A table of named records.
class KdDbSymbolTable : public KdDbObject {
    KDRX_DECLARE_MEMBERS(KdDbSymbolTable)
public:
    /// The id of the record of a name; names are compared without regard to case.
    /// @return eOk; eKeyNotFound, the id untouched; eInvalidKey for a null name
    Kdapi::ErrorStatus getAt(const wchar_t* name, KdDbObjectId& id, bool getErased = false) const;
    Kdapi::ErrorStatus getIdAt(const wchar_t* name, KdDbObjectId& id, bool getErased = false) const;

    /// Adds a record that has a name; the table owns it and it stays open for writing.
    /// @return eOk and the id; eNotOpenForWrite; eDuplicateKey; eInvalidKey; eNotThatKindOfClass:
    ///         the record is then still the caller's
    Kdapi::ErrorStatus add(KdDbObjectId& id, KdDbSymbolTableRecord* record);

    /// @param iterator  the new iterator, owned by the caller; null on failure
    Kdapi::ErrorStatus newIterator(KdDbSymbolTableIterator*& iterator, bool atBeginning = true,
                                   bool skipErased = true) const;

protected:
    KdDbSymbolTable() = default;

    KORRA_OWN()
    void describe(korra::ObjectVisitor& visitor) override;

    bool isIndispensable() const override { return true; }

private:
    friend class korra::ObjectAccess;

    korra::Owned<KdDbSymbolTableRecord> records_;
};

class KdDbSymbolTableRecord : public KdDbObject {
    KDRX_DECLARE_MEMBERS(KdDbSymbolTableRecord)
public:
    /// The name, valid as long as the record is open. @return eOk
    Kdapi::ErrorStatus getName(const wchar_t*& name) const;

    const std::wstring& name() const { return name_; }

    /// @param name  not empty, at most 255 characters, none of <>/\":;?|,=`, an asterisk only in
    ///              front
    /// @return eOk; eNotOpenForWrite; eInvalidKey for what cannot be a name; eDuplicateKey when the
    ///         table has another record of that name
    Kdapi::ErrorStatus setName(const wchar_t* name);

protected:
    KdDbSymbolTableRecord() = default;

    short flags_ = 0;

    KORRA_OWN()
    /// The fields of every record, behind the markers of records and of this kind of records.
    void describeNamed(korra::ObjectVisitor& visitor, const char* marker);

private:
    friend class korra::ObjectAccess;

    std::wstring name_;
};

class KdDbLinetypeTableRecord : public KdDbSymbolTableRecord {
    KDRX_DECLARE_MEMBERS(KdDbLinetypeTableRecord)
public:
    KdDbLinetypeTableRecord() = default;

    /// What the linetype looks like, in characters or words.
    const std::wstring& comments() const { return comments_; }

    double patternLength() const { return patternLength_; } ///< drawing units

    int numDashes() const { return static_cast<int>(dashes_.size()); }

    /// Drawing units: positive a dash, negative a gap, 0 a dot. An index outside is undefined.
    double dashLengthAt(int index) const { return dashes_[static_cast<std::size_t>(index)].length; }

    KORRA_OWN()
    /// Replaces the whole pattern; its length is the sum of its parts.
    /// @return eOk; eNotOpenForWrite
    Kdapi::ErrorStatus setPattern(const wchar_t* comments, const std::vector<double>& dashes);

    void describe(korra::ObjectVisitor& visitor) override;

    bool isIndispensable() const override;

private:
    /// A part of the pattern; a shape or text stands in it in some linetypes of files.
    struct Dash {
        double length = 0.0;
        short shapeFlags = 0;
    };

    std::wstring comments_;
    double patternLength_ = 0.0;
    std::vector<Dash> dashes_;
};

class KdDbLayerTableRecord : public KdDbSymbolTableRecord {
    KDRX_DECLARE_MEMBERS(KdDbLayerTableRecord)
public:
    /// On, thawed, plotted, colour 7, of the default line weight; with no linetype until it is
    /// added to a table, then continuous.
    KdDbLayerTableRecord();

    bool isOff() const { return off_; }

    bool isFrozen() const { return (flags_ & 1) != 0; }

    bool VPDFLT() const { return (flags_ & 2) != 0; } ///< frozen in viewports that are made later

    bool isLocked() const { return (flags_ & 4) != 0; }

    bool isPlottable() const { return plottable_; }

    KdDb::LineWeight lineWeight() const { return static_cast<KdDb::LineWeight>(lineWeight_); }

    KdCmColor color() const { return color_; }

    KdDbObjectId linetypeObjectId() const { return linetype_; }

    Kdapi::ErrorStatus setIsOff(bool off);
    Kdapi::ErrorStatus setIsFrozen(bool frozen);
    Kdapi::ErrorStatus setVPDFLT(bool frozen);
    Kdapi::ErrorStatus setIsPlottable(bool plottable);

    /// @return eOk; eNotOpenForWrite; eInvalidInput for a weight that is not one of the standard
    /// ones
    Kdapi::ErrorStatus setLineWeight(KdDb::LineWeight weight);
    Kdapi::ErrorStatus setIsLocked(bool locked);
    Kdapi::ErrorStatus setColor(const KdCmColor& color);
    Kdapi::ErrorStatus setLinetypeObjectId(KdDbObjectId linetype);

    KORRA_OWN()
    void describe(korra::ObjectVisitor& visitor) override;

    bool isIndispensable() const override;

private:
    KdCmColor color_;
    KdDbObjectId linetype_;
    bool off_ = false;
    bool plottable_ = true;
    short lineWeight_ = KdDb::kLnWtByLwDefault;
};

class KdDbTextStyleTableRecord : public KdDbSymbolTableRecord {
    KDRX_DECLARE_MEMBERS(KdDbTextStyleTableRecord)
public:
    KdDbTextStyleTableRecord() = default;

    double textSize() const { return textSize_; } ///< fixed height; 0: each text has its own

    double xScale() const { return xScale_; }

    double obliquingAngle() const { return oblique_; } ///< radians

    bool isVertical() const { return (flags_ & 4) != 0; }

    bool isBackward() const { return (generation_ & 2) != 0; }

    bool isUpsideDown() const { return (generation_ & 4) != 0; }

    /// True for a record that only names a file of shapes: no text can have it as its style.
    bool isShapeFile() const { return (flags_ & 1) != 0; }

    Kdapi::ErrorStatus setIsShapeFile(bool shapeFile);

    /// The font file, and the one for characters that it lacks; empty when there is none.
    const std::wstring& fileName() const { return fileName_; }

    const std::wstring& bigFontFileName() const { return bigFontFileName_; }

    /// @return eOk; eNotOpenForWrite; eInvalidInput for null
    Kdapi::ErrorStatus setFileName(const wchar_t* fileName);
    Kdapi::ErrorStatus setBigFontFileName(const wchar_t* fileName);

    /// The installed font that goes before the font files; `typeface` is empty when there is none.
    /// @param family  0x00 to 0x50: none, roman, swiss, modern, script, decorative
    void font(std::wstring& typeface, bool& bold, bool& italic, int& characterSet, int& pitch,
              int& family) const;

    /// @param typeface  at most 31 characters; empty: no installed font
    /// @param allowMissingFont  a typeface that is not installed is kept either way
    /// @return eOk; eNotOpenForWrite; eInvalidInput for null, a longer name or numbers beyond a
    /// byte
    Kdapi::ErrorStatus setFont(const wchar_t* typeface, bool bold, bool italic, int characterSet,
                               int pitch, int family, bool allowMissingFont = false);
    Kdapi::ErrorStatus setXScale(double scale);
    Kdapi::ErrorStatus setObliquingAngle(double radians);

    KORRA_OWN()
    void describe(korra::ObjectVisitor& visitor) override;

private:
    std::wstring fileName_;
    std::wstring bigFontFileName_;
    double textSize_ = 0.0;
    double xScale_ = 1.0;
    double oblique_ = 0.0;
    double priorSize_ = 2.5;
    short generation_ = 0;

    friend class korra::ObjectAccess;
};

/// A dimension style: a value for every dimension variable.
///
/// The variables, their names, group codes, kinds and defaults stand in one table
/// (host/src/tables/dimension_variables.h); the record holds the values in the order of that table.
class KdDbDimStyleTableRecord : public KdDbSymbolTableRecord {
    KDRX_DECLARE_MEMBERS(KdDbDimStyleTableRecord)
public:
    /// Every variable at the host's default.
    KdDbDimStyleTableRecord();

    int dimdec() const;
    int dimadec() const;
    int dimtdec() const;
    bool dimtix() const;
    bool dimtoh() const;
    bool dimtih() const;
    bool dimtofl() const;
    int dimatfit() const;
    double dimgap() const;
    int dimtad() const;
    double dimtvp() const;
    bool dimse1() const;
    bool dimse2() const;
    bool dimsd1() const;
    bool dimsd2() const;
    int dimjust() const;
    double dimlfac() const;
    double dimscale() const;
    double dimasz() const;
    double dimtxt() const;
    double dimtfac() const;
    double dimdli() const;
    double dimexe() const;
    double dimexo() const;
    int dimaunit() const;
    int dimtolj() const;
    int dimfit() const;
    KdCmColor dimclrd() const;
    KdCmColor dimclre() const;
    KdCmColor dimclrt() const;
    KdDbObjectId dimtxsty() const; ///< "Standard" of the drawing when none was chosen

    /// The setters. @return eOk; eNotOpenForWrite; eInvalidInput for what the variable cannot be
    Kdapi::ErrorStatus setDimdec(int value);
    Kdapi::ErrorStatus setDimadec(int value);
    Kdapi::ErrorStatus setDimtdec(int value);
    Kdapi::ErrorStatus setDimtix(bool value);
    Kdapi::ErrorStatus setDimtoh(bool value);
    Kdapi::ErrorStatus setDimtih(bool value);
    Kdapi::ErrorStatus setDimtofl(bool value);
    Kdapi::ErrorStatus setDimatfit(int value);
    Kdapi::ErrorStatus setDimgap(double value);
    Kdapi::ErrorStatus setDimtad(int value);
    Kdapi::ErrorStatus setDimtvp(double value);
    Kdapi::ErrorStatus setDimse1(bool value);
    Kdapi::ErrorStatus setDimse2(bool value);
    Kdapi::ErrorStatus setDimsd1(bool value);
    Kdapi::ErrorStatus setDimsd2(bool value);
    Kdapi::ErrorStatus setDimjust(int value);
    Kdapi::ErrorStatus setDimlfac(double value);
    Kdapi::ErrorStatus setDimscale(double value);
    Kdapi::ErrorStatus setDimasz(double value);
    Kdapi::ErrorStatus setDimtxt(double value);
    Kdapi::ErrorStatus setDimtfac(double value);
    Kdapi::ErrorStatus setDimdli(double value);
    Kdapi::ErrorStatus setDimexe(double value);
    Kdapi::ErrorStatus setDimexo(double value);
    Kdapi::ErrorStatus setDimaunit(int value);
    Kdapi::ErrorStatus setDimtolj(int value);

    /// Also sets the two variables that its meaning was divided into: where texts and arrows go
    /// (DIMATFIT), and how a text moves (DIMTMOVE).
    Kdapi::ErrorStatus setDimfit(int value);

    /// The colour goes in by its index.
    Kdapi::ErrorStatus setDimclrd(const KdCmColor& color);
    Kdapi::ErrorStatus setDimclre(const KdCmColor& color);
    Kdapi::ErrorStatus setDimclrt(const KdCmColor& color);

    /// @return as the others; eNullObjectId
    Kdapi::ErrorStatus setDimtxsty(KdDbObjectId textStyle);

    KORRA_OWN()
    void describe(korra::ObjectVisitor& visitor) override;

private:
    friend class korra::ObjectAccess;

    std::vector<KdDbDimensionValue> values_;
};

/// A saved coordinate system.
class KdDbUCSTableRecord : public KdDbSymbolTableRecord {
    KDRX_DECLARE_MEMBERS(KdDbUCSTableRecord)
public:
    KdDbUCSTableRecord() = default;

    KdGePoint3d origin() const { return origin_; }

    KdGeVector3d xAxis() const { return xAxis_; }

    KdGeVector3d yAxis() const { return yAxis_; }

    Kdapi::ErrorStatus setOrigin(const KdGePoint3d& origin);
    Kdapi::ErrorStatus setXAxis(const KdGeVector3d& axis);
    Kdapi::ErrorStatus setYAxis(const KdGeVector3d& axis);

    KORRA_OWN()
    void describe(korra::ObjectVisitor& visitor) override;

private:
    KdGePoint3d origin_;
    KdGeVector3d xAxis_ = KdGeVector3d::kXAxis;
    KdGeVector3d yAxis_ = KdGeVector3d::kYAxis;
};

/// The view of a tile of the model tab; the active one is named "*Active".
class KdDbViewportTableRecord : public KdDbSymbolTableRecord {
    KDRX_DECLARE_MEMBERS(KdDbViewportTableRecord)
public:
    KdDbViewportTableRecord() = default;

    KdGePoint2d centerPoint() const { return center_; } ///< in the view's display plane

    double height() const { return height_; } ///< drawing units

    double width() const { return height_ * aspect_; }

    KdGePoint3d target() const { return target_; }

    KdGeVector3d viewDirection() const { return direction_; }

    double viewTwist() const { return twist_; } ///< radians

    double lensLength() const { return lensLength_; }

    Kdapi::ErrorStatus setCenterPoint(const KdGePoint2d& center);
    Kdapi::ErrorStatus setHeight(double height);
    Kdapi::ErrorStatus setWidth(double width);
    Kdapi::ErrorStatus setTarget(const KdGePoint3d& target);
    Kdapi::ErrorStatus setViewDirection(const KdGeVector3d& direction);
    Kdapi::ErrorStatus setViewTwist(double radians);

    /// Makes a named coordinate system, or one given by its axes, that of the tile; when the tile
    /// is the active one of the working database, the current system follows.
    /// @return eOk; eNotOpenForWrite; the status of opening the named system
    Kdapi::ErrorStatus setUcs(KdDbObjectId namedSystem);
    Kdapi::ErrorStatus setUcs(const KdGePoint3d& origin, const KdGeVector3d& xAxis,
                              const KdGeVector3d& yAxis);

    KORRA_OWN()
    void describe(korra::ObjectVisitor& visitor) override;

private:
    friend class korra::ObjectAccess;

    void takeUcs(const KdGePoint3d& origin, const KdGeVector3d& xAxis, const KdGeVector3d& yAxis,
                 KdDbObjectId namedSystem);

    KdGePoint2d center_;
    KdGePoint3d target_;
    KdGeVector3d direction_ = KdGeVector3d::kZAxis;
    double height_ = 1.0;
    double aspect_ = 4.0 / 3.0;
    double lensLength_ = 50.0;
    double twist_ = 0.0;
    KdGePoint3d ucsOrigin_;
    KdGeVector3d ucsXAxis_ = KdGeVector3d::kXAxis;
    KdGeVector3d ucsYAxis_ = KdGeVector3d::kYAxis;
    KdDbObjectId ucs_;
};

/// The name of an application that may hang extended data on objects.
class KdDbRegAppTableRecord : public KdDbSymbolTableRecord {
    KDRX_DECLARE_MEMBERS(KdDbRegAppTableRecord)
public:
    KdDbRegAppTableRecord() = default;

    KORRA_OWN()
    void describe(korra::ObjectVisitor& visitor) override;
};

#define KDDB_SYMBOL_TABLE(Class)                                                                   \
    class Class : public KdDbSymbolTable {                                                         \
        KDRX_DECLARE_MEMBERS(Class)                                                                \
    public:                                                                                        \
        Class() = default;                                                                         \
    };

KDDB_SYMBOL_TABLE(KdDbBlockTable)
KDDB_SYMBOL_TABLE(KdDbDimStyleTable)
KDDB_SYMBOL_TABLE(KdDbLayerTable)
KDDB_SYMBOL_TABLE(KdDbLinetypeTable)
KDDB_SYMBOL_TABLE(KdDbRegAppTable)
KDDB_SYMBOL_TABLE(KdDbTextStyleTable)
KDDB_SYMBOL_TABLE(KdDbUCSTable)
KDDB_SYMBOL_TABLE(KdDbViewportTable)

#undef KDDB_SYMBOL_TABLE
