#pragma once

#include "view/tools/XShapeTool.h"

/// What the tools have in common that draw through one vertex a click.
///
///   idle     --press-->        building  a vertex here, and the rubber vertex upon it
///   building --press-->        building  the rubber vertex stays here, a new one upon it; not
///                                        where the last press was
///   building --move-->         building  the rubber vertex follows
///   building --right press-->  building  the vertex before the rubber one goes
///   building --double click--> idle      the rubber vertex goes; finish; what has fewer than two
///                                        vertices left goes without a word, and the mode stays
///
/// The last vertex is the rubber vertex. A first press exactly at the last place where any tool was
/// pressed (0, 0 after a change of the mode) sets one vertex only.
class XAPI XVertexTool : public XShapeTool
{
public:
    using XShapeTool::XShapeTool;

protected:
    void Press(const tagXToolEvent& event) override;
    void Move(const tagXToolEvent& event) override;
    void RightPress(const tagXToolEvent& event) override;
    void DoubleClick(const tagXToolEvent& event) override;

    /// Ctrl keeps the rubber edge level or upright.
    virtual bool CanConstrain() const { return true; }
    virtual XViewReason GetMoveReason() const { return XViewReason::Invalidate; }
    virtual void BeginObject() = 0;
    virtual int GetSize() const = 0; ///< -1 when no object of this class is building
    virtual tagXVector3 GetLast() const = 0;
    virtual void Add(const tagXVector3& vertex) = 0;
    virtual void SetLast(const tagXVector3& vertex) = 0;
    virtual void RemoveAt(int index) = 0;
};

/// The same for one class: of vertices (XvcPolyline, XvcPolygon) or of poles (XvcBspline).
template <class Shape>
class XVertexToolOf : public XVertexTool
{
public:
    using XVertexTool::XVertexTool;

protected:
    int GetSize() const override { return GetShape() ? GetShape()->GetSize() : -1; }
    tagXVector3 GetLast() const override { return GetShape()->GetAt(GetSize() - 1); }
    void Add(const tagXVector3& vertex) override
    {
        if constexpr (kHasPoles)
            GetShape()->AddPole(vertex);
        else
            GetShape()->Add(vertex);
    }
    void SetLast(const tagXVector3& vertex) override
    {
        if constexpr (kHasPoles)
            GetShape()->SetPoleAt(GetSize() - 1, vertex);
        else
            GetShape()->SetAt(GetSize() - 1, vertex);
    }
    void RemoveAt(int index) override
    {
        if constexpr (kHasPoles)
            GetShape()->RemovePoleAt(index);
        else
            GetShape()->RemoveAt(index);
    }
    void BeginShape(Fill fill) { GiveAttributes(this->template Begin<Shape>(), fill); }

private:
    static constexpr bool kHasPoles = requires(Shape & shape) { shape.RemovePoleAt(0); };
    Shape* GetShape() const { return this->template Current<Shape>(); }
};
