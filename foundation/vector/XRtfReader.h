#pragma once

#include "foundation/base/XApi.h"

#include <cstddef>

class XRichText;
class XString;

/// Reads rich text format (RTF 1.x, as word processors and editing widgets write it).
///
/// Understood: paragraphs and their alignment, line breaks, tabs; bold, italic, underline (every
/// kind of line is one), strike-out, colour, face and size; the font and colour tables; text in the
/// code page of the document or of the font (CP949 and other double-byte ones too), \u with its
/// skipped stand-ins and surrogate pairs, and the named quotes, dashes and spaces. Hidden text is
/// left out, table cells become tabs and rows paragraphs, fields show their result. Everything else
/// is passed over: pictures, style sheets, headers, notes, lists, and whatever is marked as
/// optional.
///
/// Missing closing braces are forgiven, and what follows the last one is ignored. The paragraph mark
/// at the end of the text begins no paragraph.
/// Failure: what does not begin as RTF, nests deeper than kXRtfMaxDepth or is longer than
/// kXRtfMaxBytes. Time and memory grow with the length of the input, nothing else.
/// Threads: any.
inline constexpr int kXRtfMaxDepth = 512;
inline constexpr std::size_t kXRtfMaxBytes = std::size_t{1} << 26;

/// @return 0 with a sentence in `error`; `text` is then as it was
XAPI int XfnReadRtf(const char* bytes, std::size_t size, XRichText& text, XString& error);
