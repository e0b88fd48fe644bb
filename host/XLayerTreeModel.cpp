#include "host/XLayerTreeModel.h"

#include "foundation/surface/XQtColor.h"
#include "host/XLayerTree.h"
#include "host/XSymbolIcon.h"

#include <QGuiApplication>
#include <QMimeData>
#include <QPalette>

#include <algorithm>

namespace {

constexpr const char* kRowType = "application/x-tql-layer-row"; // "2", or "2/1" for a child

} // namespace

XLayerTreeModel::XLayerTreeModel(XLayerTree& tree) : m_tree(tree)
{
    m_tree.AddObserver([this](LayerChange change) {
        if (change == LayerChange::List) {
            beginResetModel();
            endResetModel();
        } else if (change == LayerChange::Appearance && rowCount() > 0) {
            Q_EMIT dataChanged(index(0, 0), index(rowCount() - 1, Lock));
            for (int row = 0; row < rowCount(); ++row) {
                const QModelIndex file = index(row, 0);
                if (const int children = rowCount(file))
                    Q_EMIT dataChanged(index(0, 0, file), index(children - 1, Lock, file));
            }
        }
    });
}

// The internal number of an index: 0 for a file, else one more than the row of its file.
QModelIndex XLayerTreeModel::index(int row, int column, const QModelIndex& parent) const
{
    if (!hasIndex(row, column, parent)) return QModelIndex();
    return createIndex(row, column,
                       parent.isValid() ? static_cast<quintptr>(parent.row()) + 1 : quintptr(0));
}

QModelIndex XLayerTreeModel::parent(const QModelIndex& index) const
{
    if (!index.isValid() || index.internalId() == 0) return QModelIndex();
    return createIndex(static_cast<int>(index.internalId()) - 1, 0, quintptr(0));
}

int XLayerTreeModel::rowCount(const QModelIndex& parent) const
{
    if (!parent.isValid()) return m_tree.GetRowCount();
    return parent.internalId() == 0 && parent.column() == 0 ? m_tree.GetChildCount(parent.row())
                                                            : 0;
}

tagXTreeNode XLayerTreeModel::GetNode(const QModelIndex& index) const
{
    if (!index.isValid()) return {};
    if (index.internalId() == 0) return m_tree.GetNode(index.row());
    return m_tree.GetNode(static_cast<int>(index.internalId()) - 1, index.row());
}

QModelIndex XLayerTreeModel::GetIndex(const tagXTreeNode& node) const
{
    int row = 0;
    int child = 0;
    if (!m_tree.FindRow(node, row, child)) return QModelIndex();
    const QModelIndex file = index(row, Name);
    return child < 0 ? file : index(child, Name, file);
}

QVariant XLayerTreeModel::GetLockData(const tagXTreeNode& node, int role) const
{
    if (!node.IsVector()) return QVariant();
    const bool isLocked = m_tree.IsLocked(node);
    switch (role) {
    case Qt::DecorationRole:
        return XfnSymbolIcon(isLocked ? Symbol::Lock : Symbol::Unlock);
    case Qt::ToolTipRole:
    case Qt::AccessibleTextRole:
        return isLocked ? "Locked: neither picked nor changed; click to unlock"
                        : "Not locked; click to lock";
    default:
        return QVariant();
    }
}

QVariant XLayerTreeModel::data(const QModelIndex& index, int role) const
{
    const tagXTreeNode node = GetNode(index);
    if (node.kind == tagXTreeNode::Kind::None) return QVariant();
    if (index.column() == Lock) return GetLockData(node, role);
    switch (role) {
    case Qt::DisplayRole:
    case Qt::AccessibleTextRole:
        return m_tree.IsEdited(node) ? m_tree.GetName(node) + " *" : m_tree.GetName(node);
    case Qt::EditRole:
        return m_tree.GetName(node);
    case Qt::ToolTipRole:
        return m_tree.GetTip(node);
    case Qt::ForegroundRole: // a layer of a hidden file is not seen, whatever its own mark is
        return node.layer >= 0 && !m_tree.IsVisible({node.kind, node.index, -1})
                   ? QGuiApplication::palette().brush(QPalette::Disabled, QPalette::Text)
                   : QVariant();
    case Qt::CheckStateRole:
        return m_tree.IsVisible(node) ? Qt::Checked : Qt::Unchecked;
    case Qt::DecorationRole: {
        if (!node.IsVector()) return XfnSymbolIcon(Symbol::Image);
        const tagXColor color = m_tree.GetVectors().GetColor(node.GetPlace());
        return color ? XfnSwatchIcon(XfnToQColor(color)) : XfnSymbolIcon(Symbol::Shapes);
    }
    default:
        return QVariant();
    }
}

bool XLayerTreeModel::setData(const QModelIndex& index, const QVariant& value, int role)
{
    const tagXTreeNode node = GetNode(index);
    if (node.kind == tagXTreeNode::Kind::None || index.column() != Name) return false;
    if (role == Qt::EditRole) return m_tree.Rename(node, value.toString());
    if (role != Qt::CheckStateRole) return false;
    m_tree.SetVisible(node, value.toInt() == Qt::Checked);
    return true;
}

Qt::ItemFlags XLayerTreeModel::flags(const QModelIndex& index) const
{
    if (!index.isValid()) return Qt::ItemIsDropEnabled; // drops go between the rows
    const tagXTreeNode node = GetNode(index);
    Qt::ItemFlags flags = Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsDragEnabled;
    if (index.internalId() == 0 && rowCount(index.siblingAtColumn(0)) > 0)
        flags |= Qt::ItemIsDropEnabled; // and between its layers
    else
        flags |= Qt::ItemNeverHasChildren;
    if (index.column() != Name) return flags;
    flags |= Qt::ItemIsUserCheckable;
    if (!m_tree.IsLocked(node)) flags |= Qt::ItemIsEditable;
    return flags;
}

QStringList XLayerTreeModel::mimeTypes() const
{
    return {kRowType};
}

QMimeData* XLayerTreeModel::mimeData(const QModelIndexList& indexes) const
{
    if (indexes.isEmpty()) return nullptr;
    const QModelIndex& first = indexes.first();
    QByteArray text = QByteArray::number(first.row());
    if (first.internalId() != 0)
        text = QByteArray::number(static_cast<qulonglong>(first.internalId()) - 1) + "/" + text;
    auto* data = new QMimeData;
    data->setData(kRowType, text);
    return data;
}

// Where a dragged row would go: a place that there may not be among the rows of its kind.
bool XLayerTreeModel::FindDrop(const QMimeData* data, Qt::DropAction action, int row,
                               const QModelIndex& parent, tagXTreeNode& node, int& to) const
{
    if (action != Qt::MoveAction || !data || !data->hasFormat(kRowType)) return false;
    const QList<QByteArray> parts = data->data(kRowType).split('/');
    bool isRow = false;
    bool isChild = true;
    const int from = parts.first().toInt(&isRow);
    const int child = parts.size() > 1 ? parts[1].toInt(&isChild) : -1;
    node = isRow && isChild && parts.size() <= 2 ? m_tree.GetNode(from, child) : tagXTreeNode();
    if (node.kind == tagXTreeNode::Kind::None) return false;
    const bool isInFile = parent.isValid() && parent.internalId() == 0;
    if (child >= 0) {
        const QModelIndex file = isInFile ? parent : parent.parent();
        if (!file.isValid() || file.row() != from) return false;
        to = !isInFile ? parent.row() : row >= 0 ? row : m_tree.GetChildCount(from);
        if (to > child) --to; // its own place closes before it is put in again
    } else {
        const QModelIndex file = parent.isValid() && !isInFile ? parent.parent() : parent;
        to = file.isValid() ? file.row() : row >= 0 ? row : m_tree.GetRowCount();
        if (to > from) --to;
        to -= from - m_tree.GetSiblingIndex(node);
    }
    return true;
}

bool XLayerTreeModel::canDropMimeData(const QMimeData* data, Qt::DropAction action, int row, int,
                                      const QModelIndex& parent) const
{
    tagXTreeNode node;
    int to = 0;
    return FindDrop(data, action, row, parent, node, to);
}

bool XLayerTreeModel::dropMimeData(const QMimeData* data, Qt::DropAction action, int row, int,
                                   const QModelIndex& parent)
{
    tagXTreeNode node;
    int to = 0;
    if (!FindDrop(data, action, row, parent, node, to)) return false;
    const int last = m_tree.GetSiblingCount(node) - 1;
    const bool isBeyond = to < 0 || to > last;
    m_tree.Move(node, std::clamp(to, 0, last)); // rows keep to their kind
    if (isBeyond && m_notice) m_notice("Vector layers always lie above the images");
    return true;
}
