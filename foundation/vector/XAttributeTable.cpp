#include "foundation/vector/XAttributeTable.h"

#include "foundation/base/XArchive.h"
#include "foundation/base/XCodePage.h"
#include "foundation/base/XFileException.h"
#include "foundation/base/XNumber.h"
#include "foundation/base/XSentinels.h"
#include "foundation/vector/XvcLayer.h"
#include "foundation/vector/XvcObj.h"

#include <algorithm>
#include <atomic>
#include <bit>
#include <climits>
#include <cmath>
#include <cstring>
#include <string>
#include <string_view>

namespace {

constexpr std::uint8_t kArchiveVersion = 1;
constexpr std::size_t kMinColumnBytes = 15; // of one in a file, without its cells

/// Texts, each kept once.
class TextPool
{
public:
    /// @return its number; -1 when the pool is full
    std::int64_t Put(std::string_view text)
    {
        if (m_bytes.size() + text.size() > UINT32_MAX) return -1;
        if (m_slots.size() < 2 * m_ends.size() + 2) Rehash();
        std::size_t at = std::hash<std::string_view>()(text) & (m_slots.size() - 1);
        for (; m_slots[at] != 0; at = (at + 1) & (m_slots.size() - 1))
            if (Get(m_slots[at] - 1) == text) return m_slots[at] - 1;
        m_bytes += text;
        m_ends.push_back(static_cast<std::uint32_t>(m_bytes.size()));
        m_slots[at] = static_cast<std::uint32_t>(m_ends.size());
        return m_slots[at] - 1;
    }
    std::string_view Get(std::size_t number) const
    {
        const std::size_t begin = number == 0 ? 0 : m_ends[number - 1];
        return std::string_view(m_bytes).substr(begin, m_ends[number] - begin);
    }
    std::size_t GetCount() const { return m_ends.size(); }
    void Seal()
    {
        m_slots = {};
        m_bytes.shrink_to_fit();
        m_ends.shrink_to_fit();
    }
    std::size_t GetMemoryUse() const
    {
        return m_bytes.capacity() + (m_ends.capacity() + m_slots.capacity()) * sizeof(m_ends[0]);
    }
    void Store(XArchive& archive) const
    {
        archive << static_cast<std::uint32_t>(m_ends.size());
        archive.Write(m_ends.data(), m_ends.size() * sizeof(m_ends[0]));
        archive << static_cast<std::uint32_t>(m_bytes.size());
        archive.Write(m_bytes.data(), m_bytes.size());
    }
    void Load(XArchive& archive)
    {
        m_ends.resize(archive.ReadCount(sizeof(m_ends[0])));
        archive.ReadExactly(m_ends.data(), m_ends.size() * sizeof(m_ends[0]));
        m_bytes.resize(archive.ReadCount(1));
        archive.ReadExactly(m_bytes.data(), m_bytes.size());
        const bool isWhole = m_ends.empty() ? m_bytes.empty() : m_ends.back() == m_bytes.size();
        if (!isWhole || !std::is_sorted(m_ends.begin(), m_ends.end())) {
            throw XFileException(XFileException::kInvalidFile);
        }
    }

private:
    void Rehash()
    {
        m_slots.assign(std::max<std::size_t>(64, m_slots.size() * 4), 0);
        for (std::size_t i = 0; i < m_ends.size(); ++i) {
            std::size_t at = std::hash<std::string_view>()(Get(i)) & (m_slots.size() - 1);
            while (m_slots[at] != 0)
                at = (at + 1) & (m_slots.size() - 1);
            m_slots[at] = static_cast<std::uint32_t>(i + 1);
        }
    }

    std::string m_bytes;
    std::vector<std::uint32_t> m_ends;
    std::vector<std::uint32_t> m_slots; // number + 1; while filling only
};

int GetWidth(std::int64_t low, std::int64_t high)
{
    if (low >= INT8_MIN && high <= INT8_MAX) return 1;
    if (low >= INT16_MIN && high <= INT16_MAX) return 2;
    return low >= INT32_MIN && high <= INT32_MAX ? 4 : 8;
}

/// The first of so many numbers that no other table has; 0, which is no number of a record, once all
/// are used up.
std::uint32_t TakeRecords(std::uint32_t count)
{
    static std::atomic<std::uint64_t> next{1};
    const std::uint64_t first = next.fetch_add(count);
    return first + count <= UINT32_MAX ? static_cast<std::uint32_t>(first) : 0;
}

} // namespace

struct XAttributeTable::Column
{
    XString name;
    Type type = kText;
    int width = 8;                      // bytes of a cell: 1, 2, 4 or 8
    std::vector<unsigned char> cells;   // whole numbers, bits of reals, numbers of texts
    std::vector<unsigned char> present; // a bit a row; empty when all have a value
    TextPool texts;

    std::int64_t GetCell(int row) const
    {
        const unsigned char* at =
            cells.data() + static_cast<std::size_t>(row) * static_cast<std::size_t>(width);
        const auto read = [at]<class T>(T value) {
            std::memcpy(&value, at, sizeof value);
            return static_cast<std::int64_t>(value);
        };
        if (width == 1) return read(std::int8_t{});
        if (width == 2) return read(std::int16_t{});
        return width == 4 ? read(std::int32_t{}) : read(std::int64_t{});
    }
    bool IsPresent(int row) const
    {
        return present.empty() || ((present[static_cast<std::size_t>(row) / 8] >> (row % 8)) & 1);
    }
    void AddCell(int row)
    {
        cells.resize(cells.size() + 8);
        present.resize(static_cast<std::size_t>(row) / 8 + 1);
    }
    void SetCell(int row, std::int64_t value)
    {
        std::memcpy(cells.data() + static_cast<std::size_t>(row) * 8, &value, sizeof value);
        present[static_cast<std::size_t>(row) / 8] |= static_cast<unsigned char>(1 << (row % 8));
    }
    bool AreAllPresent(int rows) const
    {
        for (int row = 0; row < rows; ++row)
            if (!IsPresent(row)) return false;
        return true;
    }
    void Seal(int rows)
    {
        if (type != kReal) {
            std::int64_t low = 0, high = 0;
            for (int row = 0; row < rows; ++row) {
                low = std::min(low, GetCell(row));
                high = std::max(high, GetCell(row));
            }
            Narrow(rows, GetWidth(low, high));
        }
        if (AreAllPresent(rows)) present.clear();
        cells.shrink_to_fit();
        present.shrink_to_fit();
        texts.Seal();
    }

private:
    void Narrow(int rows, int newWidth)
    {
        const std::size_t step = static_cast<std::size_t>(newWidth);
        for (std::size_t row = 0; row < static_cast<std::size_t>(rows); ++row)
            std::memmove(cells.data() + row * step, cells.data() + row * 8, step);
        cells.resize(static_cast<std::size_t>(rows) * step);
        width = newWidth;
    }
};

XAttributeTable::XAttributeTable() = default;
XAttributeTable::~XAttributeTable() = default;

int XAttributeTable::GetNumOfColumns() const
{
    return static_cast<int>(m_columns.size());
}

const XString& XAttributeTable::GetColumnName(int column) const
{
    static const XString none;
    return column >= 0 && column < GetNumOfColumns()
               ? m_columns[static_cast<std::size_t>(column)]->name
               : none;
}

XAttributeTable::Type XAttributeTable::GetColumnType(int column) const
{
    return column >= 0 && column < GetNumOfColumns()
               ? m_columns[static_cast<std::size_t>(column)]->type
               : kText;
}

const XAttributeTable::Column* XAttributeTable::FindCell(int row, int column) const
{
    if (row < 0 || row >= m_rows || column < 0 || column >= GetNumOfColumns()) return nullptr;
    const Column* found = m_columns[static_cast<std::size_t>(column)].get();
    return found->IsPresent(row) ? found : nullptr;
}

int XAttributeTable::IsSet(int row, int column) const
{
    return FindCell(row, column) ? 1 : 0;
}

XString XAttributeTable::GetText(int row, int column) const
{
    const Column* found = FindCell(row, column);
    if (!found) return XString();
    const std::int64_t cell = found->GetCell(row);
    if (found->type == kText) {
        return XfnTextFromUtf8(XString(found->texts.Get(static_cast<std::size_t>(cell))));
    }
    if (found->type == kReal) return XfnFormatShortest(std::bit_cast<double>(cell));
    return XfnFormat("%I64d", cell);
}

std::int64_t XAttributeTable::GetInteger(int row, int column) const
{
    const Column* found = FindCell(row, column);
    return found && found->type == kInteger ? found->GetCell(row) : 0;
}

double XAttributeTable::GetReal(int row, int column) const
{
    const Column* found = FindCell(row, column);
    if (!found || found->type == kText) return kXNotSet;
    const std::int64_t cell = found->GetCell(row);
    return found->type == kReal ? std::bit_cast<double>(cell) : static_cast<double>(cell);
}

int XAttributeTable::FindColumn(const XString& name) const
{
    for (int i = 0; i < GetNumOfColumns(); ++i)
        if (GetColumnName(i).CompareNoCase(name) == 0) return i;
    return -1;
}

int XAttributeTable::GetRowOf(std::uint32_t record) const
{
    if (m_firstRecord == 0 || record < m_firstRecord) return -1;
    const std::uint32_t row = record - m_firstRecord;
    return row < static_cast<std::uint32_t>(m_rows) ? static_cast<int>(row) : -1;
}

std::uint32_t XAttributeTable::GetRecord(int row) const
{
    if (m_firstRecord == 0 || row < 0 || row >= m_rows) return 0;
    return m_firstRecord + static_cast<std::uint32_t>(row);
}

int XAttributeTable::AddColumn(const XString& name, Type type)
{
    auto column = std::make_unique<Column>();
    column->name = name;
    column->type = type;
    m_columns.push_back(std::move(column));
    return GetNumOfColumns() - 1;
}

int XAttributeTable::AddRow()
{
    for (const auto& column : m_columns)
        column->AddCell(m_rows);
    return m_rows++;
}

void XAttributeTable::SetInteger(int column, std::int64_t value)
{
    Column& to = *m_columns[static_cast<std::size_t>(column)];
    if (to.type == kReal) {
        SetReal(column, static_cast<double>(value));
    } else if (to.type == kText) {
        const XString text = XfnFormat("%I64d", value);
        SetText(column, text, static_cast<std::size_t>(text.GetLength()));
    } else {
        to.SetCell(m_rows - 1, value);
    }
}

void XAttributeTable::SetReal(int column, double value)
{
    constexpr double kExact = 9007199254740992.0; // beyond it neighbours are no whole numbers
    Column& to = *m_columns[static_cast<std::size_t>(column)];
    if (to.type == kReal) {
        to.SetCell(m_rows - 1, std::bit_cast<std::int64_t>(value));
    } else if (to.type == kText) {
        const XString text = XfnFormatShortest(value);
        SetText(column, text, static_cast<std::size_t>(text.GetLength()));
    } else if (std::fabs(value) <= kExact && std::trunc(value) == value) {
        to.SetCell(m_rows - 1, static_cast<std::int64_t>(value));
    }
}

void XAttributeTable::SetText(int column, const char* utf8, std::size_t length)
{
    Column& to = *m_columns[static_cast<std::size_t>(column)];
    if (to.type == kText) {
        const std::int64_t number = to.texts.Put({utf8, length});
        if (number >= 0) to.SetCell(m_rows - 1, number);
        return;
    }
    double real = 0.0;
    std::int64_t whole = 0;
    if (to.type == kReal && XfnReadNumber(utf8, length, real)) SetReal(column, real);
    if (to.type == kInteger && XfnReadInteger(utf8, length, whole)) SetInteger(column, whole);
}

void XAttributeTable::Seal()
{
    if (m_isSealed) return;
    for (const auto& column : m_columns)
        column->Seal(m_rows);
    m_isSealed = 1;
    m_firstRecord = TakeRecords(static_cast<std::uint32_t>(m_rows));
}

std::size_t XAttributeTable::GetMemoryUse() const
{
    std::size_t bytes = sizeof *this;
    for (const auto& column : m_columns)
        bytes += sizeof *column + column->cells.capacity() + column->present.capacity() +
                 column->texts.GetMemoryUse();
    return bytes;
}

void XAttributeTable::Serialize(XArchive& archive)
{
    if (archive.IsStoring()) {
        archive << kArchiveVersion << static_cast<std::uint32_t>(m_rows)
                << static_cast<std::uint32_t>(m_columns.size());
        for (const auto& column : m_columns) {
            archive << column->name << static_cast<std::uint8_t>(column->type)
                    << static_cast<std::uint8_t>(column->width)
                    << static_cast<std::uint8_t>(column->present.empty() ? 0 : 1);
            if (column->type == kText) column->texts.Store(archive);
            archive.Write(column->present.data(), column->present.size());
            archive.Write(column->cells.data(), column->cells.size());
        }
        return;
    }
    const auto fail = [] { throw XFileException(XFileException::kInvalidFile); };
    std::uint8_t version = 0;
    std::uint32_t rows = 0;
    archive >> version >> rows;
    const std::uint32_t columns = archive.ReadCount(kMinColumnBytes - 8);
    if (version != kArchiveVersion || rows > INT_MAX || (columns == 0 && rows > 0)) fail();
    XAttributeTable loaded;
    loaded.m_rows = static_cast<int>(rows);
    for (std::uint32_t i = 0; i < columns; ++i) {
        auto column = std::make_unique<Column>();
        std::uint8_t type = 0, width = 0, hasMissing = 0;
        archive >> column->name >> type >> width >> hasMissing;
        const bool isWidth =
            width == 8 || (type != kReal && (width == 1 || width == 2 || width == 4));
        if (type < kInteger || type > kText || !isWidth || hasMissing > 1) fail();
        column->type = static_cast<Type>(type);
        column->width = width;
        if (type == kText) column->texts.Load(archive);
        if (rows > archive.GetBytesLeft() / width) fail();
        if (hasMissing) {
            column->present.resize((rows + std::size_t{7}) / 8);
            archive.ReadExactly(column->present.data(), column->present.size());
        }
        column->cells.resize(std::size_t{rows} * width);
        archive.ReadExactly(column->cells.data(), column->cells.size());
        for (int row = 0; type == kText && row < loaded.m_rows; ++row) {
            const std::int64_t number = column->GetCell(row);
            if (column->IsPresent(row) &&
                (number < 0 || static_cast<std::uint64_t>(number) >= column->texts.GetCount())) {
                fail();
            }
        }
        loaded.m_columns.push_back(std::move(column));
    }
    m_columns = std::move(loaded.m_columns);
    m_rows = loaded.m_rows;
    m_isSealed = 1;
    m_firstRecord = TakeRecords(rows);
}

const XAttributeTable* XfnGetAttributes(const XvcObj* object, int& row)
{
    row = -1;
    const XvcLayer* layer = object ? object->GetParentLayer() : nullptr;
    const XAttributeTable* table = layer ? layer->GetAttributes().get() : nullptr;
    if (table) row = table->GetRowOf(object->GetRecord());
    return row >= 0 ? table : nullptr;
}
