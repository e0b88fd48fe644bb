#pragma once

#include "foundation/vector/XTextEditor.h"

#include <QPaintDevice>
#include <QTextEdit>

class XTextBoxEditor;
class XvcTextBox;

/// The widget of XTextBoxEditor. It belongs to its parent window and outlives the editor by a turn
/// of the event loop, since the editor may end while the widget handles a key.
class XTextBoxEditorWidget final : public QTextEdit
{
public:
    XTextBoxEditorWidget(XTextBoxEditor* owner, const tagXTextEditorSetup& setup, QWidget* parent);
    ~XTextBoxEditorWidget() override;

    /// The widget that is the message window of this handle; null when there is none.
    static QWidget* FindWindow(XHWND handle);

    void Start(const XRichText& text);
    void
    Retire(); ///< gives the keyboard back, hides and dies later; the owner is not told any more
    XvcTextBox* GetBox() const; ///< null when the editor is done with it
    void SetBound(int left, int top, int right, int bottom, double pixelsPerPoint);

    void SetFormat(const tagXCharFormat& format, unsigned mask);
    tagXCharFormat GetFormat(unsigned& common) const;
    void SetAlign(XParagraphAlign align);
    bool IsAlign(XParagraphAlign align) const;

protected:
    bool event(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    bool canInsertFromMimeData(const QMimeData* source) const override;
    void insertFromMimeData(const QMimeData* source) override;
    QMimeData* createMimeDataFromSelection() const override;

private:
    /// What letters are measured for: a screen of as many pixels to the inch as the view shows points
    /// at, so that formats hold sizes of paper at every magnification.
    class XScaledDevice final : public QPaintDevice
    {
    public:
        int dpi = 96;
        QPaintEngine* paintEngine() const override { return nullptr; }

    protected:
        int metric(PaintDeviceMetric metric) const override;
    };

    bool HandleKey(const QKeyEvent& event);
    void Toggle(unsigned part);
    void PlaceText(); // within the margins, as the vertical alignment says

    XTextBoxEditor* m_owner;
    XScaledDevice m_device;
    tagXTextEditorSetup m_setup;
    double m_zoom = 1.0; // since the setup
    bool m_isPlacing = false;
};
