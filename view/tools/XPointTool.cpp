#include "view/tools/XPointTool.h"

#include "foundation/vector/XvcPoint.h"

void XPointTool::Press(const tagXToolEvent&)
{
    constexpr int kDiagonalCross = 5;
    XvcPoint* point = Current<XvcPoint>();
    if (!point) {
        point = &Begin<XvcPoint>();
        GiveAttributes(*point, Fill::With);
        point->SetType(kDiagonalCross);
    }
    point->SetVertex(Pointer());
    Finish();
}
