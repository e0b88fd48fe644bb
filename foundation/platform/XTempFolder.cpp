#include "foundation/platform/XTempFolder.h"

#include "foundation/platform/XQtText.h"

#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

#include <dlfcn.h>

namespace {

// Where the code of this library lies: the shared library, or the program that holds it.
QString GetModulePath()
{
    Dl_info info{};
    if (!dladdr(reinterpret_cast<const void*>(&XfnMakeTempFolder), &info) || !info.dli_fname)
        return {};
    const QString path = QFile::decodeName(info.dli_fname);
    // of the program itself the loader knows only how it was called
    return QDir::isAbsolutePath(path) ? path : QFile::symLinkTarget("/proc/self/exe");
}

bool MakeFolder(const QString& path)
{
    return QDir().mkpath(path) && QFileInfo(path).isWritable();
}

} // namespace

XString XfnMakeTempFolder()
{
    const QString module = GetModulePath();
    if (!module.isEmpty()) {
        QDir folder = QFileInfo(module).dir();
        // never made in a place that belongs to the whole system
        if (folder.cdUp() && QFileInfo(folder.path()).isWritable() && !folder.isRoot() &&
            QFileInfo(folder.path()).ownerId() != 0 && MakeFolder(folder.filePath("Temp")))
            return XfnFromQString(folder.filePath("Temp"));
    }
    const QString cache = QStandardPaths::writableLocation(QStandardPaths::GenericCacheLocation);
    const QString path = cache + "/tql/Temp";
    return !cache.isEmpty() && MakeFolder(path) ? XfnFromQString(path) : XString();
}
