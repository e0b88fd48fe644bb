#pragma once

#include "foundation/base/XString.h"

/// The parts of a path, as text; no file is touched. A path separates its parts with '/'. One that
/// starts with a drive letter and a colon, starts with two backslashes or holds no '/' is taken as
/// written elsewhere and separates them with '\' as well.

/// The folder, without a separator at its end unless it is a root ("/" or "C:\"); empty when the
/// path has no folder.
XAPI XString XfnGetDirName(const char* path);

/// What stands behind the last separator.
XAPI XString XfnGetFileName(const char* path);

/// What stands behind the last point of the file name, as written; empty when there is no point or
/// only one that starts the name.
XAPI XString XfnGetFileExt(const char* path);

/// The file name without its extension and the point.
XAPI XString XfnGetFileTitle(const char* path);

/// Folder and name with one '/' between them; the name alone when the folder is empty.
XAPI XString XfnJoinPath(const char* folder, const char* name);
