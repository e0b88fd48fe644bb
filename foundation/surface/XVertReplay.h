#pragma once

#include "foundation/surface/XBufferMapping.h"
#include "foundation/surface/XVertRecording.h"

#include <QPainter>
#include <QPolygonF>

#include <atomic>

/// Draws one recording on an image at one mapping. Internal to this folder; one object a drawing.
class XVertReplay
{
public:
    XVertReplay(const XVertRecording& recording, const XBufferMapping& mapping, QImage& target);

    void SetSmooth(bool isSmooth);

    /// @return false when the abort word rose
    bool Run(const std::atomic<int>* abort);

private:
    using tagCommand = XVertRecording::tagCommand;

    QPointF ToPixel(const double* vertex) const;
    QPolygonF Project(std::size_t first, std::size_t count) const;
    double ToPixelSize(double size, double sizeOfZero) const;
    QRectF GetBox(double margin) const;

    void SetLine(std::uint32_t index);
    void SetFill(std::uint32_t index);
    void StrokeLine(const QPolygonF& points);
    void DrawPolygon(const tagCommand& command);
    void DrawPoints(const tagCommand& command);
    void DrawMark(int shape, const QPoint& centre, int sizePx);
    void DrawSmallTriangle(const QPoint& centre, int sizePx);
    void DrawText(const XVertRecording::tagText& record);
    void DrawImage(const tagCommand& command);

    const XVertRecording& m_recording;
    const XBufferMapping& m_mapping;
    QPainter m_painter;
    bool m_isSmooth = false;

    // the line and fill set up last
    std::uint32_t m_lineIndex = XVertRecording::kNoStyle;
    std::uint32_t m_fillIndex = XVertRecording::kNoStyle;
    QPen m_pen;
    double m_lineWidth = 1.0;
    QBrush m_brush;
    double m_dashOffset = 0.0;
    double m_dashPeriod = 0.0; // 0 for a solid line
};
