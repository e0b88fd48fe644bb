#include "foundation/surface/XVertBuffer.h"

#include "foundation/surface/XBackBuffer.h"
#include "foundation/surface/XVertReplay.h"

#include <utility>

namespace {

std::shared_ptr<const XVertRecording> EmptyRecording()
{
    static const auto empty = std::make_shared<const XVertRecording>();
    return empty;
}

} // namespace

XVertBuffer::XVertBuffer() : m_recording(EmptyRecording()) {}

void XVertBuffer::Start()
{
    m_growing = std::make_shared<XVertRecording>();
}

void XVertBuffer::End()
{
    if (!m_growing) return;
    m_growing->Seal();
    m_recording = std::move(m_growing);
    m_growing.reset();
}

void XVertBuffer::SetRecording(std::shared_ptr<const XVertRecording> recording)
{
    m_recording = recording ? std::move(recording) : EmptyRecording();
}

void XVertBuffer::AddPoint(const tagXVector3& at, const tagXVertPoint& point)
{
    if (m_growing) m_growing->AddPoint(at, point);
}

void XVertBuffer::AddPolyline(const tagXVector3* vertices, std::size_t count,
                              const tagXVertLine& line)
{
    if (m_growing) m_growing->AddPolyline(vertices, count, line);
}

void XVertBuffer::AddPolygon(const tagXVector3* vertices, const std::size_t* ringSizes,
                             std::size_t ringCount, const tagXVertLine* line,
                             const tagXVertFill* fill, bool isWinding)
{
    if (m_growing) m_growing->AddPolygon(vertices, ringSizes, ringCount, line, fill, isWinding);
}

void XVertBuffer::AddPolygon(const tagXVector3* vertices, std::size_t count,
                             const tagXVertLine* line, const tagXVertFill* fill)
{
    AddPolygon(vertices, &count, 1, line, fill);
}

void XVertBuffer::AddText(const tagXVertText& text)
{
    if (m_growing) m_growing->AddText(text, m_fontSizeFlag != 0);
}

void XVertBuffer::AddImage(const QImage& image, const tagXVector3& upperLeft,
                           const tagXVector3& upperRight, const tagXVector3& lowerLeft,
                           double opacity)
{
    if (m_growing) m_growing->AddImage(image, upperLeft, upperRight, lowerLeft, opacity);
}

void XVertBuffer::AddPart(std::shared_ptr<const XVertRecording> part)
{
    if (m_growing) m_growing->AddPart(std::move(part));
}

int XVertBuffer::Draw(XBackBuffer* buffer, const std::atomic<int>* abort) const
{
    if (!buffer || buffer->GetImage().isNull()) return 0;
    if (IsEmpty()) return 1;
    XVertReplay replay(buffer->GetMapping(), buffer->GetImage(), abort);
    replay.SetSmooth(m_isSmooth != 0);
    return replay.Run(*m_recording) ? 1 : 0;
}
