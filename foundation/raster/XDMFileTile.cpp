#include "foundation/raster/XDMFileTile.h"

#include "foundation/raster/XDMFileKernels.h"

#include <zstd.h>

#include <bit>
#include <cmath>
#include <cstring>
#include <limits>
#include <memory>
#include <new>
#include <type_traits>

namespace {

constexpr int kZstdLevel = 3;

/// The real type a sample is made of; a complex one holds two of them.
int GetRealType(int dataType)
{
    return dataType > 8 ? dataType - 8 : dataType;
}

int GetStep(int dataType)
{
    return dataType > 8 ? 2 : 1;
}

template <class T>
void PutFill(unsigned char* out, double value)
{
    T sample{};
    if constexpr (std::is_same_v<T, double>) {
        sample = value;
    } else if constexpr (std::is_same_v<T, float>) {
        // a number beyond the largest float has no float; infinity itself has
        const bool fits =
            !(std::abs(value) > std::numeric_limits<float>::max()) || std::isinf(value);
        if (fits) sample = static_cast<float>(value);
    } else {
        const bool fits = value >= static_cast<double>(std::numeric_limits<T>::min()) &&
                          value <= static_cast<double>(std::numeric_limits<T>::max()) &&
                          value == std::floor(value);
        if (fits) sample = static_cast<T>(value);
    }
    std::memcpy(out, &sample, sizeof sample);
}

struct tagFreeZstd
{
    void operator()(ZSTD_CCtx* context) const { ZSTD_freeCCtx(context); }
    void operator()(ZSTD_DCtx* context) const { ZSTD_freeDCtx(context); }
};

// Contexts and buffers are kept a thread: making them costs more than a small tile.
ZSTD_CCtx* GetCompressor()
{
    thread_local std::unique_ptr<ZSTD_CCtx, tagFreeZstd> context(ZSTD_createCCtx());
    return context.get();
}

ZSTD_DCtx* GetDecompressor()
{
    thread_local std::unique_ptr<ZSTD_DCtx, tagFreeZstd> context(ZSTD_createDCtx());
    return context.get();
}

} // namespace

std::array<unsigned char, 16> XfnGetXDMFileFill(int dataType, double nullValue)
{
    std::array<unsigned char, 16> fill{};
    if (nullValue == kXNotSet) return fill;
    switch (GetRealType(dataType)) {
    case 1:
        PutFill<std::uint8_t>(fill.data(), nullValue);
        break;
    case 2:
        PutFill<std::int8_t>(fill.data(), nullValue);
        break;
    case 3:
        PutFill<std::uint16_t>(fill.data(), nullValue);
        break;
    case 4:
        PutFill<std::int16_t>(fill.data(), nullValue);
        break;
    case 5:
        PutFill<std::uint32_t>(fill.data(), nullValue);
        break;
    case 6:
        PutFill<std::int32_t>(fill.data(), nullValue);
        break;
    case 7:
        PutFill<float>(fill.data(), nullValue);
        break;
    default:
        PutFill<double>(fill.data(), nullValue);
        break;
    }
    return fill;
}

int XfnIsXDMFileTileEmpty(const void* bytes, std::size_t count, const unsigned char* sample,
                          std::size_t sampleSize)
{
    if (count < sampleSize || std::memcmp(bytes, sample, sampleSize) != 0) return 0;
    // equal to itself moved by one sample: every sample is the first
    const unsigned char* p = static_cast<const unsigned char*>(bytes);
    return std::memcmp(p, p + sampleSize, count - sampleSize) == 0;
}

void XfnFillXDMFileTile(void* bytes, std::size_t count, const unsigned char* sample,
                        std::size_t sampleSize)
{
    unsigned char* p = static_cast<unsigned char*>(bytes);
    if (count < sampleSize) return;
    std::memcpy(p, sample, sampleSize);
    for (std::size_t done = sampleSize; done < count;) {
        const std::size_t more = done < count - done ? done : count - done;
        std::memcpy(p + done, p, more);
        done += more;
    }
}

XDMFileEncoding XfnEncodeXDMFileTile(const void* samples, const tagXDMFileTileShape& shape,
                                     int wish, std::vector<unsigned char>& out)
{
    const std::size_t bytes = shape.GetBytes();
    if (wish < 1 || wish > 2 || bytes < 2 || !GetCompressor()) return XDMFileEncoding::Plain;
    const XDMFileEncoding encoding = static_cast<XDMFileEncoding>(wish);
    try {
        std::vector<unsigned char> planes;
        const void* source = samples;
        if (encoding == XDMFileEncoding::PredictedZstd) {
            planes.resize(bytes);
            const int step = GetStep(shape.dataType);
            const std::size_t perRow = static_cast<std::size_t>(shape.width) * step;
            XfnPredictXDMFileTile(samples, planes.data(),
                                  XfnGetXDMFileSampleSize(GetRealType(shape.dataType)), step,
                                  perRow, static_cast<std::size_t>(shape.height));
            source = planes.data();
        }
        // room for one byte less than the tile: what does not fit is no gain
        out.resize(bytes - 1);
        const std::size_t used =
            ZSTD_compressCCtx(GetCompressor(), out.data(), out.size(), source, bytes, kZstdLevel);
        if (ZSTD_isError(used)) return XDMFileEncoding::Plain;
        out.resize(used);
    } catch (const std::bad_alloc&) {
        return XDMFileEncoding::Plain;
    }
    return encoding;
}

int XfnDecodeXDMFileTile(XDMFileEncoding encoding, const unsigned char* payload, std::size_t count,
                         const tagXDMFileTileShape& shape, void* out)
{
    const std::size_t bytes = shape.GetBytes();
    if (!GetDecompressor()) return 0;
    const auto unpack = [&](void* target) {
        return ZSTD_decompressDCtx(GetDecompressor(), target, bytes, payload, count) == bytes;
    };
    if (encoding == XDMFileEncoding::Zstd) return unpack(out);
    if (encoding != XDMFileEncoding::PredictedZstd) return 0;
    const std::unique_ptr<unsigned char[]> planes(new (std::nothrow) unsigned char[bytes]);
    if (!planes || !unpack(planes.get())) return 0;
    const int step = GetStep(shape.dataType);
    XfnUnpredictXDMFileTile(planes.get(), out, XfnGetXDMFileSampleSize(GetRealType(shape.dataType)),
                            step, static_cast<std::size_t>(shape.width) * step,
                            static_cast<std::size_t>(shape.height));
    return 1;
}
