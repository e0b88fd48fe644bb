#include "view/XCompositeStack.h"

#include "foundation/raster/XDMCompManager.h"
#include "foundation/raster/XDMComposite.h"

std::vector<XDMComposite*> XfnListComposites(XDMCompManager* manager)
{
    std::vector<XDMComposite*> stack;
    const long count = manager ? manager->GetNumberOfXDMComposite() : 0;
    for (long i = 0; i < count; ++i)
        if (XDMComposite* composite = manager->GetXDMCompositeAt(static_cast<int>(i)))
            stack.push_back(composite);
    return stack;
}

void XfnDrawCompositeStack(const std::vector<XDMComposite*>& stack, XBackBuffer* target,
                           const tagXWorldBox& box, std::uint32_t backColor, const int* levels,
                           std::atomic<int>* abort)
{
    XDMComposite* const first = stack.size() > 1 ? stack.back() : nullptr;
    for (std::size_t i = stack.size(); i-- > 0;) {
        XDMComposite* const composite = stack[i];
        composite->SetBackColor(backColor);
        if (levels) composite->SetDrawLevel(levels[i]);
        composite->Draw(target, box.minX, box.minY, box.maxX, box.maxY, i == 0 ? 1 : 0, first,
                        abort);
    }
}
