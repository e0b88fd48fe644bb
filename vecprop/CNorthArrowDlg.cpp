#include "vecprop/CNorthArrowDlg.h"

CNorthArrowDlg::CNorthArrowDlg(XvcNorthArrow* arrow, QWidget* parent)
    : XObjectDlg(XObjectDialog::NorthArrow, {arrow}, parent)
{}

void CNorthArrowDlg::SetAngle(const XString& degrees)
{
    GetModel().SetText(GetModel().FindField("angle"), degrees);
}

XString CNorthArrowDlg::GetAngle() const
{
    return GetModel().GetText(GetModel().FindField("angle"));
}

int CNorthArrowDlg::GetStyle() const
{
    return static_cast<const XvcNorthArrow&>(GetModel().GetDraft()).GetStyle();
}

tagXColor CNorthArrowDlg::GetLineColor() const
{
    return GetModel().GetDraft().GetLineColor();
}

tagXColor CNorthArrowDlg::GetForeColor() const
{
    return GetModel().GetDraft().GetForeColor();
}

tagXColor CNorthArrowDlg::GetBackColor() const
{
    return GetModel().GetDraft().GetBackColor();
}
