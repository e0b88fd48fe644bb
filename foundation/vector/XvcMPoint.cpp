#include "foundation/vector/XvcMPoint.h"

#include "foundation/vector/XWkbGeometry.h"
#include "foundation/vector/XWkbReader.h"

X_IMPLEMENT_CLASS(XvcMPoint, XvcMultiObj)

int XvcMPoint::AddPoint(double x, double y, double z)
{
    Touch();
    AddNewPart<XvcPoint>().SetVertex(x, y, z);
    return GetPartCount() - 1;
}

int XvcMPoint::AddPoint(const XvcPoint& point)
{
    return AddPart(std::make_unique<XvcPoint>(point));
}

int XvcMPoint::ImportFromWkb(const unsigned char* bytes, std::size_t& size, XString& error)
{
    Touch();
    XWkbGeometry read;
    if (!read.Read(bytes, size, {XWkbReader::kPoint, XWkbReader::kMultiPoint}, "a point or several",
                   error)) {
        return 0;
    }
    RemoveAll();
    m_parts.reserve(read.parts.size());
    for (const auto& part : read.parts)
        AddNewPart<XvcPoint>().SetVertex(part[0].GetAt(0));
    return 1;
}

XString XvcMPoint::ExportToWkt() const
{
    XVertexArray vertices;
    for (int i = 0; i < GetNumOfPoints(); ++i)
        vertices.Add(GetPointObjAt(i)->GetVertex());
    return XWktWriter::FromPoints(vertices);
}

bool XvcMPoint::IsPartAllowed(const XvcObj& part) const
{
    return part.IsKindOf(XvcPoint::GetRuntimeClassStatic()) != 0;
}
