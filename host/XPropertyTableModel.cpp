#include "host/XPropertyTableModel.h"

#include <QFont>

bool XPropertyTableModel::SetRows(Rows rows)
{
    if (rows == m_rows) return false;
    beginResetModel();
    m_rows = std::move(rows);
    endResetModel();
    return true;
}

int XPropertyTableModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_rows.size());
}

int XPropertyTableModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

QVariant XPropertyTableModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid() || index.row() >= rowCount()) return QVariant();
    const auto& [name, value] = m_rows[static_cast<std::size_t>(index.row())];
    if (role == Qt::DisplayRole) return index.column() == Name ? name : value;
    if (role == Qt::FontRole && value.isNull()) {
        QFont font;
        font.setBold(true);
        return font;
    }
    if (role == Qt::ToolTipRole || role == Qt::AccessibleTextRole) return name + ": " + value;
    return QVariant();
}
