#pragma once

class XDMBand;

/// Full resolution pixels that a pixel of a level covers, along the axis where they are more.
double XfnGetLevelStep(const XDMBand& band, int level);

/// The coarsest level whose pixels are not larger than `step` full resolution pixels, so that a
/// screen pixel of that step has a pixel of its own; level 0 when there is none. A level may be
/// larger by one part in a hundred, since levels are rounded to whole pixels. NaN gives level 0.
int XfnChooseLevel(const XDMBand& band, double step);
