#pragma once

#include <cstdint>

/// The inner loops of drawing: rows of samples to rows of screen words.
///
/// Between the stages a sample is a state: bits 0..7 its level after the cut range, bit 8 set when
/// it has data, bit 9 when it equals the channel's transparent value. Screen words are 0xFFRRGGBB.
/// Rows do not overlap. Nothing here checks its arguments, allocates or fails. Threads: any.

inline constexpr std::uint16_t kXStateData = 0x100;
inline constexpr std::uint16_t kXStateTransparent = 0x200;

/// The cut of a channel in one real type: level = (v - low) * scale + offset, held inside 0..255
/// and truncated; a half in `offset` makes it rounding. A null or transparent value of NaN is none.
template <class R>
struct tagXCut
{
    R low = 0;
    R scale = 1;
    R offset = R(0.5);
    R null;
    R transparent;
};

/// The same cut for the loops in float and in double, and as a table over the bit patterns of 8-bit
/// (256 states) and 16-bit types (65,536 states).
struct tagXDrawCut
{
    tagXCut<float> single;
    tagXCut<double> wide;
    const std::uint16_t* table = nullptr;
};

/// Samples to states. `index` holds the place of each sample in `src`, null when they lie in a row.
/// Complex samples count by their magnitude.
using XDrawStateRow = void (*)(const void* src, const int* index, int n, const tagXDrawCut& cut,
                               std::uint16_t* states);
/// @param dataType  band data type code 1..16; null for any other
XDrawStateRow XfnGetStateRow(int dataType, int isIndexed);

/// Fills the table of a type of 8 or 16 bits (codes 1 to 4).
/// @return non-zero when no pattern is without data or transparent
int XfnFillCutTable(int dataType, const tagXCut<double>& cut, std::uint16_t* table);
/// The bytes that the levels of n states lead to; n is a multiple of 64.
void XfnFillComponents(const std::uint16_t* states, int n, const std::uint8_t* bytes,
                       std::uint8_t* components);

/// Straight from samples to words, for channels of which every sample has data.
/// Three bytes through three tables of shifted words (256 entries each).
void XfnRgb8Row(const std::uint8_t* const src[3], int n, const std::uint32_t* const tables[3],
                std::uint32_t* words);
void XfnRgb8IndexedRow(const std::uint8_t* const src[3], const int* index, int n,
                       const std::uint32_t* const tables[3], std::uint32_t* words);
void XfnGray8Row(const std::uint8_t* src, const int* index, int n, const std::uint32_t* table,
                 std::uint32_t* words);
/// 16-bit patterns through 65,536 components a channel; channel 0 is blue.
void XfnRgb16Row(const std::uint16_t* const src[3], const int* index, int n,
                 const std::uint8_t* const tables[3], std::uint32_t* words);
/// 16-bit patterns through 65,536 levels, then through 256 words.
void XfnGray16Row(const std::uint16_t* src, const int* index, int n, const std::uint8_t* levels,
                  const std::uint32_t* table, std::uint32_t* words);

/// How the channels become a colour. Tables are indexed by the low nine bits of a state: the
/// entries below 256 are those of a sample without data.
struct tagXCompose
{
    std::uint32_t words[3][512]; ///< RGB: shifted components. Gray: words[0] whole colours
    std::uint8_t bytes[3][512];  ///< HSI: hue, saturation, intensity
    std::uint32_t keep[3];     ///< bits of the word that a transparent sample of the channel spares
    std::uint16_t notAsked[3]; ///< kXStateTransparent where the channel has no say in "as one"
    std::uint16_t asOne;       ///< kXStateTransparent when transparent values apply as one
};

/// `cover` is 0x00FFFFFF where the word counts and has bytes of 0 where what lies below stays.
void XfnComposeGrayRow(const std::uint16_t* const states[3], int n, const tagXCompose& compose,
                       std::uint32_t* words, std::uint32_t* cover);
void XfnComposeRgbRow(const std::uint16_t* const states[3], int n, const tagXCompose& compose,
                      std::uint32_t* words, std::uint32_t* cover);
void XfnComposeHsiRow(const std::uint16_t* const states[3], int n, const tagXCompose& compose,
                      std::uint32_t* words, std::uint32_t* cover);

/// alpha 0..255: (word * alpha + below * (255 - alpha)) / 255 a component, rounded.
void XfnStoreCoveredRow(const std::uint32_t* words, const std::uint32_t* cover, int n,
                        std::uint32_t* surface);
void XfnBlendRow(const std::uint32_t* words, int n, unsigned alpha, std::uint32_t* surface);
void XfnBlendCoveredRow(const std::uint32_t* words, const std::uint32_t* cover, int n,
                        unsigned alpha, std::uint32_t* surface);

/// Edge based positions to pixels; outside the level the column is -1 and the row 0. NaN is
/// outside.
void XfnPlacePixels(const double* positionsX, const double* positionsY, int n, int width,
                    int height, int* columns, int* rows);

/// Samples to reals, null values to NaN. Codes as XfnIsWideType: float or double comes out.
using XDrawLoadRow = void (*)(const void* src, int n, const tagXDrawCut& cut, void* reals);
XDrawLoadRow XfnGetLoadRow(int dataType);
/// 1 for the types that need double between load and cut: 32-bit integers, doubles and their
///                   complex.
int XfnIsWideType(int dataType);

/// Two source rows, the second with weight `part`, to sums of value times weight and of weights
/// over the samples that are neither NaN nor `skip` (NaN: nothing to skip).
template <class R>
void XfnMixRows(const R* upper, const R* lower, R part, R skip, int n, R* values, R* weights);
/// Columns left and left + 1 of such sums, the second with weight parts[i]; both indices are given,
/// so that they may meet at an edge. NaN where no sample counts.
template <class R>
void XfnMixColumns(const R* values, const R* weights, const int* left, const int* right,
                   const R* parts, int n, R* out);
/// The two steps for rows in which every sample counts.
template <class R>
void XfnLerpRows(const R* upper, const R* lower, R part, int n, R* values);
template <class R>
void XfnLerpColumns(const R* values, const int* left, const int* right, const R* parts, int n,
                    R* out);
/// The same from the four neighbours of each pixel.
template <class R>
void XfnMixTaps(const R* const taps[4], const R* partsX, const R* partsY, R skip, int n, R* out);
