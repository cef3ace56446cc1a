#include "orvex/colors.h"

#include "support/resbuf_list.h"

#include "kd/ed.h"

using support::ResbufList;

namespace {

constexpr int kLastColorIndex = 256;

unsigned long packed(const KdCmColor& color)
{
    return color.red() | color.green() << 8 | color.blue() << 16;
}

std::uint8_t byteOf(unsigned long rgb, int number)
{
    return static_cast<std::uint8_t>(rgb >> 8 * number);
}

} // namespace

KdCmColor Orvex::GetAcCmColorFormColorIndex(int colorIndex)
{
    KdCmColor color;
    color.setColorIndex(static_cast<std::uint16_t>(colorIndex));
    return color;
}

int Orvex::GetColorIndexFromRGB(const unsigned long& rgb)
{
    KdCmColor color;
    color.setRGB(byteOf(rgb, 0), byteOf(rgb, 1), byteOf(rgb, 2));
    return color.colorIndex();
}

int Orvex::GetRgbValue(unsigned long& rgb, int colorIndex)
{
    if (colorIndex < 0 || colorIndex > kLastColorIndex)
        return 0;
    rgb = packed(GetAcCmColorFormColorIndex(colorIndex));
    return 1;
}

unsigned long Orvex::GetCurrentBkColor(KdDbDatabase* db)
{
    KdColorSettings settings{};
    kdedGetCurrentColors(&settings);
    const bool onSheet = !db->tilemode() && kdedGetCurViewportObjectId() == db->paperSpaceVportId();
    const auto index = onSheet ? settings.sheetBackground : settings.modelBackground;
    return packed(GetAcCmColorFormColorIndex(static_cast<int>(index)));
}

int Orvex::InvokeColorDlg(unsigned short colorIndex, int& result)
{
    if (colorIndex > kLastColorIndex)
        return 0;
    ResbufList chosen;
    {
        const ResbufList call(
            kdutBuildList(RTSTR, L"korra_colordlg", RTSHORT, int(colorIndex), RTNONE));
        kdedInvoke(call.get(), chosen.link());
    }
    if (chosen.isEmpty())
        return 0;
    result = chosen.get()->resval.rint;
    return 1;
}
