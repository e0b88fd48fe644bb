#include "host/XLayerListModel.h"

#include "host/XLayerStack.h"

#include <QMimeData>

namespace {

constexpr const char* kRowType = "application/x-tql-layer-row";

} // namespace

XLayerListModel::XLayerListModel(XLayerStack& stack) : m_stack(stack)
{
    m_stack.AddObserver([this](LayerChange change) {
        if (change == LayerChange::List) {
            beginResetModel();
            endResetModel();
        } else if (change == LayerChange::Appearance && rowCount() > 0) {
            Q_EMIT dataChanged(index(0), index(rowCount() - 1));
        }
    });
}

int XLayerListModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : m_stack.GetCount();
}

QVariant XLayerListModel::data(const QModelIndex& index, int role) const
{
    const tagXLayer* layer = index.isValid() ? m_stack.GetAt(index.row()) : nullptr;
    if (!layer) return QVariant();
    switch (role) {
    case Qt::DisplayRole:
    case Qt::AccessibleTextRole:
        return layer->name;
    case Qt::ToolTipRole:
        return layer->path;
    case Qt::CheckStateRole:
        return m_stack.IsVisible(index.row()) ? Qt::Checked : Qt::Unchecked;
    default:
        return QVariant();
    }
}

bool XLayerListModel::setData(const QModelIndex& index, const QVariant& value, int role)
{
    if (role != Qt::CheckStateRole || !index.isValid() || !m_stack.GetAt(index.row())) return false;
    m_stack.SetVisible(index.row(), value.toInt() == Qt::Checked);
    return true;
}

Qt::ItemFlags XLayerListModel::flags(const QModelIndex& index) const
{
    if (!index.isValid()) return Qt::ItemIsDropEnabled; // drops go between the rows
    return Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsUserCheckable |
           Qt::ItemIsDragEnabled | Qt::ItemNeverHasChildren;
}

QStringList XLayerListModel::mimeTypes() const
{
    return {kRowType};
}

QMimeData* XLayerListModel::mimeData(const QModelIndexList& indexes) const
{
    if (indexes.isEmpty()) return nullptr;
    auto* data = new QMimeData;
    data->setData(kRowType, QByteArray::number(indexes.first().row()));
    return data;
}

bool XLayerListModel::dropMimeData(const QMimeData* data, Qt::DropAction action, int row, int,
                                   const QModelIndex& parent)
{
    if (action != Qt::MoveAction || !data || !data->hasFormat(kRowType)) return false;
    bool isNumber = false;
    const int from = data->data(kRowType).toInt(&isNumber);
    if (!isNumber || from < 0 || from >= m_stack.GetCount()) return false;
    int to = row >= 0 ? row : parent.isValid() ? parent.row() : m_stack.GetCount();
    if (to > from) --to; // the row's own place closes before it is put in again
    m_stack.Move(from, to);
    return true;
}
