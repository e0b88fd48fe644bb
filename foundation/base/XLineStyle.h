#pragma once

#include "foundation/base/XApi.h"

#include <cstdint>

/// How a line is dashed. Copied as 16 bytes.
///
/// The pattern is 16 units long and repeats; its highest bit comes first, a set bit draws.
struct XAPI tagXLineStyle
{
    std::uint16_t pattern = 0xFFFF;
    std::uint16_t padding = 0;
    std::int32_t style = 0;
    std::uint32_t words[2] = {0, 0}; ///< kept and copied along

    /// The predefined styles by index.
    enum Predefined {
        kSolid,
        kRubberBand,
        kSelection,
        kDash,
        kDot,
        kNone, ///< no line: nothing is drawn
        kDashDot,
        kDashDotDot,
        kLongDash,
        kLongDashDot,
        kSparseDot,
    };
    static constexpr int kPredefinedCount = 11;

    tagXLineStyle() = default;
    explicit tagXLineStyle(int index) { SetStyle(index); }

    /// Sets the predefined style `index` and its pattern; an index that is not predefined gives
    /// the solid one.
    void SetStyle(int index);
    void SetStyle(unsigned short newPattern, int newStyle);
    int GetStyle() const { return style; }
    int IsNone() const { return style == kNone ? 1 : 0; }
    unsigned short GetPattern() const { return pattern; }

    /// The English name of a predefined style for lists, null for any other index.
    static const char* GetName(int index);

    friend bool operator==(const tagXLineStyle& a, const tagXLineStyle& b)
    {
        return a.pattern == b.pattern && a.style == b.style && a.words[0] == b.words[0] &&
               a.words[1] == b.words[1];
    }
};

static_assert(sizeof(tagXLineStyle) == 16);
