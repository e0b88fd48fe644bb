#include "vecprop/CTextInputDlg.h"

#include "foundation/base/XTextStyle.h"
#include "foundation/platform/XQtText.h"
#include "foundation/surface/XFont.h"
#include "foundation/surface/XQtColor.h"

#include <QEventLoop>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QPlainTextEdit>
#include <QPointer>
#include <QScreen>
#include <QTextBlock>
#include <QVBoxLayout>

CTextInputDlg::CTextInputDlg(QWidget* parent)
    : QDialog(parent, Qt::Dialog | Qt::FramelessWindowHint), m_edit(new QPlainTextEdit(this))
{
    setObjectName("textInput");
    setWindowTitle("Text");
    m_edit->setObjectName("text");
    m_edit->setAccessibleName("Text");
    m_edit->setToolTip("Enter takes the text, Shift+Enter begins a line, Escape drops it");
    m_edit->setFrameShape(QFrame::NoFrame);
    m_edit->setLineWrapMode(QPlainTextEdit::NoWrap);
    m_edit->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_edit->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_edit->document()->setDocumentMargin(1);
    m_edit->setMinimumSize(1, 1); // the box decides
    m_edit->installEventFilter(this);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(1, 1, 1, 1); // the ground shows as a thin frame
    layout->addWidget(m_edit);
    layout->setSizeConstraint(QLayout::SetNoConstraint);
    setFocusProxy(m_edit);
    QObject::connect(m_edit, &QPlainTextEdit::textChanged, this, [this] { Fit(); });
}

double CTextInputDlg::GetRatio() const
{
    return parentWidget() ? parentWidget()->devicePixelRatioF() : devicePixelRatioF();
}

void CTextInputDlg::SetPosition(int x, int y, int width, int height)
{
    const double ratio = GetRatio();
    m_box = QRectF(x / ratio, y / ratio, width / ratio, height / ratio).toRect();
    Fit();
}

void CTextInputDlg::SetFont(const tagXTextStyle& style, tagXColor color, int heightPx)
{
    m_edit->setFont(XfnGetFont(style, heightPx / GetRatio()));
    const QColor letters(XfnToQRgb(color));
    QPalette palette = m_edit->palette();
    palette.setColor(QPalette::Text, letters);
    palette.setColor(QPalette::Base,
                     qGray(letters.rgb()) > 140 ? QColor(0x28, 0x28, 0x28) : QColor(Qt::white));
    m_edit->setPalette(palette);
    Fit();
}

XString CTextInputDlg::GetText() const
{
    return XfnFromQString(m_edit->toPlainText());
}

int CTextInputDlg::DoModal()
{
    QEventLoop loop;
    const QPointer<CTextInputDlg> self(this);
    QObject::connect(this, &QDialog::finished, &loop, &QEventLoop::quit);
    QObject::connect(this, &QObject::destroyed, &loop, &QEventLoop::quit);
    QCoreApplication::instance()->installEventFilter(this);
    show();
    activateWindow();
    m_edit->setFocus();
    loop.exec();
    if (!self) return 2;
    QCoreApplication::instance()->removeEventFilter(this);
    return result() == QDialog::Accepted ? 1 : 2;
}

// A menu of the editor is a window of its own, but not beside it.
bool CTextInputDlg::IsBeside(const QObject& watched) const
{
    if (!watched.isWidgetType()) return false;
    for (const QObject* at = &watched; at; at = at->parent())
        if (at == this) return false;
    return true;
}

bool CTextInputDlg::eventFilter(QObject* watched, QEvent* event)
{
    switch (event->type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
    case QEvent::Close:
    case QEvent::Wheel:
        if (!isVisible() || !IsBeside(*watched)) return false;
        event->setAccepted(event->type() != QEvent::Close); // the next one closes
        if (event->type() != QEvent::Wheel) accept();
        return true;
    case QEvent::KeyPress:
        if (watched == m_edit) break;
        return false;
    default:
        return QDialog::eventFilter(watched, event);
    }
    const auto& key = static_cast<const QKeyEvent&>(*event);
    if (key.key() == Qt::Key_Return || key.key() == Qt::Key_Enter) {
        if (key.modifiers() & (Qt::ShiftModifier | Qt::ControlModifier))
            m_edit->textCursor().insertBlock();
        else
            accept();
        return true;
    }
    if (key.key() != Qt::Key_Escape) return false;
    reject();
    return true;
}

void CTextInputDlg::Fit()
{
    const QFontMetrics metrics(m_edit->font());
    int width = 0;
    for (QTextBlock block = m_edit->document()->begin(); block.isValid(); block = block.next())
        width = std::max(width, metrics.horizontalAdvance(block.text()));
    const int room = 2 * static_cast<int>(m_edit->document()->documentMargin()) + 2;
    QRect place = m_box;
    place.setWidth(std::max(place.width(), width + metrics.averageCharWidth() + room));
    place.setHeight(
        std::max(place.height(), metrics.lineSpacing() * m_edit->document()->blockCount() + room));
    const QScreen* screen = QGuiApplication::screenAt(m_box.center());
    if (!screen) screen = QGuiApplication::primaryScreen();
    const QRect area = screen->availableGeometry();
    place.setSize(place.size().boundedTo(area.size()));
    place.moveLeft(std::clamp(place.left(), area.left(), area.right() + 1 - place.width()));
    place.moveTop(std::clamp(place.top(), area.top(), area.bottom() + 1 - place.height()));
    setGeometry(place);
}
