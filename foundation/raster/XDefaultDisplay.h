#pragma once

#include "foundation/base/XApi.h"

class XDMComposite;
class XRSFile;

/// Gives every channel of a composite a first stretch that shows something sensible.
///
/// Byte bands are shown as they are (cut 0..255, linear), unless they fill less than half of that
/// range and the file does not call them red, green or blue; those, and other bands, are shown from
/// their 2nd to their 98th percentile. Percentiles come from the band's estimated histogram; where outliers squeeze it into
/// a few bins they are taken anew from the pixels of a coarse level. A constant band is shown
/// black, one without any data keeps 0..255. A gray class map, or gray band with a colour table, is
/// given that table as its colour table (CLT) unless it has more than 256 classes, others the
/// identity.
XAPI void XfnDefaultStretch(XDMComposite* composite);

/// Which bands of a file to show first.
///
/// By colour interpretation; else the bands that the file's header names; else those nearest to
/// 660, 550 and 470 nm where at least three bands tell their wavelength; else the first three. Alpha
/// bands and bands with a colour table are no colours. Fewer than three colours are shown gray.
/// @param rgb  band numbers from 0: red, green, blue; three times the same when gray
/// @return the composite mode that fits, 0 gray or 1 RGB; -1 without bands, then rgb is 0
XAPI int XfnDefaultBands(const XRSFile* file, int (&rgb)[3]);
