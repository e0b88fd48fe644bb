#include "foundation/vector/XvcLayer.h"

#include "foundation/surface/XVertBuffer.h"
#include "foundation/vector/XVectorWalk.h"

X_IMPLEMENT_CLASS(XvcLayer, XObList)

void XfnDestroyElements(XObList& list)
{
    for (__POSITION* position = list.GetHeadPosition(); position;) {
        XObject* element = list.GetNext(position);
        // a layer or base destroys what it owns by itself; a plain list owns nothing
        if (XfnIsExactly(element, "XObList")) XfnDestroyElements(static_cast<XObList&>(*element));
        delete element;
    }
    list.RemoveAll();
}

XvcLayer::XvcLayer() : XObList(10) {}

XvcLayer::~XvcLayer()
{
    if (m_attachFlag) {
        XfnDestroyElements(*this);
    } else {
        RemoveAll();
    }
}

__POSITION* XvcLayer::AddHead(XvcObj* object)
{
    if (!object) return nullptr;
    __POSITION* position = XObList::AddHead(object);
    object->SetParentLayer(this);
    return position;
}

__POSITION* XvcLayer::AddTail(XvcObj* object)
{
    if (!object) return nullptr;
    __POSITION* position = XObList::AddTail(object);
    object->SetParentLayer(this);
    return position;
}

__POSITION* XvcLayer::InsertBefore(__POSITION* position, XvcObj* object)
{
    if (!object) return nullptr;
    __POSITION* inserted = XObList::InsertBefore(position, object);
    object->SetParentLayer(this);
    return inserted;
}

__POSITION* XvcLayer::InsertAfter(__POSITION* position, XvcObj* object)
{
    if (!object) return nullptr;
    __POSITION* inserted = XObList::InsertAfter(position, object);
    object->SetParentLayer(this);
    return inserted;
}

void XvcLayer::SetAt(__POSITION* position, XvcObj* object)
{
    if (!object) return;
    // the former object is not asked for anything: callers replace objects they destroyed already
    XObList::SetAt(position, object);
    object->SetParentLayer(this);
}

void XvcLayer::RemoveAt(__POSITION* position)
{
    auto* object = dynamic_cast<XvcObj*>(GetAt(position));
    XObList::RemoveAt(position);
    if (object) object->SetParentLayer(nullptr);
}

void XvcLayer::RemoveAll()
{
    XfnVisitObjects(*this, [](XvcObj& object) { object.SetParentLayer(nullptr); });
    XObList::RemoveAll();
}

void XvcLayer::DestroyAll()
{
    XfnDestroyElements(*this);
}

void XvcLayer::CalcRange()
{
    m_range.Clear();
    XfnVisitObjects(*this, [this](XvcObj& object) {
        object.CalcRange();
        m_range.Add(object.GetRange());
    });
}

void XvcLayer::GetRange(double& minX, double& minY, double& minZ, double& maxX, double& maxY,
                        double& maxZ) const
{
    minX = m_range.minX;
    minY = m_range.minY;
    minZ = m_range.minZ;
    maxX = m_range.maxX;
    maxY = m_range.maxY;
    maxZ = m_range.maxZ;
}

void XvcLayer::CreateVertexBuffer(XVertBuffer* buffer, const XWarp2D* warp,
                                  const tagXDrawAttrs* attrs)
{
    if (!buffer || m_hideFlag) return;
    const int formerType = buffer->GetType();
    const int formerFontSizeFlag = buffer->GetFontSizeFlag();
    if (m_vertBufferType >= 0) buffer->SetType(m_vertBufferType);
    if (m_vertBufferFontSizeFlag >= 0) buffer->SetFontSizeFlag(m_vertBufferFontSizeFlag);
    XfnVisitObjects(*this, [&](XvcObj& object) {
        if (!object.IsHidden()) object.CreateVertexBuffer(buffer, warp, attrs);
    });
    buffer->SetType(formerType);
    buffer->SetFontSizeFlag(formerFontSizeFlag);
}

XvcObj* XvcLayer::HitTest(const tagXVector3& point, double tolerance, tagXHitFlag& hitFlag)
{
    return HitTest(point, tolerance, tolerance, hitFlag);
}

XvcObj* XvcLayer::HitTest(const tagXVector3& point, double toleranceX, double toleranceY,
                          tagXHitFlag& hitFlag)
{
    if (m_hideFlag || !m_hitTestable) return nullptr;
    return XfnFindObject(*this, [&](XvcObj& object) -> XvcObj* {
        if (object.IsHidden()) return nullptr;
        return object.HitTest(point, toleranceX, toleranceY, hitFlag);
    });
}
