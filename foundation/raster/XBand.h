#pragma once

#include "foundation/base/XObject.h"
#include "foundation/base/XString.h"
#include "foundation/raster/XBandStatistics.h"

#include <atomic>
#include <cstdint>
#include <memory>
#include <mutex>
#include <vector>

/// One band of an image: what it is called, how its samples are laid out, and its numbers.
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

    /// The value that stands for no data; kXNotSet when there is none. May be NaN.
    double GetNullValue() const { return m_nullValue; }
    int HasNullValue() const { return m_nullValue != kXNotSet; }
    /// Drops the statistics. Infinity is taken as it is; NaN pixels are never data anyway.
    void SetNullValue(double value);

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
    std::shared_ptr<const tagXBandStatistics> GetStatistics() const;
    /// Replaces the numbers, for instance by exact ones.
    void SetBandStatistics(const tagXBandStatistics& statistics);
    /// Forgets the numbers; they are computed anew at the next need.
    void DropStatistics();
    /// Statistics are at hand, so that asking costs no reading.
    int HasStatistics() const;

protected:
    void SetLayout(int dataType, int xSize, int ySize, int xTileSize, int yTileSize);

    /// Exact numbers that need no reading of pixels, without a histogram. @return 0 when none
    virtual int ReadStoredStatistics(tagXBandStatistics& statistics) const;
    /// Numbers and histogram from pixels. With `known` set, its limits are used for the histogram
    /// and its numbers are kept. Called by one thread at a time.
    virtual tagXBandStatistics CalcBandStatistics(const tagXBandStatistics* known) const;

private:
    std::shared_ptr<const tagXBandStatistics> Need(int withHistogram) const;
    std::shared_ptr<const tagXBandStatistics> GetCurrent(std::uint64_t* generation) const;
    void Publish(std::shared_ptr<const tagXBandStatistics> statistics,
                 const std::uint64_t* generation) const;

    int m_id = 0;
    XString m_bandName;
    std::int64_t m_offsetInFile = 0;
    int m_dataType = 0;
    int m_xSize = 0;
    int m_ySize = 0;
    int m_xTileSize = 0;
    int m_yTileSize = 0;
    int m_compressionInfo = 0;
    double m_nullValue = kXNotSet;

    mutable std::mutex m_calcMutex;  // one computation at a time
    mutable std::mutex m_stateMutex; // all below
    mutable std::shared_ptr<const tagXBandStatistics> m_statistics;
    mutable std::uint64_t m_generation = 0; // a computation does not replace what came meanwhile
    // histograms handed out as plain pointers must outlive their replacement
    mutable std::vector<std::shared_ptr<const tagXBandStatistics>> m_retired;
};
