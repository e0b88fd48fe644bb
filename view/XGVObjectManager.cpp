#include "view/XGVObjectManager.h"

#include <string>

XGVObjectManager::XGVObjectManager()
{
    m_lineStyle.SetStyle(tagXLineStyle::kSolid);
    m_fillStyle.SetStyle(tagXFillStyle::kNone);
}

void XGVObjectManager::SetLineStyle(const tagXLineStyle& style)
{
    m_lineStyle.SetStyle(style.GetPattern(), style.GetStyle());
}

void XGVObjectManager::SetFillStyle(const tagXFillStyle& style)
{
    m_fillStyle = style;
}

void XGVObjectManager::SetTextStyle(const tagXTextStyle& style)
{
    m_textStyle = style;
    m_textStyle.font.faceName[sizeof style.font.faceName - 1] = '\0'; // a host's may not end
    m_textStyle.font.SetFaceName(std::string(m_textStyle.font.faceName).c_str());
}
