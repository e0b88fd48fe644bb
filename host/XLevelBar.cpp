#include "host/XLevelBar.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>

XLevelBar::XLevelBar(QWidget* parent) : QFrame(parent), m_text(new QLabel(this))
{
    setObjectName("levels");
    setAccessibleName("Pyramid");
    setFrameShape(QFrame::StyledPanel);
    setAutoFillBackground(true);
    setBackgroundRole(QPalette::AlternateBase);
    m_text->setObjectName("levels.text");
    m_text->setWordWrap(true);
    m_text->setTextFormat(Qt::PlainText);
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(8, 4, 8, 4);
    row->addWidget(m_text, 1);
    const struct
    {
        const char* name;
        const char* text;
        Answer answer;
    } buttons[] = {{"levels.build", "&Build", Answer::Build},
                   {"levels.notNow", "Not No&w", Answer::NotNow},
                   {"levels.never", "&Never for This File", Answer::Never}};
    for (const auto& b : buttons) {
        auto* button = new QPushButton(b.text, this);
        button->setObjectName(b.name);
        button->setAutoDefault(false);
        row->addWidget(button);
        QObject::connect(button, &QPushButton::clicked, this, [this, answer = b.answer] {
            hide();
            if (m_answered) m_answered(answer);
        });
    }
    hide();
}

void XLevelBar::Offer(const QString& text)
{
    m_text->setText(text);
    show();
}
