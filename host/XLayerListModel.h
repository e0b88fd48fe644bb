#pragma once

#include <QAbstractListModel>

class XLayerStack;

/// The layers as a list for a view, the top one first: name, visibility as the check mark, and moves
/// by drag and drop. Shows the stack and changes nothing but through it.
class XLayerListModel : public QAbstractListModel
{
public:
    explicit XLayerListModel(XLayerStack& stack); ///< the stack outlives the model

    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role) override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;

    Qt::DropActions supportedDropActions() const override { return Qt::MoveAction; }
    QStringList mimeTypes() const override;
    QMimeData* mimeData(const QModelIndexList& indexes) const override;
    bool dropMimeData(const QMimeData* data, Qt::DropAction action, int row, int column,
                      const QModelIndex& parent) override;

private:
    XLayerStack& m_stack;
};
