#include "foundation/base/XMemFile.h"

#include <algorithm>
#include <cstring>
#include <new>
#include <stdexcept>

X_IMPLEMENT_CLASS(XMemFile, XFile)

void XMemFile::Attach(const void* data, std::size_t size)
{
    Close();
    m_view = static_cast<const unsigned char*>(data);
    m_viewSize = size;
    m_isView = true;
}

int XMemFile::Open(const char*, unsigned, XFileException* exception)
{
    if (exception) *exception = XFileException(XFileException::kInvalidFile);
    return 0;
}

void XMemFile::Close()
{
    std::vector<unsigned char>().swap(m_bytes);
    m_view = nullptr;
    m_viewSize = 0;
    m_position = 0;
    m_isView = false;
}

void XMemFile::Abort()
{
    Close();
}

void XMemFile::Resize(std::size_t size)
{
    if (m_isView) XFileException::Throw(XFileException::kAccessDenied);
    try {
        m_bytes.resize(size);
    } catch (const std::bad_alloc&) {
        XFileException::Throw(XFileException::kDiskFull);
    } catch (const std::length_error&) {
        XFileException::Throw(XFileException::kDiskFull);
    }
}

std::size_t XMemFile::Read(void* buffer, std::size_t count)
{
    const std::size_t got = ReadAt(GetPosition(), buffer, count);
    m_position += got;
    return got;
}

std::size_t XMemFile::ReadAt(std::int64_t offset, void* buffer, std::size_t count) const
{
    if (offset < 0) XFileException::Throw(XFileException::kBadSeek);
    const std::size_t at = static_cast<std::size_t>(offset);
    if (at >= GetSize()) return 0;
    const std::size_t got = std::min(count, GetSize() - at);
    if (got > 0) std::memcpy(buffer, GetBuffer() + at, got);
    return got;
}

void XMemFile::Write(const void* buffer, std::size_t count)
{
    if (m_isView) XFileException::Throw(XFileException::kAccessDenied);
    if (count == 0) return;
    if (count > static_cast<std::size_t>(INT64_MAX) - m_position) {
        XFileException::Throw(XFileException::kDiskFull);
    }
    const std::size_t end = m_position + count;
    if (end > m_bytes.size()) Resize(end);
    std::memcpy(m_bytes.data() + m_position, buffer, count);
    m_position = end;
}

std::int64_t XMemFile::Seek(std::int64_t offset, SeekFrom from)
{
    const std::int64_t base = from == kBegin ? 0 : from == kCurrent ? GetPosition() : GetLength();
    std::int64_t position;
    if (__builtin_add_overflow(base, offset, &position) || position < 0) {
        XFileException::Throw(XFileException::kBadSeek);
    }
    m_position = static_cast<std::size_t>(position);
    return position;
}

void XMemFile::SetLength(std::int64_t length)
{
    if (length < 0) XFileException::Throw(XFileException::kBadSeek);
    Resize(static_cast<std::size_t>(length));
}
