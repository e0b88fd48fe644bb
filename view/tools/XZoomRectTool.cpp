#include "view/tools/XZoomRectTool.h"

#include "view/XGVMessageManager.h"
#include "view/XGVRubberBand.h"
#include "view/XToolState.h"
#include "view/XViewMapping.h"

#include <algorithm>

// The band is the state: it is shown from the press to the end of the drag.

void XZoomRectTool::Cancel()
{
    HideBand();
}

void XZoomRectTool::Press(const tagXToolEvent& event)
{
    GetTarget().GetToolState().start = event.pixel;
    ShowBand(event.pixel);
}

void XZoomRectTool::Move(const tagXToolEvent& event)
{
    if (GetTarget().GetRubberBand().IsShown() && event.IsLeftDrag()) ShowBand(event.pixel);
}

void XZoomRectTool::Release(const tagXToolEvent& event)
{
    const int isBand = HideBand();
    tagXToolState& state = GetTarget().GetToolState();
    state.current = event.pixel;
    if (isBand && state.start.x() != state.current.x() && state.start.y() != state.current.y()) {
        XViewMapping& mapping = GetTarget().GetViewMapping();
        double x = state.start.x(), y = state.start.y();
        mapping.PixelToWorld(x, y);
        mapping.ZoomFit({std::min(x, event.worldX), std::min(y, event.worldY),
                         std::max(x, event.worldX), std::max(y, event.worldY)});
    }
    // the marks of selected objects keep their size on the screen, so they are recorded anew too
    GetTarget().RaiseFlags({XViewBuffer::BookMark, XViewBuffer::TempVertex, XViewBuffer::MainBack,
                            XViewBuffer::TempBack});
    GetTarget().RepaintFor(XViewReason::ZoomRect);
    GetTarget().GetMessageManager().ChangeToPostMode();
    GetTarget().Report(XViewReport::ZoomRect);
}

void XZoomRectTool::RightDoubleClick(const tagXToolEvent&)
{
    if (HideBand()) GetTarget().GetMessageManager().ChangeToPostMode();
}
