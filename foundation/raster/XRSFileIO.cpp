#include "foundation/raster/XRSFileIO.h"

#include "foundation/base/XFile.h"
#include "foundation/base/XFileException.h"
#include "foundation/base/XInputFile.h"
#include "foundation/base/XPath.h"
#include "foundation/base/XSystem.h"
#include "foundation/platform/XThread.h"
#include "foundation/raster/XDMBandBMP.h"
#include "foundation/raster/XDMBandDTED.h"
#include "foundation/raster/XDMBandGTIFF.h"
#include "foundation/raster/XDMBandHFA.h"
#include "foundation/raster/XDMBandJPG.h"
#include "foundation/raster/XDMBandXDM.h"
#include "foundation/raster/XDMFileModel.h"
#include "foundation/raster/XDMVand.h"
#include "foundation/raster/XGdalDescription.h"
#include "foundation/raster/XGdalSource.h"
#include "foundation/raster/XGdalTileReader.h"
#include "foundation/raster/XRSFile.h"
#include "foundation/raster/XSidecarStatistics.h"
#include "foundation/reference/XGdalErrors.h"
#include "foundation/vector/XVectorIO.h"
#include "foundation/vector/XvcBase.h"

#include <gdal_priv.h>

#include <unistd.h>

#include <algorithm>
#include <cstring>
#include <new>
#include <set>

namespace {

constexpr int kMostParts = 65536;
constexpr std::size_t kListedParts = 8;

struct tagFormat
{
    int id;
    const char* name;
    const char* drivers[3]; // null for any reader
};

const tagFormat kFormats[] = {
    {kXFormatBMP, "BMP", {"BMP", nullptr}},    {kXFormatJPG, "JPEG", {"JPEG", nullptr}},
    {kXFormatTIF, "TIFF", {"GTiff", nullptr}}, {kXFormatIMG, "ERDAS IMAGINE", {"HFA", nullptr}},
    {kXFormatDT0, "DTED", {"DTED", nullptr}},  {kXFormatDT1, "DTED", {"DTED", nullptr}},
    {kXFormatDT2, "DTED", {"DTED", nullptr}},  {kXFormatOtherRaster, "", {nullptr}},
};

struct tagExtension
{
    const char* text;
    int id;
};

const tagExtension kExtensions[] = {
    {"XDM", kXFormatXDM}, {"PBI", kXFormatPBI},  {"PEI", kXFormatPBI}, {"BMP", kXFormatBMP},
    {"JPG", kXFormatJPG}, {"JPEG", kXFormatJPG}, {"TIF", kXFormatTIF}, {"TIFF", kXFormatTIF},
    {"IMG", kXFormatIMG}, {"DT0", kXFormatDT0},  {"DT1", kXFormatDT1}, {"DT2", kXFormatDT2},
    {"XVC", kXFormatXVC}, {"DXF", kXFormatDXF},  {"SHP", kXFormatSHP}, {"DGN", kXFormatDGN},
};

/// What can be said about a path before any reader sees it.
int CheckPath(const XString& path, XString& error)
{
    // of other names the reader knows whether there is such a thing
    if (!path.IsEmpty() && !XRSFileIO::IsPlainPath(path)) return 1;
    return XfnCheckInputFile(path, error);
}

bool HoldsVectors(const XString& path)
{
    const XGdalErrors errors;
    return GDALIdentifyDriverEx(path, GDAL_OF_VECTOR, nullptr, nullptr) != nullptr &&
           GDALIdentifyDriverEx(path, GDAL_OF_RASTER, nullptr, nullptr) == nullptr;
}

std::unique_ptr<XDMBandGDAL> MakeBand(const std::shared_ptr<XGdalSource>& source,
                                      GDALDataset* dataset, int number, int useLevels,
                                      int useOverviews, int useStatistics)
{
    const XString& driver = source->GetDriverName();
    const auto make = [&]<class T>(const T*) -> std::unique_ptr<XDMBandGDAL> {
        return std::make_unique<T>(source, dataset, number, useLevels, useOverviews, useStatistics);
    };
    if (driver == "GTiff" || driver == "COG")
        return make(static_cast<const XDMBandGTIFF*>(nullptr));
    if (driver == "BMP") return make(static_cast<const XDMBandBMP*>(nullptr));
    if (driver == "JPEG") return make(static_cast<const XDMBandJPG*>(nullptr));
    if (driver == "HFA") return make(static_cast<const XDMBandHFA*>(nullptr));
    if (driver == "DTED") return make(static_cast<const XDMBandDTED*>(nullptr));
    return make(static_cast<const XDMBandGDAL*>(nullptr));
}

/// What the bands show, as far as the file tells.
void SetBandTypes(XRSFile& file, const XString& driver)
{
    int images = 0;
    int hasWaveLengths = 1;
    for (int i = 0; i < file.GetNumOfBands(); ++i) {
        XDMBand* band = file.GetBandAt(i);
        if (driver == "DTED")
            band->SetBandType(kXBandElevation);
        else if (band->GetNumOfGIS() > 0)
            band->SetBandType(kXBandClassMap);
        else if (band->GetColorInterpretation() == 6)
            band->SetBandType(kXBandMask);
        if (band->GetBandType() != kXBandUnknown) continue;
        ++images;
        hasWaveLengths &= band->GetWaveLength() != kXNotSet;
    }
    if (images < 3) return;
    for (int i = 0; i < file.GetNumOfBands(); ++i)
        if (file.GetBandAt(i)->GetBandType() == kXBandUnknown)
            file.GetBandAt(i)->SetBandType(images > 32 && hasWaveLengths ? kXBandHyperspectral
                                                                         : kXBandMultispectral);
}

std::vector<XRSFileIO::tagPart> PartsOf(GDALDataset* dataset)
{
    std::vector<XRSFileIO::tagPart> parts;
    char** items = dataset->GetMetadata("SUBDATASETS");
    for (int i = 1; i <= kMostParts; ++i) {
        const char* name = CSLFetchNameValue(items, XfnFormat("SUBDATASET_%d_NAME", i));
        const char* text = CSLFetchNameValue(items, XfnFormat("SUBDATASET_%d_DESC", i));
        if (!name) break;
        parts.push_back({name, text ? text : name});
    }
    return parts;
}

XString ListParts(const std::vector<XRSFileIO::tagPart>& parts)
{
    XString list;
    for (std::size_t i = 0; i < std::min(parts.size(), kListedParts); ++i)
        list += XfnFormat(i ? ", %s" : "%s", parts[i].name);
    if (parts.size() > kListedParts) list += ", and others";
    return list;
}

/// The path, and the file itself where the file system has one.
void SetFileOf(XRSFile& file, const XString& path)
{
    auto open = std::make_unique<XFile>();
    if (XRSFileIO::IsPlainPath(path) && open->Open(path, XFile::kModeRead))
        file.SetFile(open.release(), 1);
    else
        file.SetFilePath(path);
}

/// Levels that the file does not hold may stand in a pyramid that was made for it.
void FindLevels(XRSFile& file, const XString& path)
{
    int isMissing = 0;
    for (int i = 0; i < file.GetNumOfBands(); ++i)
        for (int level = 1; level < file.GetBandAt(i)->GetNumOfLevels(); ++level)
            isMissing |= file.GetBandAt(i)->IsVirtualLevel(level);
    const auto pyramid = isMissing ? XfnOpenLevels(path) : nullptr;
    for (int i = 0; pyramid && i < file.GetNumOfBands(); ++i)
        static_cast<XDMBandGDAL*>(file.GetBandAt(i))->TakeUpLevels(pyramid, 1);
}

/// Exact statistics that were kept apart from the file go before those in it.
void FindStatistics(XRSFile& file, const XString& path)
{
    const XString name = XRasterSidecar(path).GetCached(".aux.xml");
    if (name.IsEmpty() || ::access(name, R_OK) != 0) return;
    for (const auto& [number, statistics] : XfnReadSidecarStatistics(name))
        if (XDMBand* band = file.GetBandAt(number - 1)) band->SetBandStatistics(statistics);
}

/// Whether what GDAL takes for overviews is a file beside the raster that is older than it.
int AreOverviewsOutdated(GDALDataset* dataset, XRSFile& file, const XString& path)
{
    const XRasterSidecar sidecar(path);
    if (!sidecar.IsOutdated(".ovr")) return 0;
    file.AddNote(XfnFormat("\"%s\": its pyramid is older than the image and is not used.", path));
    // this driver looks for them inside the file first, and then beside it
    GDALRasterBand* overview = dataset->GetRasterBand(1)->GetOverview(0);
    GDALDataset* of = overview ? overview->GetDataset() : nullptr;
    return of && sidecar.GetBeside(".ovr") == of->GetDescription();
}

/// The bands of which GDAL takes statistics from a file beside the raster that is older than it.
std::set<int> ListOutdatedStatistics(XRSFile& file, const XString& path)
{
    std::set<int> numbers;
    const XRasterSidecar sidecar(path);
    if (!sidecar.IsOutdated(".aux.xml")) return numbers;
    for (const auto& [number, statistics] : XfnReadSidecarStatistics(sidecar.GetBeside(".aux.xml")))
        numbers.insert(number);
    if (!numbers.empty())
        file.AddNote(XfnFormat(
            "\"%s\": the statistics beside it are older than the image and are not used.", path));
    return numbers;
}

int FillFile(XRSFile& file, const std::shared_ptr<XGdalSource>& source, GDALDataset* dataset,
             int useLevels, int useStatistics, XThread* thread, XString& error)
{
    const XGdalErrors errors;
    const int count = dataset->GetRasterCount();
    if (count < 1) {
        const std::vector<XRSFileIO::tagPart> parts = PartsOf(dataset);
        error = XfnFormat("\"%s\" holds no raster bands.", source->GetPath());
        if (!parts.empty())
            error = XfnFormat(
                "\"%s\" holds no bands itself but %d images inside; open one of them: %s.",
                source->GetPath(), static_cast<int>(parts.size()), ListParts(parts));
        return 0;
    }
    XBandGeometry geometry;
    XSpatialReference sr;
    XString notes;
    XfnReadGdalGeometry(dataset, geometry, sr, notes);
    if (!notes.IsEmpty()) file.AddNote(XfnFormat("\"%s\": %s", source->GetPath(), notes));
    const int images = static_cast<int>(PartsOf(dataset).size());
    if (images > 1 && XRSFileIO::IsPlainPath(source->GetPath()))
        file.AddNote(
            XfnFormat("\"%s\": this is 1 of %d images in the file.", source->GetPath(), images));
    const int useOverviews = useLevels && !AreOverviewsOutdated(dataset, file, source->GetPath());
    const std::set<int> outdated =
        useStatistics ? ListOutdatedStatistics(file, source->GetPath()) : std::set<int>();
    for (int number = 1; number <= count; ++number) {
        if (thread && thread->IsStopRequested()) {
            error.Empty();
            return 0;
        }
        if (XfnFromGdalBand(dataset->GetRasterBand(number)) == 0) {
            error = XfnFormat("\"%s\": band %d has a data type that cannot be shown.",
                              source->GetPath(), number);
            return 0;
        }
        std::unique_ptr<XDMBandGDAL> band =
            MakeBand(source, dataset, number, useLevels, useOverviews,
                     useStatistics && !outdated.contains(number));
        *band->GetSR() = sr;
        band->SetGeometry(geometry);
        file.AddBand(band.release());
    }
    if (dataset->GetGCPCount() > 0) {
        auto set = std::make_unique<tagGCPSets>();
        set->points = XfnReadGdalPoints(dataset, set->sr);
        set->name = "GCP";
        if (!set->points.empty()) file.AddGCPSet(set.release());
    }
    int rgb[3];
    if (XfnReadGdalHeaderBands(dataset, rgb)) file.SetHeaderBands(rgb);
    SetBandTypes(file, source->GetDriverName());
    if (useLevels) FindLevels(file, source->GetPath());
    if (useStatistics) FindStatistics(file, source->GetPath());
    if (GDALDriver* driver = dataset->GetDriver())
        if (const char* name = driver->GetMetadataItem(GDAL_DMD_LONGNAME)) file.SetFormatName(name);
    SetFileOf(file, source->GetPath());
    file.SetName(XfnGetFileTitle(source->GetPath()));
    return 1;
}

/// " (Sentence.)" behind the path of a refusal; empty when it only says that nobody knows the format.
XString DetailOf(const XString& refusal, const XString& path)
{
    const XString prefix = XfnFormat("\"%s\": ", path);
    if (refusal.Find(prefix) != 0 || refusal.Find(kXNoReader) >= 0) return XString();
    return XString(" (") + refusal.Mid(prefix.GetLength()) + ")";
}

/// Whether a file has the name of plain pixels that a text file beside it describes, and that one is
/// not there.
bool LacksHeader(const XString& path)
{
    const char* const kPlain[] = {"IMG", "DAT", "RAW", "BIN", "BSQ", "BIL", "BIP"};
    const XString extension = XfnGetFileExt(path);
    if (std::none_of(std::begin(kPlain), std::end(kPlain),
                     [&](const char* plain) { return extension.CompareNoCase(plain) == 0; }))
        return false;
    const XString stem = path.Left(path.GetLength() - extension.GetLength());
    for (const char* tail : {"hdr", "HDR"})
        if (::access(stem + tail, F_OK) == 0 || ::access(path + "." + tail, F_OK) == 0)
            return false;
    return true;
}

int Load(XRSFile* file, const tagFormat& format, const XString& path, XString& error, int useLevels,
         int useStatistics, XThread* thread)
{
    error.Empty();
    if (!file) {
        error = "There is no file to load into.";
        return 0;
    }
    if (!CheckPath(path, error)) return 0;
    if (thread && thread->IsStopRequested()) return 0;
    try {
        const bool isAny = format.drivers[0] == nullptr;
        const auto source = XGdalSource::Open(path, isAny ? nullptr : format.drivers, error);
        if (!source) {
            if (HoldsVectors(path))
                error = XfnFormat("\"%s\" holds vector data, not an image.", path);
            else if (!isAny)
                error = XfnFormat("\"%s\" is no readable %s file.%s", path, format.name,
                                  DetailOf(error, path));
            return 0;
        }
        XRSFile made;
        {
            const XGdalSource::Handle handle = source->Acquire(nullptr, error);
            if (!handle ||
                !FillFile(made, source, handle.Get(), useLevels, useStatistics, thread, error))
                return 0;
        }
        file->Swap(made);
        return 1;
    } catch (const std::bad_alloc&) {
        error = XfnFormat("\"%s\": there is not enough memory to open it.", path);
        return 0;
    }
}

/// The content says that the file is of the native format, whatever its name is.
bool IsNative(const XString& path)
{
    XFile file;
    unsigned char bytes[8];
    try {
        return file.Open(path, XFile::kModeRead) &&
               XDMFileReader::IsXDMFile(bytes, file.Read(bytes, sizeof bytes));
    } catch (XFileException& e) {
        e.Delete();
        return false;
    }
}

int LoadNative(XRSFile* file, const XString& path, XString& error, int useLevels, int useStatistics,
               XThread* thread)
{
    error.Empty();
    if (!file) {
        error = "There is no file to load into.";
        return 0;
    }
    if (!CheckPath(path, error)) return 0;
    if (thread && thread->IsStopRequested()) return 0;
    try {
        const auto reader = std::make_shared<XDMFileReader>();
        if (!reader->Open(path, error)) {
            // the reader ends with the path, the sentences here begin with it
            const XString tail = XfnFormat(": %s.", path);
            if (error.Right(tail.GetLength()) == tail)
                error = XfnFormat("\"%s\": %s.", path,
                                  error.Left(error.GetLength() - tail.GetLength()));
            return 0;
        }
        XRSFile made;
        SetFileOf(made, path);
        made.SetFormatName("XDM");
        const tagXDMFileInfo& info = reader->GetInfo();
        for (int i = 0; i < static_cast<int>(info.bands.size()); ++i) {
            auto band = std::make_unique<XDMBandXDM>(reader, i, useLevels);
            const XString notes =
                XfnDescribeFromXDM(info.bands[static_cast<std::size_t>(i)], useStatistics, *band);
            if (!notes.IsEmpty())
                made.AddNote(XfnFormat("\"%s\": band %d: %s", path, i + 1, notes));
            made.AddBand(band.release());
        }
        XfnDescribeFromXDM(info, made);
        if (useStatistics) FindStatistics(made, path);
        if (made.GetName().IsEmpty()) made.SetName(XfnGetFileTitle(path));
        file->Swap(made);
        return 1;
    } catch (const std::bad_alloc&) {
        error = XfnFormat("\"%s\": there is not enough memory to open it.", path);
        return 0;
    }
}

int FindInRegistry(const XString& extension)
{
    XfnPrepareGdal();
    int id = kXFormatUnknown;
    for (int i = 0; i < GetGDALDriverManager()->GetDriverCount(); ++i) {
        GDALDriver* driver = GetGDALDriverManager()->GetDriver(i);
        const char* list = driver->GetMetadataItem(GDAL_DMD_EXTENSIONS);
        if (!list || !driver->GetMetadataItem(GDAL_DCAP_OPEN)) continue;
        char** words = CSLTokenizeString2(list, " ", 0);
        const bool isClaimed = CSLFindString(words, extension) >= 0; // in any case
        CSLDestroy(words);
        if (!isClaimed) continue;
        if (driver->GetMetadataItem(GDAL_DCAP_RASTER)) return kXFormatOtherRaster;
        if (driver->GetMetadataItem(GDAL_DCAP_VECTOR)) id = kXFormatOtherVector;
    }
    return id;
}

} // namespace

int XRSFileIO::GetIDFromExt(const XString& extension)
{
    if (extension.IsEmpty()) return kXFormatUnknown;
    for (const tagExtension& row : kExtensions)
        if (extension.CompareNoCase(row.text) == 0) return row.id;
    return FindInRegistry(extension);
}

std::vector<XRSFileIO::tagPart> XRSFileIO::GetParts(const XString& path)
{
    XString ignored;
    if (!CheckPath(path, ignored)) return {};
    XfnPrepareGdal();
    const XGdalErrors errors;
    const std::unique_ptr<GDALDataset> dataset(GDALDataset::Open(path, GDAL_OF_RASTER));
    if (!dataset || dataset->GetRasterCount() > 0) return {};
    XfnKeepPamUnwritten(dataset.get());
    return PartsOf(dataset.get());
}

std::vector<XString> XRSFileIO::GetRasterExtensions()
{
    XfnPrepareGdal();
    std::vector<XString> extensions;
    for (int i = 0; i < GetGDALDriverManager()->GetDriverCount(); ++i) {
        GDALDriver* driver = GetGDALDriverManager()->GetDriver(i);
        const char* list = driver->GetMetadataItem(GDAL_DMD_EXTENSIONS);
        if (!list || !driver->GetMetadataItem(GDAL_DCAP_OPEN) ||
            !driver->GetMetadataItem(GDAL_DCAP_RASTER))
            continue;
        char** words = CSLTokenizeString2(list, " ", 0);
        for (int w = 0; w < CSLCount(words); ++w)
            extensions.emplace_back(words[w]);
        CSLDestroy(words);
    }
    return extensions;
}

int XRSFileIO::IsPlainPath(const XString& path)
{
    const char* const text = path;
    if (std::strncmp(text, "/vsi", 4) == 0 && std::strchr(text + 4, '/')) return 0;
    // a driver's name of two letters or more, then a colon
    const std::size_t word =
        std::strspn(text, "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789_");
    if (word < 2 || text[word] != ':' || (text[0] >= '0' && text[0] <= '9')) return 1;
    return ::access(path, F_OK) == 0;
}

int XRSFileIO::LoadFileRaster(XRSFile* file, int id, const XString& path, XString& error,
                              int useLevels, int useStatistics, XThread* thread)
{
    for (const tagFormat& format : kFormats)
        if (format.id == id)
            return Load(file, format, path, error, useLevels, useStatistics, thread);
    if (id == kXFormatXDM) return LoadNative(file, path, error, useLevels, useStatistics, thread);
    if (id == kXFormatPBI)
        error = XfnFormat(
            "\"%s\": the format PBI/PEI has no public description and cannot be read.", path);
    else
        error = XfnFormat("\"%s\": there is no raster format %d.", path, id);
    return 0;
}

int XRSFileIO::LoadFileVector(XRSFile* file, int id, const XString& path,
                              const XSpatialReference* reference, XString& error, XThread* thread)
{
    auto* import = id == kXFormatXVC           ? &XfnImportXVC
                   : id == kXFormatDXF         ? &XfnImportDXF
                   : id == kXFormatSHP         ? &XfnImportSHP
                   : id == kXFormatDGN         ? &XfnImportDGN
                   : id == kXFormatOtherVector ? &XfnImportVector
                                               : nullptr;
    error.Empty();
    if (!file) error = "There is no file to load into.";
    if (!import) error = XfnFormat("\"%s\": there is no vector format %d.", path, id);
    if (!error.IsEmpty()) return 0;
    try {
        XRSFile made;
        auto vand = std::make_unique<XDMVand>();
        auto* base = new XvcBase;
        vand->SetDeleteBaseFlag(1);
        vand->SetBase(base);
        std::vector<XString> notes;
        if (!import(path, base, error, thread, nullptr, nullptr, &notes)) return 0;
        const bool isPlaced = !base->GetSR()->IsEmpty();
        if (!isPlaced && reference) base->SetSR(reference);
        vand->SetSR(base->GetSR());
        constexpr int kUnknownCoordinates = 2;
        if (vand->GetSR()->GetCoordType() == 0) vand->GetSR()->SetCoordType(kUnknownCoordinates);
        SetFileOf(made, path);
        made.SetName(base->GetName());
        made.SetFormatName(XfnGetFileExt(path).MakeUpper());
        for (const XString& note : notes)
            made.AddNote(note);
        made.AddVand(vand.release());
        file->Swap(made);
        return 1;
    } catch (const std::bad_alloc&) {
        error = XfnFormat("\"%s\": there is not enough memory to open it.", path);
        return 0;
    }
}

int XRSFileIO::LoadFileBMP(XRSFile* file, const XString& path, XString& error, int useLevels,
                           int useStatistics, XThread* thread)
{
    return LoadFileRaster(file, kXFormatBMP, path, error, useLevels, useStatistics, thread);
}

int XRSFileIO::LoadFileJPG(XRSFile* file, const XString& path, XString& error, int useLevels,
                           int useStatistics, XThread* thread)
{
    return LoadFileRaster(file, kXFormatJPG, path, error, useLevels, useStatistics, thread);
}

int XRSFileIO::LoadFileTIF(XRSFile* file, const XString& path, XString& error, int useLevels,
                           int useStatistics, XThread* thread)
{
    return LoadFileRaster(file, kXFormatTIF, path, error, useLevels, useStatistics, thread);
}

int XRSFileIO::LoadFileDTED(XRSFile* file, const XString& path, XString& error, int useLevels,
                            int useStatistics, XThread* thread)
{
    return LoadFileRaster(file, kXFormatDT0, path, error, useLevels, useStatistics, thread);
}

int XRSFileIO::LoadFileHFA(XRSFile* file, const XString& path, XString& error, int useLevels,
                           int useStatistics, XThread* thread)
{
    return LoadFileRaster(file, kXFormatIMG, path, error, useLevels, useStatistics, thread);
}

int XRSFileIO::LoadFilePBI(XRSFile* file, const XString& path, XString& error, XThread* thread)
{
    return LoadFileRaster(file, kXFormatPBI, path, error, 1, 1, thread);
}

int XRSFileIO::Open(const XString& path, XRSFile* file, XString& error, XThread* thread,
                    int useLevels, int useStatistics)
{
    if (!CheckPath(path, error)) return 0;
    const auto load = [&](int format) {
        return LoadFileRaster(file, format, path, error, useLevels, useStatistics, thread);
    };
    const bool isNative = IsNative(path);
    const int id = isNative ? kXFormatXDM : GetIDFromExt(XfnGetFileExt(path));
    const bool isKnown = id == kXFormatXDM || (id > kXFormatPBI && id < kXFormatOtherRaster);
    if (isNative || id == kXFormatPBI) return load(id);
    if (isKnown && load(id)) return 1;
    if (!file || (thread && thread->IsStopRequested())) return 0;
    // an extension is a habit, not a promise: .img alone means three formats
    XString byName = error;
    if (load(kXFormatOtherRaster)) return 1;
    if (HoldsVectors(path)) return 0;
    if (isKnown && !byName.IsEmpty()) error = byName;
    // of one that is of its format but damaged the reader tells more
    if (LacksHeader(path) && error.Right(1) != ")")
        error += XfnFormat(" If it holds plain pixels, its header file %s.hdr is missing.",
                           XfnGetFileTitle(path));
    return 0;
}

int XfnIsValidXDMLevelData(XRSFile* file)
{
    if (!file || file->GetNumOfBands() < 1) return 0;
    for (int i = 0; i < file->GetNumOfBands(); ++i) {
        const XDMBand* band = file->GetBandAt(i);
        int stored = 0;
        for (int level = 1; level < band->GetNumOfLevels(); ++level)
            stored |= !band->IsVirtualLevel(level);
        if (!stored) return 0;
    }
    return 1;
}
