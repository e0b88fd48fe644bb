#include "host/XAttributesWidget.h"

#include "foundation/raster/XDMCompManager.h"
#include "host/XMainActions.h"
#include "host/XObjectPicker.h"
#include "host/XObjectReport.h"
#include "host/XPropertyTableModel.h"
#include "host/XSelectionReport.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QTableView>
#include <QToolButton>
#include <QVBoxLayout>

#include <algorithm>

XAttributesWidget::XAttributesWidget(XObjectPicker& picker, XVectorStack& vectors,
                                     XDMCompManager& manager, XMainActions& actions,
                                     QWidget* parent)
    : QWidget(parent),
      m_picker(picker),
      m_vectors(vectors),
      m_manager(manager),
      m_rows(new XPropertyTableModel),
      m_none(new QLabel("Click on an object of a vector layer.", this)),
      m_table(new QTableView(this))
{
    m_rows->setParent(this);
    setObjectName("attributes");
    setAccessibleName("Attributes");
    m_none->setObjectName("attributes.none");
    m_none->setWordWrap(true);
    m_table->setObjectName("attributes.table");
    m_table->setAccessibleName("Attributes of the selected object");
    m_table->setModel(m_rows);
    m_table->setMinimumHeight(60);
    m_table->horizontalHeader()->hide();
    m_table->horizontalHeader()->setSectionResizeMode(XPropertyTableModel::Name,
                                                      QHeaderView::ResizeToContents);
    m_table->horizontalHeader()->setStretchLastSection(true);
    m_table->verticalHeader()->hide();
    m_table->verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 4);
    // nothing is cut: a long value takes more lines
    m_table->setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    QObject::connect(m_table->horizontalHeader(), &QHeaderView::sectionResized, m_table,
                     [this] { m_table->resizeRowsToContents(); });
    m_table->setShowGrid(false);
    m_table->setAlternatingRowColors(true);
    m_table->setWordWrap(true);
    m_table->setTabKeyNavigation(false); // Tab leaves the table: no trap for the focus
    m_table->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_table->setContextMenuPolicy(Qt::ActionsContextMenu);
    auto* copyChosen = new QAction("Copy Selected &Rows", m_table);
    copyChosen->setObjectName("attributes.copyRows");
    QObject::connect(copyChosen, &QAction::triggered, this, [this] { CopyChosen(); });
    m_table->addAction(copyChosen);
    auto* buttons = new QHBoxLayout;
    for (const char* id : {"view.fitObject", "edit.copyAttributes"}) {
        QAction* action = actions.Get(id);
        m_table->addAction(action);
        auto* button = new QToolButton(this);
        button->setDefaultAction(action);
        button->setObjectName(QString("attributes.") + QString(id).section('.', 1));
        button->setAccessibleName(action->text().remove('&'));
        button->setFocusPolicy(Qt::StrongFocus);
        buttons->addWidget(button);
    }
    buttons->addStretch();
    auto* column = new QVBoxLayout(this);
    column->addWidget(m_none);
    column->addWidget(m_table, 1);
    column->addLayout(buttons);
    m_table->installEventFilter(this);
    m_picker.AddObserver([this] { ShowObject(); });
    ShowObject();
}

XAttributesWidget::~XAttributesWidget() = default;

void XAttributesWidget::ShowObject()
{
    XPropertyTableModel::Rows rows;
    const tagXVectorPlace place = m_picker.GetPlace();
    if (const tagXVectorLayer* layer = m_vectors.GetLayerAt(place))
        rows = XfnObjectReport(*m_picker.GetObject(), *m_vectors.GetAt(place.file), *layer,
                               *m_manager.GetSR());
    else if (m_picker.GetSelection().GetCount() > 1)
        rows = XfnSelectionReport(m_picker.GetSelection());
    m_isLockedShown = false;
    ShowRows(std::move(rows));
}

void XAttributesWidget::ShowLocked(const XvcObj* object, tagXVectorPlace place)
{
    const tagXVectorLayer* layer = object ? m_vectors.GetLayerAt(place) : nullptr;
    if (!layer) {
        if (m_isLockedShown) ShowObject();
        return;
    }
    m_isLockedShown = true;
    auto rows = XfnObjectReport(*object, *m_vectors.GetAt(place.file), *layer, *m_manager.GetSR());
    rows.insert(rows.begin(), {"Locked", "its layer is; Layer > Lock unlocks it"});
    ShowRows(std::move(rows));
}

void XAttributesWidget::ShowRows(std::vector<std::pair<QString, QString>> rows)
{
    m_none->setVisible(rows.empty());
    if (m_rows->SetRows(std::move(rows))) m_table->resizeRowsToContents();
}

void XAttributesWidget::CopyChosen()
{
    std::vector<std::pair<QString, QString>> chosen;
    QModelIndexList indexes = m_table->selectionModel()->selectedRows();
    std::sort(indexes.begin(), indexes.end());
    for (const QModelIndex& index : indexes)
        chosen.emplace_back(index.data().toString(),
                            index.siblingAtColumn(XPropertyTableModel::Value).data().toString());
    if (!chosen.empty()) QApplication::clipboard()->setText(XfnReportText(chosen));
}

bool XAttributesWidget::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == m_table && event->type() == QEvent::KeyPress &&
        static_cast<QKeyEvent*>(event)->matches(QKeySequence::Copy)) {
        CopyChosen(); // the table's own would copy one cell
        return true;
    }
    return QWidget::eventFilter(watched, event);
}
