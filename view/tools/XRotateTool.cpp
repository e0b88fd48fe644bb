#include "view/tools/XRotateTool.h"

#include "view/XGVMessageManager.h"
#include "view/XToolState.h"
#include "view/XViewMapping.h"
#include "view/tools/XToolGeometry.h"

void XRotateTool::OnAny(const tagXToolEvent& event)
{
    GetTarget().GetToolState().current = event.pixel;
}

void XRotateTool::Press(const tagXToolEvent& event)
{
    tagXToolState& state = GetTarget().GetToolState();
    state.start = state.previous = event.pixel;
}

double XRotateTool::DirectionOf(const QPoint& pixel) const
{
    const XViewMapping& mapping = GetTarget().GetViewMapping();
    double x = pixel.x(), y = pixel.y();
    double middleX = mapping.GetWidth() / 2.0, middleY = mapping.GetHeight() / 2.0;
    mapping.PixelToWorld(x, y);
    mapping.PixelToWorld(middleX, middleY);
    return XfnDirectionDeg(x - middleX, y - middleY);
}

void XRotateTool::Move(const tagXToolEvent& event)
{
    if (!event.IsLeftDrag()) return;
    tagXToolState& state = GetTarget().GetToolState();
    const double angle = DirectionOf(state.current) - DirectionOf(state.previous);
    state.previous = state.current;
    GetTarget().RotateBy(angle);
}

void XRotateTool::Release(const tagXToolEvent&)
{
    GetTarget().ShowAll();
    GetTarget().GetMessageManager().ChangeToPostMode();
    GetTarget().Report(XViewReport::Rotated);
}
