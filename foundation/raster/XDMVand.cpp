#include "foundation/raster/XDMVand.h"

#include "foundation/vector/XvcBase.h"

X_IMPLEMENT_CLASS(XDMVand, XObject)

XDMVand::~XDMVand()
{
    if (m_deleteBaseFlag) delete m_base;
}

void XDMVand::SetBase(XvcBase* base)
{
    if (base == m_base) return;
    if (m_deleteBaseFlag) delete m_base;
    m_base = base;
}

void XDMVand::SetSR(const XSpatialReference* sr)
{
    m_sr = sr ? *sr : XSpatialReference();
}

XString XDMVand::GetName() const
{
    return m_base ? m_base->GetName() : XString();
}

int XDMVand::GetHideFlag() const
{
    return m_base ? m_base->GetHideFlag() : 0;
}

void XDMVand::SetHideFlag(int flag)
{
    if (m_base) m_base->SetHideFlag(flag);
}

void XDMVand::GetRange(double& minX, double& minY, double& minZ, double& maxX, double& maxY,
                       double& maxZ) const
{
    if (m_base) m_base->GetRange(minX, minY, minZ, maxX, maxY, maxZ);
}
