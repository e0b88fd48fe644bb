#include "foundation/raster/XGdalExport.h"

#include "foundation/base/XPath.h"
#include "foundation/base/XSystem.h"
#include "foundation/raster/XDMBandGDAL.h"
#include "foundation/raster/XGdalBandDataset.h"
#include "foundation/raster/XGdalErrors.h"
#include "foundation/raster/XRSFile.h"
#include "foundation/raster/XRasterTypes.h"

#include <gdal_priv.h>

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <new>
#include <set>
#include <string>

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

/// The copy may be made from the dataset that GDAL has of the file.
bool IsGdalSource(const XRSFile& file, GDALDriver* driver)
{
    for (int i = 0; i < file.GetNumOfBands(); ++i) {
        const XDMBand* band = file.GetBandAt(i);
        if (!dynamic_cast<const XDMBandGDAL*>(band)) return false;
        // GDAL has them as bytes with a mark beside, which other formats lose
        if (band->GetDataType() == kXInt8 && !EQUAL(driver->GetDescription(), "GTiff"))
            return false;
    }
    return file.GetNumOfBands() > 0;
}

/// A folder of its own beside the target, gone with everything in it in the end.
class XScratchFolder
{
public:
    ~XScratchFolder()
    {
        std::error_code ignored;
        if (!m_path.empty()) fs::remove_all(m_path, ignored);
    }

    int Create(const fs::path& target, XString& error)
    {
        std::string name = (target.parent_path() / ".tql-XXXXXX").string();
        if (!mkdtemp(name.data())) {
            const int code = errno;
            XString id, text;
            XfnGetErrorString(code, id, text);
            error = XfnFormat("\"%s\" cannot be written: %s.", target.c_str(), text);
            return 0;
        }
        m_path = name;
        return 1;
    }

    /// Puts the files that stand in the folder beside it. What they replace, and what lies beside
    /// the target under names that readers would take for parts of the new file, is kept in the
    /// folder until all is in place, and goes back when something fails.
    int Publish(const fs::path& target, XString& error);
    const fs::path& GetPath() const { return m_path; }

private:
    fs::path m_path;
};

int XScratchFolder::Publish(const fs::path& target, XString& error)
{
    const fs::path folder = target.parent_path();
    const fs::path kept = m_path / "kept";
    std::vector<std::pair<fs::path, fs::path>> moves; // done so far, from and to
    try {
        std::set<std::string> names;
        for (const auto& entry : fs::directory_iterator(m_path))
            names.insert(entry.path().filename().string());
        std::set<std::string> old = names;
        for (const char* tail : {".aux.xml", ".ovr", ".msk"})
            old.insert(target.filename().string() + tail);
        fs::create_directory(kept);
        const auto move = [&](const fs::path& from, const fs::path& to) {
            fs::rename(from, to);
            moves.emplace_back(from, to);
        };
        for (const std::string& name : old)
            if (fs::is_regular_file(folder / name)) move(folder / name, kept / name);
        const std::string last = target.filename().string();
        for (const std::string& name : names)
            if (name != last) move(m_path / name, folder / name);
        move(m_path / last, folder / last);
        return 1;
    } catch (const fs::filesystem_error& e) {
        std::error_code ignored;
        for (auto place = moves.rbegin(); place != moves.rend(); ++place)
            fs::rename(place->second, place->first, ignored);
        error =
            XfnFormat("\"%s\" cannot be written: %s.", target.c_str(), e.code().message().c_str());
        return 0;
    }
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
    std::unique_ptr<GDALDataset> source;
    if (IsGdalSource(file, driver)) {
        const XGdalErrors errors;
        source.reset(GDALDataset::Open(file.GetFilePath(), GDAL_OF_RASTER | GDAL_OF_VERBOSE_ERROR));
        if (!source) {
            error = errors.Describe(file.GetFilePath(), "It cannot be opened any more.");
            return 0;
        }
    } else {
        XString reason;
        source = XGdalBandDataset::Make(file, &stop, reason);
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
