#include "foundation/raster/XDMCompManager.h"

#include "foundation/raster/XDMComposite.h"

#include <algorithm>

X_IMPLEMENT_CLASS(XDMCompManager, XObject)

XDMCompManager::XDMCompManager() = default;

XDMCompManager::~XDMCompManager()
{
    RemoveXDMCompositeAll();
}

XDMComposite* XDMCompManager::NewXDMComposite(int mode)
{
    m_loose.push_back(std::make_unique<XDMComposite>(mode));
    m_loose.back()->SetXDMCompManager(this);
    return m_loose.back().get();
}

void XDMCompManager::TellRemoved(XDMComposite* composite) const
{
    if (m_removed) m_removed(composite);
}

void XDMCompManager::LetGo(XDMComposite* composite)
{
    if (std::erase(m_list, composite)) TellRemoved(composite);
    const auto loose = std::find_if(m_loose.begin(), m_loose.end(), [composite](const auto& own) {
        return own.get() == composite;
    });
    if (loose == m_loose.end()) return;
    loose->release();
    m_loose.erase(loose);
}

int XDMCompManager::Take(XDMComposite* composite, std::size_t place)
{
    if (!composite || std::find(m_list.begin(), m_list.end(), composite) != m_list.end()) return 0;
    if (XDMCompManager* before = composite->GetXDMCompManager()) before->LetGo(composite);
    m_list.insert(m_list.begin() + static_cast<std::ptrdiff_t>(place), composite);
    composite->SetXDMCompManager(this);
    composite->PlaceInReference(&m_reference);
    composite->UpdateNeeded();
    return 1;
}

int XDMCompManager::AddXDMComposite(XDMComposite* composite)
{
    return Take(composite, 0);
}

int XDMCompManager::AddXDMCompositeTail(XDMComposite* composite)
{
    return Take(composite, m_list.size());
}

XDMComposite* XDMCompManager::GetXDMCompositeAt(int index) const
{
    if (index < 0 || static_cast<std::size_t>(index) >= m_list.size()) return nullptr;
    return m_list[static_cast<std::size_t>(index)];
}

long XDMCompManager::GetNumberOfXDMComposite() const
{
    return static_cast<long>(m_list.size());
}

int XDMCompManager::RemoveXDMComposite(XDMComposite* composite)
{
    const auto place = std::find(m_list.begin(), m_list.end(), composite);
    if (place == m_list.end()) return 0;
    m_list.erase(place);
    composite->SetXDMCompManager(nullptr);
    TellRemoved(composite);
    return 1;
}

int XDMCompManager::MoveXDMComposite(int from, int to)
{
    XDMComposite* composite = GetXDMCompositeAt(from);
    if (!composite || !GetXDMCompositeAt(to)) return 0;
    m_list.erase(m_list.begin() + from);
    m_list.insert(m_list.begin() + to, composite);
    return 1;
}

void XDMCompManager::RemoveXDMCompositeAll()
{
    std::vector<XDMComposite*> list;
    list.swap(m_list); // a composite that dies finds an empty list
    for (XDMComposite* composite : list) {
        composite->SetXDMCompManager(nullptr);
        TellRemoved(composite);
        if (m_isOwner) delete composite;
    }
}

void XDMCompManager::SetSR(const XSpatialReference* reference)
{
    if (reference == &m_reference) return;
    m_reference = reference ? *reference : XSpatialReference();
    for (XDMComposite* composite : m_list)
        composite->PlaceInReference(&m_reference);
}

double XDMCompManager::GetULX() const
{
    double minX = 0.0, minY = 0.0, maxX = 0.0, maxY = 0.0;
    CalcTotalRange(minX, minY, maxX, maxY);
    return minX;
}

double XDMCompManager::GetULY() const
{
    double minX = 0.0, minY = 0.0, maxX = 0.0, maxY = 0.0;
    CalcTotalRange(minX, minY, maxX, maxY);
    return maxY;
}

int XDMCompManager::IsRangeValid() const
{
    return std::any_of(m_list.begin(), m_list.end(),
                       [](const XDMComposite* composite) { return composite->IsBoundValid(); });
}

int XDMCompManager::CalcTotalRange(double& minX, double& minY, double& maxX, double& maxY) const
{
    int isFound = 0;
    for (const XDMComposite* composite : m_list) {
        if (!composite->IsBoundValid()) continue;
        double left = 0.0, right = 0.0, bottom = 0.0, top = 0.0;
        composite->GetBoundRect(left, right, bottom, top);
        minX = isFound ? std::min(minX, left) : left;
        minY = isFound ? std::min(minY, bottom) : bottom;
        maxX = isFound ? std::max(maxX, right) : right;
        maxY = isFound ? std::max(maxY, top) : top;
        isFound = 1;
    }
    return isFound;
}

void XDMCompManager::UpdateNeeded()
{
    for (XDMComposite* composite : m_list)
        composite->UpdateNeeded();
}
