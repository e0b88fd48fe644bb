#include "foundation/vector/XWkbGeometry.h"

#include "foundation/base/XNumber.h"
#include "foundation/vector/XVertexMath.h"
#include "foundation/vector/XWkbReader.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace {

constexpr std::size_t kHeadBytes = 5;
constexpr std::size_t kCountBytes = 4;

// Reads the geometry that one reader stands at; the first failure leaves its sentence.
class Parser
{
public:
    Parser(const unsigned char* bytes, std::size_t size, XString& error)
        : m_reader(bytes, size), m_error(error)
    {}

    bool Run(std::initializer_list<std::uint32_t> allowed, const char* what, XWkbGeometry& geometry)
    {
        XWkbReader::Head head;
        if (!m_reader.ReadHead(head)) {
            return Fail("The geometry does not begin with a known byte order and type.");
        }
        if (std::find(allowed.begin(), allowed.end(), head.kind) == allowed.end()) {
            m_error = XString("The geometry is not ") + what + ".";
            return false;
        }
        geometry.kind = head.kind;
        const bool isSingle = head.kind <= XWkbReader::kPolygon;
        return isSingle ? ReadPart(head, geometry) : ReadParts(head, geometry);
    }
    std::size_t GetUsed() const { return m_reader.GetUsed(); }

private:
    bool Fail(const char* sentence)
    {
        m_error = sentence;
        return false;
    }
    bool FailShort() { return Fail("The geometry ends within its coordinates."); }

    bool ReadParts(const XWkbReader::Head& whole, XWkbGeometry& geometry)
    {
        std::uint32_t count = 0;
        if (!m_reader.ReadCount(kHeadBytes, count)) return FailShort();
        const std::uint32_t wanted = whole.kind - (XWkbReader::kMultiPoint - XWkbReader::kPoint);
        for (std::uint32_t i = 0; i < count; ++i) {
            XWkbReader::Head head;
            if (!m_reader.ReadHead(head) || head.kind != wanted) {
                return Fail("The geometry holds one of another kind.");
            }
            if (!ReadPart(head, geometry)) return false;
        }
        return true;
    }

    bool ReadPart(const XWkbReader::Head& head, XWkbGeometry& geometry)
    {
        XWkbGeometry::Part part;
        if (head.kind == XWkbReader::kPoint) {
            XVertexArray point;
            bool isEmpty = false;
            if (!ReadVertex(head, point, &isEmpty)) return false;
            if (isEmpty) return true;
            part.push_back(std::move(point));
        } else if (head.kind == XWkbReader::kLineString) {
            part.resize(1);
            if (!ReadVertices(head, part[0])) return false;
        } else {
            std::uint32_t rings = 0;
            if (!m_reader.ReadCount(kCountBytes, rings)) return FailShort();
            for (std::uint32_t i = 0; i < rings; ++i) {
                part.emplace_back();
                if (!ReadVertices(head, part.back())) return false;
                DropClosing(part.back());
            }
        }
        geometry.parts.push_back(std::move(part));
        return true;
    }

    bool ReadVertices(const XWkbReader::Head& head, XVertexArray& vertices)
    {
        const std::size_t numbers = 2u + (head.hasZ ? 1u : 0u) + (head.hasM ? 1u : 0u);
        std::uint32_t count = 0;
        if (!m_reader.ReadCount(numbers * sizeof(double), count)) return FailShort();
        if (count > 0x7FFFFFFFu) return Fail("The geometry has too many positions.");
        vertices.Reserve(static_cast<int>(count));
        for (std::uint32_t i = 0; i < count; ++i) {
            if (!ReadVertex(head, vertices, nullptr)) return false;
        }
        vertices.Shrink();
        return true;
    }

    // The binary form has no other way to say that a point is empty than two that are no numbers.
    bool ReadVertex(const XWkbReader::Head& head, XVertexArray& vertices, bool* isEmpty)
    {
        tagXVector3 read;
        if (!m_reader.ReadPosition(head, read.x, read.y, read.z)) return FailShort();
        if (isEmpty && std::isnan(read.x) && std::isnan(read.y)) {
            *isEmpty = true;
            return true;
        }
        if (!XfnIsUsable(read)) return Fail("The geometry has a coordinate that is no number.");
        if (!XfnIsSet(read.z)) read.z = 0.0;
        vertices.Add(read);
        return true;
    }

    static void DropClosing(XVertexArray& ring)
    {
        const int last = ring.GetSize() - 1;
        if (last < 1 || ring.GetAt(0) != ring.GetAt(last)) return;
        ring.RemoveAt(last);
        ring.Shrink();
    }

    XWkbReader m_reader;
    XString& m_error;
};

} // namespace

bool XWkbGeometry::Read(const unsigned char* bytes, std::size_t& size,
                        std::initializer_list<std::uint32_t> allowed, const char* what,
                        XString& error)
{
    XWkbGeometry read;
    Parser parser(bytes, bytes ? size : 0, error);
    if (!parser.Run(allowed, what, read)) return false;
    *this = std::move(read);
    size = parser.GetUsed();
    return true;
}

XWktWriter::XWktWriter(const char* kind, bool hasZ) : m_text(kind), m_hasZ(hasZ)
{
    if (hasZ) m_text += " Z";
    m_text += ' ';
}

void XWktWriter::Separate()
{
    const bool isFirst = m_isEmpty || m_text.back() == '(';
    if (m_isEmpty) m_text += '(';
    if (!isFirst) m_text += ", ";
    m_isEmpty = false;
}

void XWktWriter::Open()
{
    Separate();
    m_text += '(';
}

void XWktWriter::Close()
{
    m_text += ')';
}

void XWktWriter::Append(const tagXVector3& vertex)
{
    m_text += XfnFormatShortest(vertex.x).View();
    m_text += ' ';
    m_text += XfnFormatShortest(vertex.y).View();
    if (!m_hasZ) return;
    m_text += ' ';
    m_text += XfnFormatShortest(XfnIsSet(vertex.z) ? vertex.z : 0.0).View();
}

void XWktWriter::AddVertices(const XVertexArray& vertices, bool isRing)
{
    int first = -1;
    for (int i = 0; i < vertices.GetSize(); ++i) {
        if (!XfnIsUsable(vertices.GetAt(i))) continue;
        if (first >= 0) m_text += ", ";
        if (first < 0) first = i;
        Append(vertices.GetAt(i));
    }
    if (!isRing || first < 0) return;
    m_text += ", ";
    Append(vertices.GetAt(first));
}

void XWktWriter::AddLine(const XVertexArray& vertices)
{
    if (XfnCountUsable(vertices) < 2) return;
    Open();
    AddVertices(vertices, false);
    Close();
}

void XWktWriter::AddRing(const XVertexArray& vertices)
{
    if (XfnCountUsable(vertices) < 3) return;
    Open();
    AddVertices(vertices, true);
    Close();
}

void XWktWriter::AddVertex(const tagXVector3& vertex)
{
    Open();
    Append(vertex);
    Close();
}

XString XWktWriter::Take()
{
    m_text += m_isEmpty ? "EMPTY" : ")";
    return XString(m_text);
}

XString XWktWriter::FromLine(const XVertexArray& vertices)
{
    XWktWriter text("LINESTRING", XfnHasHeights(vertices));
    if (XfnCountUsable(vertices) >= 2) {
        text.Separate();
        text.AddVertices(vertices, false);
    }
    return text.Take();
}

XString XWktWriter::FromRing(const XVertexArray& vertices)
{
    XWktWriter text("POLYGON", XfnHasHeights(vertices));
    text.AddRing(vertices);
    return text.Take();
}

XString XWktWriter::FromPoints(const XVertexArray& vertices)
{
    XWktWriter text("MULTIPOINT", XfnHasHeights(vertices));
    for (int i = 0; i < vertices.GetSize(); ++i) {
        if (XfnIsUsable(vertices.GetAt(i))) text.AddVertex(vertices.GetAt(i));
    }
    return text.Take();
}

XString XWktWriter::FromLines(const std::vector<const XVertexArray*>& lines)
{
    XWktWriter text("MULTILINESTRING",
                    std::any_of(lines.begin(), lines.end(),
                                [](const XVertexArray* line) { return XfnHasHeights(*line); }));
    for (const XVertexArray* line : lines)
        text.AddLine(*line);
    return text.Take();
}

int XfnCountUsable(const XVertexArray& vertices)
{
    int count = 0;
    for (int i = 0; i < vertices.GetSize(); ++i)
        count += XfnIsUsable(vertices.GetAt(i)) ? 1 : 0;
    return count;
}

bool XfnHasHeights(const XVertexArray& vertices)
{
    for (int i = 0; vertices.HasZ() && i < vertices.GetSize(); ++i) {
        const tagXVector3 vertex = vertices.GetAt(i);
        if (XfnIsUsable(vertex) && XfnIsSet(vertex.z) && vertex.z != 0.0) return true;
    }
    return false;
}
