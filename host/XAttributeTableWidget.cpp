#include "host/XAttributeTableWidget.h"

#include "foundation/vector/XvcLayer.h"
#include "host/XAttributeTableModel.h"
#include "host/XHostView.h"
#include "host/XLayerTree.h"
#include "host/XMainActions.h"
#include "host/XObjectPicker.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QTableView>
#include <QVBoxLayout>

#include <algorithm>
#include <vector>

namespace {

constexpr int kTypingMs = 150;
constexpr int kLookedAtRows = 100; // for the width of a column
constexpr int kWidestLetters = 40;

} // namespace

XAttributeTableWidget::XAttributeTableWidget(XLayerTree& tree, XObjectPicker& picker,
                                             XHostView& view, XMainActions& actions,
                                             QWidget* parent)
    : QWidget(parent),
      m_tree(tree),
      m_picker(picker),
      m_view(view),
      m_rows(new XAttributeTableModel),
      m_title(new QLabel(this)),
      m_count(new QLabel(this)),
      m_search(new QLineEdit(this)),
      m_table(new QTableView(this))
{
    m_rows->setParent(this);
    setObjectName("table");
    setAccessibleName("Attribute Table");
    m_title->setObjectName("table.title");
    m_title->setTextFormat(Qt::PlainText);
    m_count->setObjectName("table.count");
    m_search->setObjectName("table.search");
    m_search->setAccessibleName("Search in all columns");
    m_search->setPlaceholderText("Search in all columns");
    m_search->setClearButtonEnabled(true);
    m_search->setMaximumWidth(30 * fontMetrics().averageCharWidth());
    MakeTable(actions);
    auto* line = new QHBoxLayout;
    line->addWidget(m_title, 1);
    line->addWidget(m_count);
    line->addWidget(m_search, 1);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(4, 4, 4, 4);
    column->addLayout(line);
    column->addWidget(m_table, 1);
    m_typing.setSingleShot(true);
    m_typing.setInterval(kTypingMs);
    QObject::connect(&m_typing, &QTimer::timeout, this, [this] { Search(); });
    QObject::connect(m_search, &QLineEdit::textChanged, this, [this] { m_typing.start(); });
    m_tree.AddObserver([this](LayerChange change) {
        if (change == LayerChange::Closing)
            GiveBack();
        else
            Follow();
    });
    m_picker.AddObserver([this] { FollowPicker(); });
}

XAttributeTableWidget::~XAttributeTableWidget() = default;

void XAttributeTableWidget::MakeTable(XMainActions& actions)
{
    m_table->setObjectName("table.rows");
    m_table->setMinimumHeight(3 * (fontMetrics().height() + 4));
    m_table->setAccessibleName("Objects of the layer and their attributes");
    m_table->setModel(m_rows);
    m_table->verticalHeader()->hide();
    m_table->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    m_table->verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 4);
    QHeaderView& header = *m_table->horizontalHeader();
    header.setResizeContentsPrecision(kLookedAtRows);
    header.setMaximumSectionSize(kWidestLetters * fontMetrics().averageCharWidth());
    header.setHighlightSections(false);
    header.setSortIndicator(0, Qt::AscendingOrder);
    m_table->setSortingEnabled(true);
    m_table->setAlternatingRowColors(true);
    m_table->setWordWrap(false);
    m_table->setTabKeyNavigation(false); // Tab leaves the table: no trap for the focus
    m_table->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_table->setSelectionMode(QAbstractItemView::ExtendedSelection);
    m_table->setContextMenuPolicy(Qt::ActionsContextMenu);
    auto* copy = new QAction("Copy Selected &Rows", m_table);
    copy->setObjectName("table.copyRows");
    QObject::connect(copy, &QAction::triggered, this, [this] { Copy(); });
    m_table->addAction(copy);
    QAction* fit = actions.Get("view.fitObject");
    m_table->addAction(fit);
    m_table->installEventFilter(this);
    QObject::connect(m_table->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
                     [this](const QModelIndex& current) { ChooseRow(current.row()); });
    QObject::connect(m_table, &QTableView::doubleClicked, fit, &QAction::trigger);
    QObject::connect(m_rows, &QAbstractItemModel::modelReset, this, [this] { FollowPicker(); });
}

// The current layer; of a file that has several, that of the selected object, else the front one.
const XvcLayer* XAttributeTableWidget::FindLayer(QString& title) const
{
    const XVectorStack& vectors = m_tree.GetVectors();
    tagXVectorPlace place = m_tree.GetCurrent().GetPlace();
    const tagXVectorPlace picked = m_picker.GetPlace();
    if (place.file < 0) place.file = std::max(picked.file, 0);
    if (place.layer < 0) place.layer = picked.file == place.file ? picked.layer : 0;
    const tagXVectorLayer* layer = vectors.GetLayerAt(place);
    if (!layer) return nullptr;
    title = vectors.GetName({place.file, -1});
    if (vectors.GetAt(place.file)->layers.size() > 1) title += ": " + vectors.GetName(place);
    return layer->layer;
}

void XAttributeTableWidget::Follow()
{
    if (!isVisible()) return;
    QString title = "No vector layer is open";
    const XvcLayer* before = m_rows->GetLayer();
    const XvcLayer* layer = FindLayer(title);
    m_title->setText(title);
    m_isChoosing = true; // what the table chooses by itself is no choice of the user
    m_rows->SetLayer(layer);
    m_isChoosing = false;
    if (layer != before) {
        const QSignalBlocker blocker(m_search);
        m_search->clear();
        m_table->horizontalHeader()->setSortIndicator(0, Qt::AscendingOrder);
        m_table->resizeColumnsToContents();
    }
    FollowPicker();
    ShowCount();
}

void XAttributeTableWidget::GiveBack()
{
    m_rows->SetLayer(nullptr);
    ShowCount();
}

void XAttributeTableWidget::ShowCount()
{
    const int all = m_rows->GetObjectCount();
    const int shown = m_rows->rowCount();
    QString text = all == 1 ? QString("1 object") : QString("%1 objects").arg(all);
    if (shown != all) text = QString("%1 of %2").arg(shown).arg(text);
    m_count->setText(m_rows->GetLayer() ? text : QString());
}

void XAttributeTableWidget::Search()
{
    m_isChoosing = true;
    m_rows->SetSearch(m_search->text());
    m_isChoosing = false;
    FollowPicker();
    ShowCount();
}

// The row of the selected object is the current one, and seen.
void XAttributeTableWidget::FollowPicker()
{
    if (m_isChoosing || !isVisible()) return;
    const XvcObj* object = m_picker.GetObject();
    if (object && m_rows->FindRow(object) < 0 && object->GetParentLayer() != m_rows->GetLayer())
        Follow();
    m_isChoosing = true;
    const int row = object ? m_rows->FindRow(object) : -1;
    if (row < 0)
        m_table->clearSelection();
    else if (row != m_table->currentIndex().row() || !m_table->selectionModel()->hasSelection())
        m_table->selectRow(row);
    m_isChoosing = false;
}

void XAttributeTableWidget::ChooseRow(int row)
{
    if (m_isChoosing || row < 0) return;
    XvcObj* object = m_rows->GetObjectAt(row);
    if (!object) return;
    m_isChoosing = true;
    const XVectorStack& vectors = m_tree.GetVectors();
    const tagXVectorPlace place = vectors.Find(*object);
    // what is hidden or locked is not selected, but shown where it lies
    const bool canSelect = vectors.IsVisible(place) && vectors.IsVisible({place.file, -1}) &&
                           !vectors.IsLocked(place) && !object->IsHidden();
    m_picker.Select(canSelect ? object : nullptr);
    BringIntoView(*object);
    m_isChoosing = false;
}

void XAttributeTableWidget::BringIntoView(const XvcObj& object)
{
    const tagXVectorRange& range = object.GetRange();
    if (range.IsEmpty()) return;
    double minX = 0, maxX = 0, minY = 0, maxY = 0;
    m_view.GetBound(minX, maxX, minY, maxY);
    if (range.minX >= minX && range.maxX <= maxX && range.minY >= minY && range.maxY <= maxY)
        return;
    if (range.maxX - range.minX > maxX - minX || range.maxY - range.minY > maxY - minY)
        return m_view.ShowObject(range.minX, range.minY, range.maxX, range.maxY);
    m_view.SetWorldToCenter((range.minX + range.maxX) / 2, (range.minY + range.maxY) / 2);
    m_view.InvalidateControl(1);
}

void XAttributeTableWidget::Copy()
{
    std::vector<int> rows;
    for (const QModelIndex& index : m_table->selectionModel()->selectedRows())
        rows.push_back(index.row());
    std::sort(rows.begin(), rows.end());
    if (!rows.empty()) QApplication::clipboard()->setText(m_rows->GetText(rows));
}

QSize XAttributeTableWidget::sizeHint() const
{
    constexpr int kRows =
        7; // with the search, the header and some objects: the image needs the rest
    return QSize(QWidget::sizeHint().width(), kRows * (fontMetrics().height() + 8));
}

void XAttributeTableWidget::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);
    Follow();
}

void XAttributeTableWidget::hideEvent(QHideEvent* event)
{
    QWidget::hideEvent(event);
    GiveBack();
}

bool XAttributeTableWidget::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == m_table && event->type() == QEvent::KeyPress &&
        static_cast<QKeyEvent*>(event)->matches(QKeySequence::Copy)) {
        Copy(); // the table's own would copy one cell
        return true;
    }
    return QWidget::eventFilter(watched, event);
}
