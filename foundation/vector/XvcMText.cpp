#include "foundation/vector/XvcMText.h"

#include "foundation/vector/XvcMPoint.h"

X_IMPLEMENT_CLASS(XvcMText, XvcMultiObj)

XvcMText::XvcMText(const XvcMText& other) : XvcMultiObj(other)
{
    AdoptTexts();
}

XvcMText& XvcMText::operator=(const XvcMText& other)
{
    XvcMultiObj::operator=(other);
    AdoptTexts();
    return *this;
}

int XvcMText::AddText(const XString& text, double x, double y, double z)
{
    XvcText made;
    if (GetNumOfTexts() > 0) made = GetFirst(); // size and style are those of the whole
    GiveAttributes(made);
    made.SetText(text);
    made.SetPosition(x, y, z);
    return AddText(made);
}

int XvcMText::AddText(const XvcText& text)
{
    auto copy = std::make_unique<XvcText>(text);
    copy->SetParent(this);
    return AddPart(std::move(copy));
}

void XvcMText::SetFontSize(double height)
{
    for (int i = 0; i < GetNumOfTexts(); ++i)
        GetTextObjAt(i)->SetFontSize(height);
}

void XvcMText::SetTextAlign(int align)
{
    for (int i = 0; i < GetNumOfTexts(); ++i)
        GetTextObjAt(i)->SetTextAlign(align);
}

void XvcMText::SetTextStyle(const tagXTextStyle& style)
{
    for (int i = 0; i < GetNumOfTexts(); ++i)
        GetTextObjAt(i)->SetTextStyle(style);
}

void XvcMText::SetTextColor(tagXColor color)
{
    for (int i = 0; i < GetNumOfTexts(); ++i)
        GetTextObjAt(i)->SetTextColor(color);
}

void XvcMText::SetDrawBorder(int flag)
{
    for (int i = 0; i < GetNumOfTexts(); ++i)
        GetTextObjAt(i)->SetDrawBorder(flag);
}

void XvcMText::Serialize(XArchive& archive)
{
    XvcMultiObj::Serialize(archive);
    AdoptTexts();
}

int XvcMText::ImportFromWkb(const unsigned char* bytes, std::size_t& size, XString& error)
{
    XvcMPoint points;
    if (!points.ImportFromWkb(bytes, size, error)) return 0;
    RemoveAll();
    for (int i = 0; i < points.GetNumOfPoints(); ++i) {
        const tagXVector3& vertex = points.GetPointObjAt(i)->GetVertex();
        AddText(XString(), vertex.x, vertex.y, vertex.z);
    }
    return 1;
}

XString XvcMText::ExportToWkt() const
{
    XvcMPoint points;
    for (int i = 0; i < GetNumOfTexts(); ++i) {
        const tagXVector3& at = GetTextObjAt(i)->GetPosition();
        points.AddPoint(at.x, at.y, at.z);
    }
    return points.ExportToWkt();
}

bool XvcMText::IsPartAllowed(const XvcObj& part) const
{
    return part.IsKindOf(XvcText::GetRuntimeClassStatic()) != 0;
}

const XvcText& XvcMText::GetFirst() const
{
    static const XvcText none;
    return GetNumOfTexts() > 0 ? *GetTextObjAt(0) : none;
}

void XvcMText::AdoptTexts()
{
    for (int i = 0; i < GetNumOfTexts(); ++i)
        GetTextObjAt(i)->SetParent(this);
}
