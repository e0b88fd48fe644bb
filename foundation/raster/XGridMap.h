#pragma once

#include "foundation/raster/XPixelReader.h"
#include "foundation/reference/XCoordinateTransformation.h"

#include <memory>

/// Whether the pixels of two bands lie on each other: the same size, and the same place for every
/// pixel within a thousandth of one.
int XfnShareGrid(const XDMBand& a, const XDMBand& b);

/// Whether world coordinates of one band must be transformed for the other. An unknown reference is
/// taken as the same world.
int XfnNeedsTransform(const XDMBand& from, const XDMBand& to);

/// Carries places of one band's world to the pixels of another band.
/// Threads: one object a thread.
class XWorldMap
{
public:
    XWorldMap(const XDMBand& from, const XDMBand& to);

    int IsValid() const; ///< 0 when nothing joins the references
    /// World coordinates of `from` to pixel positions of `to`, centre based, in place. A place that
    /// cannot be mapped becomes NaN or lies far outside.
    void MapWorld(int count, double* x, double* y);

private:
    const XDMBand& m_to;
    int m_isTransformed;
    std::unique_ptr<XCoordinateTransformation> m_transformation;
};

/// Reads the pixels of a band that lie under the pixel centres of another one.
/// Threads: one object a thread.
class XMappedReader
{
public:
    XMappedReader(const XDMBand& grid, const XDMBand& band, const std::atomic<int>* abort);

    int IsValid() const { return m_map.IsValid(); }
    /// `count` pixels of the grid's row `y`, every step-th from column `x0`; at most a block.
    /// kXNoData where the band has none.
    /// @return 0 when a tile cannot be read; GetMessage tells why
    int Read(int y, int x0, int step, int count, double* out);
    const XString& GetMessage() const { return m_reader.GetMessage(); }

private:
    const XDMBand& m_grid;
    XWorldMap m_map;
    XPixelReader m_reader;
};
