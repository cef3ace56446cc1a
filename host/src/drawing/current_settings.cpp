#include "objects/contents.h"
#include "platform/gate.h"
#include "tables/drawing_settings.h"
#include "tables/line_weights.h"

using korra::DrawingSettings;

namespace settings = korra::settings;

bool KdDbDatabase::tilemode() const
{
    return DrawingSettings(*this).get(settings::kTileMode) != 0;
}

bool KdDbDatabase::orthomode() const
{
    return DrawingSettings(*this).get(settings::kOrthoMode) != 0;
}

Kdapi::ErrorStatus KdDbDatabase::setOrthomode(bool on)
{
    return platform::gate("KdDbDatabase::setOrthomode", on).guard(Kdapi::eInvalidInput, [&] {
        DrawingSettings(*this).set(settings::kOrthoMode, on ? 1 : 0);
        return Kdapi::eOk;
    });
}

KdDb::MeasurementValue KdDbDatabase::measurement() const
{
    const int value = DrawingSettings(*this).get(settings::kMeasurement);
    return value == KdDb::kMetric ? KdDb::kMetric : KdDb::kEnglish;
}

KdDbObjectId KdDbDatabase::ucsname() const
{
    return DrawingSettings(*this).get(settings::kUserSystem);
}

KdDbObjectId KdDbDatabase::clayer() const
{
    return DrawingSettings(*this).get(settings::kLayer);
}

Kdapi::ErrorStatus KdDbDatabase::setClayer(KdDbObjectId layer)
{
    return platform::gate("KdDbDatabase::setClayer", layer).guard(Kdapi::eInvalidInput, [&] {
        return DrawingSettings(*this).set(settings::kLayer, layer);
    });
}

KdDbObjectId KdDbDatabase::textstyle() const
{
    return DrawingSettings(*this).get(settings::kTextStyle);
}

Kdapi::ErrorStatus KdDbDatabase::setTextstyle(KdDbObjectId style)
{
    return platform::gate("KdDbDatabase::setTextstyle", style).guard(Kdapi::eInvalidInput, [&] {
        return DrawingSettings(*this).set(settings::kTextStyle, style);
    });
}

KdDbObjectId KdDbDatabase::dimstyle() const
{
    return DrawingSettings(*this).get(settings::kDimStyle);
}

Kdapi::ErrorStatus KdDbDatabase::setDimstyle(KdDbObjectId style)
{
    return platform::gate("KdDbDatabase::setDimstyle", style).guard(Kdapi::eInvalidInput, [&] {
        return DrawingSettings(*this).set(settings::kDimStyle, style);
    });
}

KdDbObjectId KdDbDatabase::celtype() const
{
    return DrawingSettings(*this).get(settings::kLinetype);
}

KdDbObjectId KdDbDatabase::continuousLinetype() const
{
    return contents_->record(korra::TableKind::linetype, L"Continuous");
}

KdCmColor KdDbDatabase::cecolor() const
{
    KdCmColor color;
    color.setColorIndex(static_cast<std::uint16_t>(DrawingSettings(*this).get(settings::kColor)));
    return color;
}

Kdapi::ErrorStatus KdDbDatabase::setCecolor(const KdCmColor& color)
{
    return platform::gate("KdDbDatabase::setCecolor", color.colorIndex())
        .guard(Kdapi::eInvalidInput, [&] {
            DrawingSettings(*this).set(settings::kColor, color.colorIndex());
            return Kdapi::eOk;
        });
}

KdDb::LineWeight KdDbDatabase::celweight() const
{
    return static_cast<KdDb::LineWeight>(DrawingSettings(*this).get(settings::kLineWeight));
}

Kdapi::ErrorStatus KdDbDatabase::setCelweight(KdDb::LineWeight weight)
{
    return platform::gate("KdDbDatabase::setCelweight", weight).guard(Kdapi::eInvalidInput, [&] {
        if (!korra::isStandardLineWeight(weight))
            return Kdapi::eInvalidInput;
        DrawingSettings(*this).set(settings::kLineWeight, weight);
        return Kdapi::eOk;
    });
}
