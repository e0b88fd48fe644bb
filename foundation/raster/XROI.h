#pragma once

#include "foundation/base/XArray.h"
#include "foundation/base/XColor.h"
#include "foundation/base/XObject.h"
#include "foundation/base/XString.h"
#include "foundation/base/XVector3.h"
#include "foundation/raster/XRegionStatistics.h"

#include <memory>

class XObArray;
class XThread;

/// What the vertices of a region mean. The numbers are stored in files.
enum XROIType : int {
    kXROIPolyline = 2, ///< the pixels that the line steps through
    kXROIPolygon = 3   ///< the pixels whose centre lies inside the ring, even-odd rule
};

/// A region of interest: a polyline or a polygon in world coordinates, and the statistics of the
/// bands under it.
///
/// The world is that of the first band that CalcStatistics gets. A polygon closes itself. Parts of
/// it that run over each other cancel out (even-odd rule), so a hole is a ring joined by a bridge.
/// A polygon so small that it holds no pixel centre stands for the pixels that its outline touches.
///
/// Copying copies everything; the numbers are shared until one side gets new ones.
/// Threads: one at a time; CalcStatistics reads the bands from several threads of its own.
class XAPI XROI : public XObject
{
    X_DECLARE_CLASS(XROI)
public:
    XROI();
    XROI(const XROI& other);
    XROI& operator=(const XROI& other);
    ~XROI() override;

    int GetType() const { return m_type; } ///< XROIType, kXROIPolygon at first
    /// Drops the numbers when the type changes.
    /// @return 0 for a type that is none; then nothing changes
    int SetType(int type);

    /// The vertices themselves. Whoever changes them calls DropStatistics.
    XArray<tagXVector3>* GetVertexArray() { return &m_vertices; }
    const XArray<tagXVector3>* GetVertexArray() const { return &m_vertices; }
    int GetSize() const { return m_vertices.GetSize(); } ///< number of vertices
    /// Adds a vertex in world coordinates; drops the numbers. @return its index
    int Add(double x, double y, double z = 0.0);
    /// @return 0 outside the list; the arguments are then as they were
    int GetAt(int index, double& x, double& y, double& z) const;
    void RemoveAll(); ///< drops all vertices, and the numbers with them

    const XString& GetName() const { return m_name; }
    void SetName(const XString& name) { m_name = name; }
    const XString& GetComment() const { return m_comment; }
    void SetComment(const XString& comment) { m_comment = comment; }
    /// kXNoColor at first: none chosen; chosen colours carry 0xFF in the top byte.
    tagXColor GetColor() const { return m_color; }
    void SetColor(tagXColor color) { m_color = color; }
    /// Samples of this value are left out in every band, besides those of the band's own null
    /// value. kXNotSet when there is none.
    double GetNullValue() const { return m_nullValue; }
    void SetNullValue(double value); ///< drops the numbers when it changes

    /// Counts the pixels of every band under the region, block by block on two threads.
    ///
    /// A band of another reference than the first gets the vertices transformed; every band takes
    /// the pixels of its own grid. NaN, infinities and null values are left out.
    /// @param bands    XDMBand objects of a real data type, of any size, grid and reference
    /// @param thread   gets percents and is asked for its stop flag; may be null
    /// @param message  when given, receives why it failed; empty after a stop
    /// @return 0 after a stop or a failure: a band that is none, complex or cannot be read, vertices
    ///         that are not finite, or no pixel of the first band under the region. The numbers are
    ///         then as they were.
    int CalcStatistics(XObArray* bands, XThread* thread, XString* message = nullptr);

    int IsCalculated() const { return m_statistics ? 1 : 0; }
    int GetNumBands() const;        ///< 0 when not calculated
    long long GetNumPoints() const; ///< pixels of the first band under the region

    /// kXNotSet outside the bands and for a band without a pixel that has a value.
    double GetMin(int band) const;
    double GetMax(int band) const;
    double GetMean(int band) const;
    double GetStd(int band) const; ///< divisor n - 1
    /// Pixels in one of 256 bins, see tagXRegionBand; 0 outside.
    long long GetHistogram(int band, int bin) const;
    /// Over the pixels that have a value in every band, see tagXJointMoments.
    double GetCovariance(int i, int j) const;
    double GetCorrelation(int i, int j) const;

    /// All numbers, never changed once they are here; null when not calculated.
    const std::shared_ptr<const tagXRegionStatistics>& GetStatistics() const
    {
        return m_statistics;
    }
    /// Puts numbers in place that were calculated before, as a file holds them.
    /// @return 0 when they are not consistent; the object is then as it was
    int SetStatistics(tagXRegionStatistics statistics);
    void DropStatistics() { m_statistics.reset(); }

    /// Everything, the numbers included. Loading throws XFileException for bytes that make no
    /// sense; the object is then as it was.
    void Serialize(XArchive& archive) override;

private:
    int m_type = kXROIPolygon;
    XArray<tagXVector3> m_vertices;
    XString m_name;
    XString m_comment;
    tagXColor m_color = kXNoColor;
    double m_nullValue = kXNotSet;
    std::shared_ptr<const tagXRegionStatistics> m_statistics;
};
