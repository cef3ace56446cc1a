#pragma once

#include "kd/db/ids.h"

#include <string>

/// How a text is drawn: the font with its shape, apart from any drawing.
class KdGiTextStyle {
public:
    KdGiTextStyle() = default;
    KdGiTextStyle(const KdGiTextStyle&) = default;
    KdGiTextStyle(KdGiTextStyle&&) noexcept = default;
    KdGiTextStyle& operator=(const KdGiTextStyle&) = default;
    KdGiTextStyle& operator=(KdGiTextStyle&&) noexcept = default;
    virtual ~KdGiTextStyle() = default;

    /// The font file and the one of the second, large font; empty when the style has none.
    const std::wstring& fileName() const { return fileName_; }

    const std::wstring& bigFontFileName() const { return bigFontFileName_; }

    virtual void setFileName(const wchar_t* name) { fileName_ = name ? name : L""; }

    virtual void setBigFontFileName(const wchar_t* name) { bigFontFileName_ = name ? name : L""; }

    /// The family of an installed font, which goes before the files; empty when there is none.
    const std::wstring& typeface() const { return typeface_; }

    bool isBold() const { return bold_; }

    bool isItalic() const { return italic_; }

    virtual void setFont(const wchar_t* typeface, bool bold, bool italic)
    {
        typeface_ = typeface ? typeface : L"";
        bold_ = bold;
        italic_ = italic;
    }

    double textSize() const { return textSize_; } ///< fixed height; 0: each text has its own

    double xScale() const { return xScale_; }

    double obliquingAngle() const { return obliquingAngle_; } ///< radians

    virtual void setTextSize(double size) { textSize_ = size; }

    virtual void setXScale(double scale) { xScale_ = scale; }

    virtual void setObliquingAngle(double radians) { obliquingAngle_ = radians; }

    bool isVertical() const { return vertical_; }

    bool isBackward() const { return backward_; }

    bool isUpsideDown() const { return upsideDown_; }

    bool isUnderlined() const { return underlined_; }

    bool isOverlined() const { return overlined_; }

    virtual void setVertical(bool on) { vertical_ = on; }

    virtual void setBackward(bool on) { backward_ = on; }

    virtual void setUpsideDown(bool on) { upsideDown_ = on; }

    virtual void setUnderlined(bool on) { underlined_ = on; }

    virtual void setOverlined(bool on) { overlined_ = on; }

private:
    std::wstring fileName_;
    std::wstring bigFontFileName_;
    std::wstring typeface_;
    double textSize_ = 0.0;
    double xScale_ = 1.0;
    double obliquingAngle_ = 0.0;
    bool bold_ = false;
    bool italic_ = false;
    bool vertical_ = false;
    bool backward_ = false;
    bool upsideDown_ = false;
    bool underlined_ = false;
    bool overlined_ = false;
};

/// Fills a style from a text style record.
/// @return eOk; the statuses of opening the record, the style then untouched
Kdapi::ErrorStatus fromKdDbTextStyle(KdGiTextStyle& style, KdDbObjectId record);
