#include "view/tools/XViewTool.h"

#include "view/XGVRubberBand.h"
#include "view/XToolState.h"
#include "view/XViewMapping.h"

tagXToolEvent XViewTool::Read(unsigned message, XWPARAM wParam, XLPARAM lParam) const
{
    constexpr XWPARAM kFlagBits = 0xFFFF; // the wheel keeps its angle above them
    tagXToolEvent event;
    event.message = message;
    event.flags = static_cast<unsigned>(wParam & kFlagBits);
    event.pixel = QPoint(XfnPackedX(lParam), XfnPackedY(lParam));
    event.worldX = event.pixel.x();
    event.worldY = event.pixel.y();
    m_target.GetViewMapping().PixelToWorld(event.worldX, event.worldY);
    return event;
}

void XViewTool::Handle(unsigned message, XWPARAM wParam, XLPARAM lParam)
{
    const tagXToolEvent event = Read(message, wParam, lParam);
    OnAny(event);
    switch (message) {
    case kMsgMouseMove:
        return Move(event);
    case kMsgLButtonDown:
        return Press(event);
    case kMsgLButtonUp:
        return Release(event);
    case kMsgLButtonDblClk:
        return DoubleClick(event);
    case kMsgRButtonDown:
        return RightPress(event);
    case kMsgRButtonDblClk:
        return RightDoubleClick(event);
    default:
        return;
    }
}

void XViewTool::ShowBand(const QPoint& to)
{
    m_target.GetToolState().previous = to;
    m_target.GetRubberBand().Show(m_target.GetToolState().start, to);
    m_target.RubberBandChanged();
}

int XViewTool::HideBand()
{
    if (!m_target.GetRubberBand().IsShown()) return 0;
    m_target.GetRubberBand().Hide();
    m_target.RubberBandChanged();
    return 1;
}
