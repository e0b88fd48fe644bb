#pragma once

#include "foundation/base/XTextStyle.h"
#include "foundation/vector/XSharedRecord.h"
#include "foundation/vector/XvcObj.h"

struct XTextFrame;
struct XVectorPaint;
struct tagXVertText;

/// A text of one style; line ends break it.
///
/// The font size is the height of a line: world units when positive, pixels when negative, and 0 takes
/// the height of the text style's font record. How much of the world a text given in pixels covers
/// is known only with SetWorldPerPixel; without it its range and hit area are those of the position.
/// The alignment (XTextAlign) tells which point of the text's box stands at the position: 1 right,
/// 2 left, 4 centre; 8 bottom, 16 top, 32 middle. The text is turned about the position.
///
/// Letters have the text colour, or the line colour while that is 0. With the border drawn, the box
/// is filled (fill style, fore and back colour) and outlined (line colour, style and thickness)
/// behind them; without it the letters stand alone.
/// The corners of the box are the indices 4 lower left, 5 upper left, 6 upper right and 7 lower right
/// of MoveVertex, as with other boxes: the opposite corner stays and the font size follows the
/// height, or the width where only that changes.
/// Recorded with the font size flag, a positive size counts pixels as well; the object does not know
/// how much of the world such a text covers.
/// A text whose position is not set (x or y 1.7e308, or not finite) has an empty range, is not hit
/// and draws nothing.
class XAPI XvcText : public XvcObj
{
    X_DECLARE_CLASS(XvcText)
public:
    static constexpr int kAlignUpperLeft = 18;
    static constexpr int kCornerCount = 4;

    XvcText();
    /// A copy is part of what the other is part of, until SetParent says otherwise.
    XvcText(const XvcText& other);
    XvcText& operator=(const XvcText& other);

    const XString& GetText() const { return m_text; }
    void SetText(const XString& text);
    void SetTextPtr(const char* text) { SetText(XString(text)); } ///< null empties it

    const tagXVector3& GetPosition() const { return m_position; }
    void GetPosition(double& x, double& y, double& z) const;
    void SetPosition(const tagXVector3& position);
    void SetPosition(double x, double y, double z = 0.0) { SetPosition({x, y, z}); }
    double GetFontSize() const { return m_fontSize; } ///< 0 at first
    void SetFontSize(double height);                  ///< one that is not finite is ignored
    int GetTextAlign() const { return m_align; }      ///< kAlignUpperLeft at first
    void SetTextAlign(int align);
    const tagXTextStyle& GetTextStyle() const { return *m_style; } ///< shared with others alike
    void SetTextStyle(const tagXTextStyle& style);
    tagXColor GetTextColor() const { return m_textColor; } ///< 0, at first: the line colour
    void SetTextColor(tagXColor color);
    int GetDrawBorder() const { return m_drawBorder; } ///< 0 at first
    void SetDrawBorder(int flag);
    double GetAngle() const { return m_angle; } ///< degrees, counter-clockwise
    void SetAngle(double angle);                ///< one that is not finite is ignored
    /// World length of a pixel, 0 (at first) when not known; others are ignored unless positive.
    double GetWorldPerPixel() const { return m_worldPerPixel; }
    void SetWorldPerPixel(double length);

    /// The object that this text is part of, lent; null for a text that stands by itself. A text
    /// that is part of another object is locked: it is edited through that object only.
    XvcObj* GetParent() const { return m_parent; }
    void SetParent(XvcObj* parent) { m_parent = parent; }
    int IsLocked() const { return m_parent ? 1 : 0; }

    int IsSet() const;            ///< x and y of the position are coordinates
    double GetLineHeight() const; ///< world units; 0 when not known
    /// Width and height of the box in world units, by the metrics of the font; 0 when not known.
    void GetBoxSize(double& width, double& height) const;
    /// The corners of the box in the order of their indices. @return 0 when it is not set
    int GetCorners(tagXVector3 (&corners)[kCornerCount]) const;

    void Serialize(XArchive& archive) override;
    void CalcRange() override; ///< the box, turned; z of the position
    void CreateVertexBuffer(XVertBuffer* buffer, const XWarp2D* warp,
                            const tagXDrawAttrs* attrs) override;
    /// The box is the body.
    XvcObj* HitTest(const tagXVector3& point, double toleranceX, double toleranceY,
                    tagXHitFlag& hitFlag) override;
    using XvcObj::HitTest;
    void AddCtrlPoints(XPtrArray& array) override; ///< the position
    void MoveObject(double dx, double dy, double dz) override;
    /// Index 0 is the position; 4 to 7 are the corners.
    tagXVector3* MoveVertex(int hitIndex, double dx, double dy, double dz) override;
    void RotateObject(double x, double y, double angle) override;
    using XvcObj::RotateObject;
    void Normalize(double minX, double minY, double maxX, double maxY) override;
    /// A point is the position.
    int ImportFromWkb(const unsigned char* bytes, std::size_t& size, XString& error) override;
    XString ExportToWkt() const override; ///< the position as a point

private:
    double GetPixelHeight() const; // of a line of a text given in pixels
    void RecordInWorld(XVertBuffer& buffer, tagXVertText& text, const XTextFrame& frame,
                       const XVectorPaint& paint) const;

    XString m_text;
    tagXVector3 m_position;
    double m_fontSize = 0.0;
    double m_angle = 0.0;
    double m_worldPerPixel = 0.0;
    int m_align = kAlignUpperLeft;
    int m_drawBorder = 0;
    tagXColor m_textColor = 0;
    XSharedRecord<tagXTextStyle> m_style; // never null
    XvcObj* m_parent = nullptr;
};
