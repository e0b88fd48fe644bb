#pragma once

#include "foundation/base/XApi.h"

#include <atomic>

class XDMComposite;
class XRSFile;

/// Gives every channel of a composite a first stretch that shows something sensible.
///
/// Byte bands are shown as they are (cut 0..255, linear), unless they fill less than half of that
/// range and the file does not call them red, green or blue; those, and other bands, are shown from
/// their 2nd to their 98th percentile. Percentiles come from some pixels, evenly spread, of the
/// coarsest level of at least a million pixels, whose tiles are then in the cache for drawing; so a
/// second call gives what the first gave, whatever has been computed meanwhile. Where the file holds
/// no such level, they come from estimated statistics; where outliers squeeze that histogram into a
/// few bins, from pixels after all. A constant band is shown black, one without any data keeps
/// 0..255. A gray class map, or gray band with a colour table, is given that table as its colour
/// table (CLT) unless it has more than 256 classes, others the identity.
/// @param abort  ends the computation of statistics, which are then made at the next need; may be
///               null
XAPI void XfnDefaultStretch(XDMComposite* composite, const std::atomic<int>* abort = nullptr);

/// The same for a picture that must come soon: percentiles come from some pixels of one level of each
/// band alone, whose tiles are then in the cache for drawing; no statistics are computed.
/// @param level  of each band; held at its coarsest
/// @return 0 after an abort, or when a level that is needed cannot be read; the composite is then
///         half set up
XAPI int XfnDefaultStretch(XDMComposite* composite, int level, const std::atomic<int>* abort);

/// Which bands of a file to show first.
///
/// By colour interpretation; else the bands that the file's header names; else those nearest to
/// 660, 550 and 470 nm where at least three bands tell their wavelength; else the first three. Alpha
/// bands and bands with a colour table are no colours. Fewer than three colours are shown gray.
/// @param rgb  band numbers from 0: red, green, blue; three times the same when gray
/// @return the composite mode that fits, 0 gray or 1 RGB; -1 without bands, then rgb is 0
XAPI int XfnDefaultBands(const XRSFile* file, int (&rgb)[3]);
