#pragma once

#include "foundation/base/XObject.h"
#include "foundation/base/XString.h"
#include "foundation/raster/XBandStatistics.h"

#include <atomic>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>
#include <vector>

class XDMBand;
class XTile;
struct tagXArr2;

/// Samples for a part of a tile: width x height of them from pixel (x, y) of the tile.
struct tagXTilePiece
{
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;
    const unsigned char* samples = nullptr; ///< of the band's data type
    std::size_t rowBytes = 0;               ///< from one row of samples to the next
};

/// One band of an image: what it is called, how its samples are laid out, its numbers, and the
/// operations on its pixels, which XDMBand implements.
///
/// Reading: windows count in pixels of full resolution and lines in pixels of their level; both
/// ends of a window are included. Any number of threads at once; 0 for what is not wholly inside or
/// cannot be read.
///
/// Writing: always at full resolution. Samples are of the band's data type, rows without gaps where
/// they come as plain memory. With `skip` set, samples equal to `number` (NaN: those that are NaN;
/// a complex one when its real part is `number` and its imaginary part 0) are not written: the
/// pixels of their places stay as they are. A written place is read anew from then on, at every
/// level, and the statistics are computed anew; levels that are stored, and not taken from full
/// resolution, follow with BuildLowerLevelsForTIP. Reading goes on in other threads meanwhile and
/// sees each pixel before or after; writers wait for each other. 0, with nothing written, when the
/// band cannot be written (IsWritable), the place is not wholly inside, or a block has another size
/// or data type.
///
/// Statistics are computed when they are first asked for, in the calling thread, from a bounded
/// part of the pixels; then HasEstimatedStatistics says so. A band that cannot be read, or has no
/// valid pixel, has none: the getters give kXNotSet.
///
/// Threads: setters belong to the thread that builds the band, before others see it, except
/// SetBandStatistics and the computation itself, which are safe. Getters may run in any thread.
class XAPI XBand : public XObject
{
    X_DECLARE_CLASS(XBand)
public:
    XBand();
    XBand(const XBand&) = delete;
    XBand& operator=(const XBand&) = delete;
    ~XBand() override;

    int GetID() const { return m_id; }
    void SetID(int id) { m_id = id; }
    const XString& GetBandName() const { return m_bandName; }
    void SetBandName(const XString& name) { m_bandName = name; }
    const XString& GetBandDescription() const { return m_bandDescription; }
    void SetBandDescription(const XString& text) { m_bandDescription = text; }
    std::int64_t GetOffsetInFile() const { return m_offsetInFile; } ///< 0 when not plain bytes
    void SetOffsetInFile(std::int64_t offset) { m_offsetInFile = offset; }
    virtual int GetDataType() const; ///< code of XRasterTypes.h
    int GetDataSize() const;         ///< bytes of one sample
    int GetXSize() const { return m_xSize; }
    int GetYSize() const { return m_ySize; }
    int GetXTileSize() const { return m_xTileSize; } ///< of level 0
    int GetYTileSize() const { return m_yTileSize; }
    int GetCompressionInfo() const { return m_compressionInfo; } ///< 0 none, 1 compressed
    void SetCompressionInfo(int info) { m_compressionInfo = info; }

    // ---- pixels ----

    /// One row of a level: `count` samples from column `start`, in pixels of that level.
    /// @param block  a null pointer gets a new block, which the caller deletes; another is reused
    /// @return 0 when the piece is not wholly inside or cannot be read; `block` is then undefined
    virtual int ReadLineH(tagXArr2*& block, int level, int row, int start, int count) = 0;
    virtual int ReadLineH(tagXArr2*& block, int level, int row) = 0;
    /// One column of a level: `count` samples from row `start`; a block of width 1.
    virtual int ReadLineV(tagXArr2*& block, int level, int column, int start, int count) = 0;
    virtual int ReadLineV(tagXArr2*& block, int level, int column) = 0;
    /// The pixel (x, y) at full resolution.
    virtual int ReadPixel(tagXArr2*& block, int x, int y) = 0;

    /// `count` samples of a row from column `start`, or the whole row. A block is count x 1.
    virtual int WriteLineH(const void* data, int row, int start, int count, bool skip,
                           double number) = 0;
    virtual int WriteLineH(const void* data, int row, bool skip, double number) = 0;
    virtual int WriteLineH(const tagXArr2* block, int row, int start, int count, bool skip,
                           double number) = 0;
    virtual int WriteLineH(const tagXArr2* block, int row, bool skip, double number) = 0;
    /// `count` samples of a column from row `start`, or the whole column. A block is 1 x count.
    virtual int WriteLineV(const void* data, int column, int start, int count, bool skip,
                           double number) = 0;
    virtual int WriteLineV(const void* data, int column, bool skip, double number) = 0;
    virtual int WriteLineV(const tagXArr2* block, int column, int start, int count, bool skip,
                           double number) = 0;
    virtual int WriteLineV(const tagXArr2* block, int column, bool skip, double number) = 0;
    virtual int WritePixel(const void* data, int x, int y, bool skip, double number) = 0;
    virtual int WritePixel(const tagXArr2* block, int x, int y, bool skip, double number) = 0;

    /// The coarsest level that still comes to width x height samples for a world quadrilateral:
    /// upper left, upper right, lower right, lower left.
    virtual int GetHighestLevelForTarget(double ulX, double ulY, double urX, double urY, double lrX,
                                         double lrY, double llX, double llY, int width,
                                         int height) const = 0;
    /// The same for the pixels x0..x1, y0..y1.
    virtual int GetHighestLevelForTarget(int x0, int x1, int y0, int y1, int width,
                                         int height) const = 0;
    /// Bytes of a processing strip of ten lines.
    virtual std::int64_t CalcProcessWidthBytes() const = 0;

    /// The pixels x0..x1, y0..y1 as level `level` shows them, in the band's data type, as plain
    /// samples without gaps. Level 0 gives every pixel, level l about every 2^l-th; GetSubsetPos
    /// tells the size.
    /// @param data   receives a block from XMemory::Alloc that the caller frees with XMemory::Free
    /// @param abort  polled once a tile; raised, the result is 0
    /// @return 0 also when the window is empty or too large for the memory
    virtual int ReadSubset(void*& data, int& width, int& height, int level, int x0, int x1, int y0,
                           int y1, const std::atomic<int>* abort) = 0;
    /// The same as a block, which is made or reused as ReadLineH does.
    /// @param message  when given, receives why it failed; empty after an abort
    virtual int ReadSubset(tagXArr2*& block, int level, int x0, int x1, int y0, int y1,
                           const std::atomic<int>* abort, XString* message = nullptr) = 0;
    /// Ends the writing of a window: all that was derived from its pixels is made anew, the stored
    /// levels too, `number` being no data when `skip` is set. The form for pixels that were changed
    /// in place, and after the last of many lines.
    virtual int WriteSubset(int x0, int x1, int y0, int y1, bool skip, double number) = 0;
    /// Replaces the pixels of the window.
    virtual int WriteSubset(const void* data, int x0, int x1, int y0, int y1, bool skip,
                            double number) = 0;
    virtual int WriteSubset(const tagXArr2* block, int x0, int x1, int y0, int y1, bool skip,
                            double number) = 0;

    /// The number of reduced levels, which is the number of the coarsest.
    virtual int GetLevel() const = 0;
    /// The tiles of a level, both ends included, that a window touches.
    virtual void GetSubsetInfo(int level, int x0, int x1, int y0, int y1, int& tileX0, int& tileX1,
                               int& tileY0, int& tileY1) const = 0;
    /// The pixels of a level, both ends included, that a window has there; held inside the level.
    virtual void GetSubsetPos(int level, int x0, int x1, int y0, int y1, int& levelX0, int& levelX1,
                              int& levelY0, int& levelY1) const = 0;

protected:
    /// Decodes one tile, without the cache. Any number of threads at once. tx and ty are inside.
    /// @return null after an abort (`message` is empty) or a failure. Throws nothing but
    ///         std::bad_alloc.
    virtual std::shared_ptr<const XTile>
    ReadTile(int level, int tx, int ty, const std::atomic<int>* abort, XString& message) const = 0;
    /// Stores a piece of one tile, which lies inside the tile: all of it or a part, down to a run of
    /// samples in a row. One thread at a time, while others call ReadTile.
    virtual int WriteTile(int level, int tx, int ty, const tagXTilePiece& piece,
                          XString& message) = 0;

public:
    /// Makes the stored levels of the window anew from its pixels, each from the next finer one by
    /// averages; bands of classes and masks by picking. Levels that are not stored need none.
    /// @param nullValue  no data where `skip` is set: it takes no part in an average
    /// @return 0 for a window that is not wholly inside, a band that cannot be written, or when the
    ///         memory does not suffice
    virtual int BuildLowerLevelsForTIP(double nullValue, int x0, int x1, int y0, int y1,
                                       bool skip) = 0;
    /// Takes over all that describes `source`: name, null value, statistics, reference, geometry,
    /// class table, attributes. Pixels, their layout, ID and owner stay.
    virtual int CloneBand(const XDMBand* source) = 0;
    /// 1 when the write operations work. Bands over image files and derived bands are read only.
    virtual int IsWritable() const = 0;

    /// The value that stands for no data; kXNotSet when there is none. May be NaN.
    double GetNullValue() const { return m_nullValue; }
    int HasNullValue() const { return m_nullValue != kXNotSet; }
    /// Drops the statistics. Infinity is taken as it is; NaN pixels are never data anyway.
    virtual void SetNullValue(double value);

    double GetBandMin() const;
    double GetBandMax() const;
    double GetBandMean() const;
    double GetBandStdDev() const;
    /// 256 bins; all 0 when there is no valid pixel. Stays readable while the band lives, and holds
    /// the numbers of the moment it was asked for.
    const long long* GetHistogram() const;
    /// 1 when minimum, maximum, mean and deviation rest on a part of the pixels.
    int HasEstimatedStatistics() const;
    /// 1 when the histogram does.
    int HasEstimatedHistogram() const;

    /// All numbers of one moment, the histogram included. Never null.
    /// @param abort  ends a computation, or the waiting for another thread's; then the numbers at hand
    ///               are given, which may be none, and the computation is made at the next need
    std::shared_ptr<const tagXBandStatistics>
    GetStatistics(const std::atomic<int>* abort = nullptr) const;
    /// Replaces the numbers, for instance by exact ones.
    void SetBandStatistics(const tagXBandStatistics& statistics);
    /// Replaces them by numbers of the pixels as they were at `changeNumber`.
    /// @return 0 when these have changed since; nothing was replaced then
    int SetBandStatistics(const tagXBandStatistics& statistics, std::uint64_t changeNumber);
    /// Forgets the numbers; they are computed anew at the next need.
    void DropStatistics();
    /// Statistics are at hand, or stored with the file, so that asking costs no reading.
    int HasStatistics() const;
    /// Another number after each change of the pixels or the null value; no two bands of a process
    /// ever have the same.
    std::uint64_t GetChangeNumber() const { return m_changeNumber.load(); }

protected:
    void SetLayout(int dataType, int xSize, int ySize, int xTileSize, int yTileSize);

    /// Exact numbers that need no reading of pixels, without a histogram. @return 0 when none
    virtual int ReadStoredStatistics(tagXBandStatistics& statistics) const;
    /// Numbers and histogram from pixels. With `known` set, its limits are used for the histogram
    /// and its numbers are kept. Called by one thread at a time. What it gives once `abort` is up is
    /// thrown away.
    virtual tagXBandStatistics CalcBandStatistics(const tagXBandStatistics* known,
                                                  const std::atomic<int>* abort) const;

private:
    std::shared_ptr<const tagXBandStatistics> Need(int withHistogram,
                                                   const std::atomic<int>* abort = nullptr) const;
    std::shared_ptr<const tagXBandStatistics>
    Calc(const tagXBandStatistics* current, int withHistogram, const std::atomic<int>* abort) const;
    void Publish(std::shared_ptr<const tagXBandStatistics> statistics);

    int m_id = 0;
    XString m_bandName;
    XString m_bandDescription;
    std::int64_t m_offsetInFile = 0;
    int m_dataType = 0;
    int m_xSize = 0;
    int m_ySize = 0;
    int m_xTileSize = 0;
    int m_yTileSize = 0;
    int m_compressionInfo = 0;
    double m_nullValue = kXNotSet;

    std::atomic<std::uint64_t> m_changeNumber;
    mutable std::mutex m_stateMutex; // all below
    mutable std::condition_variable m_calculated;
    mutable bool m_isCalculating = false; // one computation at a time
    mutable std::shared_ptr<const tagXBandStatistics> m_statistics;
    mutable std::uint64_t m_generation = 0; // a computation does not replace what came meanwhile
    // histograms handed out as plain pointers must outlive their replacement
    mutable std::vector<std::shared_ptr<const tagXBandStatistics>> m_lent;
};
