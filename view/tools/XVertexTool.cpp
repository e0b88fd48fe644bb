#include "view/tools/XVertexTool.h"

#include "view/XToolState.h"

void XVertexTool::Press(const tagXToolEvent& event)
{
    if (GetSize() < 0) {
        BeginObject();
        Add(Pointer());
    }
    if (Pointer().x != Anchor().x || Pointer().y != Anchor().y) {
        // where the rubber edge was shown, not where the pointer is
        if (CanConstrain() && event.IsCtrl() && GetSize() > 0)
            GetTarget().GetToolState().pointer = GetLast();
        Add(Pointer());
    }
    DropAnchor();
    ShowCurrent();
}

void XVertexTool::Move(const tagXToolEvent& event)
{
    if (GetSize() < 1) return;
    SetLast(CanConstrain() ? ConstrainToAxis(event) : Pointer());
    ShowCurrent(GetMoveReason());
}

void XVertexTool::RightPress(const tagXToolEvent&)
{
    if (GetSize() < 2) return;
    RemoveAt(GetSize() - 2);
    ShowCurrent();
}

void XVertexTool::DoubleClick(const tagXToolEvent&)
{
    if (GetSize() < 0) return;
    RemoveAt(GetSize() - 1);
    if (GetSize() < 2)
        Drop();
    else
        Finish();
}
