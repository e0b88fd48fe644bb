#pragma once

#include "foundation/vector/XNorthArrowShape.h"
#include "foundation/vector/XvcRectObj.h"

/// An arrow that tells where north is, in one of the styles of XNorthArrowShape.h.
///
/// It is the largest that fits into the rectangle in its own proportions, in the middle, at any
/// angle: it never leaves the rectangle. Outlines and letters are drawn in the line colour, the
/// light and the dark side of a style in the fore colour (by the fill style) and the back colour.
/// Without a fill (style kNone) both sides stay open.
class XAPI XvcNorthArrow : public XvcRectObj
{
    X_DECLARE_CLASS(XvcNorthArrow)
public:
    static constexpr int kDefaultResolution = 72;
    static constexpr int kMinResolution = 8;
    static constexpr int kMaxResolution = 720;

    XvcNorthArrow() = default;

    /// Where north is: degrees from the left side of the rectangle, counter-clockwise.
    double GetAngle() const { return m_angleDeg; }
    void SetAngle(double angleDeg);                    ///< one that is no number is ignored
    int GetStyle() const { return m_style; }           ///< XNorthArrowStyle, 0 at first
    void SetStyle(int style);                          ///< one that there is not is ignored
    int GetResolution() const { return m_resolution; } ///< chords of a whole turn
    void SetResolution(int chords); ///< held within kMinResolution and kMaxResolution
    /// World length of a pixel when it was drawn, 0 (at first) when not known; others are ignored
    /// unless positive.
    double GetWorldPerPixel() const { return m_worldPerPixel; }
    void SetWorldPerPixel(double length);

    void CreateVertexBuffer(XVertBuffer* buffer, const XWarp2D* warp,
                            const tagXDrawAttrs* attrs) override;

protected:
    void StoreOwn(XArchive& archive) const override;
    void LoadOwn(XArchive& archive) override;

private:
    int m_style = kXNorthArrowPlain;
    int m_resolution = kDefaultResolution;
    double m_angleDeg = 0.0;
    double m_worldPerPixel = 0.0;
};
