#include "host/XConvertJob.h"

#include "foundation/platform/XQtText.h"
#include "foundation/raster/XDMFileSaver.h"
#include "foundation/raster/XGdalExport.h"
#include "foundation/raster/XRSFile.h"
#include "host/XRasterOpener.h"

#include <QFileInfo>

bool XfnConvertFile(const tagXConvertRequest& request, const std::function<void(int)>& progress,
                    const std::atomic<int>* abort, QString& message)
{
    const QFileInfo output(request.output);
    if (XfnIsSameFile(request.input, request.output)) {
        message = QString("\"%1\" would replace the file it is made from.").arg(request.output);
        return false;
    }
    QString reason;
    const std::unique_ptr<XRSFile> file = XfnOpenRaster(request.input, reason);
    if (!file) {
        message = QString("\"%1\" was not opened. %2").arg(request.input, reason);
        return false;
    }
    tagXSaveControl control;
    control.abort = abort;
    control.progress = progress;
    XString error;
    const XString path = XfnFromQString(request.output);
    const bool isNative = output.suffix().compare("xdm", Qt::CaseInsensitive) == 0;
    if (isNative ? XDMFileSaver::Save(*file, path, XDMCompression::PredictedZstd, control, error)
                 : XfnExportRaster(*file, path, control, error))
        return true;
    message = XfnToQString(error).trimmed();
    if (message.isEmpty())
        message =
            QString("\"%1\" was not written: the conversion was stopped.").arg(request.output);
    return false;
}
