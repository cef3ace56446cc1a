#include "orvex/text_styles.h"

#include "support/localised_text.h"
#include "tables/named_records.h"
#include "tables/windows_font.h"

#include "kd/ed.h"

using tables::addRecord;
using tables::Opened;
using tables::openTable;
using tables::recordId;

namespace {

using Style = KdDbTextStyleTableRecord;

constexpr int kVariablePitch = 2;

bool isOnSearchPath(const CString& file)
{
    wchar_t path[260] = L"";
    return kdedFindFile(file, path, std::size(path)) == RTNORM;
}

/// Gives a style an installed font. @return false, with a message, when the host refuses it
bool setWindowsFont(Style& style, const CString& windowsFont, const LOGFONTW& font)
{
    const Kdapi::ErrorStatus status =
        style.setFont(CString(font.lfFaceName), false, font.lfItalic != 0, font.lfCharSet,
                      kVariablePitch, 0, false);
    if (status == Kdapi::eOk)
        return true;
    kdutPrintf(L"\nsetFont WINDOWS Font %s error %s!", windowsFont.GetString(),
               kdapiErrorStatusText(status));
    return false;
}

void setProportions(Style& style, double widthFactor, double obliqueDegrees)
{
    style.setXScale(widthFactor);
    style.setObliquingAngle(obliqueDegrees * 3.141592653589793 / 180);
}

} // namespace

// Making a style ----------------------------------------------------------------------------------

namespace {

bool isShapeFont(const CString& name)
{
    return name.Right(3).MakeUpper() == L"SHX";
}

void setShapeFont(Style& style, const CString& windowsFont)
{
    const Kdapi::ErrorStatus status = style.setFileName(windowsFont);
    if (status != Kdapi::eOk)
        kdutPrintf(L"\nsetFileName WINDOWS Font %s error %s!", windowsFont.GetString(),
                   kdapiErrorStatusText(status));
}

/// A new style with an installed font or with a shape font in its place; null when the host refuses
/// the installed one.
std::unique_ptr<Style> styleOfWindowsFont(const CString& name, const CString& windowsFont)
{
    const LOGFONTW font = tables::findWindowsFont(windowsFont);
    auto style = std::make_unique<Style>();
    style->setBigFontFileName(L"");
    style->setName(name);
    if (isShapeFont(windowsFont))
        setShapeFont(*style, windowsFont);
    else if (!setWindowsFont(*style, windowsFont, font))
        return nullptr;
    return style;
}

/// A new style with font files; null when the first one is not on the search path. The second one
/// is left out when it is not.
std::unique_ptr<Style> styleOfFiles(const CString& name, const CString& fontFile,
                                    CString bigFontFile)
{
    if (!isOnSearchPath(fontFile)) {
        kdutPrintf(L"\nFont file %s can not be found！", fontFile.GetString());
        return nullptr;
    }
    if (!bigFontFile.IsEmpty() && !isOnSearchPath(bigFontFile)) {
        kdutPrintf(L"\nBig font file %s can not be found！", bigFontFile.GetString());
        bigFontFile.Empty();
    }
    auto style = std::make_unique<Style>();
    style->setName(name);
    style->setFileName(fontFile);
    style->setBigFontFileName(bigFontFile);
    return style;
}

} // namespace

int TxtStyleMgr::CreateTextStyle(CString styleName, double widthFactor, double obliqueAngle,
                                 int useWindowsFont, CString fontFile, CString bigFontFile,
                                 CString windowsFont, KdDbDatabase* db)
{
    auto table = openTable<KdDbTextStyleTable>(db, KdDb::kForWrite);
    if (!table)
        return 0;
    if (!recordId(*table, styleName).isNull()) {
        table.close();
        tables::printStyleExists(styleName);
        return 0;
    }
    if (useWindowsFont && windowsFont.IsEmpty()) {
        table.close();
        kdutPrintf(L"\nWINDOWS Font can't be empty！");
        return 0;
    }
    if (useWindowsFont && !tables::fitsFaceName(windowsFont))
        return 0;
    auto style = useWindowsFont ? styleOfWindowsFont(styleName, windowsFont)
                                : styleOfFiles(styleName, fontFile, bigFontFile);
    if (!style)
        return 0;
    setProportions(*style, widthFactor, obliqueAngle);
    return bool(addRecord(*table, std::move(style)));
}

// Changing a style --------------------------------------------------------------------------------

namespace {

/// Whether the files of a style are on the search path; prints which one is not.
bool areOnSearchPath(const CString& fontFile, const CString& bigFontFile)
{
    if (!isOnSearchPath(fontFile)) {
        kdutPrintf(L"\nfont file %s can not be found！", fontFile.GetString());
        return false;
    }
    if (!bigFontFile.IsEmpty() && !isOnSearchPath(bigFontFile)) {
        kdutPrintf(L"\nbig file name %s can not be found！", bigFontFile.GetString());
        return false;
    }
    return true;
}

void changeToWindowsFont(Style& style, const CString& windowsFont)
{
    style.setFileName(L"");
    style.setBigFontFileName(L"");
    setWindowsFont(style, windowsFont, tables::findWindowsFont(windowsFont));
}

void changeToFiles(Style& style, const CString& fontFile, const CString& bigFontFile)
{
    constexpr int kDefaultCharacterSet = 1;
    style.setFont(L"", false, false, kDefaultCharacterSet, kVariablePitch, 0, false);
    style.setFileName(fontFile);
    const Kdapi::ErrorStatus status = style.setBigFontFileName(bigFontFile);
    if (status != Kdapi::eOk)
        kdutPrintf(L"\nsetBigFontFileName %s error %s!", bigFontFile.GetString(),
                   kdapiErrorStatusText(status));
}

} // namespace

int TxtStyleMgr::ModifyTextStyle(CString styleName, double widthFactor, double obliqueAngle,
                                 int useWindowsFont, CString fontFile, CString bigFontFile,
                                 CString windowsFont, KdDbDatabase* db)
{
    auto table = openTable<KdDbTextStyleTable>(db, KdDb::kForWrite);
    if (!table)
        return 0;
    const KdDbObjectId id = recordId(*table, styleName);
    if (id.isNull()) {
        table.close();
        kdutPrintf(L"\ncurrent db can not found \"%s\" font！！", styleName.GetString());
        return 0;
    }
    if (useWindowsFont && windowsFont.IsEmpty()) {
        table.close();
        kdutPrintf(L"%s", localisedText(107, L"\nwindow font can't be empty!").GetString());
        return 0;
    }
    if (useWindowsFont ? !tables::fitsFaceName(windowsFont)
                       : !areOnSearchPath(fontFile, bigFontFile))
        return 0;
    const Opened<Style> style(id, KdDb::kForWrite);
    if (!style)
        return 0;
    table.close();

    if (useWindowsFont)
        changeToWindowsFont(*style, windowsFont);
    else
        changeToFiles(*style, fontFile, bigFontFile);
    setProportions(*style, widthFactor, obliqueAngle);
    return 1;
}
