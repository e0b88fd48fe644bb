#include "foundation/vector/XvcMSymbol.h"

#include "foundation/vector/XVertexMath.h"
#include "foundation/vector/XWkbGeometry.h"
#include "foundation/vector/XWkbReader.h"

#include <memory>

X_IMPLEMENT_CLASS(XvcMSymbol, XvcMultiObj)

int XvcMSymbol::AddSymbol(int id, double x, double y, double z)
{
    Touch();
    XvcSymbol& added = AddNewPart<XvcSymbol>();
    added.SetID(id);
    added.SetCenter(x, y, z);
    return GetPartCount() - 1;
}

int XvcMSymbol::AddSymbol(const XvcSymbol& symbol)
{
    return AddPart(std::make_unique<XvcSymbol>(symbol));
}

void XvcMSymbol::SetID(int id)
{
    Touch();
    for (int i = 0; i < GetNumOfSymbols(); ++i)
        GetSymbolObjAt(i)->SetID(id);
}

void XvcMSymbol::SetSymbolTable(const XvcSymbolTable* table)
{
    Touch();
    for (int i = 0; i < GetNumOfSymbols(); ++i)
        GetSymbolObjAt(i)->SetSymbolTable(table);
}

void XvcMSymbol::SetRotate(double angleDeg)
{
    Touch();
    for (int i = 0; i < GetNumOfSymbols(); ++i)
        GetSymbolObjAt(i)->SetRotate(angleDeg);
}

void XvcMSymbol::SetScale(double scaleX, double scaleY)
{
    Touch();
    for (int i = 0; i < GetNumOfSymbols(); ++i)
        GetSymbolObjAt(i)->SetScale(scaleX, scaleY);
}

int XvcMSymbol::ImportFromWkb(const unsigned char* bytes, std::size_t& size, XString& error)
{
    Touch();
    XWkbGeometry read;
    if (!read.Read(bytes, size, {XWkbReader::kPoint, XWkbReader::kMultiPoint}, "a point or several",
                   error)) {
        return 0;
    }
    RemoveAll();
    for (const auto& part : read.parts)
        AddNewPart<XvcSymbol>().SetCenter(part[0].GetAt(0));
    return 1;
}

XString XvcMSymbol::ExportToWkt() const
{
    XVertexArray centers;
    for (int i = 0; i < GetNumOfSymbols(); ++i)
        centers.Add(GetSymbolObjAt(i)->GetCenter());
    return XWktWriter::FromPoints(centers);
}

bool XvcMSymbol::IsPartAllowed(const XvcObj& part) const
{
    return part.IsKindOf(XvcSymbol::GetRuntimeClassStatic()) != 0;
}
