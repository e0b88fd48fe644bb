#include "view/tools/XTextTool.h"

#include "foundation/vector/XvcText.h"
#include "view/XViewMapping.h"

bool XTextTool::IsBuilding() const
{
    return Current<XvcText>() != nullptr;
}

void XTextTool::BeginObject()
{
    Begin<XvcText>();
}

void XTextTool::SetPosition(const tagXVector3& position)
{
    Current<XvcText>()->SetPosition(position);
}

int XTextTool::AskText(const QRect& box, XString& text) const
{
    XObjectDialogs* const dialogs = XObjectDialogs::Get();
    if (!dialogs) return 0;
    const QPoint corner = GetTarget().GetScreenOrigin() + box.topLeft();
    tagXTextInputCall call;
    call.owner = GetTarget().GetOwnerWindow();
    call.x = corner.x();
    call.y = corner.y();
    call.width = box.width();
    call.height = box.height();
    call.style = &GetTarget().GetObjectManager().GetTextStyle();
    call.color = GetTarget().GetObjectManager().m_foreColor;
    return dialogs->InputText(call, text);
}

void XTextTool::TakeBox(const QRect& pulled)
{
    constexpr int kWidth = 100, kHeight = 25;
    const bool isFlat = pulled.width() == 0 || pulled.height() == 0;
    const QRect box = isFlat ? QRect(pulled.x(), pulled.y(), kWidth, kHeight) : pulled;
    XString entered;
    const auto result = Hold([&](XvcObj&) { return AskText(box, entered); });
    if (!result || *result != 1) return;
    if (entered.IsEmpty()) {
        Refuse(Keep::Nothing);
        return;
    }
    const XGVObjectManager& styles = GetTarget().GetObjectManager();
    double worldX = 1.0, worldY = 1.0;
    GetTarget().GetViewMapping().GetWorldPerPixel(worldX, worldY);
    XvcText* const text = Current<XvcText>();
    text->SetText(entered);
    text->SetLineColor(styles.m_lineColor);
    text->SetForeColor(styles.m_foreColor);
    text->SetBackColor(styles.m_backColor);
    text->SetTextStyle(GetTarget().GetObjectManager().GetTextStyle());
    text->SetFontSize(box.height() * worldY);
    text->SetTextAlign(XvcText::kAlignUpperLeft);
    Finish();
}
