#include "view/tools/XLineTool.h"

#include "foundation/vector/XvcLine.h"

void XLineTool::Press(const tagXToolEvent&)
{
    if (!Current<XvcLine>()) {
        XvcLine& line = Begin<XvcLine>();
        GiveAttributes(line, Fill::Without);
        line.SetWorldPerPixel(GetWorldPerPixel());
        line.SetVertices(Pointer(), Pointer());
    }
    DropAnchor();
}

void XLineTool::Move(const tagXToolEvent& event)
{
    XvcLine* const line = Current<XvcLine>();
    if (!line) return;
    line->SetEndVertex(ConstrainToAxis(event));
    ShowCurrent(m_moveReason);
}

void XLineTool::Release(const tagXToolEvent&)
{
    XvcLine* const line = Current<XvcLine>();
    if (!line) return;
    line->SetEndVertex(Pointer());
    Finish();
}
