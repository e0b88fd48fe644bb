#include "host/XKeyMapDialog.h"

#include "host/XActionTable.h"

#include <QCoreApplication>
#include <QDialogButtonBox>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLineEdit>
#include <QSortFilterProxyModel>
#include <QStandardItemModel>
#include <QTreeView>
#include <QVBoxLayout>

namespace {

constexpr QSize kFirstSize(620, 560);

QStandardItemModel* MakeModel(QObject* parent)
{
    auto* model = new QStandardItemModel(0, 2, parent);
    model->setHorizontalHeaderLabels({"Command", "Keys"});
    for (const auto& [what, keys] : XfnKeyMap()) {
        QList<QStandardItem*> row;
        for (const QString& text : {what, keys}) {
            row.append(new QStandardItem(text));
            row.last()->setEditable(false);
        }
        model->appendRow(row);
    }
    return model;
}

} // namespace

XKeyMapDialog::XKeyMapDialog(QWidget* parent) : QDialog(parent)
{
    setObjectName("keymap");
    setWindowTitle("Key Map");
    auto* rows = new QSortFilterProxyModel(this);
    rows->setSourceModel(MakeModel(this));
    rows->setFilterCaseSensitivity(Qt::CaseInsensitive);
    rows->setFilterKeyColumn(-1);
    auto* words = new QLineEdit(this);
    words->setObjectName("keymap.find");
    words->setAccessibleName("Find a command or key");
    words->setPlaceholderText("Find a command or key");
    words->setClearButtonEnabled(true);
    words->installEventFilter(this);
    QObject::connect(words, &QLineEdit::textChanged, rows,
                     [rows](const QString& text) { rows->setFilterFixedString(text); });
    auto* list = new QTreeView(this);
    list->setObjectName("keymap.list");
    list->setAccessibleName("Commands and their keys");
    list->setModel(rows);
    list->setRootIsDecorated(false);
    list->setAlternatingRowColors(true);
    list->setUniformRowHeights(true);
    list->header()->setSectionResizeMode(0, QHeaderView::ResizeToContents);
    list->header()->setStretchLastSection(true);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
    QObject::connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    auto* column = new QVBoxLayout(this);
    column->addWidget(words);
    column->addWidget(list, 1);
    column->addWidget(buttons);
    resize(kFirstSize);
}

// The list scrolls while words are typed.
bool XKeyMapDialog::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::KeyPress) {
        const int key = static_cast<const QKeyEvent*>(event)->key();
        if (key == Qt::Key_Up || key == Qt::Key_Down || key == Qt::Key_PageUp ||
            key == Qt::Key_PageDown) {
            QCoreApplication::sendEvent(findChild<QTreeView*>("keymap.list"), event);
            return true;
        }
    }
    return QDialog::eventFilter(watched, event);
}
