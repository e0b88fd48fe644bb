#include "host/XLayersWidget.h"

#include "host/XLayerListModel.h"
#include "host/XLayerReport.h"
#include "host/XLayerStack.h"
#include "host/XMainActions.h"
#include "host/XPropertyTableModel.h"

#include <QAction>
#include <QHeaderView>
#include <QLabel>
#include <QListView>
#include <QSignalBlocker>
#include <QSlider>
#include <QSpinBox>
#include <QTableView>
#include <QToolButton>
#include <QVBoxLayout>

XLayersWidget::XLayersWidget(XLayerStack& stack, XMainActions& actions, QWidget* parent)
    : QWidget(parent),
      m_stack(stack),
      m_layers(new XLayerListModel(stack)),
      m_properties(new XPropertyTableModel)
{
    m_layers->setParent(this);
    m_properties->setParent(this);
    setObjectName("layers");
    setAccessibleName("Layers");
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(MakeList(), 1);
    layout->addWidget(MakeButtons(actions));
    layout->addWidget(MakeOpacity());
    layout->addWidget(MakeProperties(), 2);
    m_stack.AddObserver([this](LayerChange change) {
        if (change == LayerChange::Closing) return;
        ShowStack();
        ShowProperties();
    });
    ShowStack();
}

XLayersWidget::~XLayersWidget() = default;

QWidget* XLayersWidget::MakeList()
{
    m_list = new QListView(this);
    m_list->setObjectName("layers.list");
    m_list->setAccessibleName("Layers, the top one first");
    m_list->setModel(m_layers);
    m_list->setMinimumHeight(60);
    m_list->setSelectionMode(QAbstractItemView::SingleSelection);
    m_list->setDragDropMode(QAbstractItemView::InternalMove);
    m_list->setDefaultDropAction(Qt::MoveAction);
    m_list->setDragDropOverwriteMode(false);
    m_list->setTextElideMode(Qt::ElideMiddle);
    QObject::connect(m_list->selectionModel(), &QItemSelectionModel::currentChanged, this,
                     [this](const QModelIndex& current) {
                         if (current.isValid()) m_stack.SetCurrent(current.row());
                     });
    return m_list;
}

QWidget* XLayersWidget::MakeButtons(XMainActions& actions)
{
    auto* row = new QWidget(this);
    auto* layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    for (const char* id : {"layer.top", "layer.up", "layer.down", "file.close"}) {
        auto* button = new QToolButton(row);
        button->setDefaultAction(actions.Get(id));
        button->setObjectName(QString("layers.") + QString(id).section('.', 1));
        button->setAccessibleName(actions.Get(id)->text().remove('&'));
        button->setFocusPolicy(Qt::StrongFocus);
        layout->addWidget(button);
    }
    layout->addStretch();
    return row;
}

QWidget* XLayersWidget::MakeOpacity()
{
    auto* row = new QWidget(this);
    auto* layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    auto* label = new QLabel("&Opacity:", row);
    m_opacity = new QSlider(Qt::Horizontal, row);
    m_opacity->setObjectName("layers.opacity");
    m_opacity->setAccessibleName("Opacity");
    m_opacity->setRange(0, 100);
    m_opacityBox = new QSpinBox(row);
    m_opacityBox->setObjectName("layers.opacityBox");
    m_opacityBox->setAccessibleName("Opacity in per cent");
    m_opacityBox->setRange(0, 100);
    m_opacityBox->setSuffix(" %");
    m_opacityBox->setFocusPolicy(Qt::StrongFocus);
    label->setBuddy(m_opacityBox);
    layout->addWidget(label);
    layout->addWidget(m_opacity, 1);
    layout->addWidget(m_opacityBox);
    const auto take = [this](int percent) { m_stack.SetOpacity(m_stack.GetCurrent(), percent); };
    QObject::connect(m_opacity, &QSlider::valueChanged, this, take);
    QObject::connect(m_opacityBox, &QSpinBox::valueChanged, this, take);
    return row;
}

QWidget* XLayersWidget::MakeProperties()
{
    auto* table = new QTableView(this);
    table->setObjectName("layers.properties");
    table->setAccessibleName("Properties of the current layer");
    table->setModel(m_properties);
    table->setMinimumHeight(60);
    table->horizontalHeader()->hide();
    table->horizontalHeader()->setSectionResizeMode(XPropertyTableModel::Name,
                                                    QHeaderView::ResizeToContents);
    table->horizontalHeader()->setStretchLastSection(true);
    table->verticalHeader()->hide();
    table->setShowGrid(false);
    table->setWordWrap(true);
    table->setTabKeyNavigation(false); // Tab leaves the table: no trap for the focus
    table->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_table = table;
    return table;
}

void XLayersWidget::ShowStack()
{
    const int current = m_stack.GetCurrent();
    m_list->setCurrentIndex(m_layers->index(current));
    const int percent = current >= 0 ? m_stack.GetOpacity(current) : 100;
    const QSignalBlocker sliderBlocker(m_opacity);
    const QSignalBlocker boxBlocker(m_opacityBox);
    m_opacity->setValue(percent);
    m_opacityBox->setValue(percent);
    m_opacity->setEnabled(current >= 0);
    m_opacityBox->setEnabled(current >= 0);
}

void XLayersWidget::ShowProperties()
{
    const tagXLayer* layer = m_stack.GetAt(m_stack.GetCurrent());
    if (m_properties->SetRows(layer ? XfnLayerReport(*layer) : XPropertyTableModel::Rows{}))
        m_table->resizeRowsToContents();
}
