#pragma once

#include "foundation/base/XApi.h"
#include "foundation/base/XString.h"

#include <cstddef>

struct tagXvcDib;

/// Reads a BMP file that lies in memory.
///
/// Headers of 12 (the core header), 40, 52, 56, 64, 108 and 124 bytes; 1, 4, 8, 16, 24 and 32 bits a
/// pixel; uncompressed, run-length coded (4 and 8 bits, skips included) and with bit masks. Pictures
/// with masks become 32 bits a pixel, with their opacity when they have a mask for it and not
/// every pixel of it is 0; run-length coded ones become plain. Rows keep their order.
/// Rows that a file ends before are missing data and refused; what a run-length code leaves out is
/// colour 0. A run-length picture has at most 1 Mi pixels and 1024 more a byte of its code, so
/// that a few bytes never claim all memory.
/// @return 0 with a sentence in `error`; then `dib` is as it was
XAPI int XfnReadBmp(const unsigned char* bytes, std::size_t size, tagXvcDib& dib, XString& error);
