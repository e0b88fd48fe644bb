#pragma once

#include "foundation/base/XString.h"

#include <cstdint>

/// Bytes of memory that can still be used without swapping; 0 when the system does not tell.
/// Any thread.
XAPI std::uint64_t XfnGetAvailablePhysicalMemory();

/// 1 when the disk that holds `path` has at least `bytes` free for this user. The path need not
/// exist: the nearest folder above it that does counts. 0 also when no such folder is found.
XAPI int XfnIsDiskSpaceEnough(const char* path, std::uint64_t bytes);

/// The name ("ENOENT") and the English sentence of a system error number; a number that the system
/// does not know leaves the name empty and tells the number in the text. Any thread.
/// @return 0 for an unknown number.
XAPI int XfnGetErrorString(int code, XString& name, XString& text);
