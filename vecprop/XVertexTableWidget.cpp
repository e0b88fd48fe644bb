#include "vecprop/XVertexTableWidget.h"

#include "foundation/platform/XQtText.h"
#include "vecprop/XErrorLabelWidget.h"
#include "vecprop/XVertexTableModel.h"

#include <QApplication>
#include <QClipboard>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QTableView>

namespace {

QPushButton* MakeButton(const char* name, const char* text, QWidget* parent)
{
    auto* button = new QPushButton(text, parent);
    button->setObjectName(name);
    button->setAutoDefault(false);
    return button;
}

} // namespace

XVertexTableWidget::XVertexTableWidget(XVertexTableModel& model, QWidget* parent)
    : QWidget(parent),
      m_model(model),
      m_table(new QTableView(this)),
      m_error(XfnMakeErrorLabel("vertices.error", this))
{
    m_table->setObjectName("vertices");
    m_table->setAccessibleName("Vertices");
    m_table->setModel(&model);
    m_table->setTabKeyNavigation(false); // Tab leaves the table
    m_table->setSelectionMode(QAbstractItemView::ContiguousSelection);
    m_table->horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
    m_table->verticalHeader()->setDefaultSectionSize(m_table->fontMetrics().height() + 6);
    m_table->installEventFilter(this);
    auto* add = MakeButton("vertices.add", "&Add", this);
    auto* remove = MakeButton("vertices.remove", "&Remove", this);
    auto* copy = MakeButton("vertices.copy", "Co&py", this);
    auto* paste = MakeButton("vertices.paste", "Pas&te", this);
    m_remove = remove;
    m_copy = copy;
    add->setToolTip("Adds a row behind the current one (Insert)");
    remove->setToolTip("Removes the selected rows (Delete)");
    copy->setToolTip("Copies the selected rows as text (Ctrl+C)");
    paste->setToolTip("Pastes lines of two or three numbers behind the current row (Ctrl+V)");
    auto* buttons = new QHBoxLayout;
    for (QPushButton* button : {add, remove, copy, paste})
        buttons->addWidget(button);
    buttons->addStretch();
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_table, 1);
    layout->addWidget(m_error);
    layout->addLayout(buttons);
    setFocusProxy(m_table);
    QObject::connect(add, &QPushButton::clicked, this, [this] { Add(); });
    QObject::connect(remove, &QPushButton::clicked, this, [this] { Remove(); });
    QObject::connect(copy, &QPushButton::clicked, this, [this] { Copy(); });
    QObject::connect(paste, &QPushButton::clicked, this, [this] { Paste(); });
    if (model.rowCount() > 0) m_table->setCurrentIndex(model.index(0, 0));
    ShowModel();
}

void XVertexTableWidget::ShowModel()
{
    const QString error = XfnToQString(m_model.GetError());
    XfnShowError(*m_error, error.isEmpty() ? m_refusal : error);
    m_remove->setEnabled(m_model.rowCount() > 0);
    m_copy->setEnabled(m_model.rowCount() > 0);
}

bool XVertexTableWidget::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() != QEvent::KeyPress) return QWidget::eventFilter(watched, event);
    const auto& key = static_cast<const QKeyEvent&>(*event);
    const bool isKnown = key.matches(QKeySequence::Copy) || key.matches(QKeySequence::Paste) ||
                         key.key() == Qt::Key_Insert || key.key() == Qt::Key_Delete;
    if (key.matches(QKeySequence::Copy))
        Copy();
    else if (key.matches(QKeySequence::Paste))
        Paste();
    else if (key.key() == Qt::Key_Insert)
        Add();
    else if (key.key() == Qt::Key_Delete)
        Remove();
    return isKnown || QWidget::eventFilter(watched, event);
}

int XVertexTableWidget::GetRow() const
{
    return m_table->currentIndex().row();
}

void XVertexTableWidget::GoTo(int row)
{
    m_table->setFocus();
    m_table->setCurrentIndex(m_model.index(row, 0));
}

void XVertexTableWidget::Add()
{
    m_refusal.clear();
    const int row = GetRow();
    GoTo(m_model.InsertBehind(row < 0 ? m_model.rowCount() - 1 : row));
}

void XVertexTableWidget::Remove()
{
    m_refusal.clear();
    const QItemSelection selection = m_table->selectionModel()->selection();
    if (selection.isEmpty()) return;
    const int first = selection.front().top();
    m_model.Remove(first, selection.front().bottom());
    if (m_model.rowCount() > 0) GoTo(std::min(first, m_model.rowCount() - 1));
}

void XVertexTableWidget::Copy()
{
    const QItemSelection selection = m_table->selectionModel()->selection();
    if (selection.isEmpty()) return;
    QApplication::clipboard()->setText(
        m_model.Copy(selection.front().top(), selection.front().bottom()));
}

void XVertexTableWidget::Paste()
{
    m_refusal.clear();
    XString error;
    const int row = GetRow();
    const int count = m_model.Paste(QApplication::clipboard()->text(), row, error);
    m_refusal = XfnToQString(error);
    if (count > 0) GoTo(row + count);
    ShowModel();
}
