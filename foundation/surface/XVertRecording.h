#pragma once

#include "foundation/surface/XVertStyles.h"

#include <QImage>

#include <cstddef>
#include <cstdint>
#include <limits>
#include <memory>
#include <vector>

/// The primitives of one recording, in the order they were added.
///
/// Only numbers that can be drawn are kept: vertices that are not finite or lie beyond 1e300 are
/// left out, a line being cut in two there, and what has no part to show is not stored at all.
/// A recording may hold others as parts, which it shares. Each primitive has a box of single reals
/// beside it, rounded outward, so that a replay touches only what it shows.
/// Memory: 16 bytes a vertex, 44 a primitive; points of one look that follow each other are one.
/// Threads: filled by one, then never changed; any number of threads may replay it at once.
class XAPI XVertRecording
{
public:
    enum class XKind : std::uint8_t { Points, Polyline, Polygon, Text, Image, Part };

    /// `first` and `count` are vertices. For polygons of several rings `extra` is the first ring and
    /// `extraCount` the number of rings; for texts, images and parts `extra` is the index in their
    /// table.
    struct tagCommand
    {
        XKind kind;
        bool isWinding;
        std::uint32_t line; // index of the style, kNoStyle for none; of a point style for points
        std::uint32_t fill;
        std::uint32_t extra;
        std::uint32_t extraCount;
        std::uint32_t first;
        std::uint32_t count;
    };
    /// The vertices of a primitive, the place of a text, all of a part. Empty at first.
    struct tagBox
    {
        float minX = std::numeric_limits<float>::infinity(), minY = minX;
        float maxX = -minX, maxY = -minX;
        void Add(double x, double y); ///< rounds outward
        void Add(const tagBox& box);
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
    using Part = std::shared_ptr<const XVertRecording>;
    static constexpr std::uint32_t kNoStyle = 0xFFFFFFFFu;
    static constexpr std::size_t kMaxVertices = 0xFFFFFF00u; ///< what comes beyond is left out

    void AddPoint(const tagXVector3& at, const tagXVertPoint& point);
    void AddPolyline(const tagXVector3* vertices, std::size_t count, const tagXVertLine& line);
    void AddPolygon(const tagXVector3* vertices, const std::size_t* ringSizes,
                    std::size_t ringCount, const tagXVertLine* line, const tagXVertFill* fill,
                    bool isWinding);
    void AddText(const tagXVertText& text, bool isHeightInPixels);
    void AddImage(const QImage& image, const tagXVector3& upperLeft, const tagXVector3& upperRight,
                  const tagXVector3& lowerLeft, double opacity);
    void AddPart(Part part); ///< null and empty ones are left out
    void Seal();             ///< ends the additions; needed before it becomes a part

    const std::vector<tagCommand>& GetCommands() const { return m_commands; }
    const tagBox* GetBoxes() const { return m_boxes.data(); } ///< one a command
    /// How far primitives reach beyond their boxes: by so many world units and so many pixels.
    double GetMarginWorld() const { return m_marginWorld; }
    double GetMarginPx() const { return m_marginPx; }
    std::size_t GetVertexCount() const { return m_vertices.size() / 2; } ///< without those of parts
    const double* GetVertices(std::size_t first) const { return m_vertices.data() + 2 * first; }
    std::size_t GetRingCount(const tagCommand& polygon) const
    {
        return polygon.extraCount ? polygon.extraCount : 1;
    }
    std::size_t GetRingSize(const tagCommand& polygon, std::size_t ring) const
    {
        return polygon.extraCount ? m_rings[polygon.extra + ring] : polygon.count;
    }
    const tagXVertLine& GetLine(std::uint32_t index) const { return m_lines[index]; }
    const tagXVertFill& GetFill(std::uint32_t index) const { return m_fills[index]; }
    const tagXVertPoint& GetPoint(std::uint32_t index) const { return m_points[index]; }
    const tagText& GetText(std::uint32_t index) const { return m_texts[index]; }
    const tagImage& GetImage(std::uint32_t index) const { return m_images[index]; }
    const Part& GetPart(std::uint32_t index) const { return m_parts[index]; }
    /// No letter of a text lies farther from its place than so many times its height.
    static double GetTextReach(const tagXVertText& text);
    std::size_t GetMemoryUse() const; ///< bytes, those of parts included

private:
    bool PushVertex(double x, double y);
    tagCommand& PushCommand(XKind kind, std::size_t first, std::size_t count);
    void Cover(tagCommand& command);
    void Reach(double size, double sizeOfZeroPx, double times);

    std::vector<tagCommand> m_commands;
    std::vector<tagBox> m_boxes;
    std::vector<double> m_vertices; // x, y
    std::vector<std::uint32_t> m_rings;
    std::vector<tagXVertLine> m_lines;
    std::vector<tagXVertFill> m_fills;
    std::vector<tagXVertPoint> m_points;
    std::vector<tagText> m_texts;
    std::vector<tagImage> m_images;
    std::vector<Part> m_parts;
    tagBox m_cover; // of all boxes, once sealed
    double m_marginWorld = 0.0;
    double m_marginPx = 0.0;
};
