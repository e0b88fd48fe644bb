#pragma once

#include "foundation/base/XApi.h"
#include "foundation/base/XString.h"
#include "foundation/vector/XVertexArray.h"

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <string>
#include <vector>

/// A point, line or area, or several of a kind, as read from well-known binary.
struct XAPI XWkbGeometry
{
    /// The rings of an area, the outer one first; a line or a point stands alone. Rings do not
    /// repeat their first vertex.
    using Part = std::vector<XVertexArray>;

    std::uint32_t kind = 0; ///< XWkbReader::Kind, not kGeometryCollection
    std::vector<Part> parts;

    /// Reads one geometry, of either byte order at each level and any dimension; m values are
    /// skipped, heights that are no number become 0, empty points have no part.
    /// @param size     in: bytes there are; out, on success: bytes used
    /// @param allowed  the kinds to take
    /// @param what     those kinds in a sentence, such as "a polygon"
    /// @return false with a sentence in `error`; then the geometry is as it was. Counts that the
    ///         bytes cannot hold and coordinates that are no numbers are refused.
    bool Read(const unsigned char* bytes, std::size_t& size,
              std::initializer_list<std::uint32_t> allowed, const char* what, XString& error);
};

/// Builds well-known text: the usable vertices of arrays, in rings or lists.
///
///     XWktWriter text("POLYGON", hasZ);
///     text.Open(); text.AddRing(outer); text.Close();   // ((0 0, ...))
///     return text.Take();                               // "POLYGON EMPTY" if nothing was added
class XAPI XWktWriter
{
public:
    XWktWriter(const char* kind, bool hasZ);
    void Open(); ///< an element that holds others
    void Close();
    /// "(x y, x y)"; nothing with fewer than two usable vertices.
    void AddLine(const XVertexArray& vertices);
    /// The same, closed by the first vertex; nothing with fewer than three.
    void AddRing(const XVertexArray& vertices);
    void AddVertex(const tagXVector3& vertex); ///< "(x y)"
    XString Take();

    /// "LINESTRING (x y, x y)" of the usable vertices; empty with fewer than two.
    static XString FromLine(const XVertexArray& vertices);
    /// "POLYGON ((x y, ...))" of one ring; empty with fewer than three usable vertices.
    static XString FromRing(const XVertexArray& vertices);
    /// "MULTIPOINT ((x y), (x y))" of the usable vertices.
    static XString FromPoints(const XVertexArray& vertices);
    /// "MULTILINESTRING ((x y, x y), ...)" of the lines with two usable vertices or more.
    static XString FromLines(const std::vector<const XVertexArray*>& lines);

private:
    void Separate();
    void Append(const tagXVector3& vertex);
    void AddVertices(const XVertexArray& vertices, bool isRing);

    std::string m_text;
    bool m_hasZ;
    bool m_isEmpty = true;
};

/// How many of the vertices can be written.
XAPI int XfnCountUsable(const XVertexArray& vertices);
/// Whether a usable vertex has a height other than 0.
XAPI bool XfnHasHeights(const XVertexArray& vertices);
