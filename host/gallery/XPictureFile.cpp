#include "host/gallery/XPictureFile.h"

#include <QDir>

bool XfnSavePicture(const QImage& picture, const QString& folder, const char* name)
{
    QImage coarse = picture.convertToFormat(QImage::Format_RGB32);
    coarse.setDevicePixelRatio(1);
    for (int y = 0; y < coarse.height(); ++y) {
        auto* row = reinterpret_cast<QRgb*>(coarse.scanLine(y));
        for (int x = 0; x < coarse.width(); ++x)
            row[x] = (row[x] & 0xFFFCFCFCu) | (row[x] >> 6 & 0x00030303u);
    }
    return coarse.save(QDir(folder).filePath(name), "PNG", 0);
}
