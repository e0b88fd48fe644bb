#pragma once

#include "foundation/base/XApi.h"

class XString;

/// What can be said about a file before any reader sees it: it exists, is a plain file (a fifo or the
/// like would block a reader), is not empty and may be read.
/// @return 0 with a sentence in `error` that begins with the path in quotes
XAPI int XfnCheckInputFile(const XString& path, XString& error);
