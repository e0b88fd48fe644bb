#include "host/XPictureChooser.h"

#include "foundation/platform/XPrompts.h"
#include "foundation/platform/XQtText.h"
#include "foundation/vector/XvcBitmap.h"
#include "host/XSessionSettings.h"

#include <QFileInfo>
#include <QImageReader>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace {

constexpr const char* kFilter = "Pictures(*.bmp;*.png;*.jpg;*.jpeg;*.gif;*.webp)|"
                                "*.bmp;*.png;*.jpg;*.jpeg;*.gif;*.webp||";

int ReadOther(XvcBitmap& picture, const QString& path, XString& error)
{
    QImageReader reader(path);
    reader.setAutoTransform(true);
    const QImage read = reader.read();
    if (read.isNull()) {
        error = XfnFromQString("\"" + path + "\": " + reader.errorString());
        return 0;
    }
    QImage image(read.size(), QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter(&image).drawImage(0, 0, read);
    // the rows of a device independent bitmap, the lowest first, each on a multiple of four bytes
    image = image.convertToFormat(QImage::Format_BGR888).mirrored();
    tagBITMAPINFO info;
    info.bmiHeader.biWidth = image.width();
    info.bmiHeader.biHeight = image.height();
    info.bmiHeader.biBitCount = 24;
    if (picture.SetDIB(&info, image.constBits())) return 1;
    error = XfnFromQString("\"" + path + "\" is too large for a picture.");
    return 0;
}

int Read(XvcBitmap& picture, const QString& path, XString& error)
{
    const QByteArray format = QImageReader::imageFormat(path);
    if (format == "bmp") return picture.ReadBMP(XfnFromQString(path), error);
    if (format == "jpeg" || format == "jpg") return picture.ReadJPG(XfnFromQString(path), error);
    return ReadOther(picture, path, error);
}

void KeepShape(XvcBitmap& picture)
{
    const tagXVector3 from = picture.GetLeftTop();
    tagXVector3 to = picture.GetRightBottom();
    const double width = std::fabs(to.x - from.x), height = std::fabs(to.y - from.y);
    if (!(width > 0) || !(height > 0) || picture.GetWidth() < 1 || picture.GetHeight() < 1) return;
    const double scale = std::min(width / picture.GetWidth(), height / picture.GetHeight());
    to.x = from.x + std::copysign(scale * picture.GetWidth(), to.x - from.x);
    to.y = from.y + std::copysign(scale * picture.GetHeight(), to.y - from.y);
    picture.SetRightBottom(to);
    picture.CalcRange();
}

} // namespace

int XfnChoosePicture(XHWND owner, XSessionSettings& settings, XvcBitmap& picture)
{
    tagXFilePrompt prompt;
    prompt.title = "Picture";
    prompt.folder = XfnFromQString(settings.GetLastFolder());
    prompt.filter = kFilter;
    XString chosen, error;
    if (!XPrompts::Get()->OpenFile(owner, prompt, chosen)) return 0;
    const QString path = XfnToQString(chosen);
    if (Read(picture, path, error)) {
        settings.SetLastFolder(QFileInfo(path).path());
        KeepShape(picture);
        return 1;
    }
    XPrompts::Get()->Message(owner, error);
    return 0;
}
