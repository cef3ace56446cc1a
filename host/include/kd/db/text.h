#pragma once

#include "kd/db/entity.h"
#include "kd/own/own.h"
#include "kd/own/planar_place.h"

#include <string>

/// A single line of text.
class KdDbText : public KdDbEntity {
    KDRX_DECLARE_MEMBERS(KdDbText)
public:
    KdDbText() = default;
    KdDbText(const KdGePoint3d& position, const wchar_t* text, double height,
             double rotation = 0.0);

    /// Left end of the base line, in the coordinates of the owning block.
    KdGePoint3d position() const;

    /// The point that the text is aligned to; used unless the alignment is left on the base line.
    KdGePoint3d alignmentPoint() const;

    const wchar_t* textString() const { return text_.c_str(); }

    Kdapi::ErrorStatus setTextString(const wchar_t* text);

    double height() const { return height_; }

    double rotation() const { return rotation_; } ///< radians

    double oblique() const { return oblique_; } ///< radians

    double widthFactor() const { return widthFactor_; }

    short horizontalMode() const { return horizontalMode_; } ///< 0 left, 1 centre … 5 fit

    short verticalMode() const { return verticalMode_; } ///< 0 base line … 3 top

    KdDbObjectId textStyle() const { return textStyle_; }

    KdGeVector3d normal() const { return place_.normal(); }

    Kdapi::ErrorStatus setPosition(const KdGePoint3d& position);
    Kdapi::ErrorStatus setAlignmentPoint(const KdGePoint3d& point);
    Kdapi::ErrorStatus setHeight(double height);
    Kdapi::ErrorStatus setRotation(double rotation);
    Kdapi::ErrorStatus setWidthFactor(double factor);
    Kdapi::ErrorStatus setHorizontalMode(short mode);
    Kdapi::ErrorStatus setVerticalMode(short mode);
    Kdapi::ErrorStatus setTextStyle(KdDbObjectId style);

    Kdapi::ErrorStatus transformBy(const KdGeMatrix3d& matrix) override;

    KORRA_OWN()
    void describe(korra::ObjectVisitor& visitor) override;

    void draw(korra::DrawSink& sink) const override;

    /// The text field apart: attributes store the same fields in another order of modes.
    /// @param lastMarker  behind which the vertical mode stands
    void textFields(korra::ObjectVisitor& visitor, const char* lastMarker, int verticalModeCode);

private:
    friend class KdDbBlockReference;
    friend class korra::MTextLayout;
    friend class korra::TextPlacement;

    void moveBySimilarity(const KdGeMatrix3d& matrix);

    std::wstring text_;
    korra::PlanarPlace place_;
    KdGePoint3d position_;  ///< in the entity coordinate system of the normal
    KdGePoint3d alignment_; ///< in the entity coordinate system of the normal
    KdDbObjectId textStyle_;
    double height_ = 0.0;
    double rotation_ = 0.0;
    double oblique_ = 0.0;
    double widthFactor_ = 1.0;
    short horizontalMode_ = 0;
    short verticalMode_ = 0;
    short generation_ = 0;
};

/// The template of an attribute inside a block definition.
class KdDbAttributeDefinition : public KdDbText {
    KDRX_DECLARE_MEMBERS(KdDbAttributeDefinition)
public:
    KdDbAttributeDefinition() = default;
    KdDbAttributeDefinition(const KdGePoint3d& position, const wchar_t* text, const wchar_t* tag,
                            const wchar_t* prompt, double height);

    const wchar_t* tag() const { return tag_.c_str(); }

    const wchar_t* prompt() const { return prompt_.c_str(); }

    bool isConstant() const { return (attributeFlags_ & 2) != 0; }

    bool isInvisible() const { return (attributeFlags_ & 1) != 0; }

    KORRA_OWN()
    void describe(korra::ObjectVisitor& visitor) override;

    void draw(korra::DrawSink& sink) const override;

private:
    std::wstring tag_;
    std::wstring prompt_;
    short attributeFlags_ = 0;
    short fieldLength_ = 0;
};

/// A tagged text that belongs to a block reference.
class KdDbAttribute : public KdDbText {
    KDRX_DECLARE_MEMBERS(KdDbAttribute)
public:
    KdDbAttribute() = default;
    KdDbAttribute(const KdGePoint3d& position, const wchar_t* text, const wchar_t* tag,
                  double height);

    const wchar_t* tag() const { return tag_.c_str(); }

    bool isInvisible() const { return (attributeFlags_ & 1) != 0; }

    KORRA_OWN()
    void describe(korra::ObjectVisitor& visitor) override;

    void draw(korra::DrawSink& sink) const override;

private:
    std::wstring tag_;
    short attributeFlags_ = 0;
    short fieldLength_ = 0;
};

/// Text of several lines, wrapped to a width; the plain form codes (\P, \~, \\, \{, \}, groups) are
/// read, other codes are passed over when the text is set and drawn.
class KdDbMText : public KdDbEntity {
    KDRX_DECLARE_MEMBERS(KdDbMText)
public:
    KdDbMText() = default;

    KdGePoint3d location() const { return location_; }

    const wchar_t* contents() const { return contents_.c_str(); }

    double textHeight() const { return textHeight_; }

    double width() const { return width_; } ///< of the frame; 0: never wrapped

    short attachment() const { return attachment_; } ///< 1 top left … 5 middle centre … 9

    double rotation() const; ///< radians

    KdDbObjectId textStyle() const { return textStyle_; }

    Kdapi::ErrorStatus setLocation(const KdGePoint3d& location);

    /// Turns the text into the plane of a normal; its rotation stays.
    Kdapi::ErrorStatus setNormal(const KdGeVector3d& normal);
    Kdapi::ErrorStatus setContents(const wchar_t* contents);
    Kdapi::ErrorStatus setTextHeight(double height);
    Kdapi::ErrorStatus setWidth(double width);
    Kdapi::ErrorStatus setAttachment(short attachment);
    Kdapi::ErrorStatus setRotation(double rotation);
    Kdapi::ErrorStatus setTextStyle(KdDbObjectId style);

    /// Width and height that the set text takes, in drawing units.
    double actualWidth() const;
    double actualHeight() const;

    Kdapi::ErrorStatus transformBy(const KdGeMatrix3d& matrix) override;

    KORRA_OWN()
    void describe(korra::ObjectVisitor& visitor) override;

    void draw(korra::DrawSink& sink) const override;

private:
    friend class korra::MTextLayout;

    std::wstring contents_;
    korra::PlanarPlace place_;
    KdGePoint3d location_;
    KdGeVector3d direction_ = KdGeVector3d::kXAxis;
    KdDbObjectId textStyle_;
    double textHeight_ = 0.0;
    double width_ = 0.0;
    double lineSpacing_ = 1.0;
    short attachment_ = 1;
    short flow_ = 1;
    short spacingStyle_ = 1;
};
