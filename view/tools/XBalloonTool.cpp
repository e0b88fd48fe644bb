#include "view/tools/XBalloonTool.h"

#include "foundation/vector/XvcBalloon.h"

void XBalloonTool::BeginObject()
{
    Begin<XvcBalloon>(GetTarget().GetOwnerWindow());
}

XvcTextBox* XBalloonTool::GetBox() const
{
    return Current<XvcBalloon>();
}
