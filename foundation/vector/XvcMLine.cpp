#include "foundation/vector/XvcMLine.h"

#include "foundation/vector/XWkbGeometry.h"
#include "foundation/vector/XWkbReader.h"

X_IMPLEMENT_CLASS(XvcMLine, XvcMultiObj)

int XvcMLine::AddLine(const tagXVector3& start, const tagXVector3& end)
{
    Touch();
    AddNewPart<XvcLine>().SetVertices(start, end);
    return GetPartCount() - 1;
}

int XvcMLine::AddLine(const XvcLine& line)
{
    return AddPart(std::make_unique<XvcLine>(line));
}

int XvcMLine::ImportFromWkb(const unsigned char* bytes, std::size_t& size, XString& error)
{
    Touch();
    XWkbGeometry read;
    if (!read.Read(bytes, size, {XWkbReader::kLineString, XWkbReader::kMultiLineString},
                   "a line string or several", error)) {
        return 0;
    }
    RemoveAll();
    for (const auto& part : read.parts) {
        for (int i = 0; i + 1 < part[0].GetSize(); ++i)
            AddLine(part[0].GetAt(i), part[0].GetAt(i + 1));
    }
    return 1;
}

XString XvcMLine::ExportToWkt() const
{
    std::vector<const XVertexArray*> lines;
    for (int i = 0; i < GetNumOfLines(); ++i)
        lines.push_back(&GetLineObjAt(i)->GetVertexArray());
    return XWktWriter::FromLines(lines);
}

bool XvcMLine::IsPartAllowed(const XvcObj& part) const
{
    return part.IsKindOf(XvcLine::GetRuntimeClassStatic()) != 0;
}
