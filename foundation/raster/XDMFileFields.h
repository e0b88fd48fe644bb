#pragma once

#include "foundation/base/XCodePage.h"
#include "foundation/base/XString.h"

#include <algorithm>
#include <array>
#include <concepts>
#include <cstdint>
#include <cstring>
#include <limits>
#include <type_traits>
#include <utility>
#include <vector>

/// Records as fields: the contents of a metadata block of a native raster file.
///
/// A field is an id, a kind, a byte count and its bytes, so that a reader steps over what it does
/// not know. One template a record, `XfnVisit(archive, record)`, names its fields once for both
/// directions; XDMFileMeta.cpp holds them. A field that is absent leaves the record's value.
enum class XDMFileFieldKind : std::uint16_t {
    Integers = 1, ///< 64-bit signed
    Reals = 2,    ///< 64-bit
    Text = 3,     ///< UTF-8 without terminator
    Group = 4,    ///< fields of a record; a list is the same id again and again
    Bytes = 5,
};

template <class T>
concept XDMFileScalar = std::integral<T> || std::is_enum_v<T>;

/// Turns records into fields at the end of a byte vector.
class XDMFileFieldWriter
{
public:
    template <class T>
    using Record = const T;

    explicit XDMFileFieldWriter(std::vector<unsigned char>& out) : m_out(out) {}

    template <XDMFileScalar T>
    void Field(unsigned id, const T& value)
    {
        const std::int64_t wide = static_cast<std::int64_t>(value);
        Put(id, XDMFileFieldKind::Integers, &wide, sizeof wide);
    }
    void Field(unsigned id, const double& value)
    {
        Put(id, XDMFileFieldKind::Reals, &value, sizeof value);
    }
    template <std::size_t N>
    void Field(unsigned id, const std::array<double, N>& values)
    {
        Put(id, XDMFileFieldKind::Reals, values.data(), N * sizeof(double));
    }
    void Field(unsigned id, const std::vector<double>& values)
    {
        if (values.empty()) return;
        Put(id, XDMFileFieldKind::Reals, values.data(), values.size() * sizeof(double));
    }
    template <std::integral T>
    void Field(unsigned id, const std::vector<T>& values)
    {
        if (values.empty()) return;
        const std::vector<std::int64_t> wide(values.begin(), values.end());
        Put(id, XDMFileFieldKind::Integers, wide.data(), wide.size() * sizeof(std::int64_t));
    }
    void Field(unsigned id, const std::vector<unsigned char>& bytes)
    {
        if (bytes.empty()) return;
        Put(id, XDMFileFieldKind::Bytes, bytes.data(), bytes.size());
    }
    void Field(unsigned id, const XString& text)
    {
        if (text.IsEmpty()) return;
        const XString utf8 = XfnTextToUtf8(text);
        Put(id, XDMFileFieldKind::Text, utf8.GetString(), utf8.GetLength());
    }
    template <class T>
    void Group(unsigned id, const T& record)
    {
        const std::size_t start = m_out.size();
        Put(id, XDMFileFieldKind::Group, nullptr, 0);
        XfnVisit(*this, record);
        const std::size_t bytes = m_out.size() - start - 8;
        if (bytes > std::numeric_limits<std::uint32_t>::max()) m_isTooLong = true;
        const std::uint32_t count = static_cast<std::uint32_t>(bytes);
        std::memcpy(m_out.data() + start + 4, &count, sizeof count);
    }
    template <class T>
    void List(unsigned id, const std::vector<T>& records)
    {
        for (const T& record : records)
            Group(id, record);
    }

    bool IsTooLong() const { return m_isTooLong; } ///< a field passed 4 GiB: drop the bytes

private:
    void Put(unsigned id, XDMFileFieldKind kind, const void* bytes, std::size_t count)
    {
        if (count > std::numeric_limits<std::uint32_t>::max()) {
            m_isTooLong = true;
            return;
        }
        const std::uint16_t head[2] = {static_cast<std::uint16_t>(id),
                                       static_cast<std::uint16_t>(kind)};
        const std::uint32_t length = static_cast<std::uint32_t>(count);
        Append(head, sizeof head);
        Append(&length, sizeof length);
        Append(bytes, count);
    }
    void Append(const void* bytes, std::size_t count)
    {
        const unsigned char* p = static_cast<const unsigned char*>(bytes);
        m_out.insert(m_out.end(), p, p + count);
    }

    std::vector<unsigned char>& m_out;
    bool m_isTooLong = false;
};

/// Fills records from fields. The bytes must outlive it.
class XDMFileFieldReader
{
public:
    template <class T>
    using Record = T;

    XDMFileFieldReader(const unsigned char* bytes, std::size_t count) : m_count(count)
    {
        Split(bytes);
        std::stable_sort(m_fields.begin(), m_fields.end(),
                         [](const tagField& a, const tagField& b) { return a.id < b.id; });
    }

    /// Null while all is well, otherwise what is wrong, as the end of a sentence.
    const char* GetFault() const { return m_fault; }

    template <XDMFileScalar T>
    void Field(unsigned id, T& value)
    {
        const tagField* field = Find(id, XDMFileFieldKind::Integers, 8);
        if (!field) return;
        std::int64_t wide;
        std::memcpy(&wide, field->bytes, sizeof wide);
        if constexpr (std::is_enum_v<T>) {
            // held in 32 bits whatever it says: the check of the records judges it
            if (!std::in_range<int>(wide)) return Fail("holds a number that is too large");
            value = static_cast<T>(static_cast<int>(wide));
        } else {
            if (!std::in_range<T>(wide)) return Fail("holds a number that is too large");
            value = static_cast<T>(wide);
        }
    }
    void Field(unsigned id, double& value)
    {
        if (const tagField* field = Find(id, XDMFileFieldKind::Reals, 8)) {
            std::memcpy(&value, field->bytes, sizeof value);
        }
    }
    template <std::size_t N>
    void Field(unsigned id, std::array<double, N>& values)
    {
        if (const tagField* field = Find(id, XDMFileFieldKind::Reals, 8 * N)) {
            std::memcpy(values.data(), field->bytes, field->count);
        }
    }
    void Field(unsigned id, std::vector<double>& values)
    {
        const tagField* field = Find(id, XDMFileFieldKind::Reals, 0);
        if (!field || field->count == 0) return;
        values.resize(field->count / 8);
        std::memcpy(values.data(), field->bytes, field->count);
    }
    template <std::integral T>
    void Field(unsigned id, std::vector<T>& values)
    {
        const tagField* field = Find(id, XDMFileFieldKind::Integers, 0);
        if (!field) return;
        values.resize(field->count / 8);
        for (std::size_t i = 0; i < values.size(); ++i) {
            std::int64_t wide;
            std::memcpy(&wide, field->bytes + 8 * i, sizeof wide);
            if (!std::in_range<T>(wide)) return Fail("holds a number that is too large");
            values[i] = static_cast<T>(wide);
        }
    }
    void Field(unsigned id, std::vector<unsigned char>& bytes)
    {
        if (const tagField* field = Find(id, XDMFileFieldKind::Bytes, 0)) {
            bytes.assign(field->bytes, field->bytes + field->count);
        }
    }
    void Field(unsigned id, XString& text)
    {
        const tagField* field = Find(id, XDMFileFieldKind::Text, 0);
        if (!field) return;
        if (field->count > kMaxText) return Fail("holds a text that is too long");
        text = XfnTextFromUtf8(
            XString(reinterpret_cast<const char*>(field->bytes), static_cast<int>(field->count)));
    }
    template <class T>
    void Group(unsigned id, T& record)
    {
        if (const tagField* field = Find(id, XDMFileFieldKind::Group, 0)) Visit(*field, record);
    }
    template <class T>
    void List(unsigned id, std::vector<T>& records)
    {
        const auto [first, last] = FindAll(id);
        const std::size_t number = static_cast<std::size_t>(last - first);
        // a record of ours never grows so much from its bytes; a million empty groups would
        if (number > 8 * m_count / sizeof(T)) return Fail("lists more records than it holds");
        records.resize(number);
        for (std::size_t i = 0; i < number && !m_fault; ++i) {
            if (first[i].kind != static_cast<std::uint16_t>(XDMFileFieldKind::Group)) {
                return Fail("holds a field of another kind than it must be");
            }
            Visit(first[i], records[i]);
        }
    }

private:
    struct tagField
    {
        std::uint16_t id;
        std::uint16_t kind;
        std::uint32_t count;
        const unsigned char* bytes;
    };
    static constexpr std::uint32_t kMaxText = std::uint32_t(1) << 28;

    void Split(const unsigned char* bytes)
    {
        for (std::size_t at = 0; at < m_count;) {
            if (m_count - at < 8) return Fail("ends within the head of a field");
            tagField field;
            std::memcpy(&field.id, bytes + at, 2);
            std::memcpy(&field.kind, bytes + at + 2, 2);
            std::memcpy(&field.count, bytes + at + 4, 4);
            at += 8;
            if (field.count > m_count - at) return Fail("ends within a field");
            field.bytes = bytes + at;
            at += field.count;
            m_fields.push_back(field);
        }
    }

    void Fail(const char* fault)
    {
        if (!m_fault) m_fault = fault;
    }

    std::pair<const tagField*, const tagField*> FindAll(unsigned id) const
    {
        const auto [first, last] =
            std::equal_range(m_fields.data(), m_fields.data() + m_fields.size(),
                             tagField{static_cast<std::uint16_t>(id), 0, 0, nullptr},
                             [](const tagField& a, const tagField& b) { return a.id < b.id; });
        return {first, last};
    }

    /// The one field of that id; null when it is absent or anything is wrong.
    /// @param count  bytes it must have; 0 for any (whole numbers of 8 where the kind has numbers)
    const tagField* Find(unsigned id, XDMFileFieldKind kind, std::size_t count)
    {
        const auto [first, last] = FindAll(id);
        if (first == last || m_fault) return nullptr;
        const bool hasNumbers =
            kind == XDMFileFieldKind::Integers || kind == XDMFileFieldKind::Reals;
        if (last - first != 1) {
            Fail("holds a field twice");
        } else if (first->kind != static_cast<std::uint16_t>(kind)) {
            Fail("holds a field of another kind than it must be");
        } else if ((count != 0 && first->count != count) || (hasNumbers && first->count % 8 != 0)) {
            Fail("holds a field of another length than it must have");
        }
        return m_fault ? nullptr : first;
    }

    template <class T>
    void Visit(const tagField& field, T& record)
    {
        XDMFileFieldReader inner(field.bytes, field.count);
        if (!inner.m_fault) XfnVisit(inner, record);
        if (inner.m_fault) Fail(inner.m_fault);
    }

    std::vector<tagField> m_fields; // by id, in file order within one
    std::size_t m_count;
    const char* m_fault = nullptr;
};
