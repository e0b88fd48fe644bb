#include "dialogs/XButtonPanelModel.h"

#include <algorithm>

namespace {

constexpr tagXPanelButton kButtons[] = {
    {kXPropPresets, "Enhance", XSign::Enhance},
    {kXPropVisiblePresets, "Enhance", XSign::Enhance},
    {kXPropStretch, "Stretch...", XSign::Stretch},
    {kXPropZoomRect, "Zoom to Rectangle", XSign::ZoomRect},
    {kXPropOneToOne, "One to One", XSign::OneToOne},
    {kXPropZoomIn, "Zoom In", XSign::ZoomIn},
    {kXPropZoomOut, "Zoom Out", XSign::ZoomOut},
    {kXPropFit, "Fit", XSign::Fit},
    {kXPropThumb, "Overview", XSign::Overview},
};

} // namespace

const tagXPanelButton* XButtonPanelModel::FindButton(int id)
{
    const auto* found = std::ranges::find(kButtons, id, &tagXPanelButton::id);
    return found == std::end(kButtons) ? nullptr : found;
}

int XButtonPanelModel::Add(int id)
{
    if (id != kXPropSeparator && (!FindButton(id) || std::ranges::count(m_entries, id))) return 0;
    m_entries.push_back(id);
    return 1;
}

int XButtonPanelModel::GetPresetForm() const
{
    if (std::ranges::count(m_entries, int{kXPropPresets})) return 1;
    return std::ranges::count(m_entries, int{kXPropVisiblePresets}) ? 2 : 0;
}

std::vector<XButtonPanelModel::tagPlace> XButtonPanelModel::Place(int side, int separator,
                                                                  int width) const
{
    std::vector<tagPlace> places(m_entries.size(), tagPlace{0, 0, 0, 0});
    int x = 0, y = 0;
    std::size_t gap = m_entries.size(); // the separator that waits for a button behind it
    for (std::size_t i = 0; i < m_entries.size(); ++i) {
        if (m_entries[i] == kXPropSeparator) {
            if (x > 0) gap = i;
            continue;
        }
        const int room = gap < i ? separator : 0;
        if (x > 0 && x + room + side > width) {
            x = 0;
            y += side;
        } else if (room > 0) {
            places[gap] = {x, y, separator, side};
            x += separator;
        }
        gap = m_entries.size();
        places[i] = {x, y, side, side};
        x += side;
    }
    return places;
}
