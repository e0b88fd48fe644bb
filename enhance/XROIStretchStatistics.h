#pragma once

#include "enhance/XStretchModel.h"

class XDMCompManager;
class XThread;

/// A polygon in world coordinates; the two arrays are of one length.
struct tagXROIPolygon
{
    std::vector<double> x;
    std::vector<double> y;
};

/// Statistics of the pixels of all composites of a manager under polygons, one source a display
/// channel: the first alone when every composite is gray or a vector one, else three. Pixels
/// under two polygons count twice. Standard deviations divide by n - 1; fewer than two pixels
/// have none (0). A polygon that cannot be read, or has no room in memory, is left out.
///
/// Runs on a worker: reads the composites, which nobody changes meanwhile.
/// @param sources  channels that were not computed hold no numbers
/// @param thread   receives percents and is asked for its stop flag between polygons; may be null
/// @return 0 after a stop; then `sources` is as it was
XAPI int
XfnCalcROIStretchStatistics(const XDMCompManager& manager,
                            const std::vector<tagXROIPolygon>& polygons, XThread* thread,
                            std::array<tagXStretchSource, XStretchModel::kChannels>& sources);
