#include "dialogs/CPreviewDlg.h"

#include "foundation/platform/XQtText.h"

#include <QDateTime>
#include <QFileInfo>
#include <QPainter>
#include <QPlainTextEdit>
#include <QSplitter>
#include <QTimer>
#include <QVBoxLayout>

#include <algorithm>

namespace {

constexpr int kPictureSide = 640; // drawn once, and scaled to the pane
constexpr int kLateMs = 200;
constexpr int kMargin = 6;

} // namespace

/// A picture held inside the pane, or a text in its place.
class CPreviewDlg::XPicture : public QFrame
{
public:
    explicit XPicture(QWidget* parent) : QFrame(parent)
    {
        setObjectName("preview.picture");
        setAccessibleName("Preview of the file");
        setFrameStyle(QFrame::StyledPanel | QFrame::Sunken);
        setMinimumSize(160, 120);
    }
    QSize sizeHint() const override { return {260, 230}; }

    void Show(const QImage& picture, const QString& text)
    {
        m_picture = picture;
        m_text = text;
        setToolTip(text);
        setAccessibleDescription(text);
        update();
    }

protected:
    void paintEvent(QPaintEvent* event) override
    {
        QFrame::paintEvent(event);
        QPainter painter(this);
        QRect room = contentsRect().adjusted(kMargin, kMargin, -kMargin, -kMargin);
        if (m_picture.isNull()) {
            painter.setPen(palette().color(QPalette::Disabled, QPalette::WindowText));
            painter.drawText(room, Qt::AlignCenter | Qt::TextWordWrap, m_text);
            return;
        }
        if (!m_text.isEmpty()) {
            const QRect line(room.left(), room.bottom() - fontMetrics().height(), room.width(),
                             fontMetrics().height());
            painter.drawText(line, Qt::AlignCenter,
                             fontMetrics().elidedText(m_text, Qt::ElideRight, line.width()));
            room.setBottom(line.top() - kMargin);
        }
        if (room.isEmpty()) return;
        const double scale = devicePixelRatioF();
        const QSize size = m_picture.size().scaled(room.size() * scale, Qt::KeepAspectRatio);
        // pixels that are smaller than those of the screen are averaged, larger ones stay sharp
        QImage shown = m_picture.scaled(size.expandedTo({1, 1}), Qt::IgnoreAspectRatio,
                                        size.width() < m_picture.width() ? Qt::SmoothTransformation
                                                                         : Qt::FastTransformation);
        shown.setDevicePixelRatio(scale);
        const QSizeF across = QSizeF(size) / scale;
        painter.drawImage(QPointF(room.left() + (room.width() - across.width()) / 2,
                                  room.top() + (room.height() - across.height()) / 2),
                          shown);
    }

private:
    QImage m_picture;
    QString m_text;
};

CPreviewDlg::CPreviewDlg(QWidget* parent)
    : QWidget(parent),
      m_splitter(new QSplitter(Qt::Vertical, this)),
      m_picture(new XPicture(m_splitter)),
      m_report(new QPlainTextEdit(m_splitter)),
      m_late(new QTimer(this))
{
    setObjectName("preview");
    m_report->setObjectName("preview.report");
    m_report->setAccessibleName("Report about the file");
    m_report->setReadOnly(true);
    m_report->setFocusPolicy(Qt::ClickFocus); // Tab goes on through the file dialog
    m_splitter->setChildrenCollapsible(false);
    m_splitter->setStretchFactor(0, 1);
    const int line = m_report->fontMetrics().lineSpacing();
    m_splitter->setSizes({240, 20 * line});
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->addWidget(m_splitter);
    m_late->setSingleShot(true);
    m_late->setInterval(kLateMs);
    connect(m_late, &QTimer::timeout, this, [this] {
        m_picture->Show({}, "Reading...");
        m_report->clear();
    });
    m_loader.SetChanged([this](const tagXFilePreview& preview) { Show(preview); });
}

QString CPreviewDlg::MakeStamp(const XString& path)
{
    const QFileInfo info(XfnToQString(path));
    if (!info.exists()) return QString();
    return QString("%1 %2").arg(info.size()).arg(info.lastModified().toMSecsSinceEpoch());
}

void CPreviewDlg::SetFilePath(const XString& path)
{
    const QFileInfo info(XfnToQString(path));
    const XString wanted = info.isDir() ? XString() : path;
    const QString stamp = MakeStamp(wanted);
    if (wanted == m_path && stamp == m_stamp) return;
    m_path = wanted;
    m_stamp = stamp;
    m_preview = {};
    m_preview.path = m_path;
    if (m_path.IsEmpty()) {
        m_loader.Cancel();
        Show(m_preview);
        return;
    }
    m_late->start();
    m_loader.Request(m_path, kPictureSide);
    if (m_changed) m_changed();
}

void CPreviewDlg::Show(const tagXFilePreview& preview)
{
    m_preview = preview;
    m_late->stop();
    const bool isComing = preview.isOpened && !preview.isDone;
    m_picture->Show(preview.picture,
                    isComing ? QString("Reading...") : XfnToQString(preview.message));
    m_report->setPlainText(XfnToQString(preview.report));
    if (m_changed) m_changed();
}

QByteArray CPreviewDlg::SaveLayout() const
{
    return m_splitter->saveState();
}

void CPreviewDlg::RestoreLayout(const QByteArray& layout)
{
    if (!layout.isEmpty()) m_splitter->restoreState(layout);
}
