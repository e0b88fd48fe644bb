#include "foundation/vector/XBmpReader.h"

#include "foundation/vector/XvcDib.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <utility>

namespace {

constexpr std::size_t kFileHeaderBytes = 14;
constexpr std::uint32_t kCoreHeaderBytes = 12;
constexpr std::uint32_t kOs2HeaderBytes = 64;
constexpr std::size_t kMasksAt = kFileHeaderBytes + sizeof(tagBITMAPINFOHEADER);
constexpr std::uint64_t kFreePixels = 1u << 20;
constexpr std::uint64_t kPixelsPerByte = 1024;

enum Compression : std::uint32_t { kPlain, kRle8, kRle4, kBitFields, kAlphaBitFields = 6 };

struct tagSource
{
    const unsigned char* bytes;
    std::size_t size;

    std::uint32_t U16(std::size_t at) const { return bytes[at] | bytes[at + 1] << 8; }
    std::uint32_t U32(std::size_t at) const { return U16(at) | U16(at + 2) << 16; }
    std::int32_t I32(std::size_t at) const { return static_cast<std::int32_t>(U32(at)); }
};

struct tagHead
{
    tagBITMAPINFO info;
    std::uint32_t headerBytes = 0;
    std::uint32_t compression = kPlain;
    std::uint32_t masks[4] = {0, 0, 0, 0}; // red, green, blue, opacity
    std::size_t bitsAt = 0;
};

// One channel of a masked pixel.
class Channel
{
public:
    explicit Channel(std::uint32_t mask)
        : m_mask(mask), m_shift(mask ? std::countr_zero(mask) : 0), m_top(mask >> m_shift)
    {}
    bool IsRun() const { return (m_top & (m_top + std::uint64_t(1))) == 0; } // without a gap
    unsigned char Get(std::uint32_t pixel) const
    {
        if (m_top == 0) return 0;
        const std::uint64_t value = (pixel & m_mask) >> m_shift;
        return static_cast<unsigned char>((value * 255 + m_top / 2) / m_top);
    }

private:
    std::uint32_t m_mask;
    int m_shift;
    std::uint32_t m_top;
};

bool IsHeaderSize(std::uint32_t bytes)
{
    for (const std::uint32_t known : {12u, 40u, 52u, 56u, 64u, 108u, 124u}) {
        if (bytes == known) return true;
    }
    return false;
}

bool IsMasked(std::uint32_t compression)
{
    return compression == kBitFields || compression == kAlphaBitFields;
}

const char* ReadHead(const tagSource& in, tagHead& head)
{
    if (in.size < kFileHeaderBytes + kCoreHeaderBytes || in.bytes[0] != 'B' || in.bytes[1] != 'M') {
        return "It is no BMP file.";
    }
    head.bitsAt = in.U32(10);
    head.headerBytes = in.U32(14);
    if (!IsHeaderSize(head.headerBytes)) return "It has a header of a kind that is not known.";
    if (in.size < kFileHeaderBytes + head.headerBytes) return "It ends within its header.";
    tagBITMAPINFOHEADER& header = head.info.bmiHeader;
    if (head.headerBytes == kCoreHeaderBytes) {
        header.biWidth = static_cast<std::int32_t>(in.U16(18));
        header.biHeight = static_cast<std::int32_t>(in.U16(20));
        header.biBitCount = static_cast<std::uint16_t>(in.U16(24));
        return nullptr;
    }
    header.biWidth = in.I32(18);
    header.biHeight = in.I32(22);
    header.biBitCount = static_cast<std::uint16_t>(in.U16(28));
    head.compression = in.U32(30);
    header.biXPelsPerMeter = in.I32(38);
    header.biYPelsPerMeter = in.I32(42);
    header.biClrUsed = in.U32(46);
    return nullptr;
}

const char* CheckCompression(const tagHead& head)
{
    const tagBITMAPINFOHEADER& header = head.info.bmiHeader;
    const int bits = header.biBitCount;
    const bool isKnown = head.compression == kPlain ||
                         (head.compression == kRle8 && bits == 8 && header.biHeight > 0) ||
                         (head.compression == kRle4 && bits == 4 && header.biHeight > 0) ||
                         (IsMasked(head.compression) && (bits == 16 || bits == 32) &&
                          head.headerBytes != kOs2HeaderBytes);
    return isKnown ? nullptr : "It is compressed in a way that is not known.";
}

// Masks stand behind a header of 40 bytes, and within larger ones.
const char* ReadMasks(const tagSource& in, tagHead& head, std::size_t& paletteAt)
{
    paletteAt = kFileHeaderBytes + head.headerBytes;
    if (!IsMasked(head.compression)) return nullptr;
    std::size_t count = head.headerBytes >= 56 ? 4 : 3;
    if (head.headerBytes == sizeof(tagBITMAPINFOHEADER)) {
        count = head.compression == kAlphaBitFields ? 4 : 3;
        paletteAt += 4 * count;
    }
    if (in.size < kMasksAt + 4 * count) return "It ends within its header.";
    for (std::size_t i = 0; i < count; ++i) {
        head.masks[i] = in.U32(kMasksAt + 4 * i);
        if (!Channel(head.masks[i]).IsRun()) return "Its colour masks are not usable.";
    }
    return nullptr;
}

const char* ReadPalette(const tagSource& in, tagHead& head, std::size_t at)
{
    const int bits = head.info.bmiHeader.biBitCount;
    if (bits > 8) return nullptr;
    const std::size_t entryBytes = head.headerBytes == kCoreHeaderBytes ? 3 : 4;
    std::size_t count = std::size_t(1) << bits;
    const std::size_t used = head.info.bmiHeader.biClrUsed;
    if (used != 0 && used < count) count = used;
    // some writers keep fewer colours than their header says and begin with the rows at once
    if (head.bitsAt > at) count = std::min(count, (head.bitsAt - at) / entryBytes);
    if (count == 0 || in.size < at || (in.size - at) / entryBytes < count) {
        return "It ends within its colours.";
    }
    for (std::size_t i = 0; i < count; ++i) {
        const unsigned char* entry = in.bytes + at + i * entryBytes;
        head.info.bmiColors[i] = {entry[0], entry[1], entry[2], 0};
    }
    head.info.bmiHeader.biClrUsed = static_cast<std::uint32_t>(count);
    return nullptr;
}

// Missing padding behind the last row does no harm and is common.
bool HoldsRows(std::size_t bytes, std::size_t rowBytes, const tagBITMAPINFOHEADER& header)
{
    const std::size_t rows = static_cast<std::size_t>(std::abs(header.biHeight));
    const std::size_t lastRow =
        (static_cast<std::size_t>(header.biWidth) * header.biBitCount + 7) / 8;
    return bytes >= rowBytes * (rows - 1) + lastRow;
}

void CopyMasked(const tagSource& in, const tagHead& head, std::size_t rowBytes, tagXvcDib& dib)
{
    const Channel red(head.masks[0]), green(head.masks[1]), blue(head.masks[2]);
    const Channel opacity(head.masks[3]);
    const bool isWide = head.info.bmiHeader.biBitCount == 32;
    const std::size_t pixelBytes = isWide ? 4 : 2;
    const int width = dib.GetWidth();
    unsigned char anyOpacity = 0;
    for (int row = 0; row < dib.GetHeight(); ++row) { // as stored, both in the same order
        std::size_t at = head.bitsAt + static_cast<std::size_t>(row) * rowBytes;
        unsigned char* out = dib.bits.get() + static_cast<std::size_t>(row) * dib.GetRowBytes();
        for (int x = 0; x < width; ++x, at += pixelBytes, out += 4) {
            const std::uint32_t pixel = isWide ? in.U32(at) : in.U16(at);
            out[0] = blue.Get(pixel);
            out[1] = green.Get(pixel);
            out[2] = red.Get(pixel);
            out[3] = opacity.Get(pixel);
            anyOpacity |= out[3];
        }
    }
    dib.hasAlpha = anyOpacity != 0;
}

// The fourth byte is free in files and mostly 0; drawing wants it opaque.
void FillFourthBytes(tagXvcDib& dib)
{
    const std::size_t bytes = dib.GetBitsBytes();
    for (std::size_t i = 3; i < bytes; i += 4)
        dib.bits[i] = 0xFF;
}

void PutIndex(tagXvcDib& dib, std::uint64_t x, std::uint64_t y, unsigned index)
{
    if (x >= static_cast<std::uint64_t>(dib.GetWidth())) return;
    unsigned char* row = dib.bits.get() + static_cast<std::size_t>(y) * dib.GetRowBytes();
    if (dib.info.bmiHeader.biBitCount == 8) {
        row[x] = static_cast<unsigned char>(index);
        return;
    }
    const int shift = x % 2 == 0 ? 4 : 0;
    row[x / 2] = static_cast<unsigned char>((row[x / 2] & (0xF0 >> shift)) | index << shift);
}

// @return false when the code ends within a run of its own
bool DecodeRuns(const unsigned char* code, std::size_t size, tagXvcDib& dib)
{
    const bool isNibble = dib.info.bmiHeader.biBitCount == 4;
    const auto height = static_cast<std::uint64_t>(dib.GetHeight());
    std::uint64_t x = 0;
    std::uint64_t y = 0;
    std::size_t at = 0;
    while (size - at >= 2 && y < height) {
        const unsigned count = code[at];
        const unsigned value = code[at + 1];
        at += 2;
        if (count > 0) {
            for (unsigned i = 0; i < count; ++i) {
                PutIndex(dib, x++, y, !isNibble ? value : i % 2 == 0 ? value >> 4 : value & 15);
            }
        } else if (value == 0) {
            x = 0;
            ++y;
        } else if (value == 1) {
            return true;
        } else if (value == 2) {
            if (size - at < 2) return false;
            x += code[at];
            y += code[at + 1];
            at += 2;
        } else {
            const std::size_t bytes = isNibble ? (value + 1) / 2 : value;
            if (size - at < bytes) return false;
            for (unsigned i = 0; i < value; ++i) {
                const unsigned byte = code[at + (isNibble ? i / 2 : i)];
                PutIndex(dib, x++, y, !isNibble ? byte : i % 2 == 0 ? byte >> 4 : byte & 15);
            }
            at += std::min(size - at, bytes + bytes % 2); // runs begin at even bytes
        }
    }
    return true;
}

const char* ReadBits(const tagSource& in, const tagHead& head, tagXvcDib& dib)
{
    constexpr const char* kNoMemory = "It is larger than memory.";
    if (head.bitsAt < kFileHeaderBytes + head.headerBytes || head.bitsAt > in.size) {
        return "It ends before its pixels.";
    }
    const tagBITMAPINFOHEADER& header = head.info.bmiHeader;
    const std::size_t size = in.size - head.bitsAt;
    if (head.compression == kRle4 || head.compression == kRle8) {
        const std::uint64_t pixels = static_cast<std::uint64_t>(header.biWidth) *
                                     static_cast<std::uint64_t>(header.biHeight);
        if (pixels > kFreePixels + kPixelsPerByte * size) return "It ends before its pixels.";
        if (!dib.AllocateBits()) return kNoMemory;
        return DecodeRuns(in.bytes + head.bitsAt, size, dib) ? nullptr
                                                             : "It ends within its pixels.";
    }
    const std::size_t rowBytes = XfnGetDibRowBytes(header.biWidth, header.biBitCount);
    if (!HoldsRows(size, rowBytes, header)) return "It ends within its pixels.";
    if (!dib.AllocateBits()) return kNoMemory;
    if (IsMasked(head.compression)) {
        CopyMasked(in, head, rowBytes, dib);
    } else {
        std::memcpy(dib.bits.get(), in.bytes + head.bitsAt, std::min(size, dib.GetBitsBytes()));
    }
    if (header.biBitCount == 32 && !dib.hasAlpha) FillFourthBytes(dib);
    return nullptr;
}

const char* Read(const tagSource& in, tagXvcDib& dib, XString& error)
{
    tagHead head;
    std::size_t paletteAt = 0;
    if (const char* fault = ReadHead(in, head)) return fault;
    if (const char* fault = CheckCompression(head)) return fault;
    if (const char* fault = ReadMasks(in, head, paletteAt)) return fault;
    tagBITMAPINFO shape = head.info;
    if (IsMasked(head.compression)) shape.bmiHeader.biBitCount = 32;
    if (!dib.SetInfo(shape, error)) return error;
    if (const char* fault = ReadPalette(in, head, paletteAt)) return fault;
    if (head.info.bmiHeader.biBitCount <= 8 && !dib.SetInfo(head.info, error)) return error;
    return ReadBits(in, head, dib);
}

} // namespace

int XfnReadBmp(const unsigned char* bytes, std::size_t size, tagXvcDib& dib, XString& error)
{
    tagXvcDib made;
    XString reason;
    const char* const fault = Read({bytes, bytes ? size : 0}, made, reason);
    if (fault) {
        error = fault;
        return 0;
    }
    dib = std::move(made);
    return 1;
}
