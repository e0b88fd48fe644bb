#include "foundation/vector/XvcMPolyline.h"

#include "foundation/vector/XWkbGeometry.h"
#include "foundation/vector/XWkbReader.h"

#include <utility>

X_IMPLEMENT_CLASS(XvcMPolyline, XvcMultiObj)

int XvcMPolyline::AddPolyline(const XvcPolyline& polyline)
{
    return AddPart(std::make_unique<XvcPolyline>(polyline));
}

int XvcMPolyline::ImportFromWkb(const unsigned char* bytes, std::size_t& size, XString& error)
{
    Touch();
    XWkbGeometry read;
    if (!read.Read(bytes, size, {XWkbReader::kLineString, XWkbReader::kMultiLineString},
                   "a line string or several", error)) {
        return 0;
    }
    RemoveAll();
    for (auto& part : read.parts) {
        AddNewPart<XvcPolyline>().GetVertexArray() = std::move(part[0]);
    }
    return 1;
}

XString XvcMPolyline::ExportToWkt() const
{
    std::vector<const XVertexArray*> lines;
    for (int i = 0; i < GetNumOfPolylines(); ++i)
        lines.push_back(&GetPolylineObjAt(i)->GetVertexArray());
    return XWktWriter::FromLines(lines);
}

bool XvcMPolyline::IsPartAllowed(const XvcObj& part) const
{
    return part.IsKindOf(XvcPolyline::GetRuntimeClassStatic()) != 0;
}
