#pragma once

#include "foundation/base/XString.h"
#include "foundation/raster/XBandStatistics.h"

class XDMBand;
struct tagXSaveControl;

/// The numbers and the histogram of a band from every pixel at full resolution, on several threads.
///
/// Samples of one and two bytes are counted by value in a single pass, which gives exact sums; others
/// take one pass for the numbers and one for the histogram. The result does not depend on the number
/// of threads.
/// @param control  gets percents; its stop flags are polled between tiles
/// @return 0 after a stop (`message` is empty) or when a part cannot be read; `statistics` is then
///         as it was
int XfnCalcExactStatistics(const XDMBand& band, const tagXSaveControl& control,
                           tagXBandStatistics& statistics, XString& message);
