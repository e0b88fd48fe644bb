#include "view/XGVObjectManager.h"

#include "foundation/vector/XvcObj.h"

#include <string>
#include <utility>

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

void XGVObjectManager::SetCurrent(std::unique_ptr<XvcObj> object)
{
    XvcObj* const former = std::exchange(m_currentObject, object.release());
    if (!std::exchange(m_isLent, false)) delete former;
}

std::unique_ptr<XvcObj> XGVObjectManager::TakeCurrent()
{
    if (m_isLent) return nullptr;
    return std::unique_ptr<XvcObj>(std::exchange(m_currentObject, nullptr));
}

std::unique_ptr<XvcObj> XGVObjectManager::LendCurrent()
{
    if (m_isLent) return nullptr;
    m_isLent = m_currentObject != nullptr;
    return std::unique_ptr<XvcObj>(m_currentObject);
}

void XGVObjectManager::GiveBack(std::unique_ptr<XvcObj> object)
{
    if (!m_isLent || object.get() != m_currentObject) return;
    object.release();
    m_isLent = false;
}
