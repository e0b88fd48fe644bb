#pragma once

#include "foundation/base/XTextStyle.h"
#include "foundation/platform/XWindowMessages.h"
#include "foundation/vector/XRichText.h"
#include "foundation/vector/XTextEditor.h"
#include "foundation/vector/XvcBoxObj.h"

#include <memory>

class XTextBoxEditing;
struct XVectorPaint;

/// A box of rich text, wrapped at its sides, which can be edited in place.
///
/// Sizes: letters are measured in points at 96 pixels to the inch, and SetScale tells the world
/// length of such a pixel, so a box keeps its line breaks at every zoom. A scale that is not set
/// (0, at first) is 1. Lines that begin below the box are not drawn. The font size flag of a recording
/// does not count, as the letters are laid out within the box.
/// Looks: the box is filled (fill style, fore and back colour) and, with the border, outlined (line
/// colour, style and thickness). Letters without a colour of their own have the line colour, those
/// without a face that of the text style.
///
/// Editing: BeginEditMode opens an editor (XTextEditor.h) over the box, at the pixel bound that was
/// set, as a child of the parent window; meanwhile texts, formats and queries are those of the
/// editor and its selection. Without an editor formats are those of the whole text. Without a
/// parent window or an editor factory BeginEditMode does nothing. Whatever ends the editing keeps
/// the text.
///
/// Copies are not in edit mode. As with all boxes, the two vertices are the geometry and the corners
/// have the hit kinds 4 to 7.
/// Threads: edit mode in the user interface thread only.
class XAPI XvcTextBox : public XvcBoxObj
{
    X_DECLARE_CLASS(XvcTextBox)
public:
    static constexpr double kDefaultXSpace = 2.0;

    explicit XvcTextBox(XHWND parent = 0); ///< the window that the editor lies in
    XvcTextBox(const XvcTextBox& other);
    XvcTextBox& operator=(const XvcTextBox& other);
    ~XvcTextBox() override;

    XHWND GetParent() const { return m_parent; }
    void SetParent(XHWND parent) { m_parent = parent; } ///< for the next BeginEditMode

    // Place
    /// The box from its position to `width` right and `height` down, in world lengths; below 0
    /// counts as 0, and what is not finite changes nothing.
    virtual void CalcBound(double width, double height);
    void GetBoundRect(double& left, double& top, double& right, double& bottom) const
    {
        GetBound(left, top, right, bottom);
    }
    double GetScale() const { return m_scale; }
    void SetScale(double worldPerPixel); ///< one that is not above 0, or not normal, is ignored
    /// Width and height that the text takes at the width of the box, margins included, in world
    /// lengths. The width is that of the longest line.
    void GetTextSize(double& width, double& height) const;

    // Edit mode
    /// @param worldPerPixel  of the view; what is not above 0 counts as the scale
    /// @return 0 when there is no editor; 1 in edit mode, also when it was on
    int BeginEditMode(double worldPerPixel);
    void EndEditMode(); ///< takes the text over; without edit mode nothing
    int GetEditMode() const;
    /// Where the box lies in the parent window, in pixels; right and bottom are outside. The
    /// editor follows, and the sizes of its letters with it.
    void SetEditBound(int left, int top, int right, int bottom);
    void GetEditBound(int& left, int& top, int& right, int& bottom) const;

    // Text
    XString GetRTF() const;
    /// @return 0 when it is no rich text; then nothing changes
    int SetRTF(const XString& rtf);
    int SetRTF(const XString& rtf, XString& error);
    /// Puts `to` for each `from` in the text; formats stay. @return how many there were
    int ReplaceRTF(const XString& from, const XString& to);
    XString GetText() const; ///< plain; line ends are "\n"
    /// In the format of the first letter, the text style's when there is none yet.
    void SetText(const XString& text);
    XRichText GetRichText() const;
    void SetRichText(const XRichText& text);
    const tagXTextStyle& GetTextStyle() const { return m_style; }
    /// The face of letters without one of their own; the format of a text that is still empty, its
    /// height in twips (200 is 10 points) whatever the sign, 0 leaves the size.
    void SetTextStyle(const tagXTextStyle& style);

    // Paragraphs and letters: of the editor's selection, else of the whole text
    void SetParagraphLeft() { SetParagraph(XParagraphAlign::Left); }
    void SetParagraphCenter() { SetParagraph(XParagraphAlign::Centre); }
    void SetParagraphRight() { SetParagraph(XParagraphAlign::Right); }
    int IsParagraphLeft() const { return IsParagraph(XParagraphAlign::Left); }
    int IsParagraphCenter() const { return IsParagraph(XParagraphAlign::Centre); }
    int IsParagraphRight() const { return IsParagraph(XParagraphAlign::Right); }
    void SetParagraph(XParagraphAlign align);
    int IsParagraph(XParagraphAlign align) const; ///< 1 when all paragraphs stand so
    /// The forms without an argument turn the property on unless all letters have it.
    void SetSelectionBold() { Toggle(tagXCharFormat::kBold); }
    void SetSelectionItalic() { Toggle(tagXCharFormat::kItalic); }
    void SetSelectionUnderlined() { Toggle(tagXCharFormat::kUnderline); }
    void SetSelectionBold(int isOn) { Turn(tagXCharFormat::kBold, isOn); }
    void SetSelectionItalic(int isOn) { Turn(tagXCharFormat::kItalic, isOn); }
    void SetSelectionUnderlined(int isOn) { Turn(tagXCharFormat::kUnderline, isOn); }
    /// 1 when all letters have it.
    int IsSelectionBold() const { return Is(tagXCharFormat::kBold); }
    int IsSelectionItalic() const { return Is(tagXCharFormat::kItalic); }
    int IsSelectionUnderlined() const { return Is(tagXCharFormat::kUnderline); }
    /// @param mask  parts to set, tagXCharFormat::Part
    void SetSelectionCharFormat(const tagXCharFormat& format, unsigned mask);
    /// @param common  receives the parts that all letters share
    tagXCharFormat GetSelectionCharFormat(unsigned& common) const;
    void SetColor(tagXColor color); ///< of letters, made opaque
    tagXColor GetColor() const;     ///< of the first letter, the line colour when it has none

    // Looks
    /// Non-zero: CalcRange makes the box as high as its text; the side that the vertical alignment
    /// names (both, for the middle) keeps its place. 0 at first.
    int GetAutoAlign() const { return m_autoAlign; }
    void SetAutoAlign(int flag);
    /// Where a text that is not as high as the box stands in it: kXTextTop (at first),
    /// kXTextMiddle or kXTextBottom; others count as the top.
    int GetVertAlign() const { return m_vertAlign; }
    void SetVertAlign(int align);
    /// Between the sides of the box and its text, in pixels of the scale.
    double GetXSpace() const { return m_xSpace; }
    void SetXSpace(double pixels); ///< one below 0 or not finite is ignored
    int GetDrawBorder() const { return m_drawBorder; }
    void SetDrawBorder(int flag);

    void CalcRange() override;
    void CreateVertexBuffer(XVertBuffer* buffer, const XWarp2D* warp,
                            const tagXDrawAttrs* attrs) override;
    /// The scale follows the y side of the box.
    void Normalize(double minX, double minY, double maxX, double maxY) override;

protected:
    void StoreOwn(XArchive& archive) const override;
    void LoadOwn(XArchive& archive) override;
    /// Takes text and looks over, neither place nor parent; ends the edit mode without its text.
    void TakeOwn(const XvcTextBox& other);
    /// Records fill and outline of the box.
    /// @param corners  those of GetCorners
    virtual void RecordFrame(XVertBuffer& buffer, const tagXVector3 (&corners)[kCornerCount],
                             const XWarp2D* warp, const XVectorPaint& paint) const;

private:
    friend class XTextBoxEditing;

    double GetPixelLength() const { return m_scale > 0.0 ? m_scale : 1.0; }
    double GetColumnWidth() const;    // of the text, in pixels of the scale
    double GetPixelsPerPoint() const; // of the screen
    tagXTextEditorSetup GetEditorSetup() const;
    void FollowEditor(); // as auto alignment says
    void RecordText(XVertBuffer& buffer, const XWarp2D* warp, tagXColor colour) const;
    void Toggle(unsigned part);
    void Turn(unsigned part, int isOn);
    int Is(unsigned part) const;

    XRichText m_text;
    tagXTextStyle m_style;
    XHWND m_parent = 0;
    double m_scale = 0.0;
    double m_xSpace = kDefaultXSpace;
    int m_autoAlign = 0;
    int m_vertAlign;
    int m_drawBorder = 0;
    int m_editBound[4] = {0, 0, 0, 0};
    std::unique_ptr<XTextBoxEditing> m_editing; // while in edit mode
};
