#pragma once

#include <QAbstractTableModel>

#include <utility>
#include <vector>

/// Names and values as a table of two columns, read only. A null value makes its name a heading.
class XPropertyTableModel : public QAbstractTableModel
{
public:
    enum Column { Name, Value, ColumnCount };
    using Rows = std::vector<std::pair<QString, QString>>;

    bool SetRows(Rows rows); ///< false when they are the same as before

    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    int columnCount(const QModelIndex& parent = QModelIndex()) const override;
    QVariant data(const QModelIndex& index, int role) const override;

private:
    Rows m_rows;
};
