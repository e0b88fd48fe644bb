#include "bench/BenchDrawKernels.h"

namespace {

template <class T>
void PlainRgb(const T* const src[3], const std::uint8_t* const tables[3], std::size_t count,
              std::uint32_t* out)
{
    const T *r = src[0], *g = src[1], *b = src[2];
    const std::uint8_t *tr = tables[0], *tg = tables[1], *tb = tables[2];
    for (std::size_t i = 0; i < count; ++i)
        out[i] =
            0xFF000000u | std::uint32_t{tr[r[i]]} << 16 | std::uint32_t{tg[g[i]]} << 8 | tb[b[i]];
}

} // namespace

void XfnPlainRgb8(const std::uint8_t* const src[3], const std::uint8_t* const tables[3],
                  std::size_t count, std::uint32_t* out)
{
    PlainRgb(src, tables, count, out);
}

void XfnPlainRgb16(const std::uint16_t* const src[3], const std::uint8_t* const tables[3],
                   std::size_t count, std::uint32_t* out)
{
    PlainRgb(src, tables, count, out);
}

void XfnPlainGrayFloat(const float* src, float low, float scale, const std::uint8_t* table,
                       std::size_t count, std::uint32_t* out)
{
    for (std::size_t i = 0; i < count; ++i) {
        float v = (src[i] - low) * scale;
        v = v > 0.0f ? v : 0.0f;
        v = v < 255.0f ? v : 255.0f;
        const std::uint32_t level = table[static_cast<int>(v)];
        out[i] = 0xFF000000u | level << 16 | level << 8 | level;
    }
}
