#include "orvex/view_tolerances.h"

#include "orvex/system_variables.h"

#include <algorithm>

namespace {

constexpr int kUsualSize = 5; // of grips and the pick box, pixels
constexpr const wchar_t* kGripSize = L"GRIPSIZE";

struct View {
    double height = 0.0; ///< drawing units
    KdGePoint3d screen;  ///< pixels in x and y
    bool isRead = false; ///< both of them
};

View currentView()
{
    View view;
    const int heightRead = QmSysVarMgr::GetSysDoubleValue(view.height, L"VIEWSIZE");
    const int screenRead = QmSysVarMgr::GetSysPointValue(view.screen, L"SCREENSIZE");
    view.isRead = heightRead && screenRead;
    return view;
}

} // namespace

double GetPixelHeight()
{
    constexpr double kUnknown = -1.0;
    const View view = currentView();
    return view.isRead && view.screen.y != 0.0 ? view.height / view.screen.y : kUnknown;
}

double GetGripFusionLength()
{
    constexpr double kWithoutView = 0.5;
    const double pixelHeight = GetPixelHeight();
    int gripSize = 0;
    if (!QmSysVarMgr::GetSysIntValue(gripSize, kGripSize))
        gripSize = kUsualSize;
    return pixelHeight > 0.0 ? 2 * gripSize * pixelHeight : kWithoutView;
}

KdGeTol GetGripPointTol()
{
    return KdGeTol().setEqualPoint(GetLeaderTol());
}

double GetLeaderTol()
{
    constexpr double kWithoutView = 1.0;
    const double pixelHeight = GetPixelHeight();
    int gripSize = 0;
    QmSysVarMgr::GetSysIntValue(gripSize, kGripSize);
    const double tolerance = 2 * gripSize * pixelHeight;
    return tolerance < 0.0 ? kWithoutView : tolerance;
}

double GetSelectBoxLength()
{
    constexpr double kLeastScreen = 80.0; // pixels; what is no higher is no screen
    constexpr double kUsualScreen = 800.0;
    constexpr double kLeastPixel = 0.0001;
    const View view = currentView();
    const double screenHeight = view.screen.y > kLeastScreen ? view.screen.y : kUsualScreen;
    const double pixelHeight = std::max(kLeastPixel, view.height / screenHeight);
    int pickBox = 0;
    QmSysVarMgr::GetSysIntValue(pickBox, L"PICKBOX");
    return (pickBox == 0 ? kUsualSize : pickBox) * pixelHeight;
}
