#include "foundation/raster/XDMBandGDAL.h"
#include "foundation/raster/XGdalErrors.h"
#include "foundation/raster/XGdalSource.h"
#include "foundation/raster/XRSFile.h"
#include "foundation/raster/XRSFileIO.h"
#include "foundation/raster/XRasterTypes.h"
#include "foundation/raster/XSaveControl.h"

#include <cpl_conv.h>
#include <gdal_priv.h>
#include <vrtdataset.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <new>
#include <thread>

// The pyramid of a raster file: whether it is wanted, its making, its use by an open file.

namespace {

constexpr int kSmallSide = 256;
constexpr int kLargeSide = 4096;
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

/// Averages leave out NaN only where it is the value of no data: a view of the dataset in which it is
/// that for bands of reals. Null when no band needs it.
std::unique_ptr<GDALDataset> ViewWithNaN(GDALDataset& dataset)
{
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const auto needs = [](GDALRasterBand& band) {
        int hasNull = 0;
        const double null = band.GetNoDataValue(&hasNull);
        return GDALDataTypeIsFloating(band.GetRasterDataType()) &&
               !GDALDataTypeIsComplex(band.GetRasterDataType()) &&
               (band.GetMaskFlags() & (GMF_ALL_VALID | GMF_NODATA)) &&
               !(hasNull && std::isnan(null));
    };
    bool isNeeded = false;
    for (int i = 1; i <= dataset.GetRasterCount(); ++i)
        isNeeded |= needs(*dataset.GetRasterBand(i));
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

int WriteLevels(GDALDataset& dataset, const char* method, const XString& path, const XString& name,
                XSaveProgress& percent, XString& error)
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
    const std::unique_ptr<GDALDataset> view = ViewWithNaN(dataset);
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
    const XString why = errors.GetSentence();
    error = XfnFormat("\"%s\": its pyramid cannot be made: %s", path,
                      why.IsEmpty() ? "GDAL does not say why." : why.GetString());
    error.Replace(name, "the pyramid");
    error.Replace("\n", " ");
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
            return WriteLevels(*dataset, method, path, name, percent, why);
        },
        made, error);
}

} // namespace

int XRSFileIO::NeedsLevels(const XRSFile* file)
{
    if (!file) return 0;
    for (int i = 0; i < file->GetNumOfBands(); ++i) {
        const XDMBand* band = file->GetBandAt(i);
        if (!dynamic_cast<const XDMBandGDAL*>(band)) return 0;
        int large = 0;
        for (int level = 1; level < band->GetNumOfLevels(); ++level) {
            int width = 0;
            int height = 0;
            band->GetLevelSize(level, width, height);
            large += band->IsVirtualLevel(level) && std::max(width, height) >= kLargeSide;
        }
        if (large >= 2) return 1;
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
