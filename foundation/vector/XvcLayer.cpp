#include "foundation/vector/XvcLayer.h"

#include "foundation/surface/XVertBuffer.h"
#include "foundation/vector/XVectorWalk.h"
#include "foundation/vector/XvcLayerChunks.h"

#include <atomic>

X_IMPLEMENT_CLASS(XvcLayer, XObList)

namespace {

std::atomic<std::uint64_t> s_lastNumber{0};

} // namespace

XvcLayer::XvcLayer() : m_number(++s_lastNumber), m_chunks(std::make_unique<XvcLayerChunks>(*this))
{}

XvcLayer::~XvcLayer()
{
    if (m_attachFlag) DestroyAll();
}

void XvcLayer::Adopt(XvcObj& object)
{
    object.SetParentLayer(this);
}

void XvcLayer::DestroyAll()
{
    XfnDestroyElements(*this);
}

void XvcLayer::CalcRange()
{
    m_range = m_chunks->CalcRange();
}

void XvcLayer::GetRange(double& minX, double& minY, double& minZ, double& maxX, double& maxY,
                        double& maxZ) const
{
    m_range.Get(minX, minY, minZ, maxX, maxY, maxZ);
}

void XvcLayer::CreateVertexBuffer(XVertBuffer* buffer, const XWarp2D* warp,
                                  const tagXDrawAttrs* attrs)
{
    if (!buffer || m_hideFlag) return;
    const int formerType = buffer->GetType();
    const int formerFontSizeFlag = buffer->GetFontSizeFlag();
    if (m_vertBufferType >= 0) buffer->SetType(m_vertBufferType);
    if (m_vertBufferFontSizeFlag >= 0) buffer->SetFontSizeFlag(m_vertBufferFontSizeFlag);
    if (warp || attrs) {
        XfnRecordElements(*this, buffer, warp, attrs);
    } else {
        m_chunks->Record(*buffer);
    }
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
    return m_chunks->HitTest(point, toleranceX, toleranceY, hitFlag);
}
