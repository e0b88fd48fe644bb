#include "foundation/base/XArchive.h"

#include "foundation/base/XCodePage.h"
#include "foundation/base/XFile.h"
#include "foundation/base/XFileException.h"
#include "foundation/base/XIndexException.h"

#include <algorithm>
#include <bit>
#include <climits>
#include <cstring>

static_assert(std::endian::native == std::endian::little);

XArchive::XArchive(XFile* file, Mode mode, int bufferSize)
    : m_file(file),
      m_mode(mode),
      m_bufferSize(static_cast<std::size_t>(std::max(bufferSize, 16))),
      m_buffer(std::make_unique<unsigned char[]>(m_bufferSize))
{}

XArchive::~XArchive()
{
    try {
        Close();
    } catch (XFileException& e) {
        e.Delete();
    }
}

void XArchive::Require(Mode mode) const
{
    if (!m_file || m_mode != mode) XFileException::Throw(XFileException::kInvalidFile);
}

std::size_t XArchive::Read(void* data, std::size_t count)
{
    Require(kLoad);
    unsigned char* to = static_cast<unsigned char*>(data);
    std::size_t done = 0;
    while (done < count) {
        if (m_begin == m_end) {
            // what is larger than the buffer goes past it
            if (count - done >= m_bufferSize) return done + m_file->Read(to + done, count - done);
            m_begin = 0;
            m_end = 0;
            m_end = m_file->Read(m_buffer.get(), m_bufferSize);
            if (m_end == 0) break;
        }
        const std::size_t part = std::min(count - done, m_end - m_begin);
        std::memcpy(to + done, m_buffer.get() + m_begin, part);
        m_begin += part;
        done += part;
    }
    return done;
}

void XArchive::ReadExactly(void* data, std::size_t count)
{
    if (Read(data, count) != count) {
        XFileException::Throw(XFileException::kEndOfFile, m_file->GetFilePath());
    }
}

void XArchive::Write(const void* data, std::size_t count)
{
    Require(kStore);
    if (count > m_bufferSize - m_end) Flush();
    if (count >= m_bufferSize) {
        m_file->Write(data, count);
    } else if (count > 0) {
        std::memcpy(m_buffer.get() + m_end, data, count);
        m_end += count;
    }
}

void XArchive::Flush()
{
    if (!m_file) XFileException::Throw(XFileException::kInvalidFile);
    const std::size_t pending = m_end - m_begin;
    // emptied first: bytes that failed once are not written again by the destructor
    m_begin = m_end = 0;
    if (pending == 0) return;
    if (m_mode == kStore) {
        m_file->Write(m_buffer.get(), pending);
    } else {
        m_file->Seek(-static_cast<std::int64_t>(pending), XFile::kCurrent);
    }
}

void XArchive::FillBuffer(std::size_t needed)
{
    Require(kLoad);
    if (needed > m_bufferSize) XIndexException::Throw();
    if (m_end - m_begin >= needed) return;
    std::memmove(m_buffer.get(), m_buffer.get() + m_begin, m_end - m_begin);
    m_end -= m_begin;
    m_begin = 0;
    m_end += m_file->Read(m_buffer.get() + m_end, m_bufferSize - m_end);
    if (m_end < needed) XFileException::Throw(XFileException::kEndOfFile, m_file->GetFilePath());
}

void XArchive::Close()
{
    if (!m_file) return;
    try {
        Flush();
    } catch (...) {
        m_file = nullptr;
        throw;
    }
    m_file = nullptr;
}

std::uint64_t XArchive::GetBytesLeft() const
{
    const std::int64_t behind =
        std::max<std::int64_t>(m_file->GetLength() - m_file->GetPosition(), 0);
    return static_cast<std::uint64_t>(behind) + (m_end - m_begin);
}

std::uint32_t XArchive::ReadCount(std::size_t bytesPerElement)
{
    std::uint32_t count = 0;
    *this >> count;
    if (count > GetBytesLeft() / std::max<std::size_t>(bytesPerElement, 1)) {
        XFileException::Throw(XFileException::kEndOfFile, m_file->GetFilePath());
    }
    return count;
}

XArchive& XArchive::operator<<(const XString& text)
{
    const XString bytes = m_isUtf8 ? XfnTextToUtf8(text) : text;
    *this << static_cast<std::uint32_t>(bytes.GetLength());
    Write(bytes.GetString(), static_cast<std::size_t>(bytes.GetLength()));
    return *this;
}

XArchive& XArchive::operator>>(XString& text)
{
    const std::uint32_t count = ReadCount(1);
    if (count > INT_MAX - 64) XFileException::Throw(XFileException::kEndOfFile);
    XString read;
    ReadExactly(read.GetBuffer(static_cast<int>(count)), count);
    read.ReleaseBuffer(static_cast<int>(count));
    if (m_isUtf8) read = XfnTextFromUtf8(read);
    text.Swap(read);
    return *this;
}
