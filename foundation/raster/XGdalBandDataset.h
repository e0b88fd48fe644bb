#pragma once

#include "foundation/raster/XDMBand.h"

#include <gdal_priv.h>
#include <ogr_spatialref.h>

class XRSFile;

/// For the sources of this folder only: a raster file of any kind as GDAL sees one, so that its
/// drivers can copy it. A block is a tile of 256 x 256, decoded when it is asked for.
///
/// All bands have one type, the smallest that holds the samples of every band exactly. The file
/// must outlive it. One thread.
class XGdalBandDataset : public GDALDataset
{
public:
    /// @return null with a sentence without its full stop in `reason`, when the bands have
    ///         different sizes for instance
    static std::unique_ptr<XGdalBandDataset> Make(XRSFile& file, const std::atomic<int>* abort,
                                                  XString& reason);

    CPLErr GetGeoTransform(double* transform) override;
    const OGRSpatialReference* GetSpatialRef() const override;
    int GetGCPCount() override { return static_cast<int>(m_points.size()); }
    const OGRSpatialReference* GetGCPSpatialRef() const override;
    const GDAL_GCP* GetGCPs() override { return m_points.empty() ? nullptr : m_points.data(); }

private:
    void Describe(XRSFile& file);
    void TakePoints(const std::vector<tagXGCP>& points);

    bool m_hasTransform = false;
    double m_transform[6] = {0.0, 1.0, 0.0, 0.0, 0.0, 1.0};
    OGRSpatialReference m_sr;
    OGRSpatialReference m_pointSR;
    std::vector<XString> m_names;
    std::vector<GDAL_GCP> m_points;
};
