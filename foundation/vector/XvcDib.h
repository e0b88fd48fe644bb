#pragma once

#include "foundation/base/XApi.h"
#include "foundation/base/XString.h"
#include "foundation/surface/XBitmapInfo.h"

#include <cstddef>
#include <memory>

/// A device independent bitmap in memory: header, palette and rows, padded to four bytes, in the
/// order that the header's height tells. Shared by many objects once it is complete, and then never
/// changed.
struct XAPI tagXvcDib
{
    tagBITMAPINFO info;
    std::shared_ptr<unsigned char[]> bits; ///< null while there are none
    bool hasAlpha = false;                 ///< the fourth byte of a 32-bit pixel is its opacity

    int GetWidth() const { return info.bmiHeader.biWidth; }
    int GetHeight() const; ///< rows, whatever their order
    bool IsBottomUp() const { return info.bmiHeader.biHeight > 0; }
    std::size_t GetRowBytes() const;
    std::size_t GetBitsBytes() const
    {
        return GetRowBytes() * static_cast<std::size_t>(GetHeight());
    }
    int GetColourCount() const; ///< entries of the palette that count; 0 above 8 bits a pixel
    /// Row 0 is the upper one. The bits must be there and the row within the picture.
    const unsigned char* GetRow(int row) const;
    unsigned char* GetRow(int row);

    /// Takes a header over and makes it one of ours: 40 bytes, no compression, sizes filled in.
    /// Sides of 1 to 65535 pixels; 1, 4, 8, 16, 24 or 32 bits a pixel, uncompressed.
    /// @return 0 with a sentence in `error`, then nothing has changed
    int SetInfo(const tagBITMAPINFO& source, XString& error);
    /// Makes room for the bits, all 0. @return 0 when memory does not hold them
    int AllocateBits();

    static constexpr int kMaxSide = 65535;
};
