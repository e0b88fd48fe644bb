#pragma once

#include "foundation/base/XString.h"

#include <vector>

class XVectorJob;
class XvcBase;
struct tagXVectorFileInfo;

/// For the sources of this folder only: vector files through GDAL's readers.

/// Fills an empty base.
/// @param drivers  names of the readers to ask, in a list that ends in null; an empty one asks all
///                 that read local files
/// @return 0 with a sentence in `error`, or after a stop
int XfnImportOgr(XVectorJob& job, const char* const* drivers, XvcBase& base, XString& error);

int XfnGetOgrInfo(XVectorJob& job, const char* const* drivers, tagXVectorFileInfo& info,
                  XString& error);

/// 1 when a reader knows the file by its head.
int XfnIsOgrFile(const XString& path);

std::vector<XString> XfnGetOgrExtensions(); ///< lower case, each once
