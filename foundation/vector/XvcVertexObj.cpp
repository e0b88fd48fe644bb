#include "foundation/vector/XvcVertexObj.h"

#include "foundation/base/XArchive.h"
#include "foundation/base/XFileException.h"
#include "foundation/base/XPtrArray.h"
#include "foundation/vector/XVertexMath.h"

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
    std::uint8_t version = 0;
    archive >> version;
    if (version != kArchiveVersion) throw XFileException(XFileException::kInvalidFile);
    XvcObj attributes;
    attributes.SetWarpCoeff(GetWarpCeoff());
    attributes.Serialize(archive);
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
    m_range.Clear();
    for (int i = 0; i < m_vertices.GetSize(); ++i) {
        const tagXVector3 vertex = m_vertices.GetAt(i);
        // a height that is not set must not take the vertex out of the range
        m_range.Add(vertex.x, vertex.y, XfnIsSet(vertex.z) ? vertex.z : 0.0);
    }
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
    if (map.width != 0.0 && GetThick() > 0.0) SetThick(GetThick() / std::fabs(map.width));
}
