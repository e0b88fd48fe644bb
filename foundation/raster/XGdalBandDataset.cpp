#include "foundation/raster/XGdalBandDataset.h"

#include "foundation/base/XNumber.h"
#include "foundation/raster/XGdalTileReader.h"
#include "foundation/raster/XRSFile.h"
#include "foundation/raster/XRasterTypes.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace {

constexpr int kBlockSide = 256;
constexpr int kGridSide = 5; // 25 points determine a polynomial of order 3 and its order

/// The type that holds every sample of our type.
GDALDataType HoldingType(int dataType)
{
    switch (dataType) {
    case kXInt8: // unsigned for most drivers, whatever a mark beside it says
        return GDT_Int16;
    case kXUInt8Complex:
    case kXInt8Complex:
        return GDT_CInt16;
    case kXUInt16Complex:
        return GDT_CInt32;
    case kXUInt32Complex:
        return GDT_CFloat64;
    default:
        return static_cast<GDALDataType>(XfnToGdalType(dataType));
    }
}

/// Copies samples of our type into the holding type.
void CopySamples(const void* from, int dataType, int count, void* to, GDALDataType type)
{
    if (XfnToGdalType(dataType) != GDT_Unknown && dataType != kXInt8) {
        const auto own = static_cast<GDALDataType>(XfnToGdalType(dataType));
        GDALCopyWords(from, own, GDALGetDataTypeSizeBytes(own), to, type,
                      GDALGetDataTypeSizeBytes(type), count);
        return;
    }
    const auto* sample = static_cast<const unsigned char*>(from);
    auto* out = static_cast<unsigned char*>(to);
    for (int i = 0; i < count; ++i) {
        double parts[2];
        XfnReadComplexSample(sample, dataType, parts[0], parts[1]);
        GDALCopyWords(parts, GDT_CFloat64, 0, out, type, 0, 1);
        sample += XfnGetDataTypeSize(dataType);
        out += GDALGetDataTypeSizeBytes(type);
    }
}

GDALColorInterp RoleOf(int role)
{
    static const GDALColorInterp kRoles[] = {GCI_Undefined, GCI_GrayIndex, GCI_PaletteIndex,
                                             GCI_RedBand,   GCI_GreenBand, GCI_BlueBand,
                                             GCI_AlphaBand};
    return role >= 0 && role <= 6 ? kRoles[role] : GCI_Undefined;
}

class XGdalBandView : public GDALRasterBand
{
public:
    XGdalBandView(GDALDataset* dataset, int number, const XDMBand& band, GDALDataType type,
                  const std::atomic<int>* abort);

    double GetNoDataValue(int* isThere) override;
    GDALColorTable* GetColorTable() override { return m_colors.get(); }
    char** GetCategoryNames() override { return m_names.List(); }
    GDALColorInterp GetColorInterpretation() override
    {
        return m_colors ? GCI_PaletteIndex : RoleOf(m_band.GetColorInterpretation());
    }
    double GetOffset(int* isThere) override
    {
        if (isThere) *isThere = m_isScaled;
        return m_band.GetOffset();
    }
    double GetScale(int* isThere) override
    {
        if (isThere) *isThere = m_isScaled;
        return m_band.GetScale();
    }

protected:
    CPLErr IReadBlock(int bx, int by, void* out) override;

private:
    void TakeClasses();

    const XDMBand& m_band;
    const std::atomic<int>* m_abort;
    std::unique_ptr<GDALColorTable> m_colors;
    CPLStringList m_names;
    int m_isScaled = 0;
    tagXArr2 m_block;
};

XGdalBandView::XGdalBandView(GDALDataset* dataset, int number, const XDMBand& band,
                             GDALDataType type, const std::atomic<int>* abort)
    : m_band(band), m_abort(abort)
{
    poDS = dataset;
    nBand = number;
    nRasterXSize = band.GetXSize();
    nRasterYSize = band.GetYSize();
    eDataType = type;
    eAccess = GA_ReadOnly;
    nBlockXSize = std::min(kBlockSide, nRasterXSize);
    nBlockYSize = std::min(kBlockSide, nRasterYSize);
    m_isScaled = band.GetOffset() != 0.0 || band.GetScale() != 1.0;
    if (!band.GetBandName().IsEmpty()) GDALRasterBand::SetDescription(band.GetBandName());
    if (XfnIsSet(band.GetWaveLength()))
        SetMetadataItem("CENTRAL_WAVELENGTH_UM", XfnFormatShortest(band.GetWaveLength() / 1000.0),
                        "IMAGERY");
    TakeClasses();
    // estimates would pass for the truth in the copy
    if (!band.HasStatistics() || band.HasEstimatedStatistics()) return;
    const auto statistics = band.GetStatistics();
    const std::pair<const char*, double> items[] = {{"STATISTICS_MINIMUM", statistics->min},
                                                    {"STATISTICS_MAXIMUM", statistics->max},
                                                    {"STATISTICS_MEAN", statistics->mean},
                                                    {"STATISTICS_STDDEV", statistics->stdDev}};
    if (std::any_of(std::begin(items), std::end(items),
                    [](const auto& item) { return !XfnIsSet(item.second); }))
        return;
    for (const auto& [name, value] : items)
        SetMetadataItem(name, XfnFormatShortest(value));
}

void XGdalBandView::TakeClasses()
{
    const int count = m_band.GetNumOfGIS();
    bool hasNames = false;
    for (int i = 0; i < count; ++i)
        hasNames |= !m_band.GetGISAt(i)->name.IsEmpty();
    for (int i = 0; hasNames && i < count; ++i)
        m_names.AddString(m_band.GetGISAt(i)->name);
    if (!m_band.HasColorTable()) return;
    m_colors = std::make_unique<GDALColorTable>();
    for (int i = 0; i < count; ++i) {
        const tagXRSGIS& c = *m_band.GetGISAt(i);
        const GDALColorEntry entry = {c.red, c.green, c.blue, c.alpha};
        m_colors->SetColorEntry(i, &entry);
    }
}

double XGdalBandView::GetNoDataValue(int* isThere)
{
    if (isThere) *isThere = m_band.HasNullValue();
    return m_band.HasNullValue() ? m_band.GetNullValue() : 0.0;
}

CPLErr XGdalBandView::IReadBlock(int bx, int by, void* out)
{
    const int x0 = bx * nBlockXSize;
    const int y0 = by * nBlockYSize;
    const int width = std::min(nBlockXSize, nRasterXSize - x0);
    const int height = std::min(nBlockYSize, nRasterYSize - y0);
    XString message;
    tagXArr2* block = &m_block;
    // reading changes nothing of a band but its cache
    if (!const_cast<XDMBand&>(m_band).ReadSubset(block, 0, x0, x0 + width - 1, y0, y0 + height - 1,
                                                 m_abort, &message)) {
        CPLError(CE_Failure, CPLE_AppDefined, "%s", message.GetString());
        return CE_Failure;
    }
    const std::size_t rowBytes = static_cast<std::size_t>(nBlockXSize) *
                                 static_cast<std::size_t>(GDALGetDataTypeSizeBytes(eDataType));
    for (int y = 0; y < height; ++y)
        CopySamples(block->At(0, y), m_band.GetDataType(), width,
                    static_cast<unsigned char*>(out) + rowBytes * static_cast<std::size_t>(y),
                    eDataType);
    return CE_None;
}

OGRSpatialReference ToOgr(const XSpatialReference& sr)
{
    OGRSpatialReference out;
    XString wkt;
    if (!sr.IsEmpty() && sr.exportToWkt(wkt)) out.importFromWkt(wkt.GetString());
    out.SetAxisMappingStrategy(OAMS_TRADITIONAL_GIS_ORDER);
    return out;
}

} // namespace

std::unique_ptr<XGdalBandDataset>
XGdalBandDataset::Make(XRSFile& file, const std::atomic<int>* abort, XString& reason)
{
    const int count = file.GetNumOfBands();
    if (count < 1) {
        reason = "There is no band";
        return nullptr;
    }
    auto made = std::make_unique<XGdalBandDataset>();
    GDALDataType type = HoldingType(file.GetBandAt(0)->GetDataType());
    for (int i = 0; i < count; ++i) {
        const XDMBand& band = *file.GetBandAt(i);
        if (band.GetXSize() != file.GetBandAt(0)->GetXSize() ||
            band.GetYSize() != file.GetBandAt(0)->GetYSize()) {
            reason =
                XfnFormat("Band %d has another size than band 1, which only XDM files hold", i + 1);
            return nullptr;
        }
        type = GDALDataTypeUnion(type, HoldingType(band.GetDataType()));
    }
    made->nRasterXSize = file.GetBandAt(0)->GetXSize();
    made->nRasterYSize = file.GetBandAt(0)->GetYSize();
    made->eAccess = GA_ReadOnly;
    for (int i = 0; i < count; ++i)
        made->SetBand(i + 1, new XGdalBandView(made.get(), i + 1, *file.GetBandAt(i), type, abort));
    made->Describe(file);
    return made;
}

void XGdalBandDataset::Describe(XRSFile& file)
{
    const XDMBand& band = *file.GetBandAt(0);
    const XBandGeometry& geometry = band.GetGeometry();
    if (!band.GetBandDate().IsEmpty())
        SetMetadataItem("ACQUISITIONDATETIME", band.GetBandDate(), "IMAGERY");
    if (!band.GetBandSensorName().IsEmpty())
        SetMetadataItem("SATELLITEID", band.GetBandSensorName(), "IMAGERY");
    if (geometry.IsGeoreferenced() && geometry.GetPixelToWorld().IsAffine()) {
        double a[6];
        geometry.GetPixelToWorld().GetAffine(a);
        // from centres of pixels to corners
        const double t[6] = {a[0] - (a[1] + a[2]) / 2, a[1], a[2],
                             a[3] - (a[4] + a[5]) / 2, a[4], a[5]};
        std::copy(t, t + 6, m_transform);
        m_hasTransform = true;
        m_sr = ToOgr(*band.GetSR());
    } else if (file.GetNumOfGCPSet() > 0) {
        m_pointSR = ToOgr(file.GetGCPSetAt(0)->sr);
        TakePoints(file.GetGCPSetAt(0)->points);
    } else if (geometry.IsGeoreferenced()) {
        std::vector<tagXGCP> grid;
        for (int i = 0; i < kGridSide * kGridSide; ++i) {
            tagXGCP p;
            p.id = XfnFormat("%d", i + 1);
            p.pixelX = (nRasterXSize - 1.0) * (i % kGridSide) / (kGridSide - 1);
            p.pixelY = (nRasterYSize - 1.0) * (i / kGridSide) / (kGridSide - 1);
            p.worldX = p.pixelX;
            p.worldY = p.pixelY;
            geometry.GetPixelToWorld().Warp(p.worldX, p.worldY);
            grid.push_back(p);
        }
        m_pointSR = ToOgr(*band.GetSR());
        TakePoints(grid);
    }
}

void XGdalBandDataset::TakePoints(const std::vector<tagXGCP>& points)
{
    m_names.reserve(points.size()); // the records point into it
    for (const tagXGCP& p : points) {
        if (!p.use) continue; // the formats have no mark for it
        GDAL_GCP out = {};
        m_names.push_back(p.id);
        out.pszId = const_cast<char*>(m_names.back().GetString()); // only read
        out.pszInfo = const_cast<char*>("");
        out.dfGCPPixel = p.pixelX + 0.5;
        out.dfGCPLine = p.pixelY + 0.5;
        out.dfGCPX = p.worldX;
        out.dfGCPY = p.worldY;
        out.dfGCPZ = p.worldZ;
        m_points.push_back(out);
    }
}

CPLErr XGdalBandDataset::GetGeoTransform(double* transform)
{
    std::copy(m_transform, m_transform + 6, transform);
    return m_hasTransform ? CE_None : CE_Failure;
}

const OGRSpatialReference* XGdalBandDataset::GetSpatialRef() const
{
    return m_sr.IsEmpty() ? nullptr : &m_sr;
}

const OGRSpatialReference* XGdalBandDataset::GetGCPSpatialRef() const
{
    return m_pointSR.IsEmpty() ? nullptr : &m_pointSR;
}
