#pragma once

#include "kd/db/entity.h"
#include "kd/own/own.h"

#include <string>

/// A window in a sheet through which model space is seen.
class KdDbViewport : public KdDbEntity {
    KDRX_DECLARE_MEMBERS(KdDbViewport)
public:
    KdDbViewport() = default;

    KdGePoint3d centerPoint() const { return center_; } ///< sheet point of the window's middle

    double width() const { return width_; } ///< sheet units

    double height() const { return height_; } ///< sheet units

    KdGePoint2d viewCenter() const { return viewCenter_; } ///< in the view's display plane

    KdGePoint3d viewTarget() const { return viewTarget_; }

    KdGeVector3d viewDirection() const { return viewDirection_; } ///< need not be a unit vector

    double viewHeight() const { return viewHeight_; } ///< model units shown

    double twistAngle() const { return twistAngle_; } ///< radians

    double lensLength() const { return lensLength_; } ///< millimetres

    bool isPerspectiveOn() const { return (statusFlags_ & 1) != 0; }

    /// Sheet units per model unit.
    double customScale() const;

    /// 1 for the sheet's own viewport, 2 and more for the windows in it, 0 and -1 while off.
    short number() const { return number_; }

    bool isOn() const;

    Kdapi::ErrorStatus setCenterPoint(const KdGePoint3d& center);
    Kdapi::ErrorStatus setWidth(double width);
    Kdapi::ErrorStatus setHeight(double height);
    Kdapi::ErrorStatus setViewCenter(const KdGePoint2d& center);
    Kdapi::ErrorStatus setViewTarget(const KdGePoint3d& target);
    Kdapi::ErrorStatus setViewDirection(const KdGeVector3d& direction);
    Kdapi::ErrorStatus setViewHeight(double height);
    Kdapi::ErrorStatus setTwistAngle(double angle);
    Kdapi::ErrorStatus setLensLength(double length);
    Kdapi::ErrorStatus setPerspectiveOn(bool on);
    Kdapi::ErrorStatus setNumber(short number);

    Kdapi::ErrorStatus transformBy(const KdGeMatrix3d& matrix) override;

    KORRA_OWN()
    void describe(korra::ObjectVisitor& visitor) override;

    void draw(korra::DrawSink& sink) const override;

private:
    KdGePoint3d center_;
    double width_ = 0.0;
    double height_ = 0.0;
    KdGePoint2d viewCenter_;
    KdGePoint3d viewTarget_;
    KdGeVector3d viewDirection_ = KdGeVector3d::kZAxis;
    double viewHeight_ = 0.0;
    double twistAngle_ = 0.0;
    double lensLength_ = 50.0;
    int statusFlags_ = 0;
    short status_ = 1;
    short number_ = 0;
};

/// A sheet: a name, a place in the row of tabs, and the block that holds its contents.
class KdDbLayout : public KdDbObject {
    KDRX_DECLARE_MEMBERS(KdDbLayout)
public:
    KdDbLayout() = default;

    const wchar_t* getLayoutName() const { return name_.c_str(); }

    Kdapi::ErrorStatus setLayoutName(const wchar_t* name);

    int getTabOrder() const { return tabOrder_; }

    KdDbObjectId getBlockTableRecordId() const { return block_; }

    /// The viewports of the sheet, the sheet's own one first; none for the model tab.
    KdArray<KdDbObjectId> getViewportArray() const;

    KORRA_OWN()
    void describe(korra::ObjectVisitor& visitor) override;

private:
    friend class korra::ObjectAccess;

    std::wstring name_;
    KdDbObjectId block_;
    int tabOrder_ = 0;
    short flags_ = 1;
};
