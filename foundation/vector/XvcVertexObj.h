#pragma once

#include "foundation/vector/XHitGeometry.h"
#include "foundation/vector/XVertexArray.h"
#include "foundation/vector/XvcObj.h"

/// What objects made of a list of vertices have in common: storage, range, moves and hits.
///
/// The vertices are the control points, and MoveVertex takes their index. A move, turn or
/// normalization of which one vertex would leave what a coordinate can be is not made at all.
/// Vertices that are not set (1.7e308) or not finite stay as they are.
class XAPI XvcVertexObj : public XvcObj
{
    X_DECLARE_CLASS(XvcVertexObj)
public:
    int GetSize() const { return m_vertices.GetSize(); }
    /// As XVertexArray: 1.7e308 three times, or 0, for an index that there is not.
    tagXVector3 GetAt(int index) const { return m_vertices.GetAt(index); }
    int GetAt(int index, double& x, double& y, double& z) const
    {
        return m_vertices.GetAt(index, x, y, z);
    }
    const XVertexArray& GetVertexArray() const { return m_vertices; }

    void Serialize(XArchive& archive) override;
    void CalcRange() override;
    XvcObj* HitTest(const tagXVector3& point, double toleranceX, double toleranceY,
                    tagXHitFlag& hitFlag) override;
    using XvcObj::HitTest;
    /// Widens the storage of a flat object to three coordinates a vertex.
    void AddCtrlPoints(XPtrArray& array) override;
    void MoveObject(double dx, double dy, double dz) override;
    tagXVector3* MoveVertex(int hitIndex, double dx, double dy, double dz) override;
    void RotateObject(double x, double y, double angle) override;
    using XvcObj::RotateObject;
    /// A thickness in world units follows the x side of the box; so do, or the y side, lengths of the
    /// class (ScaleLengths).
    void Normalize(double minX, double minY, double maxX, double maxY) override;

protected:
    XvcVertexObj() = default;
    XvcVertexObj(const XvcVertexObj&) = default;
    XvcVertexObj& operator=(const XvcVertexObj&) = default;

    /// What the hit test looks for besides vertices.
    virtual XHitShape GetHitShape() const = 0;
    /// The part of Serialize behind attributes and vertices. Loading reads everything before it
    /// changes the object, and throws XFileException on a value that cannot be.
    virtual void StoreOwn(XArchive& archive) const;
    virtual void LoadOwn(XArchive& archive);
    virtual bool IsVertexCountAllowed(int count) const; ///< asked when loading
    /// Scales what are world lengths besides the vertices, the thickness at least; for Normalize.
    virtual void ScaleLengths(double factorX, double factorY);

    /// The vertices to change.
    XVertexArray& ChangeVertices()
    {
        Touch();
        return m_vertices;
    }
    int Add(double x, double y, double z = 0.0) { return ChangeVertices().Add(x, y, z); }
    int Add(const tagXVector3& vertex) { return ChangeVertices().Add(vertex); }
    int SetAt(int index, double x, double y, double z = 0.0)
    {
        return ChangeVertices().SetAt(index, x, y, z);
    }
    int SetAt(int index, const tagXVector3& vertex)
    {
        return ChangeVertices().SetAt(index, vertex);
    }
    int InsertAt(int index, const tagXVector3& vertex)
    {
        return ChangeVertices().InsertAt(index, vertex);
    }
    int RemoveAt(int index) { return ChangeVertices().RemoveAt(index); }
    void RemoveAll() { ChangeVertices().RemoveAll(); }

    XVertexArray m_vertices;
};
