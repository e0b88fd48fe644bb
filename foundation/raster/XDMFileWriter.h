#pragma once

#include "foundation/raster/XDMFileInfo.h"

#include <memory>

/// Writes a native raster file (.xdm): tiles of all bands and levels in any order, then the rest.
///
/// The bytes go to a new file beside the target, which takes its place in Commit; until then, and
/// after every failure, the target is as it was. Dropping the object without a Commit leaves
/// nothing behind, so a cancel is just a return.
/// Threads: Create, Commit and GetInfo in one at a time; WriteTile and ReadTile from any, also at
/// once (tiles are compressed in the calling thread, only the file itself is used in turn).
///
///     XDMFileWriter file;
///     if (!file.Create(path, info, message)) return 0;
///     ... file.WriteTile(band, level, tx, ty, samples, size, message) ...
///     file.GetInfo().bands[0].statistics = ...;      // known only now
///     return file.Commit(message);
class XAPI XDMFileWriter
{
public:
    XDMFileWriter();
    XDMFileWriter(const XDMFileWriter&) = delete;
    XDMFileWriter& operator=(const XDMFileWriter&) = delete;
    ~XDMFileWriter();

    /// Starts a file; one that was under way is dropped. `info` needs the bands with their layout;
    /// everything else may follow through GetInfo.
    /// @return 0 with a sentence in `message`.
    int Create(const char* path, const tagXDMFileInfo& info, XString& message);

    /// The records as Commit will write them; the layout of a band may not change any more.
    tagXDMFileInfo& GetInfo() { return m_info; }

    /// Writes a tile, laid out as XDMFileReader::ReadTile gives it. A tile that is the null value
    /// all over (0 in a band without one) takes no bytes; one that is never written reads so. A
    /// tile written again replaces the first, whose bytes stay in the file unused.
    /// @param samples  aligned for their type
    /// @param size     bytes at `samples`; exactly those of the tile
    /// @return 0 with a sentence in `message`; after a failed write every later call fails.
    int WriteTile(int band, int level, int tx, int ty, const void* samples, std::size_t size,
                  XString& message);

    /// Reads a tile back, as it was written last, for instance to make the next level of it. From
    /// any thread, also while others write.
    /// @param out   aligned for its samples
    /// @param size  bytes at `out`; exactly those of the tile
    /// @return 0 with a sentence in `message`; the memory at `out` then holds anything.
    int ReadTile(int band, int level, int tx, int ty, void* out, std::size_t size,
                 XString& message);

    /// Writes the records, hands all to the disk and puts the file in its place.
    /// @return 0 with a sentence in `message` and the target as it was. Records that may not be
    ///         written can be mended and committed again; after any other failure the new file is
    ///         gone.
    int Commit(XString& message);

    /// Drops what was written.
    void Discard();

private:
    struct tagState;
    std::unique_ptr<tagState> m_state; // while a file is under way
    tagXDMFileInfo m_info;
};
