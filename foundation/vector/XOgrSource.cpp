#include "foundation/vector/XOgrSource.h"

#include "foundation/base/XCodePage.h"
#include "foundation/base/XFile.h"
#include "foundation/base/XFileException.h"
#include "foundation/base/XPath.h"
#include "foundation/reference/XGdalErrors.h"
#include "foundation/vector/XShapeParts.h"

#include <cpl_conv.h>
#include <gdal_priv.h>
#include <ogrsf_frmts.h>

#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <string>
#include <unistd.h>

namespace {

constexpr int kCodePageWestern = 1252;
constexpr std::size_t kSampleBytes = std::size_t(1) << 20;

// What reads a file and nothing but files. A reader that is not in this build is passed over.
const char* const kLocalDrivers[] = {"ESRI Shapefile",
                                     "DXF",
                                     "DGN",
                                     "GPKG",
                                     "GeoJSON",
                                     "GeoJSONSeq",
                                     "TopoJSON",
                                     "ESRIJSON",
                                     "FlatGeobuf",
                                     "LIBKML",
                                     "KML",
                                     "GML",
                                     "GPX",
                                     "GeoRSS",
                                     "SQLite",
                                     "MapInfo File",
                                     "CAD",
                                     "CSV",
                                     "S57",
                                     "JML",
                                     "SVG",
                                     "OGR_GMT",
                                     "Geoconcept",
                                     "Selafin",
                                     "SXF",
                                     "WAsP",
                                     "VDV",
                                     "EDIGEO",
                                     "OSM",
                                     "AVCE00",
                                     "UK .NTF",
                                     "OGR_SDTS",
                                     "TIGER",
                                     "Idrisi",
                                     "MapML",
                                     nullptr};

// The reader of one format is told what others do not know, so none of these may be refused.
const char* const kOptions[] = {"DOWNLOAD_SCHEMA=NO", "WRITE_GFS=NO", "IMMUTABLE=YES",
                                "LIST_VIRTUAL_OGR=NO", nullptr};

bool IsShapefile(const char* const* drivers, const XString& path)
{
    if (XfnGetFileExt(path).CompareNoCase("shp") != 0) return false;
    return !drivers[0] || std::strcmp(drivers[0], "ESRI Shapefile") == 0;
}

/// The begin of a file behind `skip` bytes; empty when it cannot be read.
std::string ReadSample(const XString& path, std::size_t skip)
{
    std::string bytes(kSampleBytes, '\0');
    try {
        XFile file(path, XFile::kModeRead);
        bytes.resize(file.ReadAt(static_cast<std::int64_t>(skip), bytes.data(), bytes.size()));
    } catch (XFileException& e) {
        e.Delete();
        bytes.clear();
    }
    return bytes;
}

/// 65001, 949 or 1252: the first in which the bytes make sense.
int GuessCodePage(const std::string& bytes)
{
    std::size_t hangul = 0, high = 0;
    bool isUtf8 = true, isKorean = true;
    for (std::size_t i = 0; isUtf8 && i < bytes.size(); ++i) {
        const unsigned char lead = static_cast<unsigned char>(bytes[i]);
        if (lead < 0x80) continue;
        const std::size_t more = lead >= 0xF0 ? 3 : lead >= 0xE0 ? 2 : 1;
        isUtf8 = lead >= 0xC2 && lead <= 0xF4;
        for (std::size_t k = 1; isUtf8 && k <= more && i + k < bytes.size(); ++k)
            isUtf8 = (static_cast<unsigned char>(bytes[i + k]) & 0xC0) == 0x80;
        i += more;
    }
    if (isUtf8) return kXCodePageUtf8;
    for (std::size_t i = 0; isKorean && i < bytes.size(); ++i) {
        const unsigned char lead = static_cast<unsigned char>(bytes[i]);
        if (lead < 0x80) continue;
        const unsigned char trail =
            i + 1 < bytes.size() ? static_cast<unsigned char>(bytes[i + 1]) : 0xA1;
        isKorean = lead >= 0x81 && lead <= 0xFE && trail >= 0x41 && trail != 0x7F && trail != 0xFF;
        ++high;
        // syllables in daily use; the two bytes of Western text hardly ever fall there by chance
        if (lead >= 0xB0 && lead <= 0xC8 && trail >= 0xA1) ++hangul;
        ++i;
    }
    return isKorean && 2 * hangul >= high ? kXCodePageKorean : kCodePageWestern;
}

} // namespace

/// Settings of GDAL for this thread, put back at the end.
class XOgrSource::Settings
{
public:
    Settings()
    {
        for (const auto& [key, value] : kValues) {
            const char* former = CPLGetThreadLocalConfigOption(key, nullptr);
            m_former.emplace_back(former ? former : "", former != nullptr);
            CPLSetThreadLocalConfigOption(key, value);
        }
    }
    ~Settings()
    {
        for (std::size_t i = 0; i < m_former.size(); ++i)
            CPLSetThreadLocalConfigOption(kValues[i][0],
                                          m_former[i].second ? m_former[i].first.c_str() : nullptr);
    }
    Settings(const Settings&) = delete;
    Settings& operator=(const Settings&) = delete;

private:
    // should a reader ask for a server after all, none answers at this place
    static constexpr const char* kValues[][2] = {
        {"GDAL_HTTP_PROXY", "127.0.0.1:9"}, {"CPL_VSIL_CURL_ALLOWED_EXTENSIONS", "{none}"},
        {"GML_SKIP_RESOLVE_ELEMS", "ALL"},  {"LIBKML_RESOLVE_STYLE", "YES"},
        {"SHAPE_RESTORE_SHX", "NO"}, // made here
    };
    std::vector<std::pair<std::string, bool>> m_former;
};

XOgrSource::XOgrSource()
{
    XfnPrepareGdal();
    m_settings = std::make_unique<Settings>();
}

XOgrSource::~XOgrSource()
{
    Close();
}

void XOgrSource::Close()
{
    const XGdalErrors errors;
    for (GDALDataset* dataset : {m_bare, m_dataset})
        if (dataset) GDALClose(dataset);
    m_bare = m_dataset = nullptr;
    m_tableRows = 0;
    m_notes.clear();
    std::error_code ignored;
    if (!m_folder.IsEmpty()) std::filesystem::remove_all(m_folder.GetString(), ignored);
    m_folder.Empty();
    m_codePage = 0;
}

XString XOgrSource::GetDriverName() const
{
    const GDALDriver* driver = m_dataset ? m_dataset->GetDriver() : nullptr;
    return driver ? driver->GetDescription() : "";
}

const char* const* XOgrSource::GetLocalDrivers()
{
    return kLocalDrivers;
}

bool XOgrSource::Open(const XString& path, const char* const* drivers, XString& error)
{
    Close();
    if (!drivers[0]) drivers = kLocalDrivers;
    // the reader would take these names for a folder inside an archive, or for an address
    const std::string whole = std::filesystem::absolute(path.GetString()).string();
    const XString plain(whole);
    if (plain.Find("/vsi") == 0) {
        error = "It lies where only archives are looked for.";
        return false;
    }
    return IsShapefile(drivers, plain) ? OpenShapes(plain, drivers, error)
                                       : OpenWith(plain, drivers, nullptr, error);
}

bool XOgrSource::OpenWith(const XString& path, const char* const* drivers, const char* encoding,
                          XString& error)
{
    const XGdalErrors errors;
    char** options = CSLDuplicate(const_cast<char**>(kOptions));
    if (encoding) options = CSLSetNameValue(options, "ENCODING", encoding);
    m_dataset = GDALDataset::Open(path, GDAL_OF_VECTOR | GDAL_OF_READONLY | GDAL_OF_VERBOSE_ERROR,
                                  drivers, options, nullptr);
    CSLDestroy(options);
    if (m_dataset) return true;
    error = XfnTellDamage(errors, path);
    error += error.IsEmpty() ? kXNoReader : " Try another copy of it.";
    return false;
}

bool XOgrSource::OpenShapes(const XString& path, const char* const* drivers, XString& error)
{
    if (XfnIsShapeHeadCut(path)) {
        error = "It is cut short: nothing of its objects is there.";
        return false;
    }
    const tagXShapeParts parts = XfnFindShapeParts(path);
    XString source = path;
    if (parts.index.IsEmpty() && !LinkWithIndex(path, parts, source, error)) return false;
    if (!OpenWith(source, drivers, nullptr, error)) {
        error.Replace(source, path);
        return false;
    }
    OGRLayer* layer = m_dataset->GetLayerCount() > 0 ? m_dataset->GetLayer(0) : nullptr;
    if (!layer) return true;
    const long long shapes = layer->GetFeatureCount(TRUE);
    // what the reader tells of a table that it took
    const bool hasTable = layer->GetMetadataItem("DBF_DATE_LAST_UPDATE") != nullptr;
    TellOf(path, parts, shapes);
    if (!hasTable) return true;
    if (!ChooseEncoding(path, drivers, error)) return false;
    if (parts.tableRows < 0 || parts.tableRows >= shapes) return true;
    m_tableRows = parts.tableRows;
    OpenBareShapes(parts);
    return true;
}

// Puts links to the files into a folder of our own, and an index made from the shapes.
bool XOgrSource::LinkWithIndex(const XString& path, const tagXShapeParts& parts, XString& linked,
                               XString& error)
{
    error = "Its index (.shx) is missing or cut short, and there is no room to make one.";
    if (!MakeFolder()) return false;
    const XString stem = XfnJoinPath(m_folder, XfnGetFileTitle(path)) + ".";
    linked = stem + "shp";
    if (::symlink(path, linked) != 0) return false;
    if (XfnWriteShapeIndex(path, stem + "shx") < 0) {
        error = kXNoReader;
        return false;
    }
    error.Empty();
    const std::pair<const char*, XString> others[] = {
        {"dbf", parts.table}, {"prj", parts.reference}, {"cpg", XfnFindBeside(path, "cpg")}};
    for (const auto& [extension, beside] : others) {
        // without one of these the shapes come all the same
        if (!beside.IsEmpty() && ::symlink(beside, stem + extension) != 0) continue;
    }
    return true;
}

// The same shapes once more, where the reader finds no table beside them.
void XOgrSource::OpenBareShapes(const tagXShapeParts& parts)
{
    const XString source(m_dataset->GetDescription());
    const XString index = parts.index.IsEmpty() ? XfnFindBeside(source, "shx") : parts.index;
    if (!MakeFolder()) return;
    const XString stem = XfnJoinPath(m_folder, "bare.");
    if (::symlink(source, stem + "shp") != 0 || ::symlink(index, stem + "shx") != 0) return;
    const XGdalErrors errors;
    const char* const drivers[] = {"ESRI Shapefile", nullptr};
    m_bare = GDALDataset::Open(stem + "shp", GDAL_OF_VECTOR | GDAL_OF_READONLY, drivers, nullptr,
                               nullptr);
}

OGRLayer* XOgrSource::GetBareShapes() const
{
    return m_bare && m_bare->GetLayerCount() > 0 ? m_bare->GetLayer(0) : nullptr;
}

bool XOgrSource::MakeFolder()
{
    if (!m_folder.IsEmpty()) return true;
    std::string folder = (std::filesystem::temp_directory_path() / "tql-shp-XXXXXX").string();
    if (!::mkdtemp(folder.data())) return false;
    m_folder = folder.c_str();
    return true;
}

void XOgrSource::TellOf(const XString& path, const tagXShapeParts& parts, long long shapes)
{
    const XString title = XfnGetFileTitle(path);
    OGRLayer* layer = m_dataset->GetLayer(0);
    const XGdalErrors errors; // of the coordinate system, which is told of in words of ours
    const bool hasTable = layer->GetMetadataItem("DBF_DATE_LAST_UPDATE") != nullptr;
    if (parts.isCut && parts.index.IsEmpty())
        m_notes.push_back(
            hasTable && parts.tableRows > shapes
                ? XfnFormat("%I64d of %I64d objects could be read: the file is cut short.", shapes,
                            parts.tableRows)
                : XfnFormat("%I64d objects could be read: the file is cut short.", shapes));
    if (parts.isIndexCut)
        m_notes.push_back(XfnFormat("Its index %s.shx is cut short; the objects were found "
                                    "without it.",
                                    title));
    if (parts.table.IsEmpty())
        m_notes.push_back(XfnFormat("The attribute table %s.dbf is missing: the objects come "
                                    "without attributes.",
                                    title));
    else if (!hasTable)
        m_notes.push_back(XfnFormat("The attribute table %s.dbf is damaged: the objects come "
                                    "without attributes.",
                                    title));
    else if (parts.tableRows >= 0 && parts.tableRows < shapes)
        m_notes.push_back(XfnFormat("%I64d of %I64d objects have attributes: the table %s.dbf is "
                                    "cut short.",
                                    parts.tableRows, shapes, title));
    if (!parts.reference.IsEmpty() && !layer->GetSpatialRef())
        m_notes.push_back(XfnFormat("The coordinate system in %s.prj cannot be understood: the "
                                    "file counts as one without.",
                                    title));
}

bool XOgrSource::ChooseEncoding(const XString& path, const char* const* drivers, XString& error)
{
    OGRLayer* layer = m_dataset->GetLayerCount() > 0 ? m_dataset->GetLayer(0) : nullptr;
    if (!layer) return true;
    const char* fromCpg = layer->GetMetadataItem("ENCODING_FROM_CPG", "SHAPEFILE");
    const char* fromLdid = layer->GetMetadataItem("ENCODING_FROM_LDID", "SHAPEFILE");
    if (fromCpg && *fromCpg) return true;
    // this one stands in files whatever they hold, since it is what programs call "the system's"
    const bool isTold = fromLdid && *fromLdid && std::strcmp(fromLdid, "ISO-8859-1") != 0;
    const XString table = XfnFindBeside(path, "dbf");
    if (isTold || table.IsEmpty()) return true;
    constexpr std::size_t kHeadLength = 8; // where the table tells the length of its head
    const std::string head = ReadSample(table, 0);
    if (head.size() < kHeadLength + 2) return true;
    const std::size_t skip = static_cast<unsigned char>(head[kHeadLength]) +
                             256u * static_cast<unsigned char>(head[kHeadLength + 1]);
    const int codePage = GuessCodePage(ReadSample(table, skip));
    const XString source = m_folder.IsEmpty() ? path : XString(m_dataset->GetDescription());
    {
        const XGdalErrors errors;
        GDALClose(m_dataset);
        m_dataset = nullptr;
    }
    m_codePage = codePage == kXCodePageUtf8 ? 0 : codePage;
    return OpenWith(source, drivers, "", error);
}

XString XOgrSource::ToText(const char* bytes) const
{
    return XfnTextFromUtf8(ToUtf8(bytes));
}

XString XOgrSource::ToUtf8(const char* bytes) const
{
    return m_codePage == 0 ? XString(bytes) : XfnCodePageToUtf8(m_codePage, bytes);
}

XString XfnTellDamage(const XGdalErrors& errors, const XString& path)
{
    const XString named = errors.Describe(path, "");
    XString detail = named.Mid(path.GetLength() + 4); // behind the quoted path
    // where a reader's own source complains says nothing to a user
    const int source = detail.Find(".cpp, ");
    const int end = source < 0 ? -1 : detail.Find(": ", source);
    if (end >= 0) detail = detail.Mid(end + 2);
    detail.Trim();
    detail.TrimRight(".");
    return detail.IsEmpty() ? detail : XfnFormat("It is damaged or cut short (%s).", detail);
}
