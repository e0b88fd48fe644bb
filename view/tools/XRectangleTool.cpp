#include "view/tools/XRectangleTool.h"

#include "foundation/vector/XvcRectangle.h"

bool XRectangleTool::IsBuilding() const
{
    return Current<XvcRectangle>() != nullptr;
}

void XRectangleTool::BeginObject()
{
    XvcRectangle& rectangle = Begin<XvcRectangle>();
    const tagXColor backColor = rectangle.GetBackColor();
    GiveAttributes(rectangle, Fill::With);
    if (rectangle.GetFillStyle().GetStyle() != tagXFillStyle::kCustom)
        rectangle.SetBackColor(backColor);
}

void XRectangleTool::SetCorners(const tagXVector3& a, const tagXVector3& b)
{
    Current<XvcRectangle>()->Set(a, b);
}

bool XRectangleTool::IsPoint() const
{
    return Current<XvcRectangle>()->GetLL() == Current<XvcRectangle>()->GetUR();
}
