#pragma once

#include "foundation/base/XApi.h"
#include "foundation/base/XString.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <type_traits>

class XFile;

/// A stream of binary values over a file, in one direction.
///
/// Numbers are stored in little-endian order, reals by their IEEE bits, an XString as a 32-bit
/// count and its bytes; UseUtf8 has them in UTF-8 whatever the code page of narrow text is. The file is lent and must outlive the archive; until Flush or Close its
/// position runs ahead of what was written or read here.
/// Failure: every operation throws XFileException: kEndOfFile when the file ends within a value,
/// kInvalidFile for a write while loading and the reverse, otherwise what the file throws.
/// The destructor flushes and ignores a failure, so a writer calls Close.
class XAPI XArchive
{
public:
    enum Mode { kStore, kLoad };

    XArchive(XFile* file, Mode mode, int bufferSize = 4096);
    XArchive(const XArchive&) = delete;
    XArchive& operator=(const XArchive&) = delete;
    ~XArchive();

    int IsStoring() const { return m_mode == kStore; }
    int IsLoading() const { return m_mode == kLoad; }
    XFile* GetFile() const { return m_file; }
    void UseUtf8() { m_isUtf8 = true; } ///< for files that other machines read

    /// Up to `count` bytes; fewer only at the end of the file.
    std::size_t Read(void* data, std::size_t count);
    /// Exactly `count` bytes or kEndOfFile.
    void ReadExactly(void* data, std::size_t count);
    void Write(const void* data, std::size_t count);

    /// Storing: hands the buffer to the file. Loading: sets the file's position to the next byte
    /// not yet read here.
    void Flush();
    /// Loading: makes at least `needed` bytes available in the buffer, or throws kEndOfFile.
    /// @param needed  at most the buffer size
    void FillBuffer(std::size_t needed);
    /// Flushes and lets the file go; later use throws.
    void Close();

    /// A count of elements that follow, each at least `bytesPerElement` bytes long in the file. A
    /// count that the rest of the file cannot hold throws kEndOfFile, before anything is allocated.
    std::uint32_t ReadCount(std::size_t bytesPerElement);
    std::uint64_t
    GetBytesLeft() const; ///< while loading, from the next byte to the end of the file

    template <class T>
    requires(std::is_arithmetic_v<T> && !std::is_same_v<T, bool> && sizeof(T) <= 8) XArchive&
    operator<<(T value)
    {
        Write(&value, sizeof value);
        return *this;
    }
    template <class T>
    requires(std::is_arithmetic_v<T> && !std::is_same_v<T, bool> && sizeof(T) <= 8) XArchive&
    operator>>(T& value)
    {
        T read;
        ReadExactly(&read, sizeof read);
        value = read;
        return *this;
    }
    XArchive& operator<<(const XString& text);
    XArchive& operator<<(const char* text) { return *this << XString(text); }
    XArchive& operator>>(XString& text);

private:
    void Require(Mode mode) const;

    XFile* m_file;
    Mode m_mode;
    bool m_isUtf8 = false;
    std::size_t m_bufferSize;
    std::unique_ptr<unsigned char[]> m_buffer;
    std::size_t m_begin = 0; // loading: next byte to hand out; storing: always 0
    std::size_t m_end = 0;   // one behind the last byte in the buffer
};
