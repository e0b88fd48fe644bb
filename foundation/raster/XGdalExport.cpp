#include "foundation/raster/XGdalExport.h"

#include "foundation/base/XPath.h"
#include "foundation/raster/XDMBandGDAL.h"
#include "foundation/raster/XGdalBandDataset.h"
#include "foundation/raster/XGdalDescription.h"
#include "foundation/raster/XGdalSource.h"
#include "foundation/raster/XRSFile.h"
#include "foundation/raster/XRasterTypes.h"
#include "foundation/raster/XScratchFolder.h"
#include "foundation/reference/XGdalErrors.h"

#include <gdal_priv.h>

#include <cmath>
#include <filesystem>
#include <new>
#include <optional>

namespace fs = std::filesystem;

namespace {

/// Where several drivers claim an extension or none does.
struct tagChoice
{
    const char* extension;
    const char* driver;
    const char* options; // in a row, null for none
};

const tagChoice kChoices[] = {
    {"tif", "GTiff", "BIGTIFF=IF_SAFER"},
    {"tiff", "GTiff", "BIGTIFF=IF_SAFER"},
    {"img", "HFA", nullptr},
    {"dat", "ENVI", nullptr},
    {"bsq", "ENVI", "INTERLEAVE=BSQ"},
    {"bil", "ENVI", "INTERLEAVE=BIL"},
    {"bip", "ENVI", "INTERLEAVE=BIP"},
    {"jp2", "JP2OpenJPEG", "QUALITY=100 REVERSIBLE=YES"}, // lossy otherwise
    {"j2k", "JP2OpenJPEG", "QUALITY=100 REVERSIBLE=YES"},
};

bool CanWrite(GDALDriver* driver)
{
    return driver && driver->GetMetadataItem(GDAL_DCAP_RASTER) &&
           (driver->GetMetadataItem(GDAL_DCAP_CREATECOPY) ||
            driver->GetMetadataItem(GDAL_DCAP_CREATE));
}

GDALDriver* FindDriver(const XString& extension, CPLStringList& options)
{
    XfnPrepareGdal();
    GDALDriverManager* manager = GetGDALDriverManager();
    for (const tagChoice& choice : kChoices) {
        if (extension.CompareNoCase(choice.extension) != 0) continue;
        if (choice.options) options = CSLTokenizeString2(choice.options, " ", 0);
        return manager->GetDriverByName(choice.driver);
    }
    for (int i = 0; !extension.IsEmpty() && i < manager->GetDriverCount(); ++i) {
        GDALDriver* driver = manager->GetDriver(i);
        const char* list = driver->GetMetadataItem(GDAL_DMD_EXTENSIONS);
        if (!list || !CanWrite(driver)) continue;
        const CPLStringList words(CSLTokenizeString2(list, " ", 0));
        if (words.FindString(extension) >= 0) return driver;
    }
    return nullptr;
}

/// @return a sentence for a type that the driver would have to change; empty when all is well
XString CheckTypes(GDALDriver* driver, GDALDataset& source, const XString& path)
{
    const char* list = driver->GetMetadataItem(GDAL_DMD_CREATIONDATATYPES);
    if (!list) return XString();
    const CPLStringList types(CSLTokenizeString2(list, " ", 0));
    for (int i = 1; i <= source.GetRasterCount(); ++i) {
        const char* type = GDALGetDataTypeName(source.GetRasterBand(i)->GetRasterDataType());
        if (types.FindString(type) < 0)
            return XfnFormat("\"%s\": files of this format (%s) hold no samples of type %s.", path,
                             driver->GetDescription(), type);
    }
    return XString();
}

/// Where all bands come from, in their order. Null when that is more than one file, or when the
/// copy cannot be made from what GDAL has of it.
std::shared_ptr<XGdalSource> FindSource(const XRSFile& file, GDALDriver* driver)
{
    std::shared_ptr<XGdalSource> source;
    for (int i = 0; i < file.GetNumOfBands(); ++i) {
        const auto* band = dynamic_cast<const XDMBandGDAL*>(file.GetBandAt(i));
        if (!band || band->GetBandNumber() != i + 1) return nullptr;
        if (i == 0) source = band->GetSource();
        if (band->GetSource() != source) return nullptr;
        // GDAL has them as bytes with a mark beside, which other formats lose
        if (band->GetDataType() == kXInt8 && !EQUAL(driver->GetDescription(), "GTiff"))
            return nullptr;
    }
    return source;
}

bool IsSame(double a, double b)
{
    return a == b || (std::isnan(a) && std::isnan(b));
}

bool IsSame(const XSpatialReference& a, const XSpatialReference& b)
{
    if (a.GetCoordType() != b.GetCoordType() || a.IsEmpty() != b.IsEmpty()) return false;
    return a.IsEmpty() || a.IsSame(&b);
}

bool IsSame(const XBandGeometry& a, const XBandGeometry& b)
{
    return a.IsGeoreferenced() == b.IsGeoreferenced() &&
           a.GetPixelToWorld().GetPolynomial() == b.GetPixelToWorld().GetPolynomial() &&
           a.GetWorldToPixel().GetPolynomial() == b.GetWorldToPixel().GetPolynomial();
}

bool IsSame(const tagXRSGIS& a, const tagXRSGIS& b)
{
    return a.red == b.red && a.green == b.green && a.blue == b.blue && a.alpha == b.alpha &&
           a.name == b.name;
}

/// What a copy holds of the description of a band.
bool IsSame(const XDMBand& a, const XDMBand& b)
{
    if (a.GetNumOfGIS() != b.GetNumOfGIS() || a.HasColorTable() != b.HasColorTable()) return false;
    for (int i = 0; i < a.GetNumOfGIS(); ++i)
        if (!IsSame(*a.GetGISAt(i), *b.GetGISAt(i))) return false;
    return a.GetBandName() == b.GetBandName() && IsSame(a.GetNullValue(), b.GetNullValue()) &&
           IsSame(a.GetScale(), b.GetScale()) && IsSame(a.GetOffset(), b.GetOffset()) &&
           IsSame(a.GetWaveLength(), b.GetWaveLength()) && a.GetBandDate() == b.GetBandDate() &&
           a.GetBandSensorName() == b.GetBandSensorName() &&
           a.GetColorInterpretation() == b.GetColorInterpretation();
}

/// Nothing was changed since the file was opened: the model is what the dataset gives.
bool IsAsRead(const XRSFile& file, const std::shared_ptr<XGdalSource>& source, GDALDataset* dataset)
{
    if (dataset->GetRasterCount() != file.GetNumOfBands()) return false;
    XBandGeometry geometry;
    XSpatialReference sr;
    XString notes;
    XfnReadGdalGeometry(dataset, geometry, sr, notes);
    for (int i = 0; i < file.GetNumOfBands(); ++i) {
        const XDMBand& band = *file.GetBandAt(i);
        const XDMBandGDAL fresh(source, dataset, i + 1, 0, 0, 0);
        if (!IsSame(band, fresh) || !IsSame(band.GetGeometry(), geometry) ||
            !IsSame(*band.GetSR(), sr))
            return false;
    }
    tagGCPSets set;
    set.points = XfnReadGdalPoints(dataset, set.sr);
    if (set.points.empty() || file.GetNumOfGCPSet() != 1)
        return set.points.empty() && file.GetNumOfGCPSet() == 0;
    return file.GetGCPSetAt(0)->points == set.points && IsSame(file.GetGCPSetAt(0)->sr, set.sr);
}

struct tagProgress
{
    XSaveProgress* progress;
    std::atomic<int>* stop;
};

int OnProgress(double share, const char*, void* data)
{
    const auto* p = static_cast<const tagProgress*>(data);
    p->progress->Report(static_cast<long long>(share * 100.0));
    if (p->progress->IsStopped()) *p->stop = 1;
    return *p->stop == 0;
}

/// @return 0 with a sentence, an empty one after a stop
int Copy(GDALDriver* driver, GDALDataset& source, const CPLStringList& options,
         const fs::path& scratch, const XString& path, tagProgress& progress, XString& error)
{
    const XGdalErrors errors;
    GDALDataset* copy =
        driver->CreateCopy(scratch.c_str(), &source, TRUE,
                           const_cast<CPLStringList&>(options).List(), OnProgress, &progress);
    const bool isMade = copy != nullptr;
    if (copy) GDALClose(copy); // may find out that the disk is full
    if (*progress.stop) return 0;
    if (isMade && errors.GetSentence().IsEmpty()) return 1;
    error = errors.Describe(path, "It cannot be written.");
    error.Replace(scratch.c_str(), path);
    error.Replace("\n", " ");
    return 0;
}

int Export(XRSFile& file, const XString& path, const tagXSaveControl& control, XString& error)
{
    CPLStringList options;
    GDALDriver* driver = FindDriver(XfnGetFileExt(path), options);
    if (!CanWrite(driver)) {
        error = XfnFormat("\"%s\": there is no raster format with this extension that can be "
                          "written.",
                          path);
        return 0;
    }
    if (EQUAL(driver->GetDescription(), "VRT")) {
        error = XfnFormat("\"%s\": a virtual raster holds no pixels and is no copy.", path);
        return 0;
    }
    XSaveProgress percent(control, 100);
    if (percent.IsStopped()) return 0;

    std::atomic<int> stop{0};
    const std::shared_ptr<XGdalSource> origin = FindSource(file, driver);
    std::unique_ptr<XGdalBandDataset> made;
    // its own handle, as another of the same name may be another file by now
    std::optional<XGdalSource::Handle> handle;
    GDALDataset* source = nullptr;
    if (origin) {
        handle.emplace(origin->Acquire(&stop, error));
        source = handle->Get();
        if (!source) return 0;
    }
    if (!source || !IsAsRead(file, origin, source)) {
        handle.reset(); // it may be the only one, and the bands are read now
        XString reason;
        made = XGdalBandDataset::Make(file, &stop, reason);
        source = made.get();
        if (!source) {
            error = XfnFormat("\"%s\" is not written. %s.", path, reason);
            return 0;
        }
    }
    error = CheckTypes(driver, *source, path);
    if (!error.IsEmpty()) return 0;

    std::error_code code;
    fs::path target = fs::absolute(path.GetString(), code);
    // a link stays, and what it points to is replaced
    const fs::path followed = fs::weakly_canonical(target, code);
    if (!code) target = followed;
    if (fs::exists(target, code) && !fs::is_regular_file(target, code)) {
        error = XfnFormat("\"%s\" is not a file that can be replaced.", path);
        return 0;
    }
    XScratchFolder scratch;
    if (!scratch.Create(target, error)) return 0;
    tagProgress progress{&percent, &stop};
    return Copy(driver, *source, options, scratch.GetPath() / target.filename(), path, progress,
                error) &&
           scratch.Publish(target, error);
}

} // namespace

int XfnExportRaster(XRSFile& file, const XString& path, const tagXSaveControl& control,
                    XString& error)
{
    error.Empty();
    try {
        return Export(file, path, control, error);
    } catch (const std::bad_alloc&) {
        error = XfnFormat("\"%s\": there is not enough memory to write it.", path);
        return 0;
    }
}
