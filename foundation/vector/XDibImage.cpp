#include "foundation/vector/XDibImage.h"

#include "foundation/vector/XvcDib.h"

#include <QList>

#include <algorithm>
#include <cstring>
#include <memory>

namespace {

using Bits = std::shared_ptr<unsigned char[]>;

QList<QRgb> GetColourTable(const tagXvcDib& dib)
{
    // indices beyond the palette that counts are black, as its unused entries are
    QList<QRgb> table(qsizetype(1) << std::min<int>(dib.info.bmiHeader.biBitCount, 8));
    for (qsizetype i = 0; i < table.size(); ++i) {
        const tagRGBQUAD& entry = dib.info.bmiColors[i];
        table[i] = qRgb(entry.rgbRed, entry.rgbGreen, entry.rgbBlue);
    }
    return table;
}

QImage::Format GetFormat(const tagXvcDib& dib)
{
    switch (dib.info.bmiHeader.biBitCount) {
    case 1:
        return QImage::Format_Mono;
    case 16:
        return QImage::Format_RGB555;
    case 24:
        return QImage::Format_BGR888;
    case 32:
        return dib.hasAlpha ? QImage::Format_ARGB32 : QImage::Format_RGB32;
    default:
        return QImage::Format_Indexed8;
    }
}

void ReleaseBits(void* held)
{
    delete static_cast<Bits*>(held);
}

// The very bytes of the picture, which live as long as a copy of the image does.
QImage WrapBits(const tagXvcDib& dib)
{
    auto held = std::make_unique<Bits>(dib.bits);
    QImage image(static_cast<const uchar*>(dib.bits.get()), dib.GetWidth(), dib.GetHeight(),
                 static_cast<qsizetype>(dib.GetRowBytes()), GetFormat(dib), ReleaseBits,
                 held.get());
    if (!image.isNull()) held.release();
    return image;
}

QImage WidenNibbles(const tagXvcDib& dib)
{
    QImage image(dib.GetWidth(), dib.GetHeight(), QImage::Format_Indexed8);
    for (int row = 0; row < image.height(); ++row) {
        const unsigned char* from =
            dib.bits.get() + static_cast<std::size_t>(row) * dib.GetRowBytes();
        uchar* to = image.scanLine(row);
        for (int x = 0; x < image.width(); ++x) {
            to[x] = static_cast<uchar>(x % 2 == 0 ? from[x / 2] >> 4 : from[x / 2] & 15);
        }
    }
    return image;
}

bool HasFreeFourthBytes(const tagXvcDib& dib)
{
    if (dib.info.bmiHeader.biBitCount != 32 || dib.hasAlpha) return false;
    const std::size_t bytes = dib.GetBitsBytes();
    for (std::size_t i = 3; i < bytes; i += 4) {
        if (dib.bits[i] != 0xFF) return true;
    }
    return false;
}

// An image of the same bytes that takes a palette of its own. A copy of the image would copy the
// bytes with its first change, and one bit a pixel takes no opacity.
QImage ShareIndices(const QImage& image)
{
    if (image.depth() == 1) return image.convertToFormat(QImage::Format_Indexed8);
    auto held = std::make_unique<QImage>(image);
    QImage shared(
        image.constBits(), image.width(), image.height(), image.bytesPerLine(), image.format(),
        [](void* kept) { delete static_cast<QImage*>(kept); }, held.get());
    if (!shared.isNull()) held.release();
    return shared;
}

} // namespace

QImage XfnMakeDibImage(const tagXvcDib& dib)
{
    const int bits = dib.info.bmiHeader.biBitCount;
    QImage image = bits == 4 ? WidenNibbles(dib) : WrapBits(dib);
    if (bits <= 8) image.setColorTable(GetColourTable(dib));
    if (HasFreeFourthBytes(dib)) {
        for (int row = 0; row < image.height(); ++row) { // the first write makes a copy
            auto* pixels = reinterpret_cast<QRgb*>(image.scanLine(row));
            for (int x = 0; x < image.width(); ++x)
                pixels[x] |= 0xFF000000u;
        }
    }
    return image;
}

QImage XfnMakeSeeThrough(const QImage& image, tagXColor colour)
{
    const QRgb key =
        qRgb(static_cast<int>(XfnGetRed(colour)), static_cast<int>(XfnGetGreen(colour)),
             static_cast<int>(XfnGetBlue(colour)));
    const auto isKey = [key](QRgb pixel) { return (pixel & 0xFFFFFFu) == (key & 0xFFFFFFu); };
    if (image.colorCount() > 0) {
        QList<QRgb> table = image.colorTable();
        for (QRgb& entry : table) {
            if (isKey(entry)) entry = 0;
        }
        QImage keyed = ShareIndices(image);
        keyed.setColorTable(table);
        return keyed;
    }
    QImage keyed = image.convertToFormat(QImage::Format_ARGB32);
    for (int row = 0; row < keyed.height(); ++row) {
        auto* pixels = reinterpret_cast<QRgb*>(keyed.scanLine(row));
        for (int x = 0; x < keyed.width(); ++x) {
            if (isKey(pixels[x])) pixels[x] = 0;
        }
    }
    return keyed;
}

int XfnFillDib(const QImage& source, tagXvcDib& dib, XString& reason)
{
    const bool isGray = source.isGrayscale();
    const QImage image =
        source.convertToFormat(isGray ? QImage::Format_Grayscale8 : QImage::Format_BGR888);
    tagBITMAPINFO info{};
    info.bmiHeader.biWidth = image.width();
    info.bmiHeader.biHeight = image.height();
    info.bmiHeader.biBitCount = isGray ? 8 : 24;
    for (unsigned i = 0; isGray && i < 256; ++i) {
        const auto gray = static_cast<std::uint8_t>(i);
        info.bmiColors[i] = {gray, gray, gray, 0};
    }
    if (image.isNull() || !dib.SetInfo(info, reason) || !dib.AllocateBits()) {
        if (reason.IsEmpty()) reason = "It is larger than memory.";
        return 0;
    }
    const std::size_t bytes = static_cast<std::size_t>(image.width()) * (isGray ? 1 : 3);
    for (int row = 0; row < image.height(); ++row) {
        std::memcpy(dib.GetRow(row), image.constScanLine(row), bytes);
    }
    return 1;
}
