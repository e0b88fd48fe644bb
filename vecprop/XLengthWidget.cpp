#include "vecprop/XLengthWidget.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QSignalBlocker>

XLengthWidget::XLengthWidget(const QString& name, QWidget* parent)
    : QWidget(parent), m_number(new XNumberWidget(this)), m_unit(new QComboBox(this))
{
    m_number->setAccessibleName(name);
    m_unit->setAccessibleName(name + ", unit");
    m_unit->addItems({"world units", "pixels"});
    m_unit->setFocusPolicy(Qt::StrongFocus);
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_number, 1);
    layout->addWidget(m_unit);
    setFocusProxy(m_number);
}

void XLengthWidget::SetUnitHandler(std::function<void(int)> handler)
{
    QObject::connect(m_unit, &QComboBox::activated, this, std::move(handler));
}

void XLengthWidget::SetUnitNames(const QString& world, const QString& pixels)
{
    m_unit->setItemText(0, world);
    m_unit->setItemText(1, pixels);
}

void XLengthWidget::ShowLength(const QString& text, bool isMixed, int isPixels,
                               const QString& whenEmpty)
{
    m_number->ShowText(text, isMixed, whenEmpty);
    const QSignalBlocker blocker(m_unit);
    m_unit->setCurrentIndex(isPixels ? 1 : 0);
}
