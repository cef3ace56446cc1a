#include "entities/style_font.h"

#include "kd/db/tables.h"
#include "objects/object_access.h"

namespace korra {
namespace {

/// An installed font goes before the font file.
std::wstring fontName(const KdDbTextStyleTableRecord& style)
{
    std::wstring typeface;
    bool bold = false;
    bool italic = false;
    int ignored = 0;
    style.font(typeface, bold, italic, ignored, ignored, ignored);
    return typeface.empty() ? style.fileName() : typeface;
}

} // namespace

const Font& fontOfStyle(KdDbObjectId style)
{
    const auto* const record = ObjectAccess::live<KdDbTextStyleTableRecord>(style);
    return installedFont(record ? fontName(*record) : std::wstring());
}

} // namespace korra
