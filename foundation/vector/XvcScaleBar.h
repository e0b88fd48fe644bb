#pragma once

#include "foundation/reference/XSpatialReference.h"
#include "foundation/vector/XScaleBarLayout.h"
#include "foundation/vector/XvcFontObj.h"
#include "foundation/vector/XvcRectObj.h"

/// The types of scale bars. The numbers are stored in files and never change their meaning.
///
/// | number | type                                                                     |
/// |--------|--------------------------------------------------------------------------|
/// | 0      | a line with ticks                                                        |
/// | 1      | one row of fields, in fore and back colour by turns                      |
/// | 2      | two such rows, one the opposite of the other                             |
/// | 3      | steps: the line goes by turns along the lower and the upper edge         |
/// | 4      | hollow: a frame whose every other field is crossed by a line             |
/// | 5      | a line with two ends and one label over its middle                       |
/// | 6      | a ruler: fields of half a part, ticks at each part                       |
enum XScaleBarType {
    kXScaleBarTicks,
    kXScaleBarAlternating,
    kXScaleBarDouble,
    kXScaleBarStepped,
    kXScaleBarHollow,
    kXScaleBarLine,
    kXScaleBarRuler,
    kXScaleBarTypeCount ///< one past the last type
};

/// The English name of a type for lists; null for one that there is not.
XAPI const char* XfnGetScaleBarName(int type);

/// A bar of a round length with its labels, the longest that fits into the rectangle.
///
/// XScaleBarLayout.h says which lengths and units it takes. Bar and labels never leave the
/// rectangle: letters are made smaller, then left out, and a rectangle with no room draws nothing.
/// Letters in pixels are a third of the rectangle high until the world length of a pixel is known;
/// so are those of a new bar.
/// Lines and labels are drawn in the line colour, fields in the fore colour (by the fill style) and
/// the back colour.
class XAPI XvcScaleBar : public XvcFontObj<XvcRectObj>
{
    X_DECLARE_CLASS(XvcScaleBar)
public:
    XvcScaleBar();

    void SetSR(const XSpatialReference* reference); ///< copies; null for none
    void SetSR(const XSpatialReference& reference) { SetSR(&reference); }
    const XSpatialReference& GetSR() const { return m_reference; }

    int GetType() const { return m_type; } ///< XScaleBarType, 0 at first
    void SetType(int type);                ///< one that there is not is ignored
    /// XTextAlign: where a bar shorter than the rectangle stands (left, centre, right), and whether
    /// the labels stand below the bar (kXTextBottom) or above it. Centred and above at first.
    int GetTextAlign() const { return m_textAlign; }
    void SetTextAlign(int align)
    {
        Touch();
        m_textAlign = align;
    }

    /// How the bar lies in the rectangle at present; divisions 0 when nothing is drawn.
    tagXScaleBarLayout GetLayout() const;

    void CreateVertexBuffer(XVertBuffer* buffer, const XWarp2D* warp,
                            const tagXDrawAttrs* attrs) override;

protected:
    void ScaleLengths(double factorX, double factorY) override;
    void StoreOwn(XArchive& archive) const override;
    void LoadOwn(XArchive& archive) override;

private:
    tagXScaleBarFrame GetFrame() const;

    int m_type = kXScaleBarTicks;
    int m_textAlign;
    XSpatialReference m_reference;
};
