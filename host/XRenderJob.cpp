#include "host/XRenderJob.h"

#include "foundation/base/XColor.h"
#include "foundation/raster/XDMBand.h"
#include "foundation/raster/XDMComposite.h"
#include "foundation/raster/XRSFile.h"
#include "foundation/surface/XBackBuffer.h"
#include "host/XBandChoice.h"
#include "host/XRasterOpener.h"

#include <QFileInfo>
#include <QImageWriter>
#include <QSaveFile>
#include <QStringList>

#include <algorithm>
#include <cmath>

namespace {

constexpr int kDefaultSide = 1024;

struct tagXArea
{
    double minX, minY, maxX, maxY;
};

// The whole raster with the outer halves of its border pixels, which the extent between pixel
// centres leaves out: so a picture of the raster's own size shows it pixel by pixel.
tagXArea WholeArea(const XDMComposite& composite)
{
    double left = 0;
    double right = 0;
    double bottom = 0;
    double top = 0;
    composite.GetBoundRect(left, right, bottom, top);
    tagXArea area{std::min(left, right), std::min(bottom, top), std::max(left, right),
                  std::max(bottom, top)};
    const XDMBand* band = composite.GetFirstBand();
    if (!band) return area;
    const double halfX = band->GetXSize() > 1 ? band->GetXPixelSize() / 2 : 0;
    const double halfY = band->GetYSize() > 1 ? band->GetYPixelSize() / 2 : 0;
    return {area.minX - halfX, area.minY - halfY, area.maxX + halfX, area.maxY + halfY};
}

bool IsMeeting(const tagXArea& a, const tagXArea& b)
{
    return a.minX < b.maxX && a.maxX > b.minX && a.minY < b.maxY && a.maxY > b.minY;
}

// As --extent takes it.
QString AreaText(const tagXArea& area)
{
    QStringList parts;
    for (const double value : {area.minX, area.minY, area.maxX, area.maxY})
        parts.append(QString::number(value, 'g', 12));
    return parts.join(',');
}

QSize ChooseSize(const tagXRenderRequest& request, const XDMComposite& composite)
{
    if (!request.size.isEmpty()) return request.size;
    const XDMBand* band = composite.GetFirstBand();
    QSize size(band ? band->GetXSize() : kDefaultSide, band ? band->GetYSize() : kDefaultSide);
    if (size.width() > kDefaultSide || size.height() > kDefaultSide)
        size.scale(kDefaultSide, kDefaultSide, Qt::KeepAspectRatio);
    return size.expandedTo(QSize(1, 1));
}

bool ChooseBands(const tagXRenderRequest& request, XBandChoice& choice, QString& message)
{
    if (!request.hasBands) return true;
    for (const int band : request.bands) {
        if (band >= 1 && band <= choice.GetBandCount()) continue;
        message =
            QString("Band %1 was asked for; \"%2\" has %3.")
                .arg(QString::number(band), request.file, QString::number(choice.GetBandCount()));
        return false;
    }
    const int* bands = request.bands;
    if (bands[0] == bands[1] && bands[1] == bands[2])
        choice.SetGray(bands[0] - 1);
    else
        choice.SetColour(bands[0] - 1, bands[1] - 1, bands[2] - 1);
    return true;
}

bool DrawArea(XDMComposite& composite, const tagXArea& area, XBackBuffer& buffer, QString& message)
{
    buffer.Clear(kXOpaque);
    if (!buffer.ZoomFit(area.minX, area.minY, area.maxX, area.maxY)) {
        message = "The area has no size that could be drawn.";
        return false;
    }
    double x0 = 0;
    double y0 = buffer.GetHeight();
    double x1 = buffer.GetWidth();
    double y1 = 0;
    buffer.ConvPixelToWorldCoord(x0, y0);
    buffer.ConvPixelToWorldCoord(x1, y1);
    if (composite.Draw(&buffer, x0, y0, x1, y1, 1, nullptr, nullptr)) return true;
    message = "Part of the raster could not be read.";
    return false;
}

bool WritePicture(const QImage& image, const QString& path, const QByteArray& format,
                  QString& message)
{
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly)) {
        message = QString("\"%1\" cannot be written: %2.").arg(path, file.errorString());
        return false;
    }
    QImageWriter writer(&file, format);
    if (!writer.write(image)) {
        message = QString("\"%1\" cannot be written: %2.").arg(path, writer.errorString());
        file.cancelWriting();
        return false;
    }
    if (file.commit()) return true;
    message = QString("\"%1\" cannot be written: %2.").arg(path, file.errorString());
    return false;
}

} // namespace

RenderResult XfnRenderToFile(const tagXRenderRequest& request, QString& message)
{
    const QByteArray format = QFileInfo(request.output).suffix().toLower().toLatin1();
    if (!QImageWriter::supportedImageFormats().contains(format)) {
        message =
            QString("\"%1\" has no suffix of a picture format, such as .png.").arg(request.output);
        return RenderResult::Failed;
    }
    if (XfnIsSameFile(request.file, request.output)) {
        message = QString("\"%1\" would replace the file it is made from.").arg(request.output);
        return RenderResult::Misused;
    }
    QString reason;
    const std::unique_ptr<XRSFile> file = XfnOpenRaster(request.file, reason);
    if (!file) {
        message = QString("\"%1\" was not opened. %2").arg(request.file, reason);
        return RenderResult::Failed;
    }
    XDMComposite composite;
    XBandChoice choice(file.get(), &composite);
    if (!ChooseBands(request, choice, message)) return RenderResult::Failed;
    const QSize size = ChooseSize(request, composite);
    XBackBuffer buffer;
    if (!buffer.Resize(nullptr, size.width(), size.height())) {
        message = "There is no memory for a picture of that size.";
        return RenderResult::Failed;
    }
    const double* e = request.extent;
    const tagXArea area =
        request.hasExtent ? tagXArea{e[0], e[1], e[2], e[3]} : WholeArea(composite);
    if (const tagXArea whole = WholeArea(composite); request.hasExtent && !IsMeeting(area, whole)) {
        message = QString("The extent does not meet \"%1\", which covers %2.")
                      .arg(request.file, AreaText(whole));
        return RenderResult::Failed;
    }
    if (!DrawArea(composite, area, buffer, message)) {
        message = QString("\"%1\": %2").arg(request.file, message);
        return RenderResult::Failed;
    }
    return WritePicture(buffer.GetImage(), request.output, format, message) ? RenderResult::Done
                                                                            : RenderResult::Failed;
}
