#include "foundation/vector/XvcVertexObj.h"

#include "foundation/base/XArchive.h"
#include "foundation/base/XFileException.h"
#include "foundation/base/XPtrArray.h"
#include "foundation/vector/XObjAttributes.h"
#include "foundation/vector/XVertexMath.h"

#include <algorithm>
#include <cmath>
#include <utility>

X_IMPLEMENT_CLASS(XvcVertexObj, XvcObj)

namespace {

constexpr std::uint8_t kArchiveVersion = 1;

// Flat vertices stay flat: a change that gives no height must not cost the room for it.
template <class Change>
bool ApplyToAll(XVertexArray& vertices, const Change& change)
{
    for (int i = 0; i < vertices.GetSize(); ++i) {
        if (!change.CanApply(vertices.GetAt(i))) return false;
    }
    for (int i = 0; i < vertices.GetSize(); ++i) {
        tagXVector3 vertex = vertices.GetAt(i);
        change.Apply(vertex);
        vertices.SetAt(i, vertex);
    }
    return vertices.GetSize() > 0;
}

} // namespace

void XvcVertexObj::Serialize(XArchive& archive)
{
    if (archive.IsStoring()) {
        archive << kArchiveVersion;
        XvcObj::Serialize(archive);
        m_vertices.Serialize(archive);
        StoreOwn(archive);
        return;
    }
    const XvcObj attributes = XfnLoadAttributes(*this, kArchiveVersion, archive);
    XVertexArray vertices;
    vertices.Serialize(archive);
    if (!IsVertexCountAllowed(vertices.GetSize())) {
        throw XFileException(XFileException::kInvalidFile);
    }
    LoadOwn(archive);
    XvcObj::operator=(attributes);
    m_vertices = std::move(vertices);
}

void XvcVertexObj::StoreOwn(XArchive&) const {}

void XvcVertexObj::LoadOwn(XArchive&) {}

bool XvcVertexObj::IsVertexCountAllowed(int) const
{
    return true;
}

void XvcVertexObj::CalcRange()
{
    tagXVectorRange range;
    const double* at = m_vertices.GetCoords();
    const int count = m_vertices.GetSize(), stride = m_vertices.GetStride();
    for (int i = 0; i < count; ++i, at += stride) {
        if (!XfnIsSet(at[0]) || !XfnIsSet(at[1])) continue;
        // a height that is not set must not take the vertex out of the range
        const double z = stride == 3 && XfnIsSet(at[2]) ? at[2] : 0.0;
        range.minX = std::min(range.minX, at[0]);
        range.minY = std::min(range.minY, at[1]);
        range.minZ = std::min(range.minZ, z);
        range.maxX = std::max(range.maxX, at[0]);
        range.maxY = std::max(range.maxY, at[1]);
        range.maxZ = std::max(range.maxZ, z);
    }
    m_range = range;
}

XvcObj* XvcVertexObj::HitTest(const tagXVector3& point, double toleranceX, double toleranceY,
                              tagXHitFlag& hitFlag)
{
    const tagXHitPointer pointer = XfnMakeHitPointer(point, toleranceX, toleranceY);
    return XfnHitVertices(pointer, m_vertices, GetHitShape(), hitFlag) ? this : nullptr;
}

void XvcVertexObj::AddCtrlPoints(XPtrArray& array)
{
    for (int i = 0; i < m_vertices.GetSize(); ++i)
        array.Add(m_vertices.GetDataAt(i));
}

void XvcVertexObj::MoveObject(double dx, double dy, double dz)
{
    Touch();
    ApplyToAll(m_vertices, tagXShift{dx, dy, dz});
}

tagXVector3* XvcVertexObj::MoveVertex(int hitIndex, double dx, double dy, double dz)
{
    Touch();
    tagXVector3* vertex = m_vertices.GetDataAt(hitIndex);
    const tagXShift shift{dx, dy, dz};
    if (vertex && shift.CanApply(*vertex)) shift.Apply(*vertex);
    return vertex;
}

void XvcVertexObj::RotateObject(double x, double y, double angle)
{
    Touch();
    ApplyToAll(m_vertices, tagXTurn(x, y, angle));
}

void XvcVertexObj::Normalize(double minX, double minY, double maxX, double maxY)
{
    Touch();
    const tagXUnitMap map(minX, minY, maxX, maxY);
    if (!ApplyToAll(m_vertices, map)) return;
    ScaleLengths(map.width != 0.0 ? 1.0 / std::fabs(map.width) : 1.0,
                 map.height != 0.0 ? 1.0 / std::fabs(map.height) : 1.0);
}

void XvcVertexObj::ScaleLengths(double factorX, double)
{
    if (GetThick() > 0.0) SetThick(GetThick() * factorX);
}
