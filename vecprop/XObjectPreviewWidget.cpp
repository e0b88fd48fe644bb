#include "vecprop/XObjectPreviewWidget.h"

#include "vecprop/XObjectEditModel.h"
#include "vecprop/XObjectPictures.h"

#include <QPainter>

namespace {

constexpr tagXColor kPaper = XfnMakeColor(112, 116, 120); // white and black both show on it

} // namespace

XObjectPreviewWidget::XObjectPreviewWidget(const XObjectEditModel& model, QWidget* parent)
    : QWidget(parent), m_model(model)
{
    setObjectName("preview");
    setAccessibleName("Preview");
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
}

void XObjectPreviewWidget::paintEvent(QPaintEvent*)
{
    const qreal ratio = devicePixelRatioF();
    QImage picture = XfnDrawObjects(m_model.GetDrafts(), static_cast<int>(width() * ratio),
                                    static_cast<int>(height() * ratio), kPaper);
    picture.setDevicePixelRatio(ratio);
    QPainter painter(this);
    painter.drawImage(0, 0, picture);
    painter.setPen(palette().color(QPalette::Mid));
    painter.drawRect(rect().adjusted(0, 0, -1, -1));
}
