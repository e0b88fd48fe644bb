#pragma once

#include "foundation/base/XFile.h"

/// Writes a file so that the old one survives every failure.
///
/// The bytes go to a new file beside the target; Commit hands them to the disk and renames it over
/// the target. Without a Commit the destructor removes the new file. A target that is a link is
/// followed and stays a link; when nothing stands where it points, the file is made there, and a
/// ring of links is refused. Permissions of a file that is replaced are kept.
///
///     XSafeFile file;
///     if (!file.Create(path, message)) return 0;
///     file.Write(header);
///     return file.Commit(message);
class XAPI XSafeFile
{
public:
    XSafeFile() = default;
    XSafeFile(const XSafeFile&) = delete;
    XSafeFile& operator=(const XSafeFile&) = delete;
    ~XSafeFile();

    /// Starts a new file for the target `path`; one that was under way is dropped.
    /// @return 0 with a sentence in `message` when no file can be made there.
    int Create(const char* path, XString& message);

    /// Adds bytes. The first failure is kept, later calls do nothing, and Commit tells it.
    /// @return 0 once something failed.
    int Write(const void* buffer, std::size_t count);
    int Write(const XString& text) { return Write(text.GetString(), text.GetLength()); }

    /// The file under way, for an archive or for seeking. It throws; a throw that is not followed
    /// by Commit leaves the target as it was. Not to be closed.
    XFile& GetFile() { return m_file; }

    /// Ends the writing and puts the file in place.
    /// @return 0 with a sentence in `message`; the target is then as it was.
    int Commit(XString& message);

    /// Drops what was written.
    void Discard();

private:
    void KeepFailure(const XString& message);

    XFile m_file;
    XString m_target; // links resolved
    XString m_temporary;
    XString m_failure;
};

/// XSafeFile for contents that are complete in memory.
XAPI int XfnWriteFileSafely(const char* path, const void* data, std::size_t count,
                            XString& message);
