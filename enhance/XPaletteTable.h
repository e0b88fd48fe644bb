#pragma once

#include "foundation/base/XApi.h"
#include "foundation/base/XColor.h"

#include <array>
#include <cstddef>

/// A colour table under edit: a colour for each of 256 display levels, and the anchors between which
/// colours are interpolated.
///
/// An entry is an anchor when its flag is 1. Other flags come out of files; they are kept and make no
/// anchor.
struct tagXPaletteTable
{
    static constexpr int kEntries = 256;

    std::array<unsigned char, kEntries> red{}, green{}, blue{};
    std::array<int, kEntries> anchors{};

    bool IsAnchor(int entry) const { return anchors[static_cast<std::size_t>(entry)] == 1; }
    tagXColor GetColor(int entry) const
    {
        const auto i = static_cast<std::size_t>(entry);
        return XfnMakeColor(red[i], green[i], blue[i]);
    }
    void SetColor(int entry, tagXColor color)
    {
        const auto i = static_cast<std::size_t>(entry);
        red[i] = static_cast<unsigned char>(XfnGetRed(color));
        green[i] = static_cast<unsigned char>(XfnGetGreen(color));
        blue[i] = static_cast<unsigned char>(XfnGetBlue(color));
    }
    friend bool operator==(const tagXPaletteTable&, const tagXPaletteTable&) = default;
};

/// Interpolates each colour between neighbouring anchors, in single precision; entries outside the
/// first and the last anchor stay as they are, and fewer than two anchors change nothing.
///
/// A span (a, b) runs on base + x * slope for x from a to b - 1, where slope = (c[b] - c[a]) / (b - a)
/// and base = c[a] - trunc(a * slope), truncated. Since base is a whole number, a falling span may
/// take one level from entry a itself, anew at every call.
XAPI void XfnInterpolatePalette(tagXPaletteTable& table);
