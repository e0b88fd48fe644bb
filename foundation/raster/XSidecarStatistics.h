#pragma once

#include "foundation/raster/XBandStatistics.h"

#include <map>

class GDALRasterBand;
class XString;

/// For the sources of this folder only: statistics in the XML of GDAL's auxiliary files.

/// The statistics by band number, from 1, that an auxiliary file holds; those that are no exact
/// numbers of real bands are left out. Empty for a file that cannot be read.
std::map<int, tagXBandStatistics> XfnReadSidecarStatistics(const XString& name);

/// Writes an auxiliary file as `name`: that of `old` with the statistics set in it.
/// @param old   may name no file
/// @return 0 with a sentence in `error`, which names `path`
int XfnWriteSidecarStatistics(const XString& old, const XString& name, const XString& path,
                              const std::map<int, tagXBandStatistics>& statistics, XString& error);

/// 1 when some samples can have this minimum, maximum, mean and deviation.
int XfnArePossible(const tagXBandStatistics& statistics);

/// Takes a stored histogram over when it is whole and has the bins of tagXBandStatistics.
void XfnTakeHistogram(double low, double high, const long long* counts, int bins,
                      tagXBandStatistics& statistics);
