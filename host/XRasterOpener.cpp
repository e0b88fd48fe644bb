#include "host/XRasterOpener.h"

#include "foundation/platform/XQtText.h"
#include "foundation/raster/XRSFile.h"
#include "foundation/raster/XRSFileIO.h"

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

std::unique_ptr<XRSFile> XfnOpenRaster(const QString& path, QString& message)
{
    const QFileInfo info(path);
    if (!XfnIsPlainPath(path))
        message.clear(); // the format library knows whether there is such a thing
    else if (!info.exists())
        message = info.isSymLink() ? "It is a link to a file that does not exist."
                                   : "The file does not exist.";
    else if (info.isDir())
        message = "It is a folder, not a raster file.";
    else if (!info.isReadable())
        message = "You have no permission to read it.";
    else if (info.size() == 0)
        message = "The file is empty.";
    else
        message.clear();
    if (!message.isEmpty()) return nullptr;

    auto file = std::make_unique<XRSFile>();
    XString error;
    if (!XRSFileIO::Open(XfnFromQString(path), file.get(), error)) {
        // whoever shows the sentence says which file it is about
        const QString quoted = "\"" + path + "\"";
        message = XfnToQString(error).trimmed();
        if (message.startsWith(quoted + ": ")) {
            message = message.mid(quoted.size() + 2);
            message[0] = message[0].toUpper();
        }
        message.replace("(" + quoted + ": ", "(").replace(quoted, "The file");
        if (message.isEmpty()) message = "It is no raster of a known format.";
        return nullptr;
    }
    if (file->GetNumOfBands() == 0) {
        message = "The file holds no raster band.";
        return nullptr;
    }
    return file;
}
