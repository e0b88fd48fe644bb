#include "foundation/surface/XBackBuffer.h"

#include "foundation/surface/XQtColor.h"

#include <cmath>
#include <utility>

XBackBuffer::XBackBuffer() = default;

XBackBuffer::XBackBuffer(const XBackBuffer& other)
    : m_image(other.m_image),
      m_mapping(other.m_mapping),
      m_update(other.m_update),
      m_kind(other.m_kind)
{}

XBackBuffer& XBackBuffer::operator=(const XBackBuffer& other)
{
    // the device keeps pointing at this buffer's own image
    m_image = other.m_image;
    m_mapping = other.m_mapping;
    m_update = other.m_update;
    m_kind = other.m_kind;
    return *this;
}

int XBackBuffer::Create(const XDC* dc, int kind)
{
    const int width = dc ? dc->GetWidth() : 0;
    const int height = dc ? dc->GetHeight() : 0;
    if (!Resize(dc, width, height)) return 0;
    m_kind = kind;
    Clear(0);
    m_update.Clear();
    return 1;
}

int XBackBuffer::Resize(const XDC*, int widthPx, int heightPx)
{
    if (widthPx == GetWidth() && heightPx == GetHeight()) return 1;
    XBufferMapping mapping = m_mapping;
    if (!mapping.SetSize(widthPx, heightPx)) return 0;
    if (std::int64_t{widthPx} * heightPx > kMaxPixels) return 0;
    QImage image;
    if (widthPx > 0 && heightPx > 0) {
        image = QImage(widthPx, heightPx, QImage::Format_RGB32);
        if (image.isNull()) return 0;
        image.fill(0xFF000000u);
    }
    m_image = std::move(image);
    m_mapping = mapping;
    return 1;
}

const std::uint8_t* XBackBuffer::GetDIBits(tagBITMAPINFO& info) const
{
    info = tagBITMAPINFO();
    info.bmiHeader.biWidth = GetWidth();
    info.bmiHeader.biHeight = -GetHeight();
    info.bmiHeader.biBitCount = 32;
    info.bmiHeader.biSizeImage = static_cast<std::uint32_t>(XfnGetDibRowBytes(GetWidth(), 32)) *
                                 static_cast<std::uint32_t>(GetHeight());
    return m_image.isNull() ? nullptr : m_image.constBits();
}

std::uint32_t* XBackBuffer::GetRow(int y)
{
    if (y < 0 || y >= m_image.height()) return nullptr;
    return reinterpret_cast<std::uint32_t*>(m_image.scanLine(y));
}

const std::uint32_t* XBackBuffer::GetRow(int y) const
{
    if (y < 0 || y >= m_image.height()) return nullptr;
    return reinterpret_cast<const std::uint32_t*>(m_image.constScanLine(y));
}

std::uint32_t* XBackBuffer::GetBits()
{
    return m_image.isNull() ? nullptr : reinterpret_cast<std::uint32_t*>(m_image.bits());
}

std::size_t XBackBuffer::GetStride() const
{
    return static_cast<std::size_t>(m_image.bytesPerLine()) / 4;
}

void XBackBuffer::SetMapping(const XBufferMapping& mapping)
{
    const int width = GetWidth();
    const int height = GetHeight();
    m_mapping = mapping;
    m_mapping.SetSize(width, height);
}

void XBackBuffer::Clear(tagXColor colour)
{
    if (!m_image.isNull()) m_image.fill(XfnToQRgb(colour));
}

void XBackBuffer::Clear(tagXColor colour, const QRect& rect)
{
    m_dc.FillRect(rect, colour);
}

int XBackBuffer::Swap(XDC* dc, unsigned rop) const
{
    if (!dc) return 0;
    QImage picture = m_image;
    return Show(picture, dc, rop);
}

int XBackBuffer::Show(QImage& picture, XDC* dc, unsigned rop) const
{
    return dc->BitBlt(0, 0, picture.width(), picture.height(), XDC(&picture), 0, 0, rop);
}

QImage XBackBuffer::MakePanned(int dx, int dy, tagXColor background) const
{
    if (m_image.isNull()) return QImage();
    QImage source = m_image;
    QImage picture(m_image.size(), QImage::Format_RGB32);
    if (picture.isNull()) return picture;
    picture.fill(XfnToQRgb(background));
    XDC(&picture).BitBlt(dx, dy, source.width(), source.height(), XDC(&source), 0, 0, kXCopy);
    return picture;
}

QImage XBackBuffer::MakeZoomed(double step, tagXColor background) const
{
    const double factor = std::exp2(step);
    if (m_image.isNull() || !(factor > 0.0) || !std::isfinite(factor)) return QImage();
    QImage source = m_image;
    QImage picture(m_image.size(), QImage::Format_RGB32);
    if (picture.isNull()) return picture;
    picture.fill(XfnToQRgb(background));
    const double width = source.width();
    const double height = source.height();
    XDC(&picture).StretchBlt(width / 2.0 * (1.0 - factor), height / 2.0 * (1.0 - factor),
                             width * factor, height * factor, XDC(&source), 0.0, 0.0, width, height,
                             kXCopy);
    return picture;
}

int XBackBuffer::SwapPan(XDC* dc, int dx, int dy, tagXColor background, unsigned rop) const
{
    if (!dc) return 0;
    QImage picture = MakePanned(dx, dy, background);
    return Show(picture, dc, rop);
}

int XBackBuffer::SwapZoomIn(XDC* dc, double step, tagXColor background, unsigned rop) const
{
    if (!dc) return 0;
    QImage picture = MakeZoomed(step, background);
    return Show(picture, dc, rop);
}

int XBackBuffer::SwapZoomOut(XDC* dc, double step, tagXColor background, unsigned rop) const
{
    return SwapZoomIn(dc, -step, background, rop);
}

int XBackBuffer::Keep(QImage picture, XDC* dc, unsigned rop)
{
    if (picture.isNull() || (dc && !XDC::IsRasterOp(rop))) return 0;
    m_image = std::move(picture);
    return dc ? Swap(dc, rop) : 1;
}

int XBackBuffer::SwapPanCopy(XDC* dc, int dx, int dy, tagXColor background, unsigned rop)
{
    return Keep(MakePanned(dx, dy, background), dc, rop);
}

int XBackBuffer::SwapZoomInCopy(XDC* dc, double step, tagXColor background, unsigned rop)
{
    return Keep(MakeZoomed(step, background), dc, rop);
}

int XBackBuffer::SwapZoomOutCopy(XDC* dc, double step, tagXColor background, unsigned rop)
{
    return SwapZoomInCopy(dc, -step, background, rop);
}
