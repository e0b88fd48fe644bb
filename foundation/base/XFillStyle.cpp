#include "foundation/base/XFillStyle.h"

#include <cstring>

namespace {

using Style = tagXFillStyle;

/// Whether the predefined fill draws the pixel; every rule repeats within 32.
bool IsDrawn(int style, int x, int y)
{
    switch (style) {
    case Style::kSolid:
        return true;
    case Style::kHorizontal:
        return y % 8 == 4;
    case Style::kVertical:
        return x % 8 == 4;
    case Style::kForwardDiagonal:
        return (x + y) % 8 == 7;
    case Style::kBackwardDiagonal:
        return (x - y + 32) % 8 == 0;
    case Style::kCross:
        return x % 8 == 4 || y % 8 == 4;
    case Style::kDiagonalCross:
        return (x + y) % 8 == 7 || (x - y + 32) % 8 == 0;
    case Style::kDense75:
        return x % 2 != 0 || y % 2 != 0;
    case Style::kDense50:
        return (x + y) % 2 == 0;
    case Style::kDense25:
        return x % 2 == 0 && y % 2 == 0;
    case Style::kDense12:
        return y % 2 == 0 && x % 4 == (y % 4 == 0 ? 0 : 2);
    case Style::kDots:
        return x % 8 == 2 && y % 8 == 2;
    case Style::kChecker:
        return (x / 8 + y / 8) % 2 == 0;
    case Style::kBrick:
        return y % 8 == 0 || x % 16 == (y / 8 % 2 == 0 ? 0 : 8);
    case Style::kWave:
        return y % 8 == (x % 8 < 4 ? x % 8 : 7 - x % 8) + 2;
    default:
        return false;
    }
}

constexpr const char* kNames[Style::kPredefinedCount] = {
    "Solid",
    "None",
    "Horizontal",
    "Vertical",
    "Forward diagonal",
    "Backward diagonal",
    "Cross",
    "Diagonal cross",
    nullptr,
    "Dense 75 %",
    "Dense 50 %",
    "Dense 25 %",
    "Dense 12 %",
    "Dots",
    "Checker",
    "Brick",
    "Wave",
};

bool IsPredefined(int index)
{
    return index >= 0 && index < Style::kPredefinedCount && kNames[index];
}

struct Patterns
{
    unsigned char bytes[Style::kPredefinedCount][Style::kPatternBytes] = {};

    Patterns()
    {
        for (int style = 0; style < Style::kPredefinedCount; ++style)
            for (int y = 0; y < 32; ++y)
                for (int x = 0; x < 32; ++x)
                    if (IsDrawn(style, x, y)) bytes[style][y * 4 + x / 8] |= 0x80 >> x % 8;
    }
};

} // namespace

void tagXFillStyle::SetStyle(int index)
{
    static const Patterns patterns; // files set the style of each object anew
    style = IsPredefined(index) ? index : kNone;
    std::memcpy(pattern, patterns.bytes[style], sizeof pattern);
}

void tagXFillStyle::SetStyle(const unsigned char* newPattern)
{
    std::memcpy(pattern, newPattern, sizeof pattern);
    style = kCustom;
}

const char* tagXFillStyle::GetName(int index)
{
    return IsPredefined(index) ? kNames[index] : nullptr;
}
