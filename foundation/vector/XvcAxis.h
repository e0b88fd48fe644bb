#pragma once

#include "foundation/vector/XAxisTicks.h"
#include "foundation/vector/XvcFontObj.h"
#include "foundation/vector/XvcVertexObj.h"

/// An axis: a line with ticks, their values and a title.
///
/// It lies between two vertices; the minimum is at the first, the maximum at the second, the other
/// way round when inverted. It counts as upright when it is rather high than wide. Ticks, labels and
/// title stand below a level axis and left of an upright one, or on the other side (SetTickSide).
/// Ticks are those of XfnMakeAxisTicks; their length is in line heights of the labels, a fortieth of
/// the axis for a font in pixels until the world length of a pixel is known.
/// A new axis is black. Its range holds the labels where their height in the world is known.
class XAPI XvcAxis : public XvcFontObj<XvcVertexObj>
{
    X_DECLARE_CLASS(XvcAxis)
public:
    enum XTickSide : int {
        kBelowOrLeft, ///< at first
        kAboveOrRight
    };

    XvcAxis(); ///< neither vertex is set; nothing is drawn
    XvcAxis(const tagXVector3& start, const tagXVector3& end, double minimum = 0.0,
            double maximum = 1.0);

    void SetVertices(const tagXVector3& start, const tagXVector3& end);
    tagXVector3 GetStartVertex() const { return GetAt(0); }
    tagXVector3 GetEndVertex() const { return GetAt(1); }
    int IsUpright() const;

    /// The values at both ends, in any order; no numbers are ignored.
    void SetValueRange(double minimum, double maximum);
    double GetMinimum() const { return m_scale.minimum; }
    double GetMaximum() const { return m_scale.maximum; }
    int GetLogFlag() const { return m_scale.isLog ? 1 : 0; }
    void SetLogFlag(int flag)
    {
        Touch();
        m_scale.isLog = flag != 0;
    } ///< linear where values are not above 0
    int GetInvertFlag() const { return m_invertFlag; }
    void SetInvertFlag(int flag)
    {
        Touch();
        m_invertFlag = flag ? 1 : 0;
    }
    double GetMajorStep() const { return m_scale.majorStep; } ///< 0 (at first): chosen
    void SetMajorStep(double step);                           ///< below 0 or no number: ignored
    int GetMajorCount() const { return m_scale.majorCount; }  ///< ticks to aim at; 6 at first
    void SetMajorCount(int count);                            ///< held within 2 and 100
    int GetMinorCount() const { return m_scale.minorCount; } ///< between two; -1 (at first): chosen
    void SetMinorCount(int count);                           ///< held within -1 and 9
    int GetDecimals() const { return m_scale.decimals; }     ///< of labels; -1 (at first): chosen
    void SetDecimals(int decimals);                          ///< held within -1 and 15
    int GetTickSide() const { return m_tickSide; }
    void SetTickSide(int side)
    {
        Touch();
        m_tickSide = side == kAboveOrRight ? kAboveOrRight : kBelowOrLeft;
    }
    int GetLabelFlag() const { return m_labelFlag; } ///< labels are drawn; 1 at first
    void SetLabelFlag(int flag)
    {
        Touch();
        m_labelFlag = flag ? 1 : 0;
    }
    /// World length of grid lines from the major ticks, to the other side; 0 at first.
    double GetGridLength() const { return m_gridLength; }
    void SetGridLength(double length);                     ///< below 0 or no number: ignored
    tagXColor GetGridColor() const { return m_gridColor; } ///< a light gray at first
    void SetGridColor(tagXColor color)
    {
        Touch();
        m_gridColor = color;
    }
    const XString& GetTitle() const { return m_title; }
    void SetTitle(const XString& title)
    {
        Touch();
        m_title = title;
    }

    std::vector<tagXAxisTick> GetTicks() const { return XfnMakeAxisTicks(m_scale); }
    /// The place of a value on the line through both vertices; 1.7e308 when there is none.
    tagXVector3 GetPlaceOf(double value) const;
    /// The value at a place, seen at right angles to the axis; 1.7e308 when there is none.
    double GetValueAt(double x, double y) const;

    void CalcRange() override;
    void CreateVertexBuffer(XVertBuffer* buffer, const XWarp2D* warp,
                            const tagXDrawAttrs* attrs) override;
    XString ExportToWkt() const override; ///< LINESTRING of the axis line

protected:
    XHitShape GetHitShape() const override { return XHitShape::Line; }
    bool IsVertexCountAllowed(int count) const override { return count == 2; }
    void ScaleLengths(double factorX, double factorY) override;
    void StoreOwn(XArchive& archive) const override;
    void LoadOwn(XArchive& archive) override;

private:
    struct tagFrame;
    bool GetFrame(tagFrame& frame) const;
    bool IsLogUsable() const;

    tagXAxisScale m_scale;
    XString m_title;
    int m_invertFlag = 0;
    int m_tickSide = kBelowOrLeft;
    int m_labelFlag = 1;
    double m_gridLength = 0.0;
    tagXColor m_gridColor;
};
