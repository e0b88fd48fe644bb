#include "foundation/vector/XvcDib.h"

#include <cstring>
#include <new>
#include <utility>

namespace {

bool IsBitCount(int bits)
{
    return bits == 1 || bits == 4 || bits == 8 || bits == 16 || bits == 24 || bits == 32;
}

} // namespace

int tagXvcDib::GetHeight() const
{
    const std::int32_t height = info.bmiHeader.biHeight;
    return height < 0 ? -height : height;
}

std::size_t tagXvcDib::GetRowBytes() const
{
    return XfnGetDibRowBytes(info.bmiHeader.biWidth, info.bmiHeader.biBitCount);
}

int tagXvcDib::GetColourCount() const
{
    const int bits = info.bmiHeader.biBitCount;
    return bits < 1 || bits > 8 ? 0 : static_cast<int>(info.bmiHeader.biClrUsed);
}

const unsigned char* tagXvcDib::GetRow(int row) const
{
    const int stored = IsBottomUp() ? GetHeight() - 1 - row : row;
    return bits.get() + static_cast<std::size_t>(stored) * GetRowBytes();
}

unsigned char* tagXvcDib::GetRow(int row)
{
    return const_cast<unsigned char*>(std::as_const(*this).GetRow(row));
}

int tagXvcDib::SetInfo(const tagBITMAPINFO& source, XString& error)
{
    const tagBITMAPINFOHEADER& given = source.bmiHeader;
    if (given.biWidth < 1 || given.biWidth > kMaxSide || given.biHeight == 0 ||
        given.biHeight > kMaxSide || given.biHeight < -kMaxSide) {
        error = "The picture's width or height is not one that a picture can have.";
        return 0;
    }
    if (!IsBitCount(given.biBitCount)) {
        error = "The picture has a number of bits a pixel that is not known.";
        return 0;
    }
    if (given.biCompression != 0) {
        error = "The picture is compressed in a way that is not known.";
        return 0;
    }
    tagBITMAPINFO made{};
    made.bmiHeader = given;
    made.bmiHeader.biSize = sizeof(tagBITMAPINFOHEADER);
    made.bmiHeader.biPlanes = 1;
    made.bmiHeader.biClrUsed = 0;
    made.bmiHeader.biClrImportant = 0;
    if (given.biBitCount <= 8) {
        const std::uint32_t most = 1u << given.biBitCount;
        const bool isFull = given.biClrUsed == 0 || given.biClrUsed > most;
        made.bmiHeader.biClrUsed = isFull ? most : given.biClrUsed;
        // entries beyond those that count may lie outside of the caller's memory
        std::memcpy(made.bmiColors, source.bmiColors,
                    made.bmiHeader.biClrUsed * sizeof(tagRGBQUAD));
    }
    info = made;
    const std::size_t bytes = GetBitsBytes();
    info.bmiHeader.biSizeImage = bytes <= 0xFFFFFFFFu ? static_cast<std::uint32_t>(bytes) : 0;
    bits.reset();
    hasAlpha = false;
    return 1;
}

int tagXvcDib::AllocateBits()
{
    const std::size_t bytes = GetBitsBytes();
    if (bytes == 0) return 0;
    bits.reset();
    unsigned char* const block = new (std::nothrow) unsigned char[bytes]();
    if (block) bits = std::shared_ptr<unsigned char[]>(block);
    return block ? 1 : 0;
}
