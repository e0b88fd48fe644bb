#pragma once

#include "foundation/base/XApi.h"

#include <cstdint>

/// A font as stored with text objects; units and codes are those of the classic font record.
///
/// Texts are drawn with the face, weight, italic, underline and strike-out, and with the height
/// where the text has none of its own. Everything else is carried along and drawn with nowhere:
/// a text has an angle of its own, letters keep the width of the face, and which bytes make a
/// letter is settled by the code page of the process.
struct XAPI tagXFontRecord
{
    std::int32_t height = 0; ///< pixels: of a line when positive, of the letters when negative
    std::int32_t width = 0;
    std::int32_t escapement = 0;
    std::int32_t orientation = 0;
    std::int32_t weight = 400; ///< 400 normal, 700 bold
    std::uint8_t italic = 0;
    std::uint8_t underline = 0;
    std::uint8_t strikeOut = 0;
    std::uint8_t charSet = 1;
    std::uint8_t outPrecision = 2;
    std::uint8_t clipPrecision = 1;
    std::uint8_t quality = 0;
    std::uint8_t pitchAndFamily = 0;
    char faceName[32] = "Courier New"; ///< ends with a zero byte

    /// Stores a face name; a longer one is cut between two characters to 31 bytes.
    void SetFaceName(const char* name);

    friend bool operator==(const tagXFontRecord&, const tagXFontRecord&) = default;
};

/// The style of a text: one word that is only kept and copied, and a font. A new one is the style
/// that a view starts with.
struct tagXTextStyle
{
    std::uint32_t word = 33;
    tagXFontRecord font;

    friend bool operator==(const tagXTextStyle&, const tagXTextStyle&) = default;
};

static_assert(sizeof(tagXFontRecord) == 60 && sizeof(tagXTextStyle) == 64);
