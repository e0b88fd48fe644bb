#pragma once

#include "foundation/base/XApi.h"

#include <initializer_list>
#include <vector>

class XObList;
class XvcLayer;

/// The layers of a list of bases, layers and plain lists, to any depth; the list itself counts.
XAPI std::vector<XvcLayer*> XfnListLayers(XObList& list);

/// Those of some layers that are found nowhere below some lists of bases. They are not read, so
/// they may have gone. Objects are looked at only while a layer is missing among the layers of the
/// bases.
XAPI std::vector<XvcLayer*> XfnListMissingLayers(std::vector<XvcLayer*> layers,
                                                 std::initializer_list<const XObList*> bases);
