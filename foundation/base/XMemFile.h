#pragma once

#include "foundation/base/XFile.h"

#include <vector>

/// A file in memory: a buffer of its own that grows, or a view of bytes of the caller.
///
/// Always open. Open is refused; Close empties the file. Every operation is that of XFile; a write
/// to a view throws kAccessDenied, a length that memory cannot hold kDiskFull.
class XAPI XMemFile : public XFile
{
    X_DECLARE_CLASS(XMemFile)
public:
    XMemFile() = default;

    /// Shows `size` bytes at `data`, which must outlive their use here; the position goes to 0.
    void Attach(const void* data, std::size_t size);

    const unsigned char* GetBuffer() const { return m_isView ? m_view : m_bytes.data(); }

    int Open(const char* fileName, unsigned flags, XFileException* exception = nullptr) override;
    int IsOpen() const override { return 1; }
    void Close() override;
    void Abort() override;
    std::size_t Read(void* buffer, std::size_t count) override;
    std::size_t ReadAt(std::int64_t offset, void* buffer, std::size_t count) const override;
    void Write(const void* buffer, std::size_t count) override;
    std::int64_t Seek(std::int64_t offset, SeekFrom from) override;
    std::int64_t GetPosition() const override { return static_cast<std::int64_t>(m_position); }
    std::int64_t GetLength() const override { return static_cast<std::int64_t>(GetSize()); }
    void SetLength(std::int64_t length) override;
    void Flush() override {}

private:
    std::size_t GetSize() const { return m_isView ? m_viewSize : m_bytes.size(); }
    void Resize(std::size_t size);

    std::vector<unsigned char> m_bytes;
    const unsigned char* m_view = nullptr;
    std::size_t m_viewSize = 0;
    std::size_t m_position = 0;
    bool m_isView = false;
};
