#include "view/tools/XBoxTool.h"

#include "view/XToolState.h"
#include "view/tools/XToolGeometry.h"

void XBoxTool::Press(const tagXToolEvent&)
{
    if (!IsBuilding()) {
        BeginObject();
        SetCorners(Pointer(), Pointer());
    }
    DropAnchor();
    ShowCurrent();
}

void XBoxTool::Move(const tagXToolEvent& event)
{
    if (!IsBuilding()) return;
    tagXVector3& pointer = GetTarget().GetToolState().pointer;
    if (event.IsCtrl())
        pointer = XfnConstrainToSquare(GetTarget().GetViewMapping(), Anchor(), pointer);
    SetCorners(Anchor(), pointer);
    ShowCurrent();
}

void XBoxTool::Release(const tagXToolEvent&)
{
    if (!IsBuilding()) return;
    if (IsPoint())
        Refuse(GetKeep());
    else
        Finish();
}
