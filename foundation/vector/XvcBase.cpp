#include "foundation/vector/XvcBase.h"

#include "foundation/vector/XVectorWalk.h"
#include "foundation/vector/XvcLayer.h"

X_IMPLEMENT_CLASS(XvcBase, XObList)

namespace {

XvcLayer* NextLayer(const XObList& list, __POSITION*& position)
{
    return dynamic_cast<XvcLayer*>(list.GetNext(position));
}

} // namespace

XvcBase::XvcBase() : XObList(10) {}

XvcBase::~XvcBase()
{
    XfnDestroyElements(*this);
}

__POSITION* XvcBase::AddTail(XvcLayer* layer)
{
    if (!layer) return nullptr;
    __POSITION* position = XObList::AddTail(layer);
    layer->SetParentBase(this);
    return position;
}

void XvcBase::RemoveAt(__POSITION* position)
{
    auto* layer = dynamic_cast<XvcLayer*>(GetAt(position));
    XObList::RemoveAt(position);
    if (layer) layer->SetParentBase(nullptr);
}

void XvcBase::RemoveAll()
{
    for (__POSITION* position = GetHeadPosition(); position;) {
        if (XvcLayer* layer = NextLayer(*this, position)) layer->SetParentBase(nullptr);
    }
    XObList::RemoveAll();
}

void XvcBase::CalcRange()
{
    m_range.Clear();
    for (__POSITION* position = GetHeadPosition(); position;) {
        XvcLayer* layer = NextLayer(*this, position);
        if (!layer) continue;
        layer->CalcRange();
        m_range.Add(layer->GetRange());
    }
}

void XvcBase::GetRange(double& minX, double& minY, double& minZ, double& maxX, double& maxY,
                       double& maxZ) const
{
    minX = m_range.minX;
    minY = m_range.minY;
    minZ = m_range.minZ;
    maxX = m_range.maxX;
    maxY = m_range.maxY;
    maxZ = m_range.maxZ;
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
    if (m_hideFlag) return;
    for (__POSITION* position = GetHeadPosition(); position;) {
        if (XvcLayer* layer = NextLayer(*this, position)) {
            layer->CreateVertexBuffer(buffer, warp, attrs);
        }
    }
}

XvcObj* XvcBase::HitTest(const tagXVector3& point, double tolerance, tagXHitFlag& hitFlag)
{
    if (m_hideFlag) return nullptr;
    for (__POSITION* position = GetTailPosition(); position;) {
        auto* layer = dynamic_cast<XvcLayer*>(GetPrev(position));
        if (!layer) continue;
        if (XvcObj* hit = layer->HitTest(point, tolerance, hitFlag)) return hit;
    }
    return nullptr;
}
