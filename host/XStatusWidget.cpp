#include "host/XStatusWidget.h"

#include "host/XBusyWidget.h"
#include "host/XReadOutLabel.h"
#include "host/XStatusText.h"

#include <QAction>
#include <QCoreApplication>
#include <QEvent>

namespace {
constexpr const char* kSamples = "R 65535  G 65535  B 65535";
constexpr int kGap = 8;     // around each part
constexpr int kMargin = 28; // of the bar, with the grip
constexpr int kNameLetters = 60;
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
    for (XReadOutLabel* label : {m_samples, m_position, m_geographic, m_scale})
        label->SetNumber();
    QCoreApplication::instance()->installEventFilter(this);
    QObject::connect(this, &QStatusBar::messageChanged, this, [this](const QString& text) {
        setToolTip(text);
        Arrange();
    });
}

bool XStatusWidget::event(QEvent* event)
{
    const bool isTaken = QStatusBar::event(event);
    if (event->type() == QEvent::LayoutRequest || event->type() == QEvent::Resize) Arrange();
    return isTaken;
}

void XStatusWidget::Arrange()
{
    int room = width() - kMargin;
    for (const QWidget* part : findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly))
        if (!part->isHidden() && !part->inherits("QSizeGrip") &&
            !dynamic_cast<const XReadOutLabel*>(part))
            room -= part->sizeHint().width() + kGap;
    const QString message = currentMessage();
    const int words = message.isEmpty() ? 0 : fontMetrics().horizontalAdvance(message) + 2 * kGap;
    // a message takes no room from the numbers at the pointer
    const struct
    {
        XReadOutLabel* label;
        bool yields;
    } rows[] = {{m_position, false},
                {m_samples, false},
                {m_geographic, true},
                {m_scale, true},
                {m_system, true}};
    bool isFull = false;
    for (const auto& row : rows) {
        room -= row.label->sizeHint().width() + kGap;
        isFull = isFull || room < (row.yields ? words : 0);
        row.label->setVisible(!isFull || row.label == m_position);
    }
}

void XStatusWidget::ShowNotice(const QString& text, const QString& detail, int ms)
{
    m_noticed = text;
    m_noticedDetail = detail;
    m_noticedMs = ms;
    showMessage(text, ms);
    setToolTip(detail.isEmpty() ? text : detail);
}

void XStatusWidget::ClearNotice()
{
    if (!m_opening.isEmpty()) return; // what was noticed shows at its end
    if (!m_noticed.isEmpty() && currentMessage() == m_noticed) clearMessage();
    m_noticed.clear();
}

// Before the press does its work, which may bring a notice of its own.
bool XStatusWidget::eventFilter(QObject* watched, QEvent* event)
{
    const bool isPress = event->type() == QEvent::MouseButtonPress ||
                         event->type() == QEvent::KeyPress ||
                         event->type() == QEvent::ShortcutOverride;
    const auto* widget = isPress ? qobject_cast<QWidget*>(watched) : nullptr;
    if (widget && widget->window() == window()) ClearNotice();
    return QStatusBar::eventFilter(watched, event);
}

void XStatusWidget::SetOpening(const QString& name)
{
    const QString before = m_opening;
    m_opening = name.isEmpty() ? QString() : "Opening " + XfnShortName(name, kNameLetters) + "...";
    if (before.isEmpty()) m_noticed.clear();
    if (!name.isEmpty()) {
        showMessage(m_opening);
        repaint();
    } else if (!before.isEmpty() && currentMessage() == before) {
        clearMessage();
        if (!m_noticed.isEmpty()) ShowNotice(m_noticed, m_noticedDetail, m_noticedMs);
    }
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
