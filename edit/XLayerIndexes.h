#pragma once

#include "edit/XLayerIndex.h"

/// One XLayerIndex for each layer that a command touches.
class XLayerIndexes
{
public:
    XLayerIndex& Of(XvcLayer& layer)
    {
        std::unique_ptr<XLayerIndex>& index = m_indexes[&layer];
        if (!index) index = std::make_unique<XLayerIndex>(layer);
        return *index;
    }

private:
    std::unordered_map<const XvcLayer*, std::unique_ptr<XLayerIndex>> m_indexes;
};
