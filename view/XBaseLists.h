#pragma once

#include "foundation/base/XObList.h"
#include "foundation/vector/XvcBase.h"

/// Visits the bases of the inner list, then those of the external one.
template <class Visit>
void XfnForEachBase(const XObList& inner, const XObList& external, Visit visit)
{
    for (const XObList* list : {&inner, &external})
        for (__POSITION* pos = list->GetHeadPosition(); pos;)
            if (auto* base = dynamic_cast<XvcBase*>(list->GetNext(pos))) visit(*base);
}
