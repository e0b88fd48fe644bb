#include "host/XRasterFilters.h"

#include "dialogs/XFilePreviewModel.h"
#include "foundation/platform/XQtText.h"
#include "foundation/raster/XRSFileIO.h"
#include "host/XVectorReader.h"

#include <QDir>
#include <QFileInfo>

#include <algorithm>
#include <vector>

namespace {

struct tagXFormat
{
    const char* label;
    std::vector<const char*> suffixes;
};

const std::vector<tagXFormat>& Formats()
{
    static const std::vector<tagXFormat> formats = {
        {"XDM", {"xdm"}},
        {"BMP", {"bmp"}},
        {"JPEG", {"jpg", "jpeg"}},
        {"GeoTIFF/TIFF", {"tif", "tiff"}},
        {"ERDAS IMAGINE", {"img"}},
        {"DTED", {"dt0", "dt1", "dt2"}},
        {"ENVI raster", {"dat", "bsq", "bil", "bip"}},
        {"JPEG 2000", {"jp2", "j2k"}},
        {"PNG", {"png"}},
        {"Virtual raster", {"vrt"}},
        {"NITF", {"ntf", "nitf"}},
    };
    return formats;
}

QString Patterns(const tagXFormat& format)
{
    QStringList patterns;
    for (const char* suffix : format.suffixes)
        patterns.append(QString("*.") + suffix);
    return patterns.join(';');
}

// What GDAL reads besides, such as NetCDF and HDF. Endings that mostly stand for something else than a
// raster are left out: such a file opens by its name or a drop all the same.
const QStringList& OtherSuffixes()
{
    static const QStringList suffixes = [] {
        const QStringList ambiguous = {"txt", "xml", "json", "html", "csv", "log", "db", "sqlite",
                                       "zip", "gz",  "tar",  "tgz",  "pdf", "ovr", "aux"};
        QStringList found;
        for (const XString& extension : XRSFileIO::GetRasterExtensions()) {
            const QString suffix = XfnToQString(extension).toLower();
            bool isListed =
                suffix.isEmpty() || ambiguous.contains(suffix) || found.contains(suffix);
            for (const tagXFormat& format : Formats())
                for (const char* known : format.suffixes)
                    isListed = isListed || suffix == known;
            if (!isListed) found.append(suffix);
        }
        found.sort();
        return found;
    }();
    return suffixes;
}

} // namespace

QString XfnOpenFilter()
{
    static const std::vector<tagXFormat> vectors = {
        {"XVC", {"xvc"}},        {"Shapefile", {"shp"}},   {"DXF drawing", {"dxf"}},
        {"DGN design", {"dgn"}}, {"GeoJSON", {"geojson"}}, {"GeoPackage", {"gpkg"}},
        {"KML", {"kml", "kmz"}}, {"GML", {"gml"}},         {"FlatGeobuf", {"fgb"}},
        {"GPX", {"gpx"}},
    };
    QStringList shapes;
    QString each;
    for (const tagXFormat& format : vectors) {
        const QString patterns = Patterns(format);
        shapes.append(patterns);
        each += QString("%1 (%2)|%2|").arg(format.label, patterns);
    }
    const QString rasters = XfnRasterFilter();
    const QString all = rasters.section('|', 1, 1);
    const QString vector = shapes.join(';');
    QString given = XfnToQString(XFilePreviewModel::GetFilter(1));
    given.chop(1);                      // of the two strokes at its end
    constexpr int kGivenFields = 2 * 6; // formats that have their entry among the given ones
    return given +
           QString("%1|%2;%3|All rasters|%2|All vector files|%3|")
               .arg(kAllFilesLabel, all, vector) +
           rasters.section('|', 2 + kGivenFields, -5) + "|" + each + "|";
}

QString XfnRasterFilter()
{
    QStringList all;
    QString each;
    for (const tagXFormat& format : Formats()) {
        const QString patterns = Patterns(format);
        all.append(patterns);
        each += QString("%1 (%2)|%2|").arg(format.label, patterns);
    }
    QStringList others;
    for (const QString& suffix : OtherSuffixes())
        others.append("*." + suffix);
    all += others;
    // their endings are too many for a label
    if (!others.isEmpty()) each += QString("Other formats|%1|").arg(others.join(';'));
    return QString("All supported rasters|%1|").arg(all.join(';')) + each + "All files (*)|*||";
}

bool XfnHasRasterSuffix(const QString& path)
{
    const QString suffix = QFileInfo(path).suffix().toLower();
    for (const tagXFormat& format : Formats())
        for (const char* known : format.suffixes)
            if (suffix == known) return true;
    return OtherSuffixes().contains(suffix);
}

tagXDroppedPaths XfnSortDroppedPaths(const QStringList& paths)
{
    tagXDroppedPaths sorted;
    for (const QString& path : paths) {
        if (!QFileInfo(path).isDir()) {
            sorted.files.append(path);
            continue;
        }
        const QDir folder(path);
        int found = 0;
        const QStringList names = folder.entryList(QDir::Files, QDir::Name | QDir::IgnoreCase);
        for (const QString& name : names) {
            if (found == kMaxFolderFiles) break;
            if (!XfnHasRasterSuffix(name) && !XfnHasVectorSuffix(name)) continue;
            sorted.folderFiles.append(folder.filePath(name));
            ++found;
        }
        if (found == 0) sorted.emptyFolders.append(path);
    }
    return sorted;
}

QString XfnFolderQuestion(const QStringList& folderFiles)
{
    constexpr int kListed = 10;
    const bool isRasters = std::all_of(folderFiles.begin(), folderFiles.end(), &XfnHasRasterSuffix);
    const QString what = isRasters ? "raster" : "file";
    QString text =
        folderFiles.size() == 1
            ? QString("Open the %1 of this folder?\n").arg(what)
            : QString("Open the %1 %2s of this folder?\n").arg(folderFiles.size()).arg(what);
    for (int i = 0; i < folderFiles.size() && i < kListed; ++i)
        text += "\n" + QFileInfo(folderFiles[i]).fileName();
    if (folderFiles.size() > kListed)
        text += QString("\nand %1 more").arg(folderFiles.size() - kListed);
    return text;
}
