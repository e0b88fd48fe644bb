#include "view/tools/XEllipseTool.h"

#include "foundation/vector/XvcEllipse.h"

#include <cmath>

bool XEllipseTool::IsBuilding() const
{
    return Current<XvcEllipse>() != nullptr;
}

void XEllipseTool::BeginObject()
{
    GiveAttributes(Begin<XvcEllipse>(), Fill::With);
}

void XEllipseTool::SetCorners(const tagXVector3& a, const tagXVector3& b)
{
    XvcEllipse* const ellipse = Current<XvcEllipse>();
    ellipse->SetCenter((a.x + b.x) / 2.0, (a.y + b.y) / 2.0, 0.0);
    ellipse->SetAxis(std::fabs(b.x - a.x) / 2.0, std::fabs(b.y - a.y) / 2.0);
}

bool XEllipseTool::IsPoint() const
{
    return Current<XvcEllipse>()->GetAxisX() == 0.0 && Current<XvcEllipse>()->GetAxisY() == 0.0;
}
