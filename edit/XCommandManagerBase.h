#pragma once

#include "edit/XCommandManager.h"

/// The manager of the extended view: the same commands, with two calls that its tools know.
class XAPI XCommandManagerBase : public XCommandManager
{
public:
    using XCommandManager::CloneObject;
    /// @param addToWarehouse  0 leaves the clone of a picture or raster patch out of the counts, for
    ///                        copies that are deleted plainly and never come into a list
    XvcObj* CloneObject(const XvcObj* object, int addToWarehouse);
    static int GetObjIndexFromList(const XObList* list, const XObject* object)
    {
        return GetIndexOfList(list, object);
    }
};
