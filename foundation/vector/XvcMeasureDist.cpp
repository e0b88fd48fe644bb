#include "foundation/vector/XvcMeasureDist.h"

#include "foundation/surface/XTextAlign.h"
#include "foundation/vector/XWkbGeometry.h"
#include "foundation/vector/XWkbReader.h"

#include <utility>

X_IMPLEMENT_CLASS(XvcMeasureDist, XvcMeasureObj)

double XvcMeasureDist::GetLength() const
{
    Path vertices;
    GetUsable(vertices);
    return ToLengthUnit(MeasurePath(vertices));
}

XString XvcMeasureDist::GetLabel() const
{
    Path vertices;
    GetUsable(vertices);
    return vertices.size() < 2 ? XString() : FormatLength(ToLengthUnit(MeasurePath(vertices)));
}

int XvcMeasureDist::ImportFromWkb(const unsigned char* bytes, std::size_t& size, XString& error)
{
    Touch();
    XWkbGeometry read;
    if (!read.Read(bytes, size, {XWkbReader::kLineString}, "a line string", error)) return 0;
    m_vertices = std::move(read.parts[0][0]);
    return 1;
}

XString XvcMeasureDist::ExportToWkt() const
{
    return XWktWriter::FromLine(m_vertices);
}

void XvcMeasureDist::GetDrawn(std::vector<tagDrawn>& drawn) const
{
    Path vertices;
    GetUsable(vertices);
    if (vertices.size() >= 2) AddDrawn(drawn, Trace(vertices, false));
}

bool XvcMeasureDist::GetLabelPlace(tagXVector3& place, int& align) const
{
    Path vertices;
    GetUsable(vertices);
    if (vertices.size() < 2) return false;
    place = vertices.back();
    align = kXTextLeft | kXTextBottom;
    return true;
}
