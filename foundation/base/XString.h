#pragma once

#include "foundation/base/XApi.h"
#include "foundation/base/XFormatArg.h"

#include <atomic>
#include <compare>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <utility>

/// An 8-bit string whose copies share one block until one of them is changed.
///
/// The bytes are UTF-8, or the code page set with XfnSetCodePage. Lengths and indices count bytes.
/// The text may hold zero bytes; operations that take a `const char*` stop at the first one.
/// Case operations change the letters A to Z only and never the second byte of a double-byte
/// character; searches never hit such a byte either.
///
/// Copying and moving allocate nothing. Growing by += is amortised.
/// Threads: counts are atomic, so copies may be used, changed and destroyed in different threads;
/// one object belongs to one thread at a time.
/// Failure: an index out of range throws XIndexException, a length beyond 2^31 - 32 or a failed
/// allocation std::bad_alloc; the string is then as it was.
class XAPI XString
{
public:
    XString() noexcept : m_text(GetEmptyText()) {}
    XString(std::nullptr_t) noexcept : XString() {}
    XString(const XString& other);
    XString(XString&& other) noexcept;
    XString(const char* text);             ///< null gives the empty string
    XString(const wchar_t* text);          ///< converted to the code page; null gives ""
    XString(const char* bytes, int count); ///< exactly `count` bytes
    explicit XString(std::string_view text);
    explicit XString(const std::string& text) : XString(std::string_view(text)) {}
    explicit XString(char ch, int count = 1);
    ~XString();

    XString& operator=(const XString& other);
    XString& operator=(XString&& other) noexcept;
    XString& operator=(const char* text);
    XString& operator=(const wchar_t* text);
    XString& operator=(char ch);

    int GetLength() const { return GetBlock()->length; }
    int IsEmpty() const { return GetLength() == 0; }
    /// The number of bytes the string can hold without a new block.
    int GetAllocLength() const { return GetBlock()->capacity; }
    void Empty(); ///< drops the text and its block

    /// The byte at `index`, 0 at index GetLength().
    char GetAt(int index) const
    {
        if (static_cast<unsigned>(index) > static_cast<unsigned>(GetLength())) ThrowIndex();
        return m_text[index];
    }
    template <std::integral I>
    char operator[](I index) const
    {
        // in 64 bits a negative index stays negative and an unsigned one beyond 2^63 becomes so
        const std::int64_t wide = static_cast<std::int64_t>(index);
        return GetAt(wide < 0 || wide > GetLength() ? -1 : static_cast<int>(wide));
    }
    void SetAt(int index, char ch); ///< index below GetLength()

    operator const char*() const { return m_text; }
    const char* GetString() const { return m_text; }
    std::string_view View() const { return {m_text, static_cast<std::size_t>(GetLength())}; }

    XString& operator+=(const XString& text);
    XString& operator+=(const char* text);
    XString& operator+=(char ch);
    XString& Append(const char* bytes, int count); ///< `bytes` may lie within this string

    /// Counts and starts beyond the text are cut to it, negative ones to 0.
    XString Left(int count) const;
    XString Right(int count) const;
    XString Mid(int start) const;
    XString Mid(int start, int count) const;

    /// The index of the first hit at or after `start`, -1 when there is none.
    /// An empty text is found at `start`.
    int Find(char ch, int start = 0) const;
    int Find(const char* text, int start = 0) const;
    int ReverseFind(char ch) const; ///< the last hit, -1 when there is none

    /// Takes `count` bytes out; what lies beyond the text is not counted.
    /// @return the new length.
    int Delete(int index, int count = 1);
    int Insert(int index, const char* text); ///< index beyond the end appends; the new length
    int Replace(const char* oldText, const char* newText); ///< the number of replacements

    /// Without an argument blanks, tabs, line ends, \v and \f go; otherwise the bytes of `set`.
    XString& TrimLeft();
    XString& TrimRight();
    XString& TrimLeft(const char* set);
    XString& TrimRight(const char* set);
    XString& Trim();

    XString& MakeUpper();
    XString& MakeLower();

    /// Below, at or above 0 as the string sorts before, with or behind `text`, byte by byte.
    int Compare(const char* text) const;
    int CompareNoCase(const char* text) const; ///< A to Z and a to z are alike
    /// By the collation of the process locale; equal only when all bytes are equal
    /// (CollateNoCase: equal without regard to case).
    int Collate(const char* text) const;
    int CollateNoCase(const char* text) const;

    /// A buffer of at least `capacity` bytes plus a terminator to write into, holding the text so
    /// far. Other copies are not touched, and copies taken before ReleaseBuffer get a block of
    /// their own. The pointer is good until the next changing operation.
    char* GetBuffer(int capacity);
    /// Ends GetBuffer: the text is the first `length` bytes, or up to the first zero byte for -1.
    void ReleaseBuffer(int length = -1);

    /// Replaces the text by `format` with its conversions filled in.
    ///
    /// Conversions and flags are those of printf (d i u o x X c s p f F e E g G a A, widths and
    /// precisions also as *), and I64 as a length. Real numbers are written with a point in every
    /// locale; NaN and infinity as "nan", "inf", "-inf". Every argument knows its type: lengths
    /// (l, h, I64) are read and not needed, a number given to %s is written in its plain form, a
    /// real given to %d is cut to its integer part, XString and std::string go straight to %s.
    /// A conversion without an argument, and %n, stay in the text as they stand. '#' has no effect
    /// on reals. Widths are held at 65535, precisions of reals at 1100.
    template <class... Args>
    void Format(const char* format, const Args&... args)
    {
        const tagXFormatArg list[] = {tagXFormatArg(args)..., tagXFormatArg()};
        FormatList(format, list, static_cast<int>(sizeof...(Args)));
    }
    void FormatList(const char* format, const tagXFormatArg* args, int count);

    void Swap(XString& other) noexcept { std::swap(m_text, other.m_text); }

    friend bool operator==(const XString& a, const XString& b) { return a.View() == b.View(); }
    friend bool operator==(const XString& a, const char* b) { return a.Compare(b) == 0; }
    friend std::strong_ordering operator<=>(const XString& a, const XString& b)
    {
        return a.View() <=> b.View();
    }
    friend std::strong_ordering operator<=>(const XString& a, const char* b)
    {
        return a.Compare(b) <=> 0;
    }
    friend XString operator+(XString a, const XString& b) { return std::move(a += b); }
    friend XString operator+(XString a, const char* b) { return std::move(a += b); }
    friend XString operator+(XString a, char b) { return std::move(a += b); }
    friend XString operator+(const char* a, const XString& b) { return XString(a) += b; }
    friend XString operator+(char a, const XString& b) { return XString(a) += b; }

private:
    // stands directly before the text; the shared empty block has a negative count and is never
    // counted or freed
    struct tagBlock
    {
        std::atomic<int> refs;
        int length;
        int capacity;
        int lent; // 1 between GetBuffer and ReleaseBuffer: a copy must not share the block
    };
    struct tagEmptyBlock;

    tagBlock* GetBlock() const { return reinterpret_cast<tagBlock*>(m_text) - 1; }
    static char* GetEmptyText() noexcept;
    static char* NewText(int capacity);
    static void Release(char* text) noexcept;
    static char* Share(const XString& other);
    [[noreturn]] static void ThrowIndex();

    void Assign(const char* bytes, std::size_t count);
    char* MakeUnique(std::size_t capacity); // keeps the text; the block is ours alone afterwards
    void SetLength(int length);             // of a block that is ours alone
    template <class Change>
    XString& ChangeCase(Change change);

    char* m_text;
};

inline tagXFormatArg::tagXFormatArg(const XString& value) : kind(Kind::Text), text(value.View()) {}

/// The shared empty string.
XAPI const XString& XfnGetEmptyString();

/// XString::Format as a value.
template <class... Args>
XString XfnFormat(const char* format, const Args&... args)
{
    XString text;
    text.Format(format, args...);
    return text;
}

template <>
struct std::hash<XString>
{
    std::size_t operator()(const XString& text) const noexcept
    {
        return std::hash<std::string_view>()(text.View());
    }
};
