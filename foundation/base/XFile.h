#pragma once

#include "foundation/base/XFileException.h"
#include "foundation/base/XObject.h"
#include "foundation/base/XString.h"
#include "foundation/base/XTime.h"

#include <cstddef>
#include <cstdint>

/// What XFile::GetStatus tells of a file.
struct tagXFileStatus
{
    XTime modifyTime;
    XTime accessTime;
    std::int64_t size = 0; ///< bytes
    int isDirectory = 0;
    int isReadOnly = 0; ///< this process may not write it
    XString fullName;   ///< absolute, links resolved
};

/// A file of bytes, unbuffered, with 64-bit offsets.
///
/// Owns its descriptor; the destructor closes it and ignores a failure, so a writer that cares
/// calls Close or Flush. File names are narrow text. Only Open reports by its result; every other
/// operation throws XFileException on failure and leaves the position undefined.
/// Threads: one object a thread at a time, but ReadAt may run in several.
class XAPI XFile : public XObject
{
    X_DECLARE_CLASS(XFile)
public:
    enum OpenFlags : unsigned {
        kModeRead = 0x0000,
        kModeWrite = 0x0001,
        kModeReadWrite = 0x0002,
        kModeCreate = 0x1000,     ///< makes the file, or empties it
        kModeNoTruncate = 0x2000, ///< with kModeCreate: keeps what a file holds
        kModeExclusive = 0x4000,  ///< with kModeCreate: fails when the file is there
    };
    enum SeekFrom { kBegin, kCurrent, kEnd };

    XFile() = default;
    /// Opens at once. Throws XFileException.
    XFile(const char* fileName, unsigned flags);
    XFile(const XFile&) = delete;
    XFile& operator=(const XFile&) = delete;
    ~XFile() override;

    /// Opens a file; one that was open is closed first. Folders are refused.
    /// @return 0 on failure; then `exception`, if given, says why and the object is closed.
    virtual int Open(const char* fileName, unsigned flags, XFileException* exception = nullptr);
    virtual int IsOpen() const;
    /// Closes; a second call does nothing. Throws when the system reports a late write error; the
    /// file is closed all the same.
    virtual void Close();
    /// Closes and ignores every failure.
    virtual void Abort();

    /// Reads up to `count` bytes.
    /// @return the bytes read, fewer than `count` only at the end of the file.
    virtual std::size_t Read(void* buffer, std::size_t count);
    /// Reads at an offset without use of the position. Same result as Read.
    virtual std::size_t ReadAt(std::int64_t offset, void* buffer, std::size_t count) const;
    /// Writes all `count` bytes or throws.
    virtual void Write(const void* buffer, std::size_t count);

    /// Moves the position; beyond the end is allowed, before the begin throws kBadSeek.
    /// @return the new position.
    virtual std::int64_t Seek(std::int64_t offset, SeekFrom from);
    virtual std::int64_t GetPosition() const;
    virtual std::int64_t GetLength() const;
    /// Cuts the file or fills it up with zero bytes. The position stays.
    virtual void SetLength(std::int64_t length);
    /// Hands everything to the disk.
    virtual void Flush();

    std::int64_t SeekToBegin() { return Seek(0, kBegin); }
    std::int64_t SeekToEnd() { return Seek(0, kEnd); }

    /// The path given to Open; empty when the file is closed or has none.
    XString GetFilePath() const { return m_filePath; }
    XString GetFileName() const;  ///< the last part of the path
    XString GetFileTitle() const; ///< the name without its extension
    /// The system's number of the open file, which stays this object's; -1 when there is none.
    int GetDescriptor() const { return m_descriptor; }

    /// @return 0 when there is no such file.
    static int GetStatus(const char* fileName, tagXFileStatus& status);
    int GetStatus(tagXFileStatus& status) const;

    /// Throw XFileException. Rename replaces a file that is there.
    static void Remove(const char* fileName);
    static void Rename(const char* oldName, const char* newName);

protected:
    void RequireOpen() const; ///< throws kInvalidFile

    XString m_filePath;

private:
    int m_descriptor = -1;
};
