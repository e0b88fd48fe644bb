#include "foundation/vector/XvcMultiObj.h"

X_IMPLEMENT_CLASS(XvcMultiObj, XvcPartsObj)

void XvcMultiObj::SetLineColor(tagXColor color)
{
    XvcPartsObj::SetLineColor(color);
    for (const auto& part : m_parts)
        part->SetLineColor(color);
}

void XvcMultiObj::SetForeColor(tagXColor color)
{
    XvcPartsObj::SetForeColor(color);
    for (const auto& part : m_parts)
        part->SetForeColor(color);
}

void XvcMultiObj::SetBackColor(tagXColor color)
{
    XvcPartsObj::SetBackColor(color);
    for (const auto& part : m_parts)
        part->SetBackColor(color);
}

void XvcMultiObj::SetThick(double value)
{
    XvcPartsObj::SetThick(value);
    for (const auto& part : m_parts)
        part->SetThick(value);
}

void XvcMultiObj::SetFillStyle(const tagXFillStyle& style)
{
    XvcPartsObj::SetFillStyle(style);
    for (const auto& part : m_parts)
        part->SetFillStyle(style);
}

void XvcMultiObj::SetLineStyle(const tagXLineStyle& style)
{
    XvcPartsObj::SetLineStyle(style);
    for (const auto& part : m_parts)
        part->SetLineStyle(style);
}
