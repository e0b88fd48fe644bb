#pragma once

#include "enhance/XPaletteTable.h"
#include "foundation/base/XString.h"

// The .pal file: 256 records of red, green, blue and the low byte of the anchor flag, no header.

inline constexpr const char* kXPaletteFilter = "Palette files (*.pal)|*.pal|";

/// Reads a file over `table`. A file that is too short leaves the other bytes as they were, what a
/// longer one holds behind is not looked at. Whether it is a palette is told by its extension, "pal"
/// in small or capital letters, alone.
/// @return 0 with the table as it was and a sentence in `message`; the sentence is empty when the
///         file failed while it was read
XAPI int XfnReadPalette(const XString& path, tagXPaletteTable& table, XString& message);

/// Writes a table; what the file held before survives a failure.
/// @return 0 with a sentence in `message`, which is empty when the file failed after it was opened
XAPI int XfnWritePalette(const XString& path, const tagXPaletteTable& table, XString& message);

/// The path under which a palette is saved when `path` was typed: without an extension ".pal" is
/// added, and one that is not "pal" is replaced. It is replaced wherever its letters, made small,
/// stand in the path, in folders too, so that one typed in capitals stays.
XAPI XString XfnGetPaletteSavePath(const XString& path);
