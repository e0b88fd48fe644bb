#include "host/XRecoveryBar.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>

XRecoveryBar::XRecoveryBar(QWidget* parent) : QFrame(parent), m_text(new QLabel(this))
{
    setObjectName("recovery");
    setAccessibleName("Unsaved edits");
    setFrameShape(QFrame::StyledPanel);
    setAutoFillBackground(true);
    setBackgroundRole(QPalette::AlternateBase);
    m_text->setObjectName("recovery.text");
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
    } buttons[] = {{"recovery.restore", "&Restore", Answer::Restore},
                   {"recovery.notNow", "Not No&w", Answer::NotNow},
                   {"recovery.discard", "Dis&card", Answer::Discard}};
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

void XRecoveryBar::Offer(const QString& text, const QString& detail)
{
    m_text->setText(text);
    m_text->setToolTip(detail);
    show();
}
