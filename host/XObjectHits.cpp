#include "host/XObjectHits.h"

#include "foundation/base/XVector3.h"
#include "foundation/vector/XHitFlag.h"
#include "foundation/vector/XvcLayer.h"

#include <algorithm>

namespace {

/// Calls `visit` with the layers that are shown, front to back, until it answers true.
template <class Visit>
void VisitShown(const XVectorStack& vectors, const Visit& visit)
{
    for (int i = 0; i < vectors.GetCount(); ++i) {
        const tagXVectorFile& file = *vectors.GetAt(i);
        if (file.base->IsHidden()) continue;
        for (int j = 0; j < static_cast<int>(file.layers.size()); ++j) {
            XvcLayer& layer = *file.layers[static_cast<std::size_t>(j)].layer;
            if (!layer.IsHidden() && visit(tagXVectorPlace{i, j}, layer)) return;
        }
    }
}

XvcObj* Hit(XvcLayer& layer, const tagXClickPlace& place, tagXHitFlag& hit)
{
    return layer.HitTest({place.x, place.y, 0}, place.toleranceX, place.toleranceY, hit);
}

bool IsWithin(const tagXVectorPlace& layer, const tagXVectorPlace& place)
{
    return layer.file == place.file && (place.layer < 0 || layer.layer == place.layer);
}

std::vector<XvcObj*> ListHits(const XVectorStack& vectors, const tagXClickPlace& place)
{
    std::vector<XvcObj*> hits;
    VisitShown(vectors, [&](const tagXVectorPlace&, XvcLayer& layer) {
        if (layer.IsLocked()) return false;
        for (__POSITION* pos = layer.GetTailPosition(); pos;) {
            auto* const object = dynamic_cast<XvcObj*>(layer.GetPrev(pos));
            tagXHitFlag hit;
            if (object && !object->IsHidden() &&
                object->HitTest({place.x, place.y, 0}, place.toleranceX, place.toleranceY, hit))
                hits.push_back(object);
        }
        return false;
    });
    return hits;
}

} // namespace

XvcObj* XfnHitPreferred(const XVectorStack& vectors, tagXVectorPlace preferred,
                        const tagXClickPlace& place, tagXHitFlag& hit)
{
    XvcObj* first = nullptr;
    tagXHitFlag found;
    VisitShown(vectors, [&](const tagXVectorPlace& at, XvcLayer& layer) {
        const bool isWanted = IsWithin(at, preferred);
        if (layer.IsLocked() || (first && !isWanted)) return false;
        tagXHitFlag own;
        XvcObj* const object = Hit(layer, place, own);
        if (!object) return false;
        first = object;
        found = own;
        return isWanted;
    });
    if (first) hit = found;
    return first;
}

XvcObj* XfnHitBelow(const XVectorStack& vectors, const XvcObj* object, const tagXClickPlace& place)
{
    const std::vector<XvcObj*> hits = ListHits(vectors, place);
    const auto at = std::find(hits.begin(), hits.end(), object);
    if (at == hits.end() || hits.size() < 2) return nullptr;
    return at + 1 == hits.end() ? hits.front() : *(at + 1);
}

bool XfnIsHit(const XVectorStack& vectors, const XvcObj* object, const tagXClickPlace& place)
{
    const std::vector<XvcObj*> hits = ListHits(vectors, place);
    return std::find(hits.begin(), hits.end(), object) != hits.end();
}

tagXVectorPlace XfnHitLocked(const XVectorStack& vectors, const tagXClickPlace& place,
                             XvcObj*& object)
{
    tagXVectorPlace locked;
    VisitShown(vectors, [&](const tagXVectorPlace& at, XvcLayer& layer) {
        if (!layer.IsLocked()) return false;
        const int before = layer.IsHitTestable();
        layer.SetHitTestable(1);
        tagXHitFlag hit;
        XvcObj* const found = Hit(layer, place, hit);
        layer.SetHitTestable(before);
        if (!found) return false;
        object = found;
        locked = at;
        return true;
    });
    return locked;
}

XvcObj* XfnNextInLayer(const XvcLayer& layer, const XvcObj* object, bool isForward)
{
    const auto step = [&](__POSITION*& pos) {
        return dynamic_cast<XvcObj*>(isForward ? layer.GetNext(pos) : layer.GetPrev(pos));
    };
    const auto begin = [&] {
        return isForward ? layer.GetHeadPosition() : layer.GetTailPosition();
    };
    bool isBehind = false;
    XvcObj* first = nullptr;
    for (__POSITION* pos = begin(); pos;) {
        XvcObj* const next = step(pos);
        if (next == object && object) {
            isBehind = true;
        } else if (next && !next->IsHidden()) {
            if (isBehind) return next;
            if (!first) first = next;
        }
    }
    // a layer of one object answers that one
    if (first || !isBehind || !object || object->IsHidden()) return first;
    return const_cast<XvcObj*>(object);
}
