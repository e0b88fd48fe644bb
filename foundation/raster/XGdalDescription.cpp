#include "foundation/raster/XGdalDescription.h"

#include "foundation/base/XNumber.h"
#include "foundation/raster/XGdalTileReader.h"
#include "foundation/raster/XRasterTypes.h"
#include "foundation/raster/XSidecarStatistics.h"

#include <gdal_priv.h>
#include <gdal_rat.h>
#include <ogr_spatialref.h>

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

constexpr int kMaxClasses = 65536;

int ReadItem(GDALMajorObject* object, const char* name, const char* domain, double& value)
{
    const char* text = object->GetMetadataItem(name, domain);
    return text && XfnReadNumber(text, value) > 0;
}

double ReadWaveLength(GDALRasterBand* band)
{
    double value = 0.0;
    if (ReadItem(band, "CENTRAL_WAVELENGTH_UM", "IMAGERY", value) && value > 0.0)
        return value * 1000.0;
    if (!ReadItem(band, "wavelength", nullptr, value) || !(value > 0.0)) return kXNotSet;
    const char* units = band->GetMetadataItem("wavelength_units");
    if (!units && band->GetDataset())
        units = band->GetDataset()->GetMetadataItem("wavelength_units");
    XString unit = units ? units : "";
    unit.Trim().MakeLower();
    if (unit == "nanometers" || unit == "nanometres" || unit == "nm") return value;
    if (unit == "micrometers" || unit == "micrometres" || unit == "microns" || unit == "um")
        return value * 1000.0;
    // no optical sensor sees below 100 nm, none beyond 100 um
    return value < 100.0 ? value * 1000.0 : value;
}

void TakeColors(const GDALColorTable* table, std::vector<tagXRSGIS>& classes)
{
    const int count = std::min(table->GetColorEntryCount(), kMaxClasses);
    if (static_cast<int>(classes.size()) < count) classes.resize(static_cast<std::size_t>(count));
    const auto byte = [](short v) {
        return static_cast<unsigned char>(std::clamp<int>(v, 0, 255));
    };
    for (int i = 0; i < count; ++i) {
        GDALColorEntry entry;
        table->GetColorEntryAsRGB(i, &entry);
        tagXRSGIS& c = classes[static_cast<std::size_t>(i)];
        c.red = byte(entry.c1);
        c.green = byte(entry.c2);
        c.blue = byte(entry.c3);
        c.alpha = byte(entry.c4);
    }
}

void TakeNames(char** names, std::vector<tagXRSGIS>& classes)
{
    const int count = std::min(CSLCount(names), kMaxClasses);
    if (static_cast<int>(classes.size()) < count) classes.resize(static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i)
        classes[static_cast<std::size_t>(i)].name = names[i];
}

/// Names, counts and colours of an attribute table. Tables without a column of names describe a
/// histogram and no classes. @return 1 when it holds colours
int TakeTable(const GDALRasterAttributeTable* table, std::vector<tagXRSGIS>& classes)
{
    const auto column = [table](GDALRATFieldUsage usage) { return table->GetColOfUsage(usage); };
    const int name = column(GFU_Name);
    if (name < 0) return 0;
    const int value = column(GFU_MinMax) >= 0 ? column(GFU_MinMax) : column(GFU_Min);
    const int count = column(GFU_PixelCount);
    const int rgb[3] = {column(GFU_Red), column(GFU_Green), column(GFU_Blue)};
    const bool hasColors = rgb[0] >= 0 && rgb[1] >= 0 && rgb[2] >= 0;
    // a column of reals holds shares of 1
    const auto part = [table](int row, int c) {
        const double v =
            table->GetValueAsDouble(row, c) * (table->GetTypeOfCol(c) == GFT_Real ? 255.0 : 1.0);
        return static_cast<unsigned char>(v > 0.0 ? std::min(v + 0.5, 255.0) : 0.0);
    };
    for (int row = 0; row < std::min(table->GetRowCount(), kMaxClasses); ++row) {
        const int number = value >= 0 ? table->GetValueAsInt(row, value) : row;
        if (number < 0 || number >= kMaxClasses) continue;
        if (number >= static_cast<int>(classes.size()))
            classes.resize(static_cast<std::size_t>(number) + 1);
        tagXRSGIS& c = classes[static_cast<std::size_t>(number)];
        const char* text = table->GetValueAsString(row, name);
        if (c.name.IsEmpty() && text) c.name = text;
        if (count >= 0) {
            const double pixels = table->GetValueAsDouble(row, count);
            c.count = pixels > 0.0 && pixels < 9e18 ? static_cast<long long>(pixels) : 0;
        }
        if (hasColors) {
            c.red = part(row, rgb[0]);
            c.green = part(row, rgb[1]);
            c.blue = part(row, rgb[2]);
        }
    }
    return hasColors;
}

void ReadClasses(GDALRasterBand* band, XDMBand& out)
{
    std::vector<tagXRSGIS> classes;
    const GDALColorTable* colors = band->GetColorTable();
    if (colors) TakeColors(colors, classes);
    if (char** names = band->GetCategoryNames()) TakeNames(names, classes);
    int hasColors = colors != nullptr;
    if (const GDALRasterAttributeTable* table = band->GetDefaultRAT())
        hasColors |= TakeTable(table, classes);
    if (!classes.empty()) out.SetGISTable(std::move(classes), hasColors);
}

int RoleOf(GDALColorInterp role)
{
    switch (role) {
    case GCI_GrayIndex:
        return 1;
    case GCI_PaletteIndex:
        return 2;
    case GCI_RedBand:
        return 3;
    case GCI_GreenBand:
        return 4;
    case GCI_BlueBand:
        return 5;
    case GCI_AlphaBand:
        return 6;
    default:
        return 0;
    }
}

void TakeReference(const OGRSpatialReference* from, XSpatialReference& sr)
{
    sr = XSpatialReference();
    if (!from || from->IsEmpty() || from->IsLocal()) return;
    char* wkt = nullptr;
    const char* const options[] = {"FORMAT=WKT2_2018", nullptr};
    if (from->exportToWkt(&wkt, options) == OGRERR_NONE && wkt) sr.importFromWkt(wkt);
    CPLFree(wkt);
}

} // namespace

void XfnDescribeGdalBand(GDALRasterBand* band, int bandNumber, XDMBand& out)
{
    XString name = band->GetDescription();
    name.Trim();
    out.SetBandName(name.IsEmpty() ? XfnFormat("Band %d", bandNumber) : name);
    out.SetID(bandNumber - 1);

    int isThere = 0;
    double null = 0.0;
    switch (band->GetRasterDataType()) {
    case GDT_Int64:
        null = static_cast<double>(band->GetNoDataValueAsInt64(&isThere));
        break;
    case GDT_UInt64:
        null = static_cast<double>(band->GetNoDataValueAsUInt64(&isThere));
        break;
    default:
        null = band->GetNoDataValue(&isThere);
        break;
    }
    if (isThere) out.SetNullValue(null);

    const double scale = band->GetScale(&isThere);
    if (isThere && std::isfinite(scale)) out.SetScale(scale);
    const double offset = band->GetOffset(&isThere);
    if (isThere && std::isfinite(offset)) out.SetOffset(offset);
    out.SetWaveLength(ReadWaveLength(band));
    out.SetColorInterpretation(RoleOf(band->GetColorInterpretation()));
    ReadClasses(band, out);

    const char* position = band->GetMetadataItem("BLOCK_OFFSET_0_0", "TIFF");
    std::int64_t place = 0;
    if (position && XfnReadInteger(position, place) && place > 0) out.SetOffsetInFile(place);
    if (GDALDataset* dataset = band->GetDataset()) {
        const char* packing = dataset->GetMetadataItem("COMPRESSION", "IMAGE_STRUCTURE");
        out.SetCompressionInfo(packing && !EQUAL(packing, "NONE"));
        if (const char* date = dataset->GetMetadataItem("ACQUISITIONDATETIME", "IMAGERY"))
            out.SetBandDate(date);
        if (const char* sensor = dataset->GetMetadataItem("SATELLITEID", "IMAGERY"))
            out.SetBandSensorName(sensor);
    }
}

int XfnReadGdalStatistics(GDALRasterBand* band, tagXBandStatistics& statistics)
{
    double step = 1.0;
    if (band->GetMetadataItem("STATISTICS_APPROXIMATE")) return 0;
    for (const char* name : {"STATISTICS_SKIPFACTORX", "STATISTICS_SKIPFACTORY"})
        if (ReadItem(band, name, nullptr, step) && step > 1.0) return 0;
    tagXBandStatistics read;
    if (!ReadItem(band, "STATISTICS_MINIMUM", nullptr, read.min) ||
        !ReadItem(band, "STATISTICS_MAXIMUM", nullptr, read.max) ||
        !ReadItem(band, "STATISTICS_MEAN", nullptr, read.mean) ||
        !ReadItem(band, "STATISTICS_STDDEV", nullptr, read.stdDev))
        return 0;
    if (!XfnArePossible(read)) return 0;
    // the type cannot hold them: left behind by another version of the file
    double low = kXNoData;
    double high = kXNotSet;
    XfnDispatchRealType<int>(XfnFromGdalBand(band), [&]<class T>(const T*) {
        low = static_cast<double>(std::numeric_limits<T>::lowest());
        high = static_cast<double>(std::numeric_limits<T>::max());
        return 1;
    });
    if (read.min < low || read.max > high) return 0;
    // theirs are of the real parts, ours of the magnitudes
    if (XfnIsComplexType(XfnFromGdalBand(band))) return 0;
    int bins = 0;
    double first = 0.0;
    double last = 0.0;
    GUIntBig* counts = nullptr;
    if (band->GetDefaultHistogram(&first, &last, &bins, &counts, FALSE, nullptr, nullptr) ==
            CE_None &&
        counts) {
        const std::vector<long long> own(counts, counts + bins);
        XfnTakeHistogram(first, last, own.data(), bins, read);
    }
    VSIFree(counts);
    statistics = read;
    return 1;
}

std::vector<tagXGCP> XfnReadGdalPoints(GDALDataset* dataset, XSpatialReference& sr)
{
    std::vector<tagXGCP> points;
    const GDAL_GCP* list = dataset->GetGCPs();
    for (int i = 0; list && i < dataset->GetGCPCount(); ++i) {
        const GDAL_GCP& p = list[i];
        const double numbers[] = {p.dfGCPPixel, p.dfGCPLine, p.dfGCPX, p.dfGCPY};
        if (!std::all_of(numbers, numbers + 4, [](double v) { return XfnIsSet(v) != 0; })) continue;
        // theirs count from the outer corner of the upper-left pixel
        points.push_back({p.pszId ? p.pszId : "", p.dfGCPPixel - 0.5, p.dfGCPLine - 0.5, p.dfGCPX,
                          p.dfGCPY, p.dfGCPZ});
    }
    TakeReference(dataset->GetGCPSpatialRef(), sr);
    return points;
}

void XfnReadGdalGeometry(GDALDataset* dataset, XBandGeometry& geometry, XSpatialReference& sr,
                         XString& notes)
{
    const int width = dataset->GetRasterXSize();
    const int height = dataset->GetRasterYSize();
    geometry = XBandGeometry();
    TakeReference(dataset->GetSpatialRef(), sr);
    const bool hasSystem = !sr.IsEmpty();

    double t[6] = {};
    const double none[6] = {0.0, 1.0, 0.0, 0.0, 0.0, 1.0};
    const bool hasTransform =
        dataset->GetGeoTransform(t) == CE_None && (hasSystem || !std::equal(t, t + 6, none));
    if (hasTransform && !geometry.SetTransform(t, width, height, notes)) sr = XSpatialReference();
    if (!geometry.IsGeoreferenced() && dataset->GetGCPCount() > 0) {
        XString why;
        const std::vector<tagXGCP> points = XfnReadGdalPoints(dataset, sr);
        if (!geometry.SetControlPoints(points, width, height, why)) {
            if (!notes.IsEmpty()) notes += "\n";
            notes += why;
        }
    }
    if (!geometry.IsGeoreferenced()) sr = XSpatialReference();
    sr.SetCoordType(!geometry.IsGeoreferenced() ? 1 : sr.IsEmpty() ? 2 : 3);
}

int XfnReadGdalHeaderBands(GDALDataset* dataset, int (&rgb)[3])
{
    const char* text = dataset->GetMetadataItem("default_bands", "ENVI");
    if (!text) return 0;
    int found = 0;
    for (; *text && found < 3;) {
        double value = 0.0;
        const int used = *text == '{' || *text == ',' ? 0 : XfnReadNumber(text, value);
        if (used > 0) rgb[found++] = static_cast<int>(std::clamp(value, 0.0, 1e9)) - 1;
        text += std::max(used, 1);
    }
    return found == 3 && rgb[0] >= 0 && rgb[1] >= 0 && rgb[2] >= 0;
}
