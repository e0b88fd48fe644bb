#pragma once

#include "foundation/base/XColor.h"

#include <string>

/// How letters look. Sizes are half points, 72 points to the inch, as rich text counts them.
struct tagXCharFormat
{
    /// The parts of a format, for operations that change or compare some of them.
    enum Part : unsigned {
        kFace = 1,
        kSize = 2,
        kColour = 4,
        kBold = 8,
        kItalic = 16,
        kUnderline = 32,
        kStrikeOut = 64,
        kAll = 127
    };
    static constexpr int kMaxHalfPoints = 3276;
    static constexpr int kMaxFaceBytes = 255;

    std::string face{};   ///< UTF-8; empty: the face of whatever shows the text
    int halfPoints = 20;  ///< 1 to kMaxHalfPoints
    tagXColor colour = 0; ///< opaque; 0: the colour of whatever shows the text
    bool isBold = false;
    bool isItalic = false;
    bool isUnderline = false;
    bool isStrikeOut = false;

    /// Takes the parts of `mask` over from `other`.
    void Merge(const tagXCharFormat& other, unsigned mask)
    {
        if (mask & kFace) face = other.face;
        if (mask & kSize) halfPoints = other.halfPoints;
        if (mask & kColour) colour = other.colour;
        if (mask & kBold) isBold = other.isBold;
        if (mask & kItalic) isItalic = other.isItalic;
        if (mask & kUnderline) isUnderline = other.isUnderline;
        if (mask & kStrikeOut) isStrikeOut = other.isStrikeOut;
    }

    /// The parts in which both are alike.
    unsigned Compare(const tagXCharFormat& other) const
    {
        return (face == other.face ? kFace : 0u) | (halfPoints == other.halfPoints ? kSize : 0u) |
               (colour == other.colour ? kColour : 0u) | (isBold == other.isBold ? kBold : 0u) |
               (isItalic == other.isItalic ? kItalic : 0u) |
               (isUnderline == other.isUnderline ? kUnderline : 0u) |
               (isStrikeOut == other.isStrikeOut ? kStrikeOut : 0u);
    }

    friend bool operator==(const tagXCharFormat&, const tagXCharFormat&) = default;
};
