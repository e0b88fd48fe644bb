#include "view/XTextBoxEditor.h"

#include "foundation/vector/XTextBoxEditing.h"
#include "view/XRichDocument.h"
#include "view/XTextBoxEditorWidget.h"
#include "view/XTypingWatcher.h"

#include <QGuiApplication>
#include <QInputMethod>
#include <QTextCursor>

XTextBoxEditor::XTextBoxEditor() = default;

XTextBoxEditor::~XTextBoxEditor()
{
    if (!m_widget) return;
    if (XTypingWatcher* const watcher = GetWatcher()) watcher->OnTypingGone(m_box);
    m_widget->Retire();
}

int XTextBoxEditor::Begin(const tagXTextEditorSetup& setup, const XRichText& text,
                          XTextEditorClient* client)
{
    QWidget* const parent = XTextBoxEditorWidget::FindWindow(setup.parent);
    if (!parent || m_widget) return 0;
    m_client = client;
    m_widget = new XTextBoxEditorWidget(this, setup, parent);
    m_widget->Start(text);
    XvcTextBox* const box = GetBox();
    m_box = box;
    XTypingWatcher* const watcher = GetWatcher();
    if (box && watcher) watcher->OnTypingBegun(*box);
    return 1;
}

void XTextBoxEditor::SetBound(int left, int top, int right, int bottom, double pixelsPerPoint)
{
    if (m_widget) m_widget->SetBound(left, top, right, bottom, pixelsPerPoint);
}

void XTextBoxEditor::Commit()
{
    if (m_widget && m_widget->hasFocus()) QGuiApplication::inputMethod()->commit();
}

void XTextBoxEditor::Ended()
{
    XvcTextBox* const box = GetBox();
    XTypingWatcher* const watcher = GetWatcher();
    if (box && watcher) watcher->OnTypingEnded(*box);
}

XRichText XTextBoxEditor::GetText() const
{
    return m_widget ? XfnGetRichText(*m_widget->document()) : m_lastText;
}

void XTextBoxEditor::SetText(const XRichText& text)
{
    if (!m_widget) {
        m_lastText = text;
        return;
    }
    QTextCursor cursor(m_widget->document());
    cursor.select(QTextCursor::Document);
    XfnInsertRichText(cursor, text);
    m_widget->setTextCursor(cursor);
}

void XTextBoxEditor::SetFormat(const tagXCharFormat& format, unsigned mask)
{
    if (m_widget) m_widget->SetFormat(format, mask);
}

tagXCharFormat XTextBoxEditor::GetFormat(unsigned& common) const
{
    return m_widget ? m_widget->GetFormat(common) : m_lastText.GetFormat(common);
}

void XTextBoxEditor::SetAlign(XParagraphAlign align)
{
    if (m_widget) m_widget->SetAlign(align);
}

int XTextBoxEditor::IsAlign(XParagraphAlign align) const
{
    return m_widget ? m_widget->IsAlign(align) : m_lastText.IsAlign(align);
}

XvcTextBox* XTextBoxEditor::GetBox() const
{
    const auto* editing = dynamic_cast<const XTextBoxEditing*>(m_client);
    return editing ? &editing->GetBox() : nullptr;
}

// None once the widget goes: its window may be half gone by then.
XTypingWatcher* XTextBoxEditor::GetWatcher() const
{
    return m_widget ? dynamic_cast<XTypingWatcher*>(m_widget->parentWidget()) : nullptr;
}

void XTextBoxEditor::OnChanged()
{
    if (m_client) m_client->OnEditorChanged();
}

void XTextBoxEditor::OnDone()
{
    if (m_client) m_client->OnEditorDone();
}

void XTextBoxEditor::OnWidgetGoes()
{
    m_lastText = XfnGetRichText(*m_widget->document());
    m_widget = nullptr;
    OnDone();
}

std::vector<XvcTextBox*> XfnListEditedBoxes(const QWidget& window)
{
    std::vector<XvcTextBox*> boxes;
    for (const QObject* child : window.children()) {
        const auto* const widget = dynamic_cast<const XTextBoxEditorWidget*>(child);
        XvcTextBox* const box = widget ? widget->GetBox() : nullptr;
        if (box) boxes.push_back(box);
    }
    return boxes;
}

void XfnUseTextBoxEditor()
{
    const XTextEditorFactory before = XfnSetTextEditorFactory(
        []() -> std::unique_ptr<XTextEditor> { return std::make_unique<XTextBoxEditor>(); });
    if (before) XfnSetTextEditorFactory(before);
}
