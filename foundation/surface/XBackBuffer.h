#pragma once

#include "foundation/base/XApi.h"
#include "foundation/base/XColor.h"
#include "foundation/surface/XBitmapInfo.h"
#include "foundation/surface/XBufferMapping.h"
#include "foundation/surface/XDC.h"
#include "foundation/surface/XUpdateFlag.h"

#include <QImage>
#include <QRect>

#include <cstdint>

/// A 32-bit off-screen picture and the mapping between its pixels and the world.
///
/// Pixels are words 0xFFRRGGBB, the top row first; colours given to operations are colour words
/// with red lowest. World coordinates are as told in XBufferMapping, to which the mapping
/// operations forward: they return 0 and change nothing when their arguments are not usable.
/// A surface has 0 to 32767 pixels a side and at most 2^28 in all; a new or resized one is black.
///
/// Copies share pixels until one of them is drawn on. Two buffers given the same calls are equal
/// bit for bit. Threads: one thread at a time; the update flag may be used by any.
class XAPI XBackBuffer
{
public:
    static constexpr std::int64_t kMaxPixels = std::int64_t{1} << 28;

    XBackBuffer();
    XBackBuffer(const XBackBuffer& other);
    XBackBuffer& operator=(const XBackBuffer& other);

    /// Starts anew, with the size of the device (none: 0 x 0). The mapping is kept.
    /// @param kind  a code for the kind of surface, kept for GetType; all kinds are 32-bit
    int Create(const XDC* dc, int kind);
    /// Changes the size; centre and lengths stay, the picture is lost unless the size is the same.
    /// @return 0 for a size out of range or without memory; the buffer is then as it was
    int Resize(const XDC* dc, int widthPx, int heightPx);

    XDC* GetDC() { return &m_dc; }
    int GetWidth() const { return m_mapping.GetWidth(); }
    int GetHeight() const { return m_mapping.GetHeight(); }
    int GetType() const { return m_kind; }
    int GetBitsPixel() const { return 32; }
    int GetDIBWidthBytes() const { return GetWidth() * 4; }
    /// Describes the pixels as a top-down 32-bit bitmap.
    /// @return the first byte of the top row, to be read until the buffer changes; null when empty
    const std::uint8_t* GetDIBits(tagBITMAPINFO& info) const;

    /// For painters; its size and format must stay.
    QImage& GetImage() { return m_image; }
    const QImage& GetImage() const { return m_image; }
    /// A row to write to; null out of range. Several threads that fill one buffer take GetBits
    /// once, before they start: a row of their own would ask each time whether pixels are shared.
    std::uint32_t* GetRow(int y);
    const std::uint32_t* GetRow(int y) const;
    std::uint32_t* GetBits();      ///< the top row; null when empty
    std::size_t GetStride() const; ///< words from one row to the next

    const XBufferMapping& GetMapping() const { return m_mapping; }
    /// Takes over a mapping but for its size, which stays that of the surface.
    void SetMapping(const XBufferMapping& mapping);

    int SetWorldToCenter(double x, double y) { return m_mapping.SetWorldToCenter(x, y); }
    void GetWorldToCenter(double& x, double& y) const { m_mapping.GetWorldToCenter(x, y); }
    void GetCenter(double& x, double& y) const { m_mapping.GetWorldToCenter(x, y); }
    int SetWorldPerPixel(double x, double y) { return m_mapping.SetWorldPerPixel(x, y); }
    void GetWorldPerPixel(double& x, double& y) const { m_mapping.GetWorldPerPixel(x, y); }
    double GetWorldPerPixel() const { return m_mapping.GetWorldPerPixel(); }
    int SetWorldPerPixelBase(double x, double y) { return m_mapping.SetWorldPerPixelBase(x, y); }
    void GetWorldPerPixelBase(double& x, double& y) const { m_mapping.GetWorldPerPixelBase(x, y); }
    void GetZoomFactor(double& x, double& y) const { m_mapping.GetZoomFactor(x, y); }
    void ConvPixelToWorldCoord(double& x, double& y) const
    {
        m_mapping.ConvPixelToWorldCoord(x, y);
    }
    void ConvWorldToPixelCoord(double& x, double& y) const
    {
        m_mapping.ConvWorldToPixelCoord(x, y);
    }
    void ConvPixelToWorldLength(double& x, double& y) const
    {
        m_mapping.ConvPixelToWorldLength(x, y);
    }
    void ConvWorldToPixelLength(double& x, double& y) const
    {
        m_mapping.ConvWorldToPixelLength(x, y);
    }
    int ZoomFit(double minX, double minY, double maxX, double maxY)
    {
        return m_mapping.ZoomFit(minX, minY, maxX, maxY);
    }
    int ZoomIn(double step) { return m_mapping.ZoomIn(step); }
    int ZoomOut(double step) { return m_mapping.ZoomOut(step); }
    int PanPixel(int dx, int dy) { return m_mapping.PanPixel(dx, dy); }
    int SetRotationAngle(double degrees) { return m_mapping.SetRotationAngle(degrees); }
    double GetRotationAngle() const { return m_mapping.GetRotationAngle(); }
    void SetWarpCoeff(const XWarp2D& worldToPixel, const XWarp2D& pixelToWorld)
    {
        m_mapping.SetWarpCoeff(worldToPixel, pixelToWorld);
    }
    const XWarp2D& GetWarpCoeffWorldToPixel() const { return m_mapping.GetWarpCoeffWorldToPixel(); }
    const XWarp2D& GetWarpCoeffPixelToWorld() const { return m_mapping.GetWarpCoeffPixelToWorld(); }
    void SetLatLongRounding(int isOn) { m_mapping.SetLatLongRounding(isOn); }
    int IsLatLongRounding() const { return m_mapping.IsLatLongRounding(); }

    void Clear(tagXColor colour);
    void Clear(tagXColor colour, const QRect& rect);

    /// The picture on a device, its upper left corners together. `rop` as for XDC::BitBlt.
    /// The mapping never changes. All of them return 0 without a device or for another `rop`.
    int Swap(XDC* dc, unsigned rop) const;
    /// The picture moved by (dx, dy) pixels, right and down; what is uncovered becomes
    /// `background`.
    int SwapPan(XDC* dc, int dx, int dy, tagXColor background, unsigned rop) const;
    /// The picture scaled about its middle by 2 to the power of `step` (ZoomIn) or -`step`
    /// (ZoomOut), nearest pixel: what the next drawing will show, without waiting for it.
    int SwapZoomIn(XDC* dc, double step, tagXColor background, unsigned rop) const;
    int SwapZoomOut(XDC* dc, double step, tagXColor background, unsigned rop) const;
    /// The same, and the moved or scaled picture also becomes the buffer's own. Without a device
    /// only that happens.
    int SwapPanCopy(XDC* dc, int dx, int dy, tagXColor background, unsigned rop);
    int SwapZoomInCopy(XDC* dc, double step, tagXColor background, unsigned rop);
    int SwapZoomOutCopy(XDC* dc, double step, tagXColor background, unsigned rop);

    int IsUpdateNeeded() const { return m_update.IsRaised(); }
    void SetUpdateNeeded() { m_update.Raise(); }
    void UpdateNeeded() { m_update.Raise(); }
    void UpdateCompleted() { m_update.Clear(); }

private:
    QImage MakePanned(int dx, int dy, tagXColor background) const;
    QImage MakeZoomed(double step, tagXColor background) const;
    int Show(QImage& picture, XDC* dc, unsigned rop) const;
    int Keep(QImage picture, XDC* dc, unsigned rop);

    QImage m_image;
    XDC m_dc{&m_image};
    XBufferMapping m_mapping;
    XUpdateFlag m_update;
    int m_kind = 0;
};
