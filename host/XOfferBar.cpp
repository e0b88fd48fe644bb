#include "host/XOfferBar.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>

XOfferBar::XOfferBar(QWidget* parent, const QString& name, const QString& accessibleName,
                     std::initializer_list<tagChoice> choices)
    : QFrame(parent), m_text(new QLabel(this))
{
    setObjectName(name);
    setAccessibleName(accessibleName);
    setFrameShape(QFrame::StyledPanel);
    setAutoFillBackground(true);
    setBackgroundRole(QPalette::AlternateBase);
    m_text->setObjectName(name + ".text");
    m_text->setWordWrap(true);
    m_text->setTextFormat(Qt::PlainText);
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(8, 4, 8, 4);
    row->addWidget(m_text, 1);
    for (const tagChoice& choice : choices) {
        auto* button = new QPushButton(choice.text, this);
        button->setObjectName(name + "." + choice.name);
        button->setAutoDefault(false);
        row->addWidget(button);
        QObject::connect(button, &QPushButton::clicked, this, [this, answer = choice.answer] {
            hide();
            if (m_chosen) m_chosen(answer);
        });
    }
    hide();
}

void XOfferBar::Offer(const QString& text, const QString& detail)
{
    m_text->setText(text);
    m_text->setToolTip(detail);
    show();
}
