#pragma once

#include "foundation/base/XColor.h"
#include "foundation/base/XObject.h"
#include "foundation/base/XString.h"
#include "foundation/raster/XRegionStatistics.h"

#include <memory>
#include <vector>

class XROI;

/// The signature of a class: a set of training regions, and the statistics of all their pixels.
///
/// The numbers are those of the regions' pixels in one heap, not means of the regions' numbers; a
/// pixel that lies in two regions counts twice. They follow the regions: regions that are not
/// calculated, or over another number of bands than the first calculated one, take no part.
///
/// Regions are lent and must outlive the signature or be removed from it; only regions that
/// Serialize made or AddOwned took belong to it. Copying copies the list, not the lent regions.
/// Threads: one at a time, reading too (the joined numbers are kept between calls).
class XAPI XRSSIG : public XObject
{
    X_DECLARE_CLASS(XRSSIG)
public:
    XRSSIG();
    XRSSIG(const XRSSIG& other);
    XRSSIG& operator=(const XRSSIG& other);
    ~XRSSIG() override;

    const XString& GetName() const { return m_name; }
    void SetName(const XString& name) { m_name = name; }
    const XString& GetComment() const { return m_comment; }
    void SetComment(const XString& comment) { m_comment = comment; }
    /// kXNoColor at first: none chosen; chosen colours carry 0xFF in the top byte.
    tagXColor GetColor() const { return m_color; }
    void SetColor(tagXColor color) { m_color = color; }

    /// @return the index; that of the member when the region is one already, -1 for null
    int Add(XROI* region);
    /// The same for a region that belongs to the signature from now on.
    int AddOwned(std::shared_ptr<XROI> region)
    {
        if (region && Find(region.get()) < 0) m_loaded.push_back(region);
        return Add(region.get());
    }
    XROI* GetAt(int index) const; ///< null outside the list
    int GetSize() const { return static_cast<int>(m_regions.size()); }
    int Find(const XROI* region) const; ///< index, -1 for a region that is no member
    int Remove(const XROI* region);     ///< @return 0 when it is no member
    void RemoveAll();

    int GetNumBands() const;        ///< 0 while no region is calculated
    long long GetNumPoints() const; ///< sum over the regions that take part

    /// kXNotSet outside the bands and for a band without a pixel that has a value.
    double GetMin(int band) const;
    double GetMax(int band) const;
    double GetMean(int band) const;
    double GetStd(int band) const; ///< divisor n - 1
    /// Pixels in one of 256 bins, see tagXRegionBand; 0 outside.
    long long GetHistogram(int band, int bin) const;

    /// Covariance of two bands in band units squared, divisor n - 1, and their correlation within
    /// [-1, 1], over the pixels that have a value in every band; see tagXJointMoments for the
    /// sources and singular cases. GetCovariance(i, i) is GetStd(i) squared when no band has gaps
    /// and all bands share a grid.
    double GetCovariance(int i, int j) const;
    double GetCorrelation(int i, int j) const;

    /// The joined numbers of all regions; without bands when none is calculated.
    const tagXRegionStatistics& GetStatistics() const;

    /// Name, comment, colour and the regions, whole. Loading makes regions that belong to the
    /// signature. It throws XFileException for bytes that make no sense; the object is then as it
    /// was.
    void Serialize(XArchive& archive) override;

private:
    XString m_name;
    XString m_comment;
    tagXColor m_color = kXNoColor;
    std::vector<XROI*> m_regions;
    std::vector<std::shared_ptr<XROI>> m_loaded; // those of m_regions that are its own

    // the joined numbers and what they were joined from: regions share numbers that never change
    mutable std::vector<std::shared_ptr<const tagXRegionStatistics>> m_sources;
    mutable tagXRegionStatistics m_joined;
};
