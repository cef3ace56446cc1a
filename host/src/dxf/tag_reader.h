#pragma once

#include "dxf/references.h"
#include "dxf/tag_cursor.h"
#include "dxf/tag_values.h"
#include "dxf/tag_visitor.h"

#include <span>
#include <string>
#include <string_view>

namespace korra {

/// Whether extended data and the extension dictionary are read, too.
enum class Extensions { read, ignored };

/// Gives objects the fields, the extended data and the extension dictionary that their tags hold.
class TagReader final : public TagVisitor {
public:
    TagReader(References& references, const TextEncoding& encoding)
        : references_(references), encoding_(encoding)
    {
    }

    /// @param line  of the value of the first tag, for messages
    /// @param only  codes of the fields to read; empty: all
    /// @param extensions  whether to read extended data and the extension dictionary
    /// @throw DrawingError for a value that is not what its code says
    void read(KdDbObject& object, std::string_view source, std::size_t line,
              std::span<const int> only, Extensions extensions);

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

    void extendedData(std::vector<TypedValue>& values) override;
    void extensionDictionary(KdDbObjectId& value) override;

    void derived(int, long long) override {}

    void behindMarker(int count, const char*) override { cursor_.behindMarker(count); }

protected:
    void wholeNumber(int code, long long& value) override;
    void wholeNumber(int code, long long& value, long long byDefault) override;

    std::size_t beginList(int leadCode, std::size_t) override
    {
        return cursor_.beginList(leadCode);
    }

    void beginElement() override { cursor_.beginElement(); }

    void endList() override { cursor_.endList(); }

private:
    [[noreturn]] void fail(std::size_t tag, const char* expected) const;
    double realAt(std::size_t tag) const;
    std::uint64_t handleAt(std::size_t tag) const;
    bool readReal(int code, double& value);
    bool readAngle(int code, double& value);
    bool readText(int code, std::wstring& value);
    bool readPoint(int code, KdGePoint3d& value);
    bool readWhole(int code, long long& value);
    void readTrueColor(KdCmColor& value);

    References& references_;
    const TextEncoding& encoding_;
    TagCursor cursor_;
    std::size_t line_ = 0;
    NamedBy namedBy_ = NamedBy::other;
    Extensions extensions_ = Extensions::ignored;
};

} // namespace korra
