#include "foundation/base/XString.h"

#include "foundation/base/XCodePage.h"
#include "foundation/base/XIndexException.h"

#include <algorithm>
#include <climits>
#include <cstddef>
#include <cstring>
#include <new>

namespace {

constexpr std::size_t kMaxLength = INT_MAX - 32;
constexpr const char* kBlanks = " \t\n\v\f\r";

std::string_view ToView(const char* text)
{
    return text ? std::string_view(text) : std::string_view();
}

char ToUpper(char ch)
{
    return ch >= 'a' && ch <= 'z' ? static_cast<char>(ch - 'a' + 'A') : ch;
}

char ToLower(char ch)
{
    return ch >= 'A' && ch <= 'Z' ? static_cast<char>(ch - 'A' + 'a') : ch;
}

/// The first hit at or after `start` that is no second half of a character, or -1.
int FindIn(const XString& text, std::string_view wanted, int start)
{
    std::size_t hit = std::max(start, 0);
    while ((hit = text.View().find(wanted, hit)) != std::string_view::npos) {
        if (!XfnIsTrailByte(text, static_cast<int>(hit))) return static_cast<int>(hit);
        ++hit;
    }
    return -1;
}

int IsLead(char ch)
{
    return XfnIsLeadByte(static_cast<unsigned char>(ch));
}

} // namespace

struct XString::tagEmptyBlock
{
    tagBlock head = {-1, 0, 0, 0};
    char text[16] = {};
};

char* XString::GetEmptyText() noexcept
{
    static_assert(offsetof(tagEmptyBlock, text) == sizeof(tagBlock));
    static constinit tagEmptyBlock block;
    return block.text;
}

char* XString::NewText(int capacity)
{
    // whole units of 16 bytes: what the allocator hands out anyway
    const std::size_t bytes = (sizeof(tagBlock) + capacity + 1 + 15) / 16 * 16;
    void* memory = ::operator new(bytes);
    tagBlock* block =
        new (memory) tagBlock{1, 0, static_cast<int>(bytes - sizeof(tagBlock) - 1), 0};
    char* text = reinterpret_cast<char*>(block + 1);
    text[0] = '\0';
    return text;
}

void XString::Release(char* text) noexcept
{
    tagBlock* block = reinterpret_cast<tagBlock*>(text) - 1;
    if (block->refs.load(std::memory_order_relaxed) < 0) return;
    if (block->refs.fetch_sub(1, std::memory_order_acq_rel) == 1) {
        block->~tagBlock();
        ::operator delete(block);
    }
}

char* XString::Share(const XString& other)
{
    tagBlock* block = other.GetBlock();
    if (block->refs.load(std::memory_order_relaxed) < 0) return other.m_text;
    if (block->lent) {
        char* text = NewText(block->length);
        std::memcpy(text, other.m_text, block->length);
        text[block->length] = '\0';
        (reinterpret_cast<tagBlock*>(text) - 1)->length = block->length;
        return text;
    }
    block->refs.fetch_add(1, std::memory_order_relaxed);
    return other.m_text;
}

void XString::ThrowIndex()
{
    XIndexException::Throw();
}

void XString::SetLength(int length)
{
    GetBlock()->length = length;
    m_text[length] = '\0';
}

void XString::Assign(const char* bytes, std::size_t count)
{
    if (count > kMaxLength) throw std::bad_alloc();
    const int length = static_cast<int>(count);
    if (count == 0) {
        Empty();
    } else if (GetBlock()->refs.load(std::memory_order_acquire) == 1 &&
               length <= GetBlock()->capacity) {
        std::memmove(m_text, bytes, count);
        SetLength(length);
    } else {
        char* text = NewText(length);
        std::memcpy(text, bytes, count);
        Release(m_text);
        m_text = text;
        SetLength(length);
    }
}

char* XString::MakeUnique(std::size_t capacity)
{
    if (capacity > kMaxLength) throw std::bad_alloc();
    const int wanted = std::max(static_cast<int>(capacity), GetLength());
    if (GetBlock()->refs.load(std::memory_order_acquire) != 1 || wanted > GetBlock()->capacity) {
        const int length = GetLength();
        char* text = NewText(wanted);
        std::memcpy(text, m_text, length);
        Release(m_text);
        m_text = text;
        SetLength(length);
    }
    return m_text;
}

XString::XString(const XString& other) : m_text(Share(other)) {}

XString::XString(XString&& other) noexcept : m_text(other.m_text)
{
    other.m_text = GetEmptyText();
}

XString::XString(const char* text) : XString(ToView(text)) {}

XString::XString(const wchar_t* text) : XString()
{
    *this = text;
}

XString::XString(const char* bytes, int count) : XString()
{
    if (count < 0 || (count > 0 && !bytes)) ThrowIndex();
    Assign(bytes, count);
}

XString::XString(std::string_view text) : XString()
{
    Assign(text.data(), text.size());
}

XString::XString(char ch, int count) : XString()
{
    if (count < 0) ThrowIndex();
    if (count == 0) return;
    std::memset(MakeUnique(count), ch, count);
    SetLength(count);
}

XString::~XString()
{
    Release(m_text);
}

XString& XString::operator=(const XString& other)
{
    if (m_text == other.m_text) return *this;
    char* text = Share(other);
    Release(m_text);
    m_text = text;
    return *this;
}

XString& XString::operator=(XString&& other) noexcept
{
    Swap(other);
    return *this;
}

XString& XString::operator=(const char* text)
{
    const std::string_view view = ToView(text);
    Assign(view.data(), view.size());
    return *this;
}

XString& XString::operator=(const wchar_t* text)
{
    return *this = text ? XfnWideToText(text, std::wcslen(text)) : XString();
}

XString& XString::operator=(char ch)
{
    Assign(&ch, 1);
    return *this;
}

void XString::Empty()
{
    Release(m_text);
    m_text = GetEmptyText();
}

void XString::SetAt(int index, char ch)
{
    if (index < 0 || index >= GetLength()) ThrowIndex();
    MakeUnique(0)[index] = ch;
}

XString& XString::operator+=(const XString& text)
{
    if (IsEmpty()) return *this = text;
    return Append(text.m_text, text.GetLength());
}

XString& XString::operator+=(const char* text)
{
    const std::string_view view = ToView(text);
    if (view.size() > kMaxLength) throw std::bad_alloc();
    return Append(view.data(), static_cast<int>(view.size()));
}

XString& XString::operator+=(char ch)
{
    return Append(&ch, 1);
}

XString& XString::Append(const char* bytes, int count)
{
    if (count < 0 || (count > 0 && !bytes)) ThrowIndex();
    if (count == 0) return *this;
    const int length = GetLength();
    const std::size_t total = static_cast<std::size_t>(length) + count;
    if (total > kMaxLength) throw std::bad_alloc();
    tagBlock* block = GetBlock();
    if (block->refs.load(std::memory_order_acquire) == 1 &&
        total <= static_cast<std::size_t>(block->capacity)) {
        std::memmove(m_text + length, bytes, count);
    } else {
        const std::size_t grown = length + static_cast<std::size_t>(length) / 2;
        char* text = NewText(static_cast<int>(std::min(std::max(total, grown), kMaxLength)));
        std::memcpy(text, m_text, length);
        std::memcpy(text + length, bytes, count);
        Release(m_text); // last: `bytes` may lie in it
        m_text = text;
    }
    SetLength(static_cast<int>(total));
    return *this;
}

XString XString::Left(int count) const
{
    return Mid(0, count);
}

XString XString::Right(int count) const
{
    return Mid(GetLength() - std::clamp(count, 0, GetLength()));
}

XString XString::Mid(int start) const
{
    return Mid(start, GetLength());
}

XString XString::Mid(int start, int count) const
{
    start = std::clamp(start, 0, GetLength());
    count = std::clamp(count, 0, GetLength() - start);
    if (count == GetLength()) return *this;
    return XString(m_text + start, count);
}

int XString::Find(char ch, int start) const
{
    return FindIn(*this, {&ch, 1}, start);
}

int XString::Find(const char* text, int start) const
{
    return FindIn(*this, ToView(text), start);
}

int XString::ReverseFind(char ch) const
{
    std::size_t hit = GetLength();
    while (hit > 0 && (hit = View().rfind(ch, hit - 1)) != std::string_view::npos) {
        if (!XfnIsTrailByte(m_text, static_cast<int>(hit))) return static_cast<int>(hit);
    }
    return -1;
}

int XString::Delete(int index, int count)
{
    const int length = GetLength();
    index = std::clamp(index, 0, length);
    count = std::clamp(count, 0, length - index);
    if (count == 0) return length;
    char* text = MakeUnique(0);
    std::memmove(text + index, text + index + count, length - index - count);
    SetLength(length - count);
    return length - count;
}

int XString::Insert(int index, const char* text)
{
    const int at = std::clamp(index, 0, GetLength());
    XString result = Left(at);
    result += text;
    result.Append(m_text + at, GetLength() - at);
    Swap(result);
    return GetLength();
}

int XString::Replace(const char* oldText, const char* newText)
{
    const int oldLength = static_cast<int>(ToView(oldText).size());
    if (oldLength == 0) return 0;
    XString result;
    int count = 0;
    int done = 0;
    for (int hit; (hit = Find(oldText, done)) >= 0; done = hit + oldLength) {
        result.Append(m_text + done, hit - done);
        result += newText;
        ++count;
    }
    if (count == 0) return 0;
    result.Append(m_text + done, GetLength() - done);
    Swap(result);
    return count;
}

XString& XString::TrimLeft()
{
    return TrimLeft(kBlanks);
}

XString& XString::TrimRight()
{
    return TrimRight(kBlanks);
}

XString& XString::TrimLeft(const char* set)
{
    const std::size_t first = View().find_first_not_of(ToView(set));
    Delete(0, first == std::string_view::npos ? GetLength() : static_cast<int>(first));
    return *this;
}

XString& XString::TrimRight(const char* set)
{
    int end = GetLength();
    while (end > 0 && ToView(set).find(m_text[end - 1]) != std::string_view::npos &&
           !XfnIsTrailByte(m_text, end - 1)) {
        --end;
    }
    Delete(end, GetLength());
    return *this;
}

XString& XString::Trim()
{
    TrimRight();
    return TrimLeft();
}

template <class Change>
XString& XString::ChangeCase(Change change)
{
    char* text = nullptr;
    for (int i = 0; i < GetLength(); ++i) {
        const char changed = change(m_text[i]);
        if (IsLead(m_text[i])) {
            ++i;
        } else if (changed != m_text[i]) {
            if (!text) text = MakeUnique(0); // a string that stays as it is stays shared
            text[i] = changed;
        }
    }
    return *this;
}

XString& XString::MakeUpper()
{
    return ChangeCase(ToUpper);
}

XString& XString::MakeLower()
{
    return ChangeCase(ToLower);
}

int XString::Compare(const char* text) const
{
    return View().compare(ToView(text));
}

int XString::CompareNoCase(const char* text) const
{
    XString lower(*this);
    XString other(text);
    return lower.MakeLower().Compare(other.MakeLower());
}

int XString::Collate(const char* text) const
{
    const int order = std::strcoll(m_text, text ? text : "");
    return order ? order : Compare(text);
}

int XString::CollateNoCase(const char* text) const
{
    XString lower(*this);
    XString other(text);
    return lower.MakeLower().Collate(other.MakeLower());
}

char* XString::GetBuffer(int capacity)
{
    char* text = MakeUnique(std::max(capacity, 0));
    GetBlock()->lent = 1;
    return text;
}

void XString::ReleaseBuffer(int length)
{
    MakeUnique(0);
    if (length > GetBlock()->capacity) ThrowIndex();
    GetBlock()->lent = 0;
    if (length < 0) length = static_cast<int>(strnlen(m_text, GetBlock()->capacity));
    SetLength(length);
}

const XString& XfnGetEmptyString()
{
    static const XString empty;
    return empty;
}
