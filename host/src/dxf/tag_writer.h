#pragma once

#include "dxf/tag_cursor.h"
#include "dxf/tag_values.h"
#include "dxf/tag_visitor.h"
#include "objects/contents.h"
#include "objects/kinds.h"

#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace korra {

/// Brings the tags of an object up to date with its fields.
///
/// A tag whose value is equal keeps its text byte for byte; one that differs gets new text; a field
/// that has no tag is inserted behind the field named before it; tags that no field knows stay
/// where they are. A new object gets the class markers that its fields stand behind.
class TagWriter final : public TagVisitor {
public:
    /// What becomes of colours that no index tells, where there was none.
    enum class TrueColors { written, refused };

    /// @param markerPrefix  what class markers begin with; nullopt: new objects get none
    TagWriter(const DatabaseContents& contents, std::optional<std::string> markerPrefix,
              TrueColors trueColors);

    /// @param source  the tags as they are; of a new object those that begin it
    /// @param only  codes of the fields to write; empty: all
    /// @return the tags as they shall be
    std::string fieldsWritten(KdDbObject& object, std::string_view source,
                              std::span<const int> only = {});

    /// Fields, extended data and the handle of the extension dictionary.
    std::string objectWritten(KdDbObject& object, std::string_view source,
                              std::span<const int> only = {});

    void real(int code, double& value) override;
    void real(int code, double& value, double byDefault) override;
    void angle(int code, double& value) override;
    void angle(int code, double& value, double byDefault) override;
    void text(int code, std::wstring& value) override;
    void text(int code, std::wstring& value, const wchar_t* byDefault) override;
    void longText(int code, int pieceCode, std::wstring& value) override;
    void point(int code, KdGePoint3d& value) override;
    void point(int code, KdGePoint3d& value, const KdGePoint3d& byDefault) override;
    void vector(int code, KdGeVector3d& value, const KdGeVector3d& byDefault) override;
    void point(int code, KdGePoint2d& value) override;
    void name(int code, KdDbObjectId& value, TableKind table, Reference meaning) override;
    void reference(int code, KdDbObjectId& value, Reference meaning,
                   const KdRxClass* kind) override;
    void handle(int code, KdDbHandle& value) override;
    void color(int code, KdCmColor& value) override;
    void layerColor(int code, KdCmColor& value, bool& off) override;
    void derived(int code, long long value) override;
    void behindMarker(int count, const char* stem) override;
    void extendedData(std::vector<TypedValue>& values) override;
    void extensionDictionary(KdDbObjectId& value) override;

protected:
    void wholeNumber(int code, long long& value) override;
    void wholeNumber(int code, long long& value, long long byDefault) override;
    std::size_t beginList(int leadCode, std::size_t count) override;

    void beginElement() override { cursor_.beginElement(); }

    void endList() override;

private:
    /// What becomes of a field that has no tag.
    enum class Missing { inserted, leftOut };

    static Missing insertedIf(bool wanted) { return wanted ? Missing::inserted : Missing::leftOut; }

    std::size_t take(int code);
    void insert(int code, std::string_view value);
    void replace(std::size_t tag, std::string_view value);

    void remove(std::size_t tag) { replaced_[tag].clear(); }

    std::string assembled() const;

    void writeReal(int code, double value, Missing missing);
    void writeAngle(int code, double value, Missing missing);
    void writeText(int code, const std::wstring& value, Missing missing);
    void writeWhole(int code, long long value, Missing missing);
    void writeColor(int code, const KdCmColor& value, long long number, Missing missing);
    void writeTrueColor(std::size_t tag, const KdCmColor& value);
    void writeAxes(int code, std::span<const double> values, Missing missing);
    void insertPieces(int code, int pieceCode, std::wstring_view value);
    bool means(std::size_t tag, TableKind table, KdDbObjectId value) const;
    void begin(std::string_view source, std::span<const int> only);
    void writeExtendedData(const std::vector<TypedValue>& wanted);

    const DatabaseContents& contents_;
    const TextEncoding& encoding_;
    std::string_view lineEnd_;
    TrueColors trueColors_;
    std::optional<std::string> markerPrefix_;
    TagCursor cursor_;
    bool writesMarkers_ = false; ///< of the object at hand, which is new
    std::size_t place_ = 0;      ///< tag behind which a missing field is inserted
    std::size_t listCount_ = 0;
    NamedBy namedBy_ = NamedBy::other;
    bool writesExtensions_ = false;
    std::optional<std::vector<TypedValue>> extendedData_; ///< to be written behind the fields
    std::map<std::size_t, std::string> replaced_;         ///< whole tags; empty: gone
    std::map<std::size_t, std::string> insertedBehind_;
};

} // namespace korra
