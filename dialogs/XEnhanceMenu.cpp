#include "dialogs/XEnhanceMenu.h"

#include "foundation/raster/XStretchPreset.h"
#include "view/XPropButtons.h"

#include <QAction>
#include <QPointer>

XEnhanceMenu::XEnhanceMenu(XPropButtonTarget& target, int onlyVisible, QWidget* parent)
    : QMenu(tr("Enhance"), parent), m_target(target)
{
    setObjectName("menu.enhance");
    for (const tagXStretchPreset& preset : XfnGetStretchPresets()) {
        if (onlyVisible && preset.command < kXFirstVisiblePreset) continue;
        if (!isEmpty() && preset.command == kXFirstVisiblePreset) addSeparator();
        QAction* action = addAction(preset.label);
        action->setObjectName(QString::number(preset.command));
        action->setData(preset.command);
        action->setCheckable(true);
        connect(action, &QAction::triggered, this, [this, command = preset.command] {
            const QPointer<XEnhanceMenu> alive(this);
            m_target.RunStretchPreset(command);
            if (alive) Follow(); // a click unchecks what was checked
        });
    }
    connect(this, &QMenu::aboutToShow, this, [this] { Follow(); });
}

void XEnhanceMenu::Follow()
{
    for (QAction* action : actions())
        action->setChecked(action->data().isValid() &&
                           action->data().toInt() == m_target.GetLastStretchPreset());
}
