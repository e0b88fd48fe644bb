#pragma once

#include "foundation/base/XString.h"

class XRichText;

/// Writes rich text format that XfnReadRtf reads back exactly and any word processor understands:
/// seven-bit text, letters beyond ASCII as \u, a font table and a colour table. Korean names of
/// faces stand in the font table in CP949 under its character set.
XAPI XString XfnWriteRtf(const XRichText& text);
