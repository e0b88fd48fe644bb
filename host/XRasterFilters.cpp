#include "host/XRasterFilters.h"

#include <QDir>
#include <QFileInfo>

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

} // namespace

QString XfnRasterFilter()
{
    QStringList all;
    QString each;
    for (const tagXFormat& format : Formats()) {
        const QString patterns = Patterns(format);
        all.append(patterns);
        each += QString("%1 (%2)|%2|").arg(format.label, patterns);
    }
    return QString("All supported rasters|%1|").arg(all.join(';')) + each + "All files (*)|*||";
}

bool XfnHasRasterSuffix(const QString& path)
{
    const QString suffix = QFileInfo(path).suffix().toLower();
    for (const tagXFormat& format : Formats())
        for (const char* known : format.suffixes)
            if (suffix == known) return true;
    return false;
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
            if (!XfnHasRasterSuffix(name)) continue;
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
    QString text = folderFiles.size() == 1
                       ? QString("Open the raster of this folder?\n")
                       : QString("Open the %1 rasters of this folder?\n").arg(folderFiles.size());
    for (int i = 0; i < folderFiles.size() && i < kListed; ++i)
        text += "\n" + QFileInfo(folderFiles[i]).fileName();
    if (folderFiles.size() > kListed)
        text += QString("\nand %1 more").arg(folderFiles.size() - kListed);
    return text;
}
