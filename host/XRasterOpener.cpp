#include "host/XRasterOpener.h"

#include "foundation/platform/XQtText.h"
#include "foundation/raster/XDMBand.h"
#include "foundation/raster/XRSFile.h"
#include "foundation/raster/XRSFileIO.h"
#include "host/XRasterFilters.h"
#include "host/XVectorReader.h"

#include <QFileInfo>

bool XfnIsPlainPath(const QString& path)
{
    return XRSFileIO::IsPlainPath(XfnFromQString(path)) != 0;
}

bool XfnIsSameFile(const QString& a, const QString& b)
{
    const QString canonical = QFileInfo(a).canonicalFilePath(); // empty for what does not exist
    return !canonical.isEmpty() && canonical == QFileInfo(b).canonicalFilePath();
}

QStringList XfnPlacedFirst(const QStringList& paths)
{
    for (qsizetype i = 0; paths.size() > 1 && i < paths.size(); ++i) {
        if (!XfnIsPlainPath(paths[i]) || !QFileInfo(paths[i]).isFile() ||
            (XfnHasVectorSuffix(paths[i]) && !XfnHasRasterSuffix(paths[i])))
            continue;
        XRSFile file;
        XString ignored;
        if (!XRSFileIO::Open(XfnFromQString(paths[i]), &file, ignored, nullptr, 0, 0)) continue;
        const XDMBand* band = file.GetNumOfBands() > 0 ? file.GetBandAt(0) : nullptr;
        if (!band || !band->GetSR() || band->GetSR()->IsEmpty()) continue;
        QStringList ordered = paths;
        ordered.move(i, 0);
        return ordered;
    }
    return paths;
}

std::unique_ptr<XRSFile> XfnOpenRaster(const QString& path, QString& message,
                                       const XRasterReader& read)
{
    message = XfnFindObstacle(path, "raster");
    if (!message.isEmpty()) return nullptr;

    const XString name = XfnFromQString(path);
    XString error;
    auto file = read ? read(name, error) : std::make_unique<XRSFile>();
    if (!read && !XRSFileIO::Open(name, file.get(), error)) file.reset();
    if (!file && read && error.IsEmpty()) return nullptr;
    if (!file) {
        message = XfnWithoutPath(XfnToQString(error), path);
        if (message.isEmpty()) message = "It is no raster of a known format.";
        return nullptr;
    }
    if (file->GetNumOfBands() == 0) {
        message = "The file holds no raster band.";
        return nullptr;
    }
    return file;
}
