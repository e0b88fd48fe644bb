#pragma once

#include "foundation/surface/XVertStyles.h"

#include <QImage>

#include <cstddef>
#include <cstdint>
#include <vector>

/// The primitives of one recording, in the order they were added.
///
/// Only numbers that can be drawn are kept: vertices that are not finite or lie beyond 1e300 are
/// left out, a line being cut in two there, and what has no part to show is not stored at all.
/// Threads: filled by one, then never changed; any number of threads may replay it at once.
class XAPI XVertRecording
{
public:
    enum class XKind : std::uint8_t { Points, Polyline, Polygon, Text, Image };

    /// `first` and `count` are vertices. For polygons `extra` is the first ring and `extraCount`
    /// the number of rings; for texts and images `extra` is the index in their table.
    struct tagCommand
    {
        XKind kind;
        bool isWinding;
        std::uint32_t line; // index of the style, kNoStyle for none; of a point style for points
        std::uint32_t fill;
        std::uint32_t extra;
        std::uint32_t extraCount;
        std::size_t first;
        std::size_t count;
    };
    struct tagImage
    {
        QImage image;
        double opacity;
    };
    struct tagText
    {
        tagXVertText text;
        bool isHeightInPixels;
    };
    static constexpr std::uint32_t kNoStyle = 0xFFFFFFFFu;

    void AddPoint(const tagXVector3& at, const tagXVertPoint& point);
    void AddPolyline(const tagXVector3* vertices, std::size_t count, const tagXVertLine& line);
    void AddPolygon(const tagXVector3* vertices, const std::size_t* ringSizes,
                    std::size_t ringCount, const tagXVertLine* line, const tagXVertFill* fill,
                    bool isWinding);
    void AddText(const tagXVertText& text, bool isHeightInPixels);
    void AddImage(const QImage& image, const tagXVector3& upperLeft, const tagXVector3& upperRight,
                  const tagXVector3& lowerLeft, double opacity);

    const std::vector<tagCommand>& GetCommands() const { return m_commands; }
    const double* GetVertices(std::size_t first) const { return m_vertices.data() + 2 * first; }
    std::size_t GetRingSize(std::size_t ring) const { return m_rings[ring]; }
    const tagXVertLine& GetLine(std::uint32_t index) const { return m_lines[index]; }
    const tagXVertFill& GetFill(std::uint32_t index) const { return m_fills[index]; }
    const tagXVertPoint& GetPoint(std::uint32_t index) const { return m_points[index]; }
    const tagText& GetText(std::uint32_t index) const { return m_texts[index]; }
    const tagImage& GetImage(std::uint32_t index) const { return m_images[index]; }

private:
    bool PushVertex(double x, double y);
    tagCommand& PushCommand(XKind kind, std::size_t first, std::size_t count);

    std::vector<tagCommand> m_commands;
    std::vector<double> m_vertices; // x, y
    std::vector<std::size_t> m_rings;
    std::vector<tagXVertLine> m_lines;
    std::vector<tagXVertFill> m_fills;
    std::vector<tagXVertPoint> m_points;
    std::vector<tagText> m_texts;
    std::vector<tagImage> m_images;
};
