#include "view/XTextBoxEditorWidget.h"

#include "foundation/base/XString.h"
#include "foundation/platform/XMessageWindow.h"
#include "foundation/surface/XFont.h"
#include "foundation/surface/XQtColor.h"
#include "foundation/surface/XTextAlign.h"
#include "foundation/vector/XRtfReader.h"
#include "foundation/vector/XRtfWriter.h"
#include "view/XRichDocument.h"
#include "view/XTextBoxEditor.h"

#include <QAbstractTextDocumentLayout>
#include <QApplication>
#include <QKeyEvent>
#include <QMimeData>
#include <QPointer>
#include <QTextBlock>
#include <QTextDocumentFragment>

#include <algorithm>
#include <cmath>
#include <utility>

namespace {

constexpr double kPointsPerInch = 72.0;
constexpr int kMinSidePx = 12; // a box that is nearly nothing on the screen can be typed in yet
constexpr int kDark = 128;     // letters lighter than this need a dark ground
constexpr tagXColor kPaper = 0xFFFFFFFFu;
constexpr tagXColor kSlate = 0xFF404040u;
const char* const kRtfTypes[] = {"text/rtf", "application/rtf", "text/richtext"};

const char* FindRtfType(const QMimeData& data)
{
    for (const char* const type : kRtfTypes) {
        if (data.hasFormat(QString::fromLatin1(type))) return type;
    }
    return nullptr;
}

bool IsControl(const QKeyEvent& event, int key)
{
    const Qt::KeyboardModifiers modifiers = event.modifiers() & ~Qt::KeypadModifier;
    return event.key() == key && modifiers == Qt::ControlModifier;
}

constexpr std::pair<int, unsigned> kFormatKeys[] = {{Qt::Key_B, tagXCharFormat::kBold},
                                                    {Qt::Key_I, tagXCharFormat::kItalic},
                                                    {Qt::Key_U, tagXCharFormat::kUnderline}};
constexpr std::pair<int, XParagraphAlign> kAlignKeys[] = {{Qt::Key_L, XParagraphAlign::Left},
                                                          {Qt::Key_E, XParagraphAlign::Centre},
                                                          {Qt::Key_R, XParagraphAlign::Right},
                                                          {Qt::Key_J, XParagraphAlign::Justify}};

bool IsOurKey(const QKeyEvent& event)
{
    const auto isPressed = [&](const auto& row) { return IsControl(event, row.first); };
    return event.key() == Qt::Key_Escape || std::ranges::any_of(kFormatKeys, isPressed) ||
           std::ranges::any_of(kAlignKeys, isPressed);
}

} // namespace

int XTextBoxEditorWidget::XScaledDevice::metric(PaintDeviceMetric metric) const
{
    switch (metric) {
    case PdmDpiX:
    case PdmDpiY:
    case PdmPhysicalDpiX:
    case PdmPhysicalDpiY:
        return dpi;
    default:
        return QPaintDevice::metric(metric);
    }
}

QWidget* XTextBoxEditorWidget::FindWindow(XHWND handle)
{
    if (!XfnIsWindow(handle)) return nullptr;
    const QWidgetList widgets = QApplication::allWidgets();
    for (QWidget* widget : widgets) {
        const auto* window = dynamic_cast<XMessageWindow*>(widget);
        if (window && window->GetHWND() == handle) return widget;
    }
    return nullptr;
}

XTextBoxEditorWidget::XTextBoxEditorWidget(XTextBoxEditor* owner, const tagXTextEditorSetup& setup,
                                           QWidget* parent)
    : QTextEdit(parent), m_owner(owner), m_setup(setup)
{
    setFrameShape(QFrame::NoFrame);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setAcceptRichText(true);
    setTabChangesFocus(false);
    tagXColor ground = setup.backColour;
    if (XfnGetAlpha(ground) == 0) { // the picture shows behind the box, but not behind its editor
        const QColor ink = XfnToQColor(setup.textColour);
        ground = qGray(ink.rgb()) < kDark ? kPaper : kSlate;
    }
    QPalette colours = palette();
    colours.setColor(QPalette::Base, XfnToQColor(ground | kXOpaque));
    colours.setColor(QPalette::Window, XfnToQColor(ground | kXOpaque));
    colours.setColor(QPalette::Text, XfnToQColor(setup.textColour | kXOpaque));
    setPalette(colours);
    setAutoFillBackground(true); // the margins too

    QFont font = XfnGetFont(setup.style);
    font.setHintingPreference(QFont::PreferNoHinting);
    font.setWeight(QFont::Normal);
    font.setItalic(false);
    font.setUnderline(false);
    font.setStrikeOut(false);
    font.setPointSizeF(10.0);
    document()->setDefaultFont(font);
    document()->setDocumentMargin(0.0);
    document()->documentLayout()->setPaintDevice(&m_device);
    setCursorWidth(std::max(1, cursorWidth()));
}

XTextBoxEditorWidget::~XTextBoxEditorWidget()
{
    if (XTextBoxEditor* const owner = std::exchange(m_owner, nullptr)) owner->OnWidgetGoes();
    // the document outlives the device otherwise
    document()->documentLayout()->setPaintDevice(viewport());
}

void XTextBoxEditorWidget::Start(const XRichText& text)
{
    SetBound(m_setup.left, m_setup.top, m_setup.right, m_setup.bottom, m_setup.pixelsPerPoint);
    QTextCursor cursor(document());
    XfnInsertRichText(cursor, text);
    document()->clearUndoRedoStacks();
    cursor.movePosition(QTextCursor::End);
    setTextCursor(cursor);
    PlaceText();
    connect(this, &QTextEdit::textChanged, this, [this] {
        PlaceText();
        if (m_owner) m_owner->OnChanged();
    });
    show();
    raise();
    setFocus(Qt::OtherFocusReason);
}

void XTextBoxEditorWidget::Retire()
{
    m_owner = nullptr;
    const bool hadFocus = hasFocus();
    hide();
    if (hadFocus && parentWidget()) parentWidget()->setFocus(Qt::OtherFocusReason);
    deleteLater();
}

XvcTextBox* XTextBoxEditorWidget::GetBox() const
{
    return m_owner ? m_owner->GetBox() : nullptr;
}

void XTextBoxEditorWidget::SetBound(int left, int top, int right, int bottom, double pixelsPerPoint)
{
    const double ratio = devicePixelRatioF(); // bounds are device pixels, widgets are not
    const auto toWidget = [&](int pixel) { return static_cast<int>(std::lround(pixel / ratio)); };
    m_zoom = m_setup.pixelsPerPoint > 0.0 ? pixelsPerPoint / m_setup.pixelsPerPoint : 1.0;
    const double dpi = std::clamp(pixelsPerPoint / ratio * kPointsPerInch, 1.0, 1e4);
    if (static_cast<int>(std::lround(dpi)) != m_device.dpi) {
        m_device.dpi = static_cast<int>(std::lround(dpi));
        document()->markContentsDirty(0, document()->characterCount());
    }
    const int x = toWidget(left), y = toWidget(top);
    setGeometry(x, y, std::max(toWidget(right) - x, kMinSidePx),
                std::max(toWidget(bottom) - y, kMinSidePx));
    PlaceText();
}

void XTextBoxEditorWidget::PlaceText()
{
    if (m_isPlacing) return; // the margins change the width, and that the layout
    m_isPlacing = true;
    const double scale = m_zoom / devicePixelRatioF();
    const int x = static_cast<int>(std::lround(m_setup.xSpacePx * scale));
    const int y = static_cast<int>(std::lround(m_setup.ySpacePx * scale));
    setViewportMargins(x, y, x, 0);
    const int room = height() - 2 * y;
    const int free = std::max(room - static_cast<int>(std::ceil(document()->size().height())), 0);
    if (m_setup.verticalAlign & kXTextMiddle) {
        setViewportMargins(x, y + free / 2, x, 0);
    } else if (m_setup.verticalAlign & kXTextBottom) {
        setViewportMargins(x, y + free, x, 0);
    }
    m_isPlacing = false;
}

void XTextBoxEditorWidget::resizeEvent(QResizeEvent* event)
{
    QTextEdit::resizeEvent(event);
    PlaceText();
}

void XTextBoxEditorWidget::SetFormat(const tagXCharFormat& format, unsigned mask)
{
    const QTextCursor cursor = textCursor();
    if (cursor.hasSelection()) {
        XfnFormatSelection(cursor, format, mask);
        return;
    }
    tagXCharFormat merged = XfnFromQtFormat(currentCharFormat());
    merged.Merge(format, mask);
    setCurrentCharFormat(XfnToQtFormat(merged));
}

tagXCharFormat XTextBoxEditorWidget::GetFormat(unsigned& common) const
{
    if (textCursor().hasSelection()) return XfnGetSelectionFormat(textCursor(), common);
    common = tagXCharFormat::kAll;
    return XfnFromQtFormat(currentCharFormat());
}

void XTextBoxEditorWidget::SetAlign(XParagraphAlign align)
{
    QTextBlockFormat place;
    place.setAlignment(Qt::Alignment(XfnToQtAlign(align)));
    textCursor().mergeBlockFormat(place);
}

bool XTextBoxEditorWidget::IsAlign(XParagraphAlign align) const
{
    const QTextCursor cursor = textCursor();
    QTextBlock block = document()->findBlock(cursor.selectionStart());
    for (; block.isValid() && block.position() <= cursor.selectionEnd(); block = block.next()) {
        const auto alignment = static_cast<int>(block.blockFormat().alignment());
        if (XfnFromQtAlign(alignment) != align) return false;
    }
    return true;
}

void XTextBoxEditorWidget::Toggle(unsigned part)
{
    unsigned common = 0;
    const tagXCharFormat format = GetFormat(common);
    tagXCharFormat on;
    on.isBold = on.isItalic = on.isUnderline = true;
    const bool isOn = (common & format.Compare(on) & part) != 0;
    SetFormat(isOn ? tagXCharFormat() : on, part);
}

bool XTextBoxEditorWidget::HandleKey(const QKeyEvent& event)
{
    for (const auto& [key, part] : kFormatKeys) {
        if (!IsControl(event, key)) continue;
        Toggle(part);
        return true;
    }
    for (const auto& [key, align] : kAlignKeys) {
        if (!IsControl(event, key)) continue;
        SetAlign(align);
        return true;
    }
    return false;
}

bool XTextBoxEditorWidget::event(QEvent* event)
{
    // a host's shortcuts do not take what the text needs
    if (event->type() == QEvent::ShortcutOverride &&
        IsOurKey(*static_cast<const QKeyEvent*>(event))) {
        event->accept();
        return true;
    }
    return QTextEdit::event(event);
}

void XTextBoxEditorWidget::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Escape) {
        // the window is first: it ends the editing of its box along with its own state
        const QPointer<XTextBoxEditorWidget> self(this);
        QKeyEvent forWindow(event->type(), event->key(), event->modifiers(), event->text(),
                            event->isAutoRepeat());
        if (parentWidget()) QCoreApplication::sendEvent(parentWidget(), &forWindow);
        if (self && m_owner) m_owner->OnDone();
        event->accept();
        return;
    }
    if (!HandleKey(*event)) QTextEdit::keyPressEvent(event);
    event->accept(); // what means nothing here would mean the whole object to the window
}

bool XTextBoxEditorWidget::canInsertFromMimeData(const QMimeData* source) const
{
    return source && (source->hasText() || FindRtfType(*source));
}

void XTextBoxEditorWidget::insertFromMimeData(const QMimeData* source)
{
    if (!source) return;
    QTextCursor cursor = textCursor();
    const char* const type = FindRtfType(*source);
    XRichText text;
    XString error;
    if (type) {
        const QByteArray bytes = source->data(QString::fromLatin1(type));
        if (XfnReadRtf(bytes.constData(), static_cast<std::size_t>(bytes.size()), text, error)) {
            XfnInsertRichText(cursor, text);
            setTextCursor(cursor);
            return;
        }
    }
    if (!source->hasText()) return;
    const QByteArray utf8 = source->text().toUtf8();
    text = XRichText({utf8.constData(), static_cast<std::size_t>(utf8.size())},
                     XfnFromQtFormat(currentCharFormat()),
                     XfnFromQtAlign(static_cast<int>(alignment())));
    XfnInsertRichText(cursor, text);
    setTextCursor(cursor);
}

QMimeData* XTextBoxEditorWidget::createMimeDataFromSelection() const
{
    auto* const data = new QMimeData;
    const QTextDocumentFragment selection = textCursor().selection();
    data->setText(selection.toPlainText());
    QTextDocument part;
    QTextCursor(&part).insertFragment(selection);
    const XString rtf = XfnWriteRtf(XfnGetRichText(part));
    const QByteArray bytes(rtf.GetString(), rtf.GetLength());
    for (const char* const type : kRtfTypes)
        data->setData(QString::fromLatin1(type), bytes);
    return data;
}
