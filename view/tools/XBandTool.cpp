#include "view/tools/XBandTool.h"

#include "view/XGVRubberBand.h"
#include "view/XToolState.h"

#include <algorithm>
#include <cstdlib>

void XBandTool::Press(const tagXToolEvent& event)
{
    GetTarget().GetToolState().start = event.pixel;
    ShowBand(event.pixel);
    if (!IsBuilding()) BeginObject();
    SetPosition(Pointer());
    ShowCurrent();
}

void XBandTool::Move(const tagXToolEvent& event)
{
    if (GetTarget().GetRubberBand().IsShown() && event.IsLeftDrag()) ShowBand(event.pixel);
}

void XBandTool::Release(const tagXToolEvent& event)
{
    // without a band the press went elsewhere
    if (!HideBand() || !IsBuilding()) return;
    const QPoint& start = GetTarget().GetToolState().start;
    TakeBox(QRect(std::min(start.x(), event.pixel.x()), std::min(start.y(), event.pixel.y()),
                  std::abs(event.pixel.x() - start.x()), std::abs(event.pixel.y() - start.y())));
}
