#pragma once

#include "edit/XLayerRef.h"
#include "foundation/base/XApi.h"

#include <initializer_list>
#include <vector>

class XObList;

/// The layers of a list of bases, layers and plain lists, to any depth; the list itself counts.
XAPI std::vector<XvcLayer*> XfnListLayers(XObList& list);

/// Those of some layers that are found nowhere below some lists of bases. They are not read, so
/// they may have gone. Objects are looked at only while a layer is missing among the layers of the
/// bases.
XAPI std::vector<tagXLayerRef> XfnListMissingLayers(std::vector<tagXLayerRef> layers,
                                                    std::initializer_list<const XObList*> bases);
