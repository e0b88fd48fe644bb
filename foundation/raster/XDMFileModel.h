#pragma once

#include "foundation/raster/XDMFileInfo.h"

class XDMBand;
class XRSFile;

/// For the sources of this folder only: the records of a native file to the model and back.

/// The records of `band` but for levels and compression. Computes statistics where there are none.
/// @return 0 with a sentence without its full stop in `reason`, for a radar record that cannot
///         store itself
int XfnDescribeToXDM(const XDMBand& band, tagXDMFileBand& out, XString& reason);
/// The same for what the file holds apart from its bands.
int XfnDescribeToXDM(XRSFile& file, tagXDMFileInfo& out, XString& reason);

/// Gives all that `record` says to `band`, whose layout stands.
/// @return a sentence for what makes no sense and was left out; empty for nothing
XString XfnDescribeFromXDM(const tagXDMFileBand& record, int useStatistics, XDMBand& band);
/// The rest, into a file that has its bands.
void XfnDescribeFromXDM(const tagXDMFileInfo& info, XRSFile& file);

/// The part of both that is regions and signatures.
void XfnDescribeRegionsToXDM(const XRSFile& file, tagXDMFileInfo& out);
/// @return as above
XString XfnDescribeRegionsFromXDM(const tagXDMFileInfo& info, XRSFile& file);
