#pragma once

#include "foundation/raster/XDMFileInfo.h"

#include <atomic>
#include <memory>

class XFile;
class XFileMap;

/// Samples of a tile where they lie in the mapped file.
struct tagXDMFileView
{
    const unsigned char* samples = nullptr; ///< null: there is no view
    std::shared_ptr<const XFileMap> map;    ///< keeps them
};

/// Reads a native raster file (.xdm): its records and, tile by tile, its pixels.
///
/// Owns the open file until it is destroyed. Every number of the file is checked before it is
/// used, and every tile against its checksum, so a damaged or hostile file gives a sentence.
/// Memory: the records, and the tile table of each level that was touched; both are small
/// multiples of bytes that are in the file. Decoding needs at most two tiles more.
/// The file is mapped, and a plain tile is handed out where it lies (ViewTile). Its checksum is
/// verified once as long as the file is open, since a look at every byte costs as much as a copy.
/// What is parsed or unpacked comes by positioned reads: another process could change it between
/// check and use. A file that cannot be mapped gives no views and is read.
/// A file that is written while it is open, or becomes shorter, gives a sentence from then on, never a
/// fault.
/// Threads: Open in one; then every const operation from any thread at the same time.
///
///     XDMFileReader file;
///     if (!file.Open(path, message)) return 0;
///     const tagXDMFileBand& band = file.GetInfo().bands[0];
///     file.ReadTile(0, 0, tx, ty, memory, size, message);
class XAPI XDMFileReader
{
public:
    XDMFileReader();
    XDMFileReader(const XDMFileReader&) = delete;
    XDMFileReader& operator=(const XDMFileReader&) = delete;
    ~XDMFileReader();

    /// Opens a file and reads its records; one that was open is closed once the new one stands.
    /// @return 0 with a sentence in `message`; what was open before stays open.
    int Open(const char* path, XString& message);
    /// The same for an open file, a piece of memory for instance. `name` stands in the sentences.
    int Open(std::unique_ptr<XFile> file, const XString& name, XString& message);
    void Close();

    int IsOpen() const { return m_state != nullptr; }
    XString GetFilePath() const;           ///< as given to Open; empty when closed
    const tagXDMFileInfo& GetInfo() const; ///< of an open file; good until Open or Close

    /// Bytes of the tile (tx, ty), which holds only the pixels that exist; 0 when there is none.
    std::size_t GetTileBytes(int band, int level, int tx, int ty) const;

    /// Decodes a tile: rows from the top without gaps, samples in memory order, complex as re, im.
    /// @param out   aligned for its samples
    /// @param size  bytes at `out`; exactly GetTileBytes
    /// @return 0 with a sentence in `message`; the memory at `out` then holds anything.
    int ReadTile(int band, int level, int tx, int ty, void* out, std::size_t size,
                 XString& message) const;

    /// The samples of a tile as ReadTile gives them, without a copy.
    /// @param view  has null samples when the tile must be read: it is packed or empty, or the file
    ///              is not mapped. What was made of the samples counts when IsIntact says so after.
    /// @return 0 with a sentence in `message`.
    int ViewTile(int band, int level, int tx, int ty, tagXDMFileView& view, XString& message) const;
    /// 1 when ViewTile has nothing to read: there is a view, and it was verified.
    int IsViewReady(int band, int level, int tx, int ty) const;
    /// 1 while the file is as it was when it was opened: as long, and not written since. Asks the
    /// system.
    /// @return 0 with a sentence in `message`, then for good.
    int IsIntact(XString& message) const;
    /// 1 while it is intact and still the one at its path.
    /// @return 0 with a sentence in `message`
    int IsCurrent(XString& message) const;

    /// 1 when the tile takes no bytes, being the null value (or 0 in a band without one) all over;
    /// -1 with a sentence when that cannot be told.
    int IsTileEmpty(int band, int level, int tx, int ty, XString& message) const;

    /// Reads every tile once and looks for bytes that two tiles claim. Needs the time of a full
    /// read.
    /// @param abort  may be null; looked at before each tile
    /// @return 0 with a sentence in `message`, an empty one when `abort` rose.
    int CheckAll(const std::atomic<int>* abort, XString& message) const;

    /// 1 when a file that begins with these bytes is meant to be one of this format.
    static int IsXDMFile(const void* bytes, std::size_t count);

private:
    struct tagState;
    std::unique_ptr<tagState> m_state;
};
