#pragma once

#include "foundation/base/XString.h"

/// For the sources of this folder only: the files that make up a shapefile, looked at before its
/// reader is asked, which gives up at the first of them that is cut short.
struct tagXShapeParts
{
    XString table;     ///< the .dbf; empty without one, as are the others
    XString index;     ///< the .shx, when it is as long as its head says
    XString reference; ///< the .prj
    bool isIndexCut = false;
    bool isCut = false;       ///< the .shp ends before its head says
    long long tableRows = -1; ///< whole records in the table; -1 when its head makes no sense
};

tagXShapeParts XfnFindShapeParts(const XString& path);

/// The file beside `path` with another extension, in either case of letters, that can be read;
/// empty when there is none.
XString XfnFindBeside(const XString& path, const char* extension);

/// Whether a file begins like a .shp and ends within its head of 100 bytes.
bool XfnIsShapeHeadCut(const XString& path);

/// Writes an index of the shapes that lie in a .shp as a whole, up to the first that does not.
/// @return how many they are; -1 when the first is no shapefile, or one cannot be read or written
long long XfnWriteShapeIndex(const XString& shapes, const XString& index);
