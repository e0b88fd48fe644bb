#include "foundation/base/XFile.h"

#include "foundation/base/XPath.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <memory>
#include <sys/stat.h>
#include <unistd.h>

X_IMPLEMENT_CLASS(XFile, XObject)

static_assert(sizeof(off_t) == 8);

namespace {

// the system transfers no more than this in one call
constexpr std::size_t kLargestTransfer = std::size_t{1} << 30;

int GetSystemFlags(unsigned flags)
{
    int result = O_CLOEXEC | O_NOCTTY | O_NONBLOCK;
    if (flags & XFile::kModeReadWrite) {
        result |= O_RDWR;
    } else if (flags & XFile::kModeWrite) {
        result |= O_WRONLY;
    }
    if (flags & XFile::kModeCreate) {
        result |= O_CREAT;
        if (!(flags & XFile::kModeNoTruncate)) result |= O_TRUNC;
        if (flags & XFile::kModeExclusive) result |= O_EXCL;
        // O_TRUNC needs a descriptor that may write
        if (!(flags & (XFile::kModeWrite | XFile::kModeReadWrite))) result |= O_RDWR;
    }
    return result;
}

template <class Call>
auto Retry(Call call)
{
    auto result = call();
    while (result < 0 && errno == EINTR)
        result = call();
    return result;
}

void FillStatus(const struct stat& info, tagXFileStatus& status)
{
    status.modifyTime = XTime(info.st_mtim.tv_sec);
    status.accessTime = XTime(info.st_atim.tv_sec);
    status.size = info.st_size;
    status.isDirectory = S_ISDIR(info.st_mode);
}

void FillName(const char* fileName, tagXFileStatus& status)
{
    status.isReadOnly = access(fileName, W_OK) != 0;
    const std::unique_ptr<char, decltype(&std::free)> name(realpath(fileName, nullptr), &std::free);
    status.fullName = name ? name.get() : fileName;
}

} // namespace

XFile::XFile(const char* fileName, unsigned flags)
{
    XFileException exception;
    if (!XFile::Open(fileName, flags, &exception)) throw exception;
}

XFile::~XFile()
{
    XFile::Abort();
}

int XFile::Open(const char* fileName, unsigned flags, XFileException* exception)
{
    XFile::Abort();
    const auto fail = [&](int osError) {
        if (exception) {
            *exception = XFileException(XFileException::OsErrorToCause(osError), osError, fileName);
        }
        return 0;
    };
    if (!fileName || !*fileName) return fail(ENOENT);
    const int descriptor = Retry([&] { return open(fileName, GetSystemFlags(flags), 0666); });
    if (descriptor < 0) return fail(errno);
    struct stat info;
    int error = fstat(descriptor, &info) != 0 ? errno : 0;
    if (!error && S_ISDIR(info.st_mode)) error = EISDIR;
    // O_NONBLOCK was there so that a pipe without a writer does not hold up the open
    if (!error && fcntl(descriptor, F_SETFL, fcntl(descriptor, F_GETFL) & ~O_NONBLOCK) != 0) {
        error = errno;
    }
    if (error) {
        close(descriptor);
        return fail(error);
    }
    m_descriptor = descriptor;
    m_filePath = fileName;
    return 1;
}

int XFile::IsOpen() const
{
    return m_descriptor >= 0;
}

void XFile::RequireOpen() const
{
    if (!IsOpen()) XFileException::Throw(XFileException::kInvalidFile, m_filePath);
}

void XFile::Close()
{
    if (m_descriptor < 0) return;
    const int result = close(m_descriptor);
    const int error = errno;
    const XString path = m_filePath;
    m_descriptor = -1;
    m_filePath.Empty();
    if (result != 0 && error != EINTR) XFileException::ThrowOsError(error, path);
}

void XFile::Abort()
{
    if (m_descriptor >= 0) close(m_descriptor);
    m_descriptor = -1;
    m_filePath.Empty();
}

std::size_t XFile::Read(void* buffer, std::size_t count)
{
    RequireOpen();
    std::size_t done = 0;
    while (done < count) {
        char* to = static_cast<char*>(buffer) + done;
        const std::size_t part = std::min(count - done, kLargestTransfer);
        const ssize_t got = Retry([&] { return read(m_descriptor, to, part); });
        if (got < 0) XFileException::ThrowOsError(errno, m_filePath);
        if (got == 0) break;
        done += static_cast<std::size_t>(got);
    }
    return done;
}

std::size_t XFile::ReadAt(std::int64_t offset, void* buffer, std::size_t count) const
{
    RequireOpen();
    if (offset < 0) XFileException::Throw(XFileException::kBadSeek, m_filePath);
    std::size_t done = 0;
    while (done < count) {
        char* to = static_cast<char*>(buffer) + done;
        const std::size_t part = std::min(count - done, kLargestTransfer);
        // an offset that wraps lies behind the end of every file
        const std::uint64_t at = static_cast<std::uint64_t>(offset) + done;
        if (at > static_cast<std::uint64_t>(INT64_MAX) - part) break;
        const ssize_t got =
            Retry([&] { return pread(m_descriptor, to, part, static_cast<off_t>(at)); });
        if (got < 0) XFileException::ThrowOsError(errno, m_filePath);
        if (got == 0) break;
        done += static_cast<std::size_t>(got);
    }
    return done;
}

void XFile::Write(const void* buffer, std::size_t count)
{
    RequireOpen();
    std::size_t done = 0;
    while (done < count) {
        const char* from = static_cast<const char*>(buffer) + done;
        const std::size_t part = std::min(count - done, kLargestTransfer);
        const ssize_t put = Retry([&] { return write(m_descriptor, from, part); });
        if (put <= 0) XFileException::ThrowOsError(put < 0 ? errno : ENOSPC, m_filePath);
        done += static_cast<std::size_t>(put);
    }
}

std::int64_t XFile::Seek(std::int64_t offset, SeekFrom from)
{
    RequireOpen();
    const int whence = from == kBegin ? SEEK_SET : from == kCurrent ? SEEK_CUR : SEEK_END;
    const off_t position = lseek(m_descriptor, offset, whence);
    if (position < 0) throw XFileException(XFileException::kBadSeek, errno, m_filePath);
    return position;
}

std::int64_t XFile::GetPosition() const
{
    RequireOpen();
    const off_t position = lseek(m_descriptor, 0, SEEK_CUR);
    if (position < 0) XFileException::ThrowOsError(errno, m_filePath);
    return position;
}

std::int64_t XFile::GetLength() const
{
    RequireOpen();
    struct stat info;
    if (fstat(m_descriptor, &info) != 0) XFileException::ThrowOsError(errno, m_filePath);
    return info.st_size;
}

void XFile::SetLength(std::int64_t length)
{
    RequireOpen();
    if (Retry([&] { return ftruncate(m_descriptor, length); }) != 0) {
        XFileException::ThrowOsError(errno, m_filePath);
    }
}

void XFile::Flush()
{
    RequireOpen();
    // a pipe or device has nothing to hand to a disk and says so with EINVAL
    if (Retry([&] { return fsync(m_descriptor); }) != 0 && errno != EINVAL) {
        XFileException::ThrowOsError(errno, m_filePath);
    }
}

XString XFile::GetFileName() const
{
    return XfnGetFileName(m_filePath);
}

XString XFile::GetFileTitle() const
{
    return XfnGetFileTitle(m_filePath);
}

int XFile::GetStatus(const char* fileName, tagXFileStatus& status)
{
    struct stat info;
    if (!fileName || stat(fileName, &info) != 0) return 0;
    FillStatus(info, status);
    FillName(fileName, status);
    return 1;
}

int XFile::GetStatus(tagXFileStatus& status) const
{
    struct stat info;
    if (m_descriptor < 0 || fstat(m_descriptor, &info) != 0) return 0;
    FillStatus(info, status);
    FillName(m_filePath, status);
    return 1;
}

void XFile::Remove(const char* fileName)
{
    if (!fileName || unlink(fileName) != 0) {
        XFileException::ThrowOsError(fileName ? errno : ENOENT, fileName);
    }
}

void XFile::Rename(const char* oldName, const char* newName)
{
    if (!oldName || !newName) XFileException::ThrowOsError(ENOENT);
    if (rename(oldName, newName) != 0) XFileException::ThrowOsError(errno, oldName);
}
