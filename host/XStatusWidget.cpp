#include "host/XStatusWidget.h"

#include "host/XBusyWidget.h"
#include "host/XReadOutLabel.h"

#include <QAction>

namespace {
constexpr const char* kSamples = "R 65535  G 65535  B 65535";
} // namespace

XStatusWidget::XStatusWidget(QWidget* parent) : QStatusBar(parent)
{
    setObjectName("status");
    m_hint = new XReadOutLabel(QString(), this);
    m_hint->setObjectName("status.hint");
    m_hint->setAccessibleName("Hint");
    m_hint->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    addWidget(m_hint, 1);
    m_busy = new XBusyWidget(this);
    m_busy->setObjectName("status.busy");
    addPermanentWidget(m_busy);
    m_samples = AddReadOut("status.samples", "Pixel value", kSamples);
    m_position = AddReadOut("status.position", "Position", "-1234567.89  -9876543.21");
    m_geographic =
        AddReadOut("status.geographic", "Geographic position", "88888'88.88\"N  188888'88.88\"W");
    m_scale = AddReadOut("status.scale", "Scale", "1:888 888 888");
    m_system = AddReadOut("status.system", "Coordinate system", "EPSG:88888 WGS 84 / UTM");
}

XReadOutLabel* XStatusWidget::AddReadOut(const char* objectName, const QString& accessibleName,
                                         const char* widest)
{
    auto* label = new XReadOutLabel(widest, this);
    label->setObjectName(objectName);
    label->setAccessibleName(accessibleName);
    label->setToolTip(accessibleName);
    label->setContextMenuPolicy(Qt::ActionsContextMenu);
    addPermanentWidget(label);
    return label;
}

void XStatusWidget::SetHint(const QString& text)
{
    m_hint->SetFullText(text);
}

void XStatusWidget::SetSamples(const QString& text)
{
    m_samples->SetFullText(text);
}

void XStatusWidget::SetLayersNamed(bool isNamed)
{
    m_samples->SetWidest(isNamed ? QString(kSamples) + "  in image name.tif" : QString(kSamples));
}

void XStatusWidget::SetBusy(bool isBusy)
{
    m_busy->SetBusy(isBusy);
}

void XStatusWidget::SetPosition(const QString& text)
{
    m_position->SetFullText(text);
}

void XStatusWidget::SetGeographic(const QString& text)
{
    m_geographic->SetFullText(text);
}

void XStatusWidget::SetScale(const QString& text)
{
    m_scale->SetFullText(text);
}

void XStatusWidget::SetSystem(const QString& text)
{
    m_system->SetFullText(text);
}

void XStatusWidget::AddPositionAction(QAction* action)
{
    m_position->addAction(action);
    m_geographic->addAction(action);
}

void XStatusWidget::AddScaleAction(QAction* action)
{
    m_scale->addAction(action);
}
