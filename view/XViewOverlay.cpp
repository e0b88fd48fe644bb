#include "view/XViewOverlay.h"

#include <utility>

const XViewOverlay::Step XViewOverlay::kSteps[6] = {
    {XViewBuffer::Measure, &XViewOverlaySteps::UpdateVertBufferMeasure},
    {XViewBuffer::BookMark, &XViewOverlaySteps::UpdateVertBufferBookMark},
    {XViewBuffer::MainVertex, &XViewOverlaySteps::UpdateVertBuffer},
    {XViewBuffer::MainBack, &XViewOverlaySteps::UpdateBackBuffer},
    {XViewBuffer::TempVertex, &XViewOverlaySteps::UpdateVertBufferTemp},
    {XViewBuffer::TempBack, &XViewOverlaySteps::UpdateBackBufferTemp},
};

void XViewOverlay::Create(int width, int height)
{
    for (XVertBuffer* buffer : {&m_mainVertex, &m_tempVertex, &m_measureVertex, &m_bookMarkVertex})
        buffer->SetType(kVertexType);
    for (XBackBuffer* buffer : {&m_mainBack, &m_tempBack}) {
        buffer->Create(nullptr, kSurfaceKind);
        buffer->Resize(nullptr, width, height);
    }
}

void XViewOverlay::Raise(std::initializer_list<XViewBuffer> buffers)
{
    for (XViewBuffer buffer : buffers) {
        switch (buffer) {
        case XViewBuffer::MainBack:
            m_isOnlyMoved = false;
            m_mainBack.SetUpdateNeeded();
            break;
        case XViewBuffer::TempBack:
            m_tempBack.SetUpdateNeeded();
            break;
        default:
            GetVertex(buffer).SetUpdateNeeded();
        }
    }
}

void XViewOverlay::RaiseMoved()
{
    const bool isOnlyMoved = m_isOnlyMoved || !m_mainBack.IsUpdateNeeded();
    Raise({XViewBuffer::MainVertex, XViewBuffer::TempVertex, XViewBuffer::MainBack,
           XViewBuffer::TempBack});
    m_isOnlyMoved = isOnlyMoved;
}

int XViewOverlay::TakeMoved()
{
    return std::exchange(m_isOnlyMoved, false);
}

int XViewOverlay::IsRaised(XViewBuffer buffer) const
{
    switch (buffer) {
    case XViewBuffer::Measure:
        return m_measureVertex.IsUpdateNeeded();
    case XViewBuffer::BookMark:
        return m_bookMarkVertex.IsUpdateNeeded();
    case XViewBuffer::MainVertex:
        return m_mainVertex.IsUpdateNeeded();
    case XViewBuffer::MainBack:
        return m_mainBack.IsUpdateNeeded();
    case XViewBuffer::TempVertex:
        return m_tempVertex.IsUpdateNeeded();
    case XViewBuffer::TempBack:
        return m_tempBack.IsUpdateNeeded();
    }
    return 0;
}

void XViewOverlay::UpdateVertices(XViewOverlaySteps& steps)
{
    for (const Step& step : kSteps)
        if (step.buffer != XViewBuffer::MainBack && step.buffer != XViewBuffer::TempBack &&
            IsRaised(step.buffer))
            (steps.*step.update)();
}

XVertBuffer& XViewOverlay::GetVertex(XViewBuffer buffer)
{
    switch (buffer) {
    case XViewBuffer::Measure:
        return m_measureVertex;
    case XViewBuffer::BookMark:
        return m_bookMarkVertex;
    case XViewBuffer::TempVertex:
        return m_tempVertex;
    default:
        return m_mainVertex;
    }
}

void XViewOverlay::UpdateTempBack()
{
    m_tempBack.UpdateCompleted();
    m_tempBack.Clear(kOverlayBackground);
    m_tempVertex.Draw(&m_tempBack);
}
