#pragma once

#include "foundation/base/XApi.h"
#include "foundation/base/XString.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

class XArchive;
class XvcObj;

/// The attributes of the objects of a layer: a row an object, kept by columns in little memory.
///
/// A panel that shows what was picked:
///
///     int row = -1;
///     if (const XAttributeTable* table = XfnGetAttributes(object, row))
///         for (int c = 0; c < table->GetNumOfColumns(); ++c)
///             Show(table->GetColumnName(c), table->GetText(row, c));
///
/// Rows are numbered from 0 in the table; in the process each has a number of its own besides, which
/// its object keeps (XvcObj::GetRecord). So copies of an object find the same row while they lie in
/// the layer, and none in a layer with another table.
/// Memory: a whole number takes 1 to 8 bytes, as the widest of its column needs, a real 8, a text 4 and
/// its bytes once for all rows that have the same. Texts are kept and stored in UTF-8, so nothing is
/// lost in a process with another code page.
/// Threads: filled by one thread; once sealed, read by any.
class XAPI XAttributeTable
{
public:
    enum Type : int { kInteger = 1, kReal = 2, kText = 3 };

    XAttributeTable();
    ~XAttributeTable();
    XAttributeTable(const XAttributeTable&) = delete;
    XAttributeTable& operator=(const XAttributeTable&) = delete;

    int GetNumOfColumns() const;
    int GetNumOfRows() const { return m_rows; }
    const XString& GetColumnName(int column) const; ///< empty for one that there is not
    Type GetColumnType(int column) const;           ///< kText for one that there is not

    /// 0 where the file has no value, and for a place that there is not. These have the text "",
    /// the whole number 0 and the real 1.7e308.
    int IsSet(int row, int column) const;
    /// In any column: reals as the shortest text that reads back the same.
    XString GetText(int row, int column) const;
    std::int64_t GetInteger(int row, int column) const; ///< of a column of whole numbers
    double GetReal(int row, int column) const;          ///< of a column of reals or whole numbers
    int FindColumn(const XString& name) const;          ///< in any case of its letters; -1 for none

    /// @return the row of an object's record number; -1 when it is none of this table's
    int GetRowOf(std::uint32_t record) const;
    /// The record number of a row; 0 for a row that there is not, and for all before Seal.
    std::uint32_t GetRecord(int row) const;

    // ---- filling ----

    /// Columns come before rows. @return the column's index
    int AddColumn(const XString& name, Type type);
    int AddRow(); ///< without values. @return its index
    /// Set a value in the last row; a value of another kind than the column's is converted, and one
    /// that cannot be is left out.
    void SetInteger(int column, std::int64_t value);
    void SetReal(int column, double value);
    void SetText(int column, const char* utf8, std::size_t length);
    /// Ends the filling: gives spare memory back and the rows their record numbers.
    void Seal();
    int IsSealed() const { return m_isSealed; }

    std::size_t GetMemoryUse() const; ///< bytes

    /// A sealed table is stored, an empty one loaded; it is sealed then. Throws XFileException on a
    /// file that ends early or lies.
    void Serialize(XArchive& archive);

private:
    struct Column;
    const Column* FindCell(int row, int column) const;

    std::vector<std::unique_ptr<Column>> m_columns;
    int m_rows = 0;
    int m_isSealed = 0;
    std::uint32_t m_firstRecord = 0;
};

/// The table and row of an object, by the layer that it lies in (through groups).
/// @return null when the object has no attributes; then `row` is -1
XAPI const XAttributeTable* XfnGetAttributes(const XvcObj* object, int& row);
