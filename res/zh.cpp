#include "cursors.h"

namespace {
constexpr platform::StringResource kStrings[] = {
    // Dragging a selection.
    {101, L"\n请指定目标位置:"},
    {103, L"\n缩放比例<1.0>: "},
    {104, L"\n旋转角度<0.0>: "},
    {105, L"\n输入无效!"},

    // Text styles and dimension styles; 106 serves both.
    {106, L"\n当前数据库中已经存在 \"%s\"的字体样式!"},
    {107, L"\nWindows字体不能为空!"},
    {108, L"\n当前数据库中不存在 \"%s\" 的标注样式!"},

    // Curves as points.
    {109, L"\n该多段线没有足够的点"},
    {110, L"\n数据：%d错误！"},
    {111, L"\n多段线中含有非法圆弧"},
    {112, L"\n获取最小弧数据错误"},
    {113, L"\n获取第%d个弧数据错误！"},
    {114, L"\n可能存在错误点"},
    {115, L"\n获取圆弧点信息出现未知错误，请重新尝试！"},
};
} // namespace

PLATFORM_RESOURCES = {kStrings, kCursors};
