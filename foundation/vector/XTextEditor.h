#pragma once

#include "foundation/base/XTextStyle.h"
#include "foundation/platform/XWindowMessages.h"
#include "foundation/vector/XRichText.h"

#include <memory>

/// What a text box shows its editor in: the place, the magnification and the looks.
struct tagXTextEditorSetup
{
    XHWND parent = 0;
    int left = 0, top = 0, right = 0, bottom = 0; ///< client pixels of the parent
    double pixelsPerPoint = 96.0 / 72.0;          ///< on the screen, at the view's scale
    double xSpacePx = 2.0;                        ///< between the sides and the text
    double ySpacePx = 2.0;
    int verticalAlign = 16;             ///< XTextAlign: top, middle or bottom
    tagXColor backColour = 0xFFFFFFFFu; ///< 0: the box is not filled
    tagXColor textColour = kXOpaque;    ///< of letters without a colour of their own
    tagXTextStyle style{};              ///< the face of letters without one
};

/// Whoever opened an editor; told in the user interface thread.
class XAPI XTextEditorClient
{
public:
    virtual ~XTextEditorClient();
    virtual void OnEditorChanged() = 0;
    /// The user is done (Escape), or the parent window goes. The client may end the editor here.
    virtual void OnEditorDone() = 0;
};

/// A widget that edits rich text, as text boxes know it. Made by the factory that the floor of the
/// widgets registers. Destruction takes the widget away.
/// Threads: user interface only.
class XAPI XTextEditor
{
public:
    XTextEditor() = default;
    XTextEditor(const XTextEditor&) = delete;
    XTextEditor& operator=(const XTextEditor&) = delete;
    virtual ~XTextEditor();

    /// Shows the text for editing and takes the keyboard.
    /// @param client  lent, outlives the editor
    /// @return 0 when there is no such parent
    virtual int Begin(const tagXTextEditorSetup& setup, const XRichText& text,
                      XTextEditorClient* client) = 0;
    /// Moves the widget; the magnification may change with it.
    virtual void SetBound(int left, int top, int right, int bottom, double pixelsPerPoint) = 0;

    virtual void Commit() = 0; ///< takes over what an input method still composes
    virtual XRichText GetText() const = 0;
    virtual void Ended() {} ///< its text was taken over for good; destruction follows
    virtual void SetText(const XRichText& text) = 0; ///< undoable

    /// Of the selection; without one, of what is typed next.
    virtual void SetFormat(const tagXCharFormat& format, unsigned mask) = 0;
    /// The format at the selection's start, and the parts that all of it shares.
    virtual tagXCharFormat GetFormat(unsigned& common) const = 0;
    virtual void SetAlign(XParagraphAlign align) = 0; ///< of the paragraphs of the selection
    virtual int IsAlign(XParagraphAlign align) const = 0;
};

using XTextEditorFactory = std::unique_ptr<XTextEditor> (*)();

/// Names what makes editors; null, as at first: text boxes cannot be edited in place.
/// @return the one before
XAPI XTextEditorFactory XfnSetTextEditorFactory(XTextEditorFactory factory);
XAPI std::unique_ptr<XTextEditor> XfnNewTextEditor(); ///< null without a factory
