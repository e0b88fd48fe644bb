#include "view/XLayerWalk.h"

#include "foundation/base/XObList.h"
#include "foundation/vector/XvcLayer.h"

#include <algorithm>

namespace {

XObList* AsList(XObject* element)
{
    const bool isList = XfnIsExactly(element, "XvcLayer") || XfnIsExactly(element, "XvcBase") ||
                        XfnIsExactly(element, "XObList");
    return isList ? static_cast<XObList*>(element) : nullptr;
}

} // namespace

std::vector<XvcLayer*> XfnListLayers(XObList& list)
{
    std::vector<XvcLayer*> layers;
    std::vector<XObList*> lists{&list};
    for (std::size_t i = 0; i < lists.size(); ++i) {
        XObList& at = *lists[i];
        if (auto* layer = dynamic_cast<XvcLayer*>(&at)) layers.push_back(layer);
        for (__POSITION* pos = at.GetHeadPosition(); pos;)
            if (XObList* below = AsList(at.GetNext(pos))) lists.push_back(below);
    }
    return layers;
}

std::vector<tagXLayerRef> XfnListMissingLayers(std::vector<tagXLayerRef> layers,
                                               std::initializer_list<const XObList*> bases)
{
    // breadth first: the layers of all bases come before the objects of any
    std::vector<const XObList*> lists(bases);
    for (std::size_t i = 0; i < lists.size(); ++i) {
        for (__POSITION* pos = lists[i]->GetHeadPosition(); pos;) {
            if (layers.empty()) return layers;
            const XObList* const below = AsList(lists[i]->GetNext(pos));
            if (!below) continue;
            lists.push_back(below);
            if (const auto* found = dynamic_cast<const XvcLayer*>(below))
                std::erase_if(layers, [found](const tagXLayerRef& list) {
                    return list.layer == found &&
                           (!list.number || list.number == found->GetNumber());
                });
        }
    }
    return layers;
}
