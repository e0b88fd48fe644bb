#include "foundation/vector/XvcBase.h"

#include "foundation/vector/XVectorWalk.h"
#include "foundation/vector/XvcLayer.h"
#include "foundation/vector/XvcSymbolTable.h"

X_IMPLEMENT_CLASS(XvcBase, XObList)

XvcBase::XvcBase() = default;

XvcBase::~XvcBase()
{
    XfnDestroyElements(*this);
}

void XvcBase::Adopt(XvcLayer& layer)
{
    layer.SetParentBase(this);
}

XvcSymbolTable& XvcBase::GetOwnSymbolTable()
{
    if (!m_ownSymbolTable) m_ownSymbolTable = std::make_unique<XvcSymbolTable>();
    return *m_ownSymbolTable;
}

void XvcBase::SetSR(const XSpatialReference* sr)
{
    m_sr = sr ? *sr : XSpatialReference();
}

void XvcBase::CalcRange()
{
    m_range = XfnCalcElementRanges(*this);
}

void XvcBase::GetRange(double& minX, double& minY, double& minZ, double& maxX, double& maxY,
                       double& maxZ) const
{
    m_range.Get(minX, minY, minZ, maxX, maxY, maxZ);
}

void XvcBase::GetCenter(double& x, double& y, double& z) const
{
    x = y = z = 0.0;
    if (m_range.IsEmpty()) return;
    // halved before they are added, so that ranges of any size have a centre
    x = m_range.minX / 2.0 + m_range.maxX / 2.0;
    y = m_range.minY / 2.0 + m_range.maxY / 2.0;
    z = m_range.minZ / 2.0 + m_range.maxZ / 2.0;
}

void XvcBase::CreateVertexBuffer(XVertBuffer* buffer, const XWarp2D* warp,
                                 const tagXDrawAttrs* attrs)
{
    if (buffer && !m_hideFlag) XfnRecordElements(*this, buffer, warp, attrs);
}

XvcObj* XvcBase::HitTest(const tagXVector3& point, double tolerance, tagXHitFlag& hitFlag)
{
    return HitTest(point, tolerance, tolerance, hitFlag);
}

XvcObj* XvcBase::HitTest(const tagXVector3& point, double toleranceX, double toleranceY,
                         tagXHitFlag& hitFlag)
{
    if (m_hideFlag) return nullptr;
    return XfnHitTestElements(*this, point, toleranceX, toleranceY, hitFlag);
}
