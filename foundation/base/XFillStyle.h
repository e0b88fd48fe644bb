#pragma once

#include "foundation/base/XApi.h"

#include <cstdint>
#include <cstring>

/// How an area is filled: a pattern of 32 rows of 32 bits, then the style code.
///
/// A row is 4 bytes, its leftmost pixel the highest bit of the first. A set bit takes the fore
/// colour; a clear one the back colour or nothing, as the object says.
struct XAPI tagXFillStyle
{
    static constexpr int kPatternBytes = 128;

    unsigned char pattern[kPatternBytes];
    std::int32_t style = kSolid;

    /// The predefined styles by index, and the code of a pattern of one's own.
    enum Predefined {
        kSolid,
        kNone, ///< no fill: nothing is drawn
        kHorizontal,
        kVertical,
        kForwardDiagonal,  ///< rises to the right
        kBackwardDiagonal, ///< falls to the right
        kCross,
        kDiagonalCross,
        kDense75 = 9, ///< 8 is left out: editors mean "several styles" by it
        kDense50,
        kDense25,
        kDense12,
        kDots,
        kChecker,
        kBrick,
        kWave,
        kCustom = 1024,
    };
    static constexpr int kPredefinedCount = 17; ///< one past the last index

    tagXFillStyle() { std::memset(pattern, 0xFF, sizeof pattern); } ///< solid
    explicit tagXFillStyle(int index) { SetStyle(index); }

    /// Sets the predefined style `index` and its pattern; an index that is not predefined gives
    /// kNone.
    void SetStyle(int index);
    /// Copies 128 bytes; the style code becomes kCustom.
    void SetStyle(const unsigned char* newPattern);
    int GetStyle() const { return style; }
    int IsNone() const { return style == kNone ? 1 : 0; }
    const unsigned char* GetPattern() const { return pattern; }

    /// 1 when the pattern draws the pixel; positions repeat every 32.
    int IsSet(int x, int y) const
    {
        return pattern[(y & 31) * 4 + (x & 31) / 8] >> (7 - (x & 7)) & 1;
    }

    /// The English name of a predefined style for lists, null for any other index.
    static const char* GetName(int index);

    friend bool operator==(const tagXFillStyle&, const tagXFillStyle&) = default;
};

static_assert(sizeof(tagXFillStyle) == 132);
