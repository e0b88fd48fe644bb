#include "foundation/raster/XDrawHSI.h"
#include "foundation/raster/XDrawKernels.h"

#include <cstddef>
#include <cstring>

namespace {

constexpr std::uint32_t kOpaque = 0xFF000000u;
constexpr std::uint32_t kColour = 0x00FFFFFFu;
constexpr int kTableBits = 0x1FF;

/// (a * share + b * (255 - share)) / 255 in all components of the words, rounded exactly.
inline std::uint32_t Mix(std::uint32_t a, std::uint32_t b, std::uint32_t share)
{
    const std::uint32_t rest = 255u - share;
    std::uint32_t outer = (a & 0xFF00FFu) * share + (b & 0xFF00FFu) * rest + 0x800080u;
    outer = (outer + (outer >> 8 & 0xFF00FFu)) >> 8 & 0xFF00FFu;
    std::uint32_t inner = (a >> 8 & 0xFFu) * share + (b >> 8 & 0xFFu) * rest + 0x80u;
    inner = (inner + (inner >> 8)) >> 8 & 0xFFu;
    return outer | inner << 8;
}

void CoverRow(const std::uint16_t* const states[3], int n, const tagXCompose& compose,
              std::uint32_t* __restrict cover)
{
    const std::uint16_t* __restrict a = states[0];
    const std::uint16_t* __restrict b = states[1];
    const std::uint16_t* __restrict c = states[2];
    const std::uint32_t keepA = compose.keep[0], keepB = compose.keep[1], keepC = compose.keep[2];
    const std::uint32_t freeA = compose.notAsked[0], freeB = compose.notAsked[1],
                        freeC = compose.notAsked[2], asOne = compose.asOne;
    for (int i = 0; i < n; ++i) {
        const std::uint32_t sa = a[i], sb = b[i], sc = c[i];
        const std::uint32_t hasData = (sa | sb | sc) >> 8 & 1u;
        const std::uint32_t isThrough = ((sa | freeA) & (sb | freeB) & (sc | freeC) & asOne) >> 9;
        std::uint32_t mask = (0u - (hasData & ~isThrough & 1u)) & kColour;
        mask &= ~(keepA & (0u - (sa >> 9 & 1u)));
        mask &= ~(keepB & (0u - (sb >> 9 & 1u)));
        mask &= ~(keepC & (0u - (sc >> 9 & 1u)));
        cover[i] = mask;
    }
}

template <class T, class P, bool kIndexed>
void RgbBytesRow(const T* const src[3], const int* index, int n, const P* const tables[3],
                 std::uint32_t* __restrict words)
{
    const T* __restrict a = src[0];
    const T* __restrict b = src[1];
    const T* __restrict c = src[2];
    const P* __restrict ta = tables[0];
    const P* __restrict tb = tables[1];
    const P* __restrict tc = tables[2];
    for (int i = 0; i < n; ++i) {
        const int at = kIndexed ? index[i] : i;
        if constexpr (sizeof(P) == 4)
            words[i] = ta[a[at]] | tb[b[at]] | tc[c[at]];
        else
            words[i] = kOpaque | static_cast<std::uint32_t>(tc[c[at]]) << 16 |
                       static_cast<std::uint32_t>(tb[b[at]]) << 8 | ta[a[at]];
    }
}

} // namespace

void XfnRgb8Row(const std::uint8_t* const src[3], int n, const std::uint32_t* const tables[3],
                std::uint32_t* words)
{
    RgbBytesRow<std::uint8_t, std::uint32_t, false>(src, nullptr, n, tables, words);
}

void XfnRgb8IndexedRow(const std::uint8_t* const src[3], const int* index, int n,
                       const std::uint32_t* const tables[3], std::uint32_t* words)
{
    // Two indices a load: the loop is bound by its loads, of which they are one in seven.
    const std::uint8_t* __restrict a = src[0];
    const std::uint8_t* __restrict b = src[1];
    const std::uint8_t* __restrict c = src[2];
    const std::uint32_t* __restrict ta = tables[0];
    const std::uint32_t* __restrict tb = tables[1];
    const std::uint32_t* __restrict tc = tables[2];
    const auto wordAt = [&](std::size_t at) { return ta[a[at]] | tb[b[at]] | tc[c[at]]; };
    int i = 0;
    for (; i + 4 <= n; i += 4) {
        std::uint64_t pairs[2];
        std::memcpy(pairs, index + i, sizeof pairs);
        const std::uint32_t first = wordAt(static_cast<std::uint32_t>(pairs[0]));
        const std::uint32_t second = wordAt(pairs[0] >> 32);
        const std::uint32_t third = wordAt(static_cast<std::uint32_t>(pairs[1]));
        const std::uint32_t fourth = wordAt(pairs[1] >> 32);
        words[i] = first;
        words[i + 1] = second;
        words[i + 2] = third;
        words[i + 3] = fourth;
    }
    for (; i < n; ++i)
        words[i] = wordAt(static_cast<std::size_t>(index[i]));
}

void XfnGray8Row(const std::uint8_t* src, const int* index, int n, const std::uint32_t* table,
                 std::uint32_t* __restrict words)
{
    if (index)
        for (int i = 0; i < n; ++i)
            words[i] = table[src[index[i]]];
    else
        for (int i = 0; i < n; ++i)
            words[i] = table[src[i]];
}

void XfnRgb16Row(const std::uint16_t* const src[3], const int* index, int n,
                 const std::uint8_t* const tables[3], std::uint32_t* words)
{
    if (index)
        RgbBytesRow<std::uint16_t, std::uint8_t, true>(src, index, n, tables, words);
    else
        RgbBytesRow<std::uint16_t, std::uint8_t, false>(src, nullptr, n, tables, words);
}

void XfnGray16Row(const std::uint16_t* src, const int* index, int n, const std::uint8_t* levels,
                  const std::uint32_t* table, std::uint32_t* __restrict words)
{
    if (index)
        for (int i = 0; i < n; ++i)
            words[i] = table[levels[src[index[i]]]];
    else
        for (int i = 0; i < n; ++i)
            words[i] = table[levels[src[i]]];
}

void XfnComposeGrayRow(const std::uint16_t* const states[3], int n, const tagXCompose& compose,
                       std::uint32_t* __restrict words, std::uint32_t* __restrict cover)
{
    const std::uint16_t* __restrict a = states[0];
    const std::uint32_t* __restrict table = compose.words[0];
    for (int i = 0; i < n; ++i)
        words[i] = table[a[i] & kTableBits];
    CoverRow(states, n, compose, cover);
}

void XfnComposeRgbRow(const std::uint16_t* const states[3], int n, const tagXCompose& compose,
                      std::uint32_t* __restrict words, std::uint32_t* __restrict cover)
{
    const std::uint16_t* __restrict a = states[0];
    const std::uint16_t* __restrict b = states[1];
    const std::uint16_t* __restrict c = states[2];
    for (int i = 0; i < n; ++i)
        words[i] = compose.words[0][a[i] & kTableBits] | compose.words[1][b[i] & kTableBits] |
                   compose.words[2][c[i] & kTableBits];
    CoverRow(states, n, compose, cover);
}

void XfnComposeHsiRow(const std::uint16_t* const states[3], int n, const tagXCompose& compose,
                      std::uint32_t* __restrict words, std::uint32_t* __restrict cover)
{
    const tagXHsiTable& table = XfnGetHsiTable();
    for (int i = 0; i < n; ++i)
        words[i] = kOpaque | XfnHsiWord(table, compose.bytes[0][states[0][i] & kTableBits],
                                        compose.bytes[1][states[1][i] & kTableBits],
                                        compose.bytes[2][states[2][i] & kTableBits]);
    CoverRow(states, n, compose, cover);
}

void XfnStoreCoveredRow(const std::uint32_t* __restrict words,
                        const std::uint32_t* __restrict cover, int n,
                        std::uint32_t* __restrict surface)
{
    for (int i = 0; i < n; ++i)
        surface[i] = (words[i] & cover[i]) | (surface[i] & ~cover[i]) | kOpaque;
}

void XfnBlendRow(const std::uint32_t* __restrict words, int n, unsigned alpha,
                 std::uint32_t* __restrict surface)
{
    for (int i = 0; i < n; ++i)
        surface[i] = Mix(words[i], surface[i], alpha) | kOpaque;
}

void XfnBlendCoveredRow(const std::uint32_t* __restrict words,
                        const std::uint32_t* __restrict cover, int n, unsigned alpha,
                        std::uint32_t* __restrict surface)
{
    for (int i = 0; i < n; ++i)
        surface[i] =
            (Mix(words[i], surface[i], alpha) & cover[i]) | (surface[i] & ~cover[i]) | kOpaque;
}
