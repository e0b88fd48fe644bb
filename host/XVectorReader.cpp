#include "host/XVectorReader.h"

#include "foundation/platform/XQtText.h"
#include "foundation/surface/XVertBuffer.h"
#include "foundation/vector/XVectorIO.h"
#include "foundation/vector/XvcLayer.h"
#include "host/XRasterOpener.h"
#include "host/XVectorLook.h"
#include "view/XViewOverlay.h"

#include <QFileInfo>

#include <vector>

QString XfnWithoutPath(QString sentence, const QString& path)
{
    const QString quoted = "\"" + path + "\"";
    sentence = sentence.trimmed();
    if (sentence.startsWith(quoted + ": ")) {
        sentence = sentence.mid(quoted.size() + 2);
        if (!sentence.isEmpty()) sentence[0] = sentence[0].toUpper();
    }
    return sentence.replace("(" + quoted + ": ", "(").replace(quoted, "The file");
}

QString XfnFindObstacle(const QString& path, const QString& kind)
{
    if (!XfnIsPlainPath(path)) return QString();
    const QFileInfo info(path);
    if (!info.exists())
        return info.isSymLink() ? "It is a link to a file that does not exist."
                                : "The file does not exist.";
    if (info.isDir()) return QString("It is a folder, not a %1 file.").arg(kind);
    if (!info.isReadable()) return "You have no permission to read it.";
    if (info.size() == 0) return "The file is empty.";
    return QString();
}

namespace {

// Layers keep what a view records of them: made here, the window does not wait for it when it shows
// them first.
void RecordAhead(XvcBase& base)
{
    XVertBuffer recording;
    recording.SetType(XViewOverlay::kVertexType);
    recording.Start();
    base.CreateVertexBuffer(&recording, nullptr, nullptr);
    recording.End();
}

} // namespace

bool XfnReadVector(const QString& path, const XSpatialReference& world, int firstColor,
                   const tagXSaveControl& control, tagXVectorRead& read, QString& message,
                   bool isGroundDark)
{
    message = XfnFindObstacle(path, "vector");
    if (!message.isEmpty()) return false;
    read = tagXVectorRead();
    read.base = std::make_unique<XvcBase>();
    read.world = world;
    XString error;
    std::vector<XString> notes;
    if (!XfnImportVector(XfnFromQString(path), read.base.get(), error, control.thread, nullptr,
                         nullptr, &notes)) {
        message = XfnWithoutPath(XfnToQString(error), path);
        return false;
    }
    for (const XString& note : notes)
        read.notes.append(XfnWithoutPath(XfnToQString(note), path));
    if (read.base->GetSR()) read.reference = *read.base->GetSR();
    const QString suffix = QFileInfo(path).suffix().toLower();
    const bool isDrawing = suffix == "dxf" || suffix == "dgn";
    XSpatialReference from = read.reference;
    if (from.IsEmpty()) {
        read.canBeDegrees = !isDrawing && XfnCanBeDegrees(read.base->GetRange());
        from = XfnGuessReference(read.canBeDegrees, world);
        read.isGuessed = !from.IsEmpty();
    }
    read.placement = XfnPlaceVector(*read.base, from, world, control);
    if (read.placement.isStopped) return false;
    if (read.isGuessed && !read.placement.isPlaced) read.isGuessed = read.canBeDegrees = false;
    if (read.placement.isPlaced) read.base->SetSR(&world);
    for (__POSITION* pos = read.base->GetHeadPosition(); pos;) {
        auto* layer = dynamic_cast<XvcLayer*>(read.base->GetNext(pos));
        if (!layer) continue;
        if (isDrawing && isGroundDark) XfnTurnBlackPens(*layer);
        if (layer->GetCount() > 0 && !XfnHasOwnLook(*layer))
            XfnGiveLook(*layer, XfnGetPaletteColor(firstColor + read.colors++));
        read.layerColors.push_back(XfnGetLayerColor(*layer));
    }
    read.base->CalcRange();
    RecordAhead(*read.base);
    return true;
}

bool XfnHasVectorSuffix(const QString& path)
{
    // of what vector readers claim, these stand for other things as often, or are parts of a file
    static const QStringList suffixes = [] {
        const QStringList others = {"txt", "xml",  "json", "html", "csv",   "tsv", "log",
                                    "db",  "zip",  "gz",   "tar",  "tgz",   "pdf", "sqlite",
                                    "xls", "xlsx", "ods",  "dbf",  "shx",   "shz", "nc",
                                    "h5",  "vrt",  "dat",  "gdb",  "dgnlib"};
        QStringList found;
        for (const XString& extension : XfnGetVectorExtensions()) {
            const QString suffix = XfnToQString(extension).toLower();
            if (!suffix.isEmpty() && !others.contains(suffix) && !found.contains(suffix))
                found.append(suffix);
        }
        return found;
    }();
    return suffixes.contains(QFileInfo(path).suffix().toLower());
}
