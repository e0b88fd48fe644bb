#include "view/tools/XNoneTool.h"

#include "view/XGVSelectedObjs.h"
#include "view/XToolState.h"
#include "view/XViewMapping.h"
#include "view/tools/XToolHit.h"

void XNoneTool::OnAny(const tagXToolEvent&)
{
    if (!GetTarget().GetSelection().Clear()) return;
    GetTarget().RaiseFlags({XViewBuffer::TempVertex, XViewBuffer::TempBack});
    GetTarget().RepaintFor(XViewReason::SelectionCleared);
}

void XNoneTool::DoubleClick(const tagXToolEvent& event)
{
    tagXHitFlag& hit = GetTarget().GetToolState().hit;
    const double tolerance = XfnHitTolerance(GetTarget().GetViewMapping());
    for (XObList* bases : {GetTarget().GetInnBaseList(), GetTarget().GetExtBaseList()}) {
        XvcObj* object = XfnHitTestBases(*bases, event.worldX, event.worldY, tolerance, hit);
        if (!object) continue;
        const tagXHitReport report = {object, &hit};
        GetTarget().Report(XViewReport::ObjectHit, &report);
        return;
    }
}
