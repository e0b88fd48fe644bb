#include "view/tools/XNoneTool.h"

#include "view/XGVSelectedObjs.h"
#include "view/XToolState.h"
#include "view/XViewMapping.h"
#include "view/tools/XToolHit.h"

void XNoneTool::OnAny(const tagXToolEvent&)
{
    if (GetTarget().GetSelection().Clear()) GetTarget().ShowOverlay(XViewReason::SelectionCleared);
}

void XNoneTool::DoubleClick(const tagXToolEvent& event)
{
    tagXHitFlag& hit = GetTarget().GetToolState().hit;
    const double tolerance = XfnHitTolerance(GetTarget().GetViewMapping());
    XvcObj* const object =
        XfnHitTestBases(*GetTarget().GetInnBaseList(), *GetTarget().GetExtBaseList(), event.worldX,
                        event.worldY, tolerance, hit);
    if (!object) return;
    const tagXHitReport report = {object, &hit};
    GetTarget().Report(XViewReport::ObjectHit, &report);
}
