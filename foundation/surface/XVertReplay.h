#pragma once

#include "foundation/surface/XLineClip.h"
#include "foundation/surface/XMarkStamp.h"
#include "foundation/surface/XThickLine.h"
#include "foundation/surface/XThinLine.h"
#include "foundation/surface/XVertProjection.h"
#include "foundation/surface/XVertRecording.h"

#include <QPainter>
#include <QPolygonF>

#include <atomic>
#include <list>
#include <optional>
#include <vector>

/// Draws recordings on an image at one mapping. Internal to this folder; one object a drawing.
///
/// Lines, areas and marks are set into the pixels here; a painter does texts, pictures and giant
/// marks. Of an object that lies on one pixel that pixel is drawn, in the colour of its line, or of
/// its area when it has none.
class XVertReplay
{
public:
    /// @param abort  polled all the time, about every ten thousand vertices within a primitive too
    XVertReplay(const XBufferMapping& mapping, QImage& target, const std::atomic<int>* abort);

    void SetSmooth(bool isSmooth);

    /// @return false when the abort word rose
    bool Run(const XVertRecording& recording);

private:
    using tagCommand = XVertRecording::tagCommand;
    using tagPixelBox = XVertProjection::tagPixelBox;

    bool IsAborted() const { return m_abort && m_abort->load(std::memory_order_relaxed); }
    QPainter& Painter();
    QRectF GetBox(double margin) const;

    void Draw(const tagCommand& command, const XVertRecording::tagBox& box);
    void SetLine(std::uint32_t index);
    void SetFill(std::uint32_t index);
    bool IsThin() const { return m_lineWidth < 1.5; }
    void PlotPixel(const tagPixelBox& box, const tagXPixelPaint& paint);

    bool Project(const tagCommand& command, bool isNear);
    QPolygonF ProjectFar(std::size_t first, std::size_t count) const;
    void FillPolygon(const tagCommand& command);
    void DrawLines(const tagCommand& command, bool isInside);
    void Stroke(QPolygonF points, bool isRing, bool isInside);
    void StrokeThin(const tagXLineRun& run, double start, bool isClosed);
    double GetDashStart(double length, double width) const;
    void DrawPoints(const tagCommand& command);
    const XMarkStamp& GetStamp(const tagXVertPoint& mark, int sizePx);
    void DrawText(const XVertRecording::tagText& record);
    void DrawImage(const tagCommand& command);

    const XBufferMapping& m_mapping;
    const XVertProjection m_projection;
    const std::atomic<int>* m_abort;
    const XVertRecording* m_recording = nullptr;
    QImage& m_target;
    tagXPixels m_pixels;
    std::optional<QPainter> m_painter;
    XScanFill m_fill;
    XThinLine m_thin;
    bool m_isSmooth = false;

    // the line and fill set up last, of the recording at hand
    std::uint32_t m_lineIndex = XVertRecording::kNoStyle;
    std::uint32_t m_fillIndex = XVertRecording::kNoStyle;
    tagXPixelPaint m_linePaint;
    double m_lineWidth = 1.0;
    std::uint16_t m_dashPattern = 0xFFFF;
    QList<qreal> m_dashLengths; // empty for a solid line; in line widths
    double m_dashOffset = 0.0;
    tagXPixelPaint m_fillPaint;

    struct tagStamp
    {
        tagXVertPoint mark;
        int sizePx;
        XMarkStamp stamp;
    };
    std::list<tagStamp> m_stamps;       // the last used first
    std::vector<tagXSubPixel> m_places; // of the primitive at hand; empty when it reaches too far
};
