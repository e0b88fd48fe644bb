#pragma once

#include <QAbstractTableModel>
#include <QString>

#include <memory>
#include <vector>

class XAttributeTable;
class XvcLayer;
class XvcObj;

/// The objects of a vector layer as a table, read only: a row an object with its number in the layer
/// and its attributes; without attributes its kind and name.
///
/// Made for half a million objects: a cell's text is made when it is asked for, sorting compares
/// numbers (texts by their place among all different ones). Rows stand in the order of the layer
/// until another column sorts them; what has no value comes last either way.
/// The layer is lent and must be given back (SetLayer with null) before it goes. Objects that left
/// it meanwhile are listed until Refresh, and never handed out.
class XAttributeTableModel : public QAbstractTableModel
{
public:
    void SetLayer(const XvcLayer* layer); ///< null for none; search and order begin anew
    const XvcLayer* GetLayer() const { return m_layer; }
    void Refresh(); ///< lists the objects anew when they are others than before

    /// Lists only objects with the text in some column, in any case of letters; empty for all.
    void SetSearch(const QString& text);
    int GetObjectCount() const { return static_cast<int>(m_entries.size()); } ///< listed or not

    XvcObj* GetObjectAt(int row) const;      ///< null for one that is not in the layer any more
    int FindRow(const XvcObj* object) const; ///< -1 for one that is not listed
    /// Rows with tabs between the columns, the names of the columns first.
    QString GetText(const std::vector<int>& rows) const;

    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    int columnCount(const QModelIndex& parent = QModelIndex()) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    void sort(int column, Qt::SortOrder order) override;

private:
    struct tagEntry
    {
        XvcObj* object; // compared, and followed only while the layer has it
        int record;     // its row among the attributes
    };
    struct tagPlain
    {
        QString kind, name;
    };

    bool ListObjects();
    void Arrange();
    QString GetCell(int entry, int column) const;
    bool IsNumber(int column) const;
    bool IsMatch(int entry) const;
    std::vector<double> GetNumbers(int column) const;
    std::vector<double> GetRanks(int column) const;

    const XvcLayer* m_layer = nullptr;
    std::shared_ptr<const XAttributeTable> m_table;
    std::vector<tagEntry> m_entries; // in the order of the layer
    std::vector<tagPlain> m_plain;   // of each of them, without attributes
    std::vector<int> m_shown;        // entries, in the order of the rows
    QString m_search;
    int m_sortColumn = 0;
    Qt::SortOrder m_sortOrder = Qt::AscendingOrder;
};
