#pragma once

#include <QAbstractItemModel>

#include <functional>
#include <utility>

class XLayerTree;
struct tagXTreeNode;

/// The layer tree for a view: names that can be edited, visibility as the check mark, the colour of
/// vector layers as the icon, their lock in a column of its own, and moves by drag and drop among
/// rows of a kind. Shows the tree and changes nothing but through it.
class XLayerTreeModel : public QAbstractItemModel
{
public:
    enum Column { Name, Lock, ColumnCount };

    explicit XLayerTreeModel(XLayerTree& tree); ///< the tree outlives the model

    /// Receives what is worth a line in the status bar: why a row lies elsewhere than it was put.
    void SetNotice(std::function<void(const QString&)> notice) { m_notice = std::move(notice); }

    tagXTreeNode GetNode(const QModelIndex& index) const;
    QModelIndex GetIndex(const tagXTreeNode& node) const;

    QModelIndex index(int row, int column,
                      const QModelIndex& parent = QModelIndex()) const override;
    QModelIndex parent(const QModelIndex& index) const override;
    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    int columnCount(const QModelIndex&) const override { return ColumnCount; }
    QVariant data(const QModelIndex& index, int role) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role) override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;

    Qt::DropActions supportedDropActions() const override { return Qt::MoveAction; }
    QStringList mimeTypes() const override;
    QMimeData* mimeData(const QModelIndexList& indexes) const override;
    bool canDropMimeData(const QMimeData* data, Qt::DropAction action, int row, int column,
                         const QModelIndex& parent) const override;
    bool dropMimeData(const QMimeData* data, Qt::DropAction action, int row, int column,
                      const QModelIndex& parent) override;

private:
    QVariant GetLockData(const tagXTreeNode& node, int role) const;
    bool FindDrop(const QMimeData* data, Qt::DropAction action, int row, const QModelIndex& parent,
                  tagXTreeNode& node, int& to) const;

    XLayerTree& m_tree;
    std::function<void(const QString&)> m_notice;
};
