#pragma once

#include "foundation/vector/XLineEnd.h"
#include "foundation/vector/XvcFontObj.h"
#include "foundation/vector/XvcPolyline.h"

/// A line that leads from a place to a note about it.
///
/// Vertex 0 is the place pointed at, with an end shape (XLineEnd.h); the last vertex is where the
/// note stands, by default behind a short level landing, on the side to which the line runs.
/// Range: of the line, its end shape and the landing; of the note too where its size in the world is
/// known. A hit on the note is one on the body.
class XAPI XvcLeaderLine : public XvcFontObj<XvcPolyline>
{
    X_DECLARE_CLASS(XvcLeaderLine)
public:
    XvcLeaderLine() = default;
    XvcLeaderLine(const tagXVector3& place, const tagXVector3& note, const XString& text = "");

    const XString& GetText() const { return m_text; }
    void SetText(const XString& text)
    {
        Touch();
        m_text = text;
    }
    int GetDrawBorder() const { return m_drawBorder; } ///< a frame about the note, 0 at first
    void SetDrawBorder(int flag)
    {
        Touch();
        m_drawBorder = flag ? 1 : 0;
    }

    /// The shape at the place: XLineEndShape, a filled arrow at first; others are kept and draw
    /// nothing.
    int GetStartShapeID() const { return m_startShape; }
    void SetStartShapeID(int shape)
    {
        Touch();
        m_startShape = shape;
    }
    /// Its length as that of XvcLine's end shapes.
    double GetStartSize() const { return m_startSize; }
    void SetStartSize(double size); ///< one that is no number is ignored
    /// Length of the landing in the world, 0 at first.
    double GetLanding() const { return m_landing; }
    void SetLanding(double length); ///< below 0 or no number: ignored

    void CalcRange() override;
    XvcObj* HitTest(const tagXVector3& point, double toleranceX, double toleranceY,
                    tagXHitFlag& hitFlag) override;
    using XvcObj::HitTest;
    void CreateVertexBuffer(XVertBuffer* buffer, const XWarp2D* warp,
                            const tagXDrawAttrs* attrs) override;
    /// Sizes follow the x side of the box.
    void Normalize(double minX, double minY, double maxX, double maxY) override;

protected:
    void StoreOwn(XArchive& archive) const override;
    void LoadOwn(XArchive& archive) override;

private:
    struct tagNote;
    /// The usable vertices and the end of the landing. @return false with fewer than two vertices
    bool GetPath(std::vector<tagXVector3>& path, bool& isToRight) const;
    bool GetNote(tagNote& note) const;
    std::vector<tagXLineEndPart> MakeEnd(std::vector<tagXVector3>& path) const;

    XString m_text;
    int m_drawBorder = 0;
    int m_startShape = kXLineEndFilledArrow;
    double m_startSize = 0.0;
    double m_landing = 0.0;
};
