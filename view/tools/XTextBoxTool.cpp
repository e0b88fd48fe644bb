#include "view/tools/XTextBoxTool.h"

#include "foundation/vector/XvcTextBox.h"
#include "view/XViewMapping.h"

XvcTextBox* XTextBoxTool::GetBox() const
{
    return Current<XvcTextBox>();
}

void XTextBoxTool::BeginObject()
{
    Begin<XvcTextBox>(GetTarget().GetOwnerWindow());
}

void XTextBoxTool::SetPosition(const tagXVector3& position)
{
    GetBox()->SetPosition(position);
}

void XTextBoxTool::TakeBox(const QRect& pulled)
{
    constexpr int kSide = 100;
    constexpr int kStyleHeight = 200; // twips
    constexpr tagXColor kRed = 0xFF0000FFu, kWhite = 0xFFFFFFFFu;
    const int width = pulled.width() ? pulled.width() : kSide;
    const int height = pulled.height() ? pulled.height() : kSide;
    const XViewMapping& mapping = GetTarget().GetViewMapping();
    double worldX = 1.0, worldY = 1.0;
    mapping.GetWorldPerPixel(worldX, worldY);
    double left = pulled.x(), top = pulled.y();
    mapping.PixelToWorld(left, top);

    XvcTextBox& box = *GetBox();
    box.SetEditBound(pulled.x(), pulled.y(), pulled.x() + width, pulled.y() + height);
    box.SetPosition(left, top, 0.0);
    box.CalcBound(width * worldX, height * worldY);
    box.SetLineColor(kRed);
    box.SetForeColor(kWhite);
    box.SetBackColor(kWhite);
    box.SetScale(worldX);
    tagXTextStyle& style = GetTarget().GetObjectManager().GetTextStyle();
    box.SetTextStyle(style);
    style.font.height = kStyleHeight;
    box.SetThick(0.0);
    box.BeginEditMode(worldX);
    Insert();
}
