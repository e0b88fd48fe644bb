#pragma once

#include "foundation/base/XString.h"

#include <cstddef>

/// The 8-bit code page of narrow text: what XString holds and what report files are written in.
///
/// 65001 (UTF-8) unless a host asks for another. Set it once, before other threads run; reading is
/// safe from any thread.

inline constexpr int kXCodePageUtf8 = 65001;
inline constexpr int kXCodePageKorean = 949;

/// @param codePage  65001, 949 or 1250 to 1258
/// @return 0 when the code page is not offered; the old one stays.
XAPI int XfnSetCodePage(int codePage);
XAPI int XfnGetCodePage();

/// Narrow text to UTF-8 and back. A character the target lacks becomes '?'; bytes that are no
/// character become U+FFFD. Where both are UTF-8 the bytes pass unchanged.
XAPI XString XfnTextToUtf8(const XString& text);
XAPI XString XfnTextFromUtf8(const XString& utf8);

/// The same with the code page named, for files whose encoding is fixed. Files may be in more code
/// pages than a process may run in: 437, 850, 852, 866, 874, 932, 936, 950, 1361 and 10000 too. In a
/// code page that is not known the bytes pass unchanged.
XAPI int XfnIsCodePageKnown(int codePage);
XAPI XString XfnCodePageToUtf8(int codePage, const XString& text);
XAPI XString XfnUtf8ToCodePage(int codePage, const XString& utf8);

/// `count` wide characters (UTF-32) to narrow text.
XAPI XString XfnWideToText(const wchar_t* text, std::size_t count);

/// 1 when `byte` starts a double-byte character of the code page in use (never in UTF-8, whose
/// later bytes cannot be taken for anything else).
XAPI int XfnIsLeadByte(unsigned char byte);

/// The largest count not above `count` that does not cut a character of the `length` bytes at
/// `text` in two.
XAPI int XfnFitToCharacter(const char* text, int length, int count);

/// 1 when byte `index` of `text` is the second byte of a double-byte character. Looks at every byte
/// before it; always 0 in a code page without such characters.
XAPI int XfnIsTrailByte(const char* text, int index);
