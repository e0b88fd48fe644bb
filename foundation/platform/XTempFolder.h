#pragma once

#include "foundation/base/XApi.h"
#include "foundation/base/XString.h"

/// The directory for temporary files of long work, made if it is missing: "Temp" beside the folder
/// of the library where the user may write there, else in the user's cache.
/// @return its path, empty when neither can be made. Any thread.
XAPI XString XfnMakeTempFolder();
