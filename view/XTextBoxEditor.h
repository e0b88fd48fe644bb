#pragma once

#include "foundation/vector/XTextEditor.h"

#include <QPointer>

#include <vector>

class QWidget;
class XTextBoxEditorWidget;
class XTypingWatcher;
class XvcTextBox;

/// The editor of text boxes: a text widget that lies over the box in its window.
///
/// Keys: Ctrl+B, Ctrl+I, Ctrl+U turn bold, italic and underline on and off; Ctrl+L, Ctrl+E, Ctrl+R
/// and Ctrl+J set paragraphs left, centred, right and justified; Escape goes to the window and, unless
/// that ends the editing, ends it. Undo, clipboard (rich text too) and input methods are those of
/// the widget.
/// The parent is the message window of this handle, which must be a widget; one that is an
/// XTypingWatcher is told when the editing of a box begins and ends.
class XAPI XTextBoxEditor final : public XTextEditor
{
public:
    XTextBoxEditor();
    ~XTextBoxEditor() override;

    int Begin(const tagXTextEditorSetup& setup, const XRichText& text,
              XTextEditorClient* client) override;
    void SetBound(int left, int top, int right, int bottom, double pixelsPerPoint) override;
    void Commit() override;
    void Ended() override;
    XRichText GetText() const override;
    void SetText(const XRichText& text) override;
    void SetFormat(const tagXCharFormat& format, unsigned mask) override;
    tagXCharFormat GetFormat(unsigned& common) const override;
    void SetAlign(XParagraphAlign align) override;
    int IsAlign(XParagraphAlign align) const override;

private:
    friend class XTextBoxEditorWidget;

    XvcTextBox* GetBox() const; // null when another client opened the editor
    XTypingWatcher* GetWatcher() const;
    void OnChanged();
    void OnDone();
    void OnWidgetGoes();

    QPointer<XTextBoxEditorWidget> m_widget;
    XTextEditorClient* m_client = nullptr;
    const XvcTextBox* m_box = nullptr; // compared only
    XRichText m_lastText;              // when the widget has gone
};

/// The boxes that are typed into in a window, selected or not.
XAPI std::vector<XvcTextBox*> XfnListEditedBoxes(const QWidget& window);

/// Makes this the editor of all text boxes of the process, unless a factory is named already. Views do
/// so when they are made.
XAPI void XfnUseTextBoxEditor();
