#pragma once

#include "dialogs/XSignIcon.h"
#include "view/XPropButtons.h"

#include <span>
#include <vector>

/// How a button of the panel presents itself.
struct tagXPanelButton
{
    int id;
    const char* text; ///< for menus and as tool tip
    XSign sign;
};

/// The buttons of one panel and where they stand. Plain rules; CButtonDlg shows them.
class XAPI XButtonPanelModel
{
public:
    /// Place of an entry in units of the screen; `height` spans the row of a separator.
    struct tagPlace
    {
        int x, y, width, height;
    };

    /// Null for numbers that are no button.
    static const tagXPanelButton* FindButton(int id);

    /// Adds a button or a separator (kXPropSeparator) at the end.
    /// @return 0, and nothing is added, for a number that is neither, or a button that is there
    int Add(int id);
    std::span<const int> GetEntries() const { return m_entries; }

    /// Which presets the panel's menu offers: 0 none, 1 all, 2 those of the visible region.
    int GetPresetForm() const;

    /// Places the entries from left to right, and in further rows where `width` does not suffice.
    /// Separators at the begin or end of a row take no room.
    /// @param side       of a button
    /// @param separator  width of a separator
    /// @param width      room for the buttons; one a row stands at least
    /// @return a place for each entry, an empty one for a separator that is not shown
    std::vector<tagPlace> Place(int side, int separator, int width) const;

private:
    std::vector<int> m_entries;
};
