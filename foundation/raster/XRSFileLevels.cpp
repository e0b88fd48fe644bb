#include "foundation/raster/XDMBandGDAL.h"
#include "foundation/raster/XDMLevelKernels.h"
#include "foundation/raster/XGdalSource.h"
#include "foundation/raster/XGdalTileReader.h"
#include "foundation/raster/XRSFile.h"
#include "foundation/raster/XRSFileIO.h"
#include "foundation/raster/XRasterTypes.h"
#include "foundation/raster/XSaveControl.h"
#include "foundation/reference/XGdalErrors.h"

#include <cpl_conv.h>
#include <cpl_string.h>
#include <gdal_priv.h>
#include <vrtdataset.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <memory>
#include <new>
#include <thread>

// The pyramid of a raster file: whether it is wanted, its making, its use by an open file.

namespace {

constexpr int kSmallSide = 256;
constexpr int kLargeSide = 4096;
constexpr int kPieceWidth = 1024; // averaged at once
constexpr int kPieceHeight = 256;
constexpr int kMostInterleaved = 4; // bands that share blocks in the pyramid

/// Sets options of GDAL for the calling thread alone.
class XOptions
{
public:
    void Set(const char* name, const char* value)
    {
        m_setters.push_back(std::make_unique<CPLConfigOptionSetter>(name, value, false));
    }

private:
    std::vector<std::unique_ptr<CPLConfigOptionSetter>> m_setters;
};

bool IsClassified(const XDMBand& band)
{
    return band.GetBandType() == kXBandClassMap || band.HasColorTable() ||
           band.GetColorInterpretation() == 2;
}

/// The bands of a pyramid are of one type.
int HasOneType(const XRSFile& file)
{
    for (int i = 1; i < file.GetNumOfBands(); ++i)
        if (file.GetBandAt(i)->GetDataType() != file.GetBandAt(0)->GetDataType()) return 0;
    return 1;
}

/// How samples are joined; GDAL does the same to all bands.
const char* ChooseMethod(const XRSFile& file)
{
    int classified = 0;
    int complex = 0;
    int isSigned = 0; // GDAL takes signed bytes for unsigned ones
    for (int i = 0; i < file.GetNumOfBands(); ++i) {
        const XDMBand& band = *file.GetBandAt(i);
        classified += IsClassified(band);
        complex += XfnIsComplexType(band.GetDataType()) != 0;
        isSigned += band.GetDataType() == kXInt8;
    }
    const int count = file.GetNumOfBands();
    if (classified == count) return "MODE";
    if (classified || isSigned || (complex && complex < count)) return "NEAREST";
    return complex ? "AVERAGE_MAGPHASE" : "AVERAGE";
}

const char* ChoosePredictor(GDALDataset& dataset)
{
    for (int i = 1; i <= dataset.GetRasterCount(); ++i) {
        GDALRasterBand& band = *dataset.GetRasterBand(i);
        if (GDALDataTypeIsComplex(band.GetRasterDataType()) || band.GetColorTable() ||
            band.GetMetadataItem("NBITS", "IMAGE_STRUCTURE"))
            return "1";
    }
    return GDALDataTypeIsFloating(dataset.GetRasterBand(1)->GetRasterDataType()) ? "3" : "2";
}

/// A view of the dataset in which samples count as they do everywhere here: those of the null value
/// and NaN do not, and no mask or opacity leaves others out. An average knows NaN only as the value
/// of no data. Null when the dataset is like that.
std::unique_ptr<GDALDataset> ViewAsCounted(GDALDataset& dataset)
{
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const auto needs = [](GDALRasterBand& band) {
        int hasNull = 0;
        const double null = band.GetNoDataValue(&hasNull);
        return GDALDataTypeIsFloating(band.GetRasterDataType()) &&
               !GDALDataTypeIsComplex(band.GetRasterDataType()) && !(hasNull && std::isnan(null));
    };
    bool isNeeded = false;
    for (int i = 1; i <= dataset.GetRasterCount(); ++i) {
        GDALRasterBand& band = *dataset.GetRasterBand(i);
        isNeeded |= needs(band) || !(band.GetMaskFlags() & (GMF_ALL_VALID | GMF_NODATA));
    }
    GDALDriver* driver = isNeeded ? GetGDALDriverManager()->GetDriverByName("VRT") : nullptr;
    if (!driver) return nullptr;
    std::unique_ptr<GDALDataset> view(driver->Create(
        "", dataset.GetRasterXSize(), dataset.GetRasterYSize(), 0, GDT_Unknown, nullptr));
    for (int i = 1; view && i <= dataset.GetRasterCount(); ++i) {
        GDALRasterBand& from = *dataset.GetRasterBand(i);
        view->AddBand(from.GetRasterDataType(), nullptr);
        auto* to = dynamic_cast<VRTSourcedRasterBand*>(view->GetRasterBand(i));
        if (!to) return nullptr;
        int hasNull = 0;
        const double null = from.GetNoDataValue(&hasNull);
        // an opacity would mask the others
        if (from.GetColorInterpretation() != GCI_AlphaBand)
            to->SetColorInterpretation(from.GetColorInterpretation());
        if (needs(from) || hasNull) to->SetNoDataValue(needs(from) ? nan : null);
        if (needs(from) && hasNull)
            to->AddComplexSource(&from, -1, -1, -1, -1, -1, -1, -1, -1, 0.0, 1.0, null);
        else
            to->AddSimpleSource(&from);
    }
    return view;
}

struct tagProgress
{
    XSaveProgress* progress;
    bool isStopped;
};

int CPL_STDCALL OnProgress(double share, const char*, void* data)
{
    auto* p = static_cast<tagProgress*>(data);
    p->progress->Report(static_cast<long long>(share * 100.0));
    p->isStopped |= p->progress->IsStopped();
    return !p->isStopped;
}

XString DescribeFailure(const XGdalErrors& errors, const XString& path, const XString& name)
{
    const XString why = errors.GetSentence();
    XString error = XfnFormat("\"%s\": its pyramid cannot be made: %s", path,
                              why.IsEmpty() ? "GDAL does not say why." : why.GetString());
    error.Replace(name, "the pyramid");
    error.Replace("\n", " ");
    return error;
}

/// GDAL averages these as floats, which hold no more than seven of their digits.
bool IsWide(const XDMBand& band)
{
    const int type = band.GetDataType();
    return type == kXUInt32 || type == kXInt32 || type == kXDouble;
}

/// The averages of one piece of a level, from the next finer one: `finer`, or the band itself.
int WritePiece(XDMBand& band, GDALRasterBand* finer, GDALRasterBand& to, int x0, int y0)
{
    const int type = band.GetDataType();
    const auto gdalType = static_cast<GDALDataType>(XfnToGdalType(type));
    const int finerWidth = finer ? finer->GetXSize() : band.GetXSize();
    const int finerHeight = finer ? finer->GetYSize() : band.GetYSize();
    const tagXLevelAxis x =
        XfnMakeLevelAxis(x0, std::min(x0 + kPieceWidth, to.GetXSize()), to.GetXSize(), finerWidth);
    const tagXLevelAxis y = XfnMakeLevelAxis(y0, std::min(y0 + kPieceHeight, to.GetYSize()),
                                             to.GetYSize(), finerHeight);
    const int width = x.end - x.begin;
    const int height = y.end - y.begin;
    tagXArr2 source, made;
    tagXArr2* block = &source;
    XString message;
    if (!made.Create(type, static_cast<int>(x.first.size()), static_cast<int>(y.first.size())))
        throw std::bad_alloc();
    if (!finer) {
        if (!band.ReadLevelWindow(block, 0, x.begin, y.begin, width, height, nullptr, &message)) {
            CPLError(CE_Failure, CPLE_FileIO, "%s", message.GetString());
            return 0;
        }
    } else if (!source.Create(type, width, height)) {
        throw std::bad_alloc();
    } else if (finer->RasterIO(GF_Read, x.begin, y.begin, width, height, source.base, width, height,
                               gdalType, 0, 0, nullptr) != CE_None) {
        return 0;
    }
    XfnAverageLevel(source.base, type, band.GetNullValue(), x, y, made.base);
    return to.RasterIO(GF_Write, x0, y0, made.width, made.height, made.base, made.width,
                       made.height, gdalType, 0, 0, nullptr) == CE_None;
}

/// Writes the levels as a file of level 1 with the others as its overviews.
/// @return 0 after a stop or with errors of GDAL
int WriteWideLevels(const XRSFile& file, GDALDataset& dataset, int levels, const XString& name,
                    XSaveProgress& percent)
{
    GDALDriver* driver = GetGDALDriverManager()->GetDriverByName("GTiff");
    CPLStringList options;
    for (const char* option : {"TILED=YES", "BLOCKXSIZE=256", "BLOCKYSIZE=256", "COMPRESS=DEFLATE",
                               "INTERLEAVE=BAND", "BIGTIFF=IF_SAFER", "SPARSE_OK=TRUE"})
        options.AddString(option);
    options.SetNameValue("PREDICTOR", ChoosePredictor(dataset));
    const int bands = file.GetNumOfBands();
    const std::unique_ptr<GDALDataset> made(
        driver ? driver->Create(name, (dataset.GetRasterXSize() + 1) / 2,
                                (dataset.GetRasterYSize() + 1) / 2, bands,
                                dataset.GetRasterBand(1)->GetRasterDataType(), options.List())
               : nullptr);
    if (!made) return 0;
    std::vector<int> factors;
    for (int i = 1; i < levels; ++i)
        factors.push_back(1 << i);
    if (!factors.empty() && made->BuildOverviews("NONE", levels - 1, factors.data(), 0, nullptr,
                                                 nullptr, nullptr, nullptr) != CE_None)
        return 0;
    const auto levelOf = [&](int band, int level) {
        GDALRasterBand* first = made->GetRasterBand(band + 1);
        return level < 2 ? level < 1 ? nullptr : first : first->GetOverview(level - 2);
    };
    double done = 0.0;
    for (int level = 1; level <= levels; ++level) {
        GDALRasterBand* size = levelOf(0, level);
        if (!size) return 0;
        const double rowShare = 75.0 * std::pow(0.25, level - 1) / size->GetYSize();
        for (int y = 0; y < size->GetYSize(); y += kPieceHeight) {
            for (int x = 0; x < size->GetXSize(); x += kPieceWidth) {
                for (int band = 0; band < bands; ++band) {
                    if (percent.IsStopped()) return 0;
                    if (!WritePiece(*file.GetBandAt(band), levelOf(band, level - 1),
                                    *levelOf(band, level), x, y))
                        return 0;
                }
            }
            done += rowShare * kPieceHeight;
            percent.Report(static_cast<long long>(std::min(done, 99.0)));
        }
    }
    made->FlushCache(true);
    return 1;
}

int WriteLevels(const XRSFile& file, GDALDataset& dataset, const char* method, const XString& path,
                const XString& name, XSaveProgress& percent, XString& error)
{
    std::vector<int> factors;
    for (int factor = 2;; factor *= 2) {
        factors.push_back(factor);
        const int side = std::max(dataset.GetRasterXSize(), dataset.GetRasterYSize());
        if ((side - 1) / factor < kSmallSide) break;
    }
    const char* order = dataset.GetMetadataItem("INTERLEAVE", "IMAGE_STRUCTURE");
    const bool isMixed =
        order && EQUAL(order, "PIXEL") && dataset.GetRasterCount() <= kMostInterleaved;
    XOptions options;
    options.Set("COMPRESS_OVERVIEW", "DEFLATE");
    options.Set("PREDICTOR_OVERVIEW", ChoosePredictor(dataset));
    options.Set("INTERLEAVE_OVERVIEW", isMixed ? "PIXEL" : "BAND");
    options.Set("BIGTIFF_OVERVIEW", "IF_SAFER");
    options.Set("SPARSE_OK_OVERVIEW", "YES");
    options.Set("GDAL_TIFF_OVR_BLOCKSIZE", "256");
    // one core is left to the windows
    const int cores = static_cast<int>(std::thread::hardware_concurrency());
    options.Set("GDAL_NUM_THREADS", XfnFormat("%d", std::max(cores - 1, 1)));

    const XGdalErrors errors;
    if (EQUAL(method, "AVERAGE") && IsWide(*file.GetBandAt(0))) {
        const int isDone =
            WriteWideLevels(file, dataset, static_cast<int>(factors.size()), name, percent);
        if (isDone && errors.GetSentence().IsEmpty()) return 1;
        if (!percent.IsStopped()) error = DescribeFailure(errors, path, name);
        return 0;
    }
    const std::unique_ptr<GDALDataset> view = ViewAsCounted(dataset);
    GDALDataset& from = view ? *view : dataset;
    std::vector<GDALRasterBand*> bands;
    for (int i = 1; i <= from.GetRasterCount(); ++i)
        bands.push_back(from.GetRasterBand(i));
    tagProgress progress{&percent, false};
    const CPLErr result = GTIFFBuildOverviews(name, static_cast<int>(bands.size()), bands.data(),
                                              static_cast<int>(factors.size()), factors.data(),
                                              method, OnProgress, &progress, nullptr);
    if (progress.isStopped) return 0;
    if (result == CE_None && errors.GetSentence().IsEmpty()) return 1;
    error = DescribeFailure(errors, path, name);
    return 0;
}

int Build(const XString& path, XSidecarPlace place, const tagXSaveControl& control, XString& made,
          XString& error)
{
    XSaveProgress percent(control, 100);
    if (percent.IsStopped()) return 0;
    XRSFile file;
    if (!XRSFileIO::Open(path, &file, error)) return 0;
    for (int i = 0; i < file.GetNumOfBands(); ++i) {
        if (dynamic_cast<const XDMBandGDAL*>(file.GetBandAt(i))) continue;
        error = XfnFormat("\"%s\" needs no pyramid: it has all levels in it.", path);
        return 0;
    }
    if (file.GetBandAt(0)->GetLevel() < 1) {
        error = XfnFormat("\"%s\" needs no pyramid: it is small.", path);
        return 0;
    }
    if (!HasOneType(file)) {
        error = XfnFormat("\"%s\": there is no pyramid for bands of several data types.", path);
        return 0;
    }
    const char* const method = ChooseMethod(file);
    std::unique_ptr<GDALDataset> dataset;
    {
        const XGdalErrors errors;
        dataset.reset(GDALDataset::Open(path, GDAL_OF_RASTER | GDAL_OF_VERBOSE_ERROR));
        if (!dataset) {
            error = errors.Describe(path, "It cannot be opened any more.");
            return 0;
        }
    }
    XfnKeepPamUnwritten(dataset.get());
    return XRasterSidecar(path).Put(
        ".ovr", place,
        [&](const XString& name, XString& why) {
            return WriteLevels(file, *dataset, method, path, name, percent, why);
        },
        made, error);
}

} // namespace

int XRSFileIO::NeedsLevels(const XRSFile* file)
{
    if (!file || !HasOneType(*file)) return 0;
    for (int i = 0; i < file->GetNumOfBands(); ++i) {
        const XDMBand* band = file->GetBandAt(i);
        if (!dynamic_cast<const XDMBandGDAL*>(band)) return 0;
        // one missing level is made of four times its pixels, two in a row of sixteen times
        for (int level = 1; level + 1 < band->GetNumOfLevels(); ++level) {
            int width = 0;
            int height = 0;
            band->GetLevelSize(level, width, height);
            if (std::max(width, height) >= kLargeSide && band->IsVirtualLevel(level) &&
                band->IsVirtualLevel(level + 1))
                return 1;
        }
    }
    return 0;
}

int XRSFileIO::BuildLevels(const XString& path, XSidecarPlace place, const tagXSaveControl& control,
                           XString& made, XString& error)
{
    error.Empty();
    made.Empty();
    try {
        return Build(path, place, control, made, error);
    } catch (const std::bad_alloc&) {
        error = XfnFormat("\"%s\": there is not enough memory for its pyramid.", path);
        return 0;
    }
}

int XRSFileIO::TakeUpLevels(XRSFile* file)
{
    if (!file || file->GetNumOfBands() < 1) return 0;
    const auto pyramid = XfnOpenLevels(file->GetFilePath());
    std::vector<XDMBandGDAL*> taken;
    for (int i = 0; pyramid && i < file->GetNumOfBands(); ++i) {
        auto* band = dynamic_cast<XDMBandGDAL*>(file->GetBandAt(i));
        if (band && band->TakeUpLevels(pyramid, 0)) taken.push_back(band);
    }
    // bands fill each other's tiles, so all of them read the new levels before the old tiles go
    for (XDMBandGDAL* band : taken)
        band->DropOldLevels();
    return !taken.empty();
}
