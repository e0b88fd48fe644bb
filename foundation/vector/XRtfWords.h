#pragma once

#include <string_view>

/// What a control word of rich text format does to its reader. Internal to the reader.
enum class XRtfAction : unsigned char {
    Ignore,
    Character, ///< value: its code
    Paragraph,
    Row,
    Bold,
    Italic,
    Underline,
    UnderlineOff,
    StrikeOut,
    Hidden,
    Face,
    Size,
    Colour,
    Plain,
    ParagraphPlain,
    Align, ///< value: XParagraphAlign
    StandIns,
    Unicode,
    Binary,
    DefaultFace,
    CodePage,   ///< value: the code page
    CodePageOf, ///< the parameter is the code page
    FaceCharSet,
    FaceCodePage,
    FaceTable,
    ColourTable,
    Red,
    Green,
    Blue,
    Skip,        ///< a group that is no text
    Alternative, ///< a group of two forms of one text, the Unicode one marked as optional
    AlternativeText
};

struct tagXRtfWord
{
    std::string_view name;
    XRtfAction action = XRtfAction::Ignore;
    int value = 0;
};

/// The word of this name, one that is ignored when it is not known.
tagXRtfWord XfnFindRtfWord(std::string_view name);

/// The code page of a character set of the font table; 0 for that of the document.
int XfnGetRtfCodePage(int charSet);
inline constexpr int kXRtfSymbolPage = -2; ///< of signs, not letters
