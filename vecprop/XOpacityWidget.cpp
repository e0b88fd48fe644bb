#include "vecprop/XOpacityWidget.h"

#include "vecprop/XNumberWidget.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QSignalBlocker>
#include <QSlider>
#include <QWheelEvent>

#include <algorithm>

namespace {

class Slider final : public QSlider
{
public:
    using QSlider::QSlider;

protected:
    void wheelEvent(QWheelEvent* event) override
    {
        hasFocus() ? QSlider::wheelEvent(event) : event->ignore();
    }
};

} // namespace

XOpacityWidget::XOpacityWidget(const QString& name, QWidget* parent)
    : QWidget(parent), m_slider(new Slider(Qt::Horizontal, this)), m_number(new QLabel(this))
{
    m_slider->setRange(0, 100);
    m_slider->setPageStep(10);
    m_slider->setAccessibleName(name);
    m_slider->setToolTip("Opacity");
    m_slider->setMinimumWidth(60);
    const QFontMetrics metrics = m_number->fontMetrics();
    m_number->setFixedWidth(
        std::max(metrics.horizontalAdvance("100 %"), metrics.horizontalAdvance(kXMixedText)));
    m_number->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_slider, 1);
    layout->addWidget(m_number);
    setFocusProxy(m_slider);
}

void XOpacityWidget::SetHandler(std::function<void(int)> handler)
{
    QObject::connect(m_slider, &QSlider::valueChanged, this, std::move(handler));
}

void XOpacityWidget::ShowOpacity(int percent, bool isMixed)
{
    const QSignalBlocker blocker(m_slider);
    m_slider->setValue(percent);
    m_number->setText(isMixed ? QString(kXMixedText) : QString("%1 %").arg(percent));
}
