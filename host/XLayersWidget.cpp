#include "host/XLayersWidget.h"

#include "host/XLayerReport.h"
#include "host/XLayerTree.h"
#include "host/XLayerTreeModel.h"
#include "host/XMainActions.h"
#include "host/XObjectReport.h"
#include "host/XPropertyTableModel.h"

#include <QAction>
#include <QHeaderView>
#include <QLabel>
#include <QMenu>
#include <QMouseEvent>
#include <QShortcut>
#include <QSignalBlocker>
#include <QSlider>
#include <QSpinBox>
#include <QStyledItemDelegate>
#include <QTableView>
#include <QTimer>
#include <QToolButton>
#include <QTreeView>
#include <QVBoxLayout>

#include <utility>

namespace {

constexpr int kMostShownChildren = 12; // a drawing of a hundred layers starts closed up

/// Tells of double clicks on the picture of a row.
class XSwatchDelegate : public QStyledItemDelegate
{
public:
    XSwatchDelegate(QObject* parent, std::function<void(const QModelIndex&)> clicked)
        : QStyledItemDelegate(parent), m_clicked(std::move(clicked))
    {}

protected:
    bool editorEvent(QEvent* event, QAbstractItemModel* model, const QStyleOptionViewItem& option,
                     const QModelIndex& index) override
    {
        if (event->type() == QEvent::MouseButtonDblClick) {
            QStyleOptionViewItem row = option;
            initStyleOption(&row, index);
            const QRect swatch = row.widget->style()->subElementRect(
                QStyle::SE_ItemViewItemDecoration, &row, row.widget);
            if (swatch.contains(static_cast<QMouseEvent*>(event)->pos())) {
                m_clicked(index);
                return true;
            }
        }
        return QStyledItemDelegate::editorEvent(event, model, option, index);
    }

private:
    std::function<void(const QModelIndex&)> m_clicked;
};

} // namespace

XLayersWidget::XLayersWidget(XLayerTree& tree, XMainActions& actions, QWidget* parent)
    : QWidget(parent),
      m_tree(tree),
      m_layers(new XLayerTreeModel(tree)),
      m_properties(new XPropertyTableModel)
{
    m_layers->setParent(this);
    m_properties->setParent(this);
    setObjectName("layers");
    setAccessibleName("Layers");
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(MakeTree(actions), 3);
    layout->addWidget(MakeButtons(actions));
    layout->addWidget(MakeOpacity());
    layout->addWidget(MakeProperties(), 2);
    MakeMenu(actions);
    actions.Connect("layer.rename", [this] { RenameCurrent(); });
    m_tree.AddObserver([this](LayerChange change) {
        if (change == LayerChange::Closing) return;
        if (change == LayerChange::List) ExpandRows();
        ShowTree();
        ShowProperties();
    });
    ShowTree();
}

XLayersWidget::~XLayersWidget() = default;

QWidget* XLayersWidget::MakeTree(XMainActions& actions)
{
    m_view = new QTreeView(this);
    m_view->setObjectName("layers.list");
    m_view->setAccessibleName("Layers, the top one first");
    m_view->setModel(m_layers);
    m_view->setMinimumHeight(3 * (fontMetrics().height() + 4));
    m_view->setHeaderHidden(true);
    m_view->header()->setStretchLastSection(false);
    m_view->header()->setSectionResizeMode(XLayerTreeModel::Name, QHeaderView::Stretch);
    m_view->header()->setSectionResizeMode(XLayerTreeModel::Lock, QHeaderView::Fixed);
    m_view->header()->resizeSection(XLayerTreeModel::Lock, fontMetrics().height() + 10);
    m_view->setIndentation(fontMetrics().height());
    m_view->setSelectionMode(QAbstractItemView::SingleSelection);
    m_view->setDragDropMode(QAbstractItemView::InternalMove);
    m_view->setDefaultDropAction(Qt::MoveAction);
    m_view->setDragDropOverwriteMode(false);
    m_view->setEditTriggers(QAbstractItemView::EditKeyPressed);
    m_view->setTextElideMode(Qt::ElideMiddle);
    m_view->setContextMenuPolicy(Qt::CustomContextMenu);
    QObject::connect(m_view->selectionModel(), &QItemSelectionModel::currentChanged, this,
                     [this](const QModelIndex& current) {
                         if (current.isValid()) m_tree.SetCurrent(m_layers->GetNode(current));
                     });
    QObject::connect(m_view, &QTreeView::clicked, this, [this](const QModelIndex& index) {
        const tagXTreeNode node = m_layers->GetNode(index);
        if (index.column() == XLayerTreeModel::Lock && node.IsVector())
            m_tree.GetVectors().SetLocked(node.GetPlace(), !m_tree.IsLocked(node));
    });
    auto* delegate = new XSwatchDelegate(m_view, [this, &actions](const QModelIndex& index) {
        if (!m_layers->GetNode(index).IsVector()) return;
        // within an event of the row nothing may run that can take it away
        QTimer::singleShot(0, this, [&actions] { actions.Get("layer.color")->trigger(); });
    });
    m_view->setItemDelegateForColumn(XLayerTreeModel::Name, delegate);
    QObject::connect(m_view, &QTreeView::doubleClicked, this, [this](const QModelIndex& index) {
        if (index.column() == XLayerTreeModel::Name && m_picked) m_picked();
    });
    QObject::connect(m_view, &QTreeView::collapsed, this, [this](const QModelIndex& index) {
        if (!m_isExpanding) m_collapsed.insert(m_tree.GetPath(m_layers->GetNode(index)));
    });
    QObject::connect(m_view, &QTreeView::expanded, this, [this](const QModelIndex& index) {
        if (!m_isExpanding) m_collapsed.remove(m_tree.GetPath(m_layers->GetNode(index)));
    });
    // Delete takes objects away: here, with another control in focus than one thinks, it does nothing
    for (const auto& [key, id] : {std::pair{Qt::ALT | Qt::Key_Up, "layer.up"},
                                  std::pair{Qt::ALT | Qt::Key_Down, "layer.down"}}) {
        auto* shortcut = new QShortcut(key, m_view);
        shortcut->setContext(Qt::WidgetShortcut); // not while a name is typed
        QObject::connect(shortcut, &QShortcut::activated, actions.Get(id), &QAction::trigger);
    }
    actions.BindLetters(m_view); // in the place of a search by first letters
    return m_view;
}

void XLayersWidget::MakeMenu(XMainActions& actions)
{
    m_menu = new QMenu(this);
    m_menu->setObjectName("layers.menu");
    for (const char* id : {"view.fitLayer", "-", "layer.visible", "layer.lock", "layer.rename",
                           "layer.color", "layer.table", "-", "layer.save", "file.close"}) {
        if (*id == '-')
            m_menu->addSeparator();
        else
            m_menu->addAction(actions.Get(id));
    }
    QObject::connect(m_view, &QWidget::customContextMenuRequested, this, [this](const QPoint& at) {
        if (m_view->indexAt(at).isValid()) m_menu->popup(m_view->viewport()->mapToGlobal(at));
    });
}

void XLayersWidget::SetNotice(std::function<void(const QString&)> notice)
{
    m_layers->SetNotice(std::move(notice));
}

void XLayersWidget::RenameCurrent()
{
    const QModelIndex index = m_layers->GetIndex(m_tree.GetCurrent());
    if (!index.isValid()) return;
    m_view->setFocus();
    m_view->edit(index);
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
    m_opacityRow = row;
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
    const auto take = [this](int percent) {
        if (m_tree.GetCurrent().IsRaster())
            m_tree.GetRasters().SetOpacity(m_tree.GetCurrent().index, percent);
    };
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

// A list that was made anew starts closed up.
void XLayersWidget::ExpandRows()
{
    m_isExpanding = true;
    for (int row = 0; row < m_layers->rowCount(); ++row) {
        const QModelIndex index = m_layers->index(row, 0);
        const int children = m_layers->rowCount(index);
        m_view->setExpanded(index, children > 0 && children <= kMostShownChildren &&
                                       !m_collapsed.contains(m_tree.GetPath(m_tree.GetNode(row))));
    }
    m_isExpanding = false;
}

void XLayersWidget::ShowTree()
{
    const tagXTreeNode& current = m_tree.GetCurrent();
    m_view->setCurrentIndex(m_layers->GetIndex(current));
    const bool isRaster = current.IsRaster();
    const int percent = isRaster ? m_tree.GetRasters().GetOpacity(current.index) : 100;
    const QSignalBlocker sliderBlocker(m_opacity);
    const QSignalBlocker boxBlocker(m_opacityBox);
    m_opacity->setValue(percent);
    m_opacityBox->setValue(percent);
    m_opacityRow->setEnabled(isRaster);
    m_opacityRow->setVisible(!current.IsVector()); // objects have opacities of their own
}

void XLayersWidget::ShowProperties()
{
    const tagXTreeNode& node = m_tree.GetCurrent();
    XPropertyTableModel::Rows rows;
    if (const tagXLayer* layer = m_tree.GetRasters().GetAt(node.index); node.IsRaster() && layer)
        rows = XfnLayerReport(*layer);
    else if (const tagXVectorFile* file = m_tree.GetVectors().GetAt(node.index);
             node.IsVector() && file) {
        const tagXVectorLayer* one = m_tree.GetVectors().GetLayerAt(node.GetPlace());
        rows = XfnVectorReport(*file, one ? one->layer : nullptr);
    }
    if (m_properties->SetRows(std::move(rows))) m_table->resizeRowsToContents();
}
