#include "host/XNoticeBar.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>

XNoticeBar::XNoticeBar(QWidget* parent) : QFrame(parent), m_text(new QLabel(this))
{
    setObjectName("notice");
    setAccessibleName("Notice");
    setFrameShape(QFrame::StyledPanel);
    setAutoFillBackground(true);
    setBackgroundRole(QPalette::AlternateBase);
    m_text->setObjectName("notice.text");
    m_text->setWordWrap(true);
    m_text->setTextFormat(Qt::PlainText);
    auto* dismiss = new QPushButton("Dis&miss", this);
    dismiss->setObjectName("notice.dismiss");
    dismiss->setAutoDefault(false);
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(8, 4, 8, 4);
    row->addWidget(m_text, 1);
    row->addWidget(dismiss, 0, Qt::AlignTop);
    QObject::connect(dismiss, &QPushButton::clicked, this, [this] {
        for (auto& line : m_lines)
            line.text.clear();
        ShowLines();
    });
    hide();
}

void XNoticeBar::Tell(const QString& path, const QString& text, Topic topic)
{
    for (const auto& line : m_lines)
        if (line.path == path && line.topic == topic) return;
    m_lines.append({path, text, topic});
    ShowLines();
}

void XNoticeBar::TellAnew(const QString& path, const QString& text)
{
    m_lines.removeIf([&](const auto& line) { return line.path == path; });
    Tell(path, text);
}

void XNoticeBar::KeepOnly(const QStringList& paths)
{
    const auto gone = [&](const auto& line) { return !paths.contains(line.path); };
    if (m_lines.removeIf(gone) > 0) ShowLines();
}

void XNoticeBar::ShowLines()
{
    QStringList texts;
    for (const auto& line : m_lines)
        if (!line.text.isEmpty()) texts.append(line.text.split('\n'));
    const auto more = texts.size() - kMostLines;
    m_text->setToolTip(more > 0 ? texts.join('\n') : QString());
    m_text->setText(texts.mid(0, kMostLines).join('\n') +
                    (more > 0 ? QString("\nand %1 more").arg(more) : QString()));
    setVisible(!texts.isEmpty());
}
