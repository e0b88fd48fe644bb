#include "view/XCompositeStack.h"

#include "foundation/raster/XDMCompManager.h"
#include "foundation/raster/XDMComposite.h"

namespace {

// Sets the draw level of a composite for the time of a scope.
class ScopeLevel
{
public:
    ScopeLevel(XDMComposite& composite, int level)
        : m_composite(composite), m_before(composite.GetDrawLevel())
    {
        composite.SetDrawLevel(level);
    }
    ~ScopeLevel() { m_composite.SetDrawLevel(m_before); }
    ScopeLevel(const ScopeLevel&) = delete;
    ScopeLevel& operator=(const ScopeLevel&) = delete;

private:
    XDMComposite& m_composite;
    int m_before;
};

} // namespace

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
        const ScopeLevel level(*composite, levels ? levels[i] : composite->GetDrawLevel());
        composite->Draw(target, box.minX, box.minY, box.maxX, box.maxY, i == 0 ? 1 : 0, first,
                        abort);
    }
}
