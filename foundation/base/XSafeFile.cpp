#include "foundation/base/XSafeFile.h"

#include <atomic>
#include <cerrno>
#include <climits>
#include <cstdlib>
#include <fcntl.h>
#include <memory>
#include <sys/stat.h>
#include <unistd.h>

namespace {

/// The folder with the separator; empty for a name without one.
XString GetFolder(const XString& path)
{
    return path.Left(path.ReverseFind('/') + 1);
}

/// Where the path leads, also when nothing stands there yet. A ring of links stays a link.
XString FollowLinks(XString path)
{
    constexpr int kMaxLinks = 40; // more than that the system itself does not follow
    for (int i = 0; i < kMaxLinks; ++i) {
        const std::unique_ptr<char, decltype(&std::free)> name(realpath(path, nullptr), &std::free);
        if (name) return name.get();
        char target[PATH_MAX];
        const ssize_t length = readlink(path, target, sizeof target);
        if (length <= 0 || length == sizeof target) break;
        const XString next(target, static_cast<int>(length));
        path = target[0] == '/' ? next : GetFolder(path) + next;
    }
    return path;
}

/// A name that no other file under way in this or another process has; the exclusive creation of
/// the file settles the rest.
XString MakeTemporaryName(const XString& target)
{
    static std::atomic<unsigned> counter{0};
    return GetFolder(target) + XfnFormat(".%d-%u.tmp", static_cast<int>(getpid()), ++counter);
}

/// The rename itself lives in the folder and is lost with it in a crash. A folder that cannot be
/// opened or handed to the disk takes nothing from what is written.
void FlushFolder(const XString& path)
{
    const XString folder = GetFolder(path);
    const int descriptor =
        open(folder.IsEmpty() ? "." : folder.GetString(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor < 0) return;
    fsync(descriptor);
    close(descriptor);
}

} // namespace

XSafeFile::~XSafeFile()
{
    Discard();
}

int XSafeFile::Create(const char* path, XString& message)
{
    Discard();
    m_target = FollowLinks(path);
    struct stat old;
    const bool isReplaced = lstat(m_target, &old) == 0; // a link that is left is none of ours
    if (isReplaced && !S_ISREG(old.st_mode)) {
        message = "This is not a file that can be replaced: " + m_target + ".";
        return 0;
    }
    // the rename would not ask, but a file that may not be written is meant to stay
    if (isReplaced && access(m_target, W_OK) != 0) {
        message = XFileException(XFileException::kAccessDenied, 0, m_target).GetErrorMessage();
        return 0;
    }
    XFileException exception;
    const unsigned flags = XFile::kModeReadWrite | XFile::kModeCreate | XFile::kModeExclusive;
    for (int attempt = 0; attempt < 100; ++attempt) {
        m_temporary = MakeTemporaryName(m_target);
        if (m_target.IsEmpty() || m_file.Open(m_temporary, flags, &exception)) break;
        if (exception.m_lOsError != EEXIST) break;
    }
    if (!m_file.IsOpen()) {
        m_temporary.Empty();
        exception.m_strFileName = m_target;
        message = exception.GetErrorMessage();
        return 0;
    }
    if (isReplaced) {
        // both may be refused where the file system keeps no owners; the contents count
        if (chown(m_temporary, static_cast<uid_t>(-1), old.st_gid) != 0) errno = 0;
        if (chmod(m_temporary, old.st_mode & 0777) != 0) errno = 0;
    }
    return 1;
}

void XSafeFile::KeepFailure(const XString& message)
{
    if (m_failure.IsEmpty()) m_failure = message;
}

int XSafeFile::Write(const void* buffer, std::size_t count)
{
    if (!m_failure.IsEmpty() || !m_file.IsOpen()) return 0;
    try {
        m_file.Write(buffer, count);
        return 1;
    } catch (XFileException& e) {
        e.m_strFileName = m_target;
        KeepFailure(e.GetErrorMessage());
        e.Delete();
        return 0;
    }
}

int XSafeFile::Commit(XString& message)
{
    if (!m_file.IsOpen()) KeepFailure("No file was started.");
    if (m_failure.IsEmpty()) {
        try {
            m_file.Flush();
            m_file.Close();
            XFile::Rename(m_temporary, m_target);
            m_temporary.Empty();
            FlushFolder(m_target);
        } catch (XFileException& e) {
            e.m_strFileName = m_target;
            KeepFailure(e.GetErrorMessage());
            e.Delete();
        }
    }
    const XString failure = m_failure;
    Discard();
    if (failure.IsEmpty()) return 1;
    message = failure;
    return 0;
}

void XSafeFile::Discard()
{
    m_file.Abort();
    if (!m_temporary.IsEmpty()) unlink(m_temporary);
    m_temporary.Empty();
    m_failure.Empty();
}

int XfnWriteFileSafely(const char* path, const void* data, std::size_t count, XString& message)
{
    XSafeFile file;
    if (!file.Create(path, message)) return 0;
    file.Write(data, count);
    return file.Commit(message);
}
