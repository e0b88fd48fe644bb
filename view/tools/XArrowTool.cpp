#include "view/tools/XArrowTool.h"

#include "foundation/vector/XLineEnd.h"
#include "foundation/vector/XvcLine.h"

void XArrowTool::Release(const tagXToolEvent&)
{
    constexpr int kArrow = 1;
    XvcLine* const line = Current<XvcLine>();
    if (!line) return;
    line->SetEndVertex(Pointer());
    line->SetEndShapeID(kArrow);
    Insert();
}
