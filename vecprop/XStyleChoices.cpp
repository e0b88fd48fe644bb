#include "vecprop/XStyleChoices.h"

#include "foundation/base/XFillStyle.h"
#include "vecprop/XFieldList.h"

std::vector<tagXChoice> XfnGetLineStyleChoices(int current)
{
    std::vector<tagXChoice> choices;
    const auto add = [&choices](int style) {
        choices.push_back({style, tagXLineStyle::GetName(style)});
    };
    for (int style = 0; style < tagXLineStyle::kPredefinedCount; ++style) {
        const bool isMark =
            style == tagXLineStyle::kRubberBand || style == tagXLineStyle::kSelection;
        if (style != tagXLineStyle::kNone && (!isMark || style == current)) add(style);
    }
    add(tagXLineStyle::kNone);
    return choices;
}

std::vector<tagXChoice> XfnGetFillStyleChoices()
{
    return XfnMakeChoices(tagXFillStyle::kPredefinedCount, &tagXFillStyle::GetName);
}
