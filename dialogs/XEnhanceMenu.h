#pragma once

#include "foundation/base/XApi.h"

#include <QMenu>

class XPropButtonTarget;

/// The menu "Enhance" of the stretch presets. The command last run is checked, whoever ran it.
/// The target must live whenever the menu is shown or chosen from.
class XAPI XEnhanceMenu final : public QMenu
{
public:
    /// @param onlyVisible  non-zero: the presets of the visible region only
    XEnhanceMenu(XPropButtonTarget& target, int onlyVisible, QWidget* parent = nullptr);

private:
    void Follow();

    XPropButtonTarget& m_target;
};
