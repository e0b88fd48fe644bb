#include "host/XMainActions.h"

#include "host/XActionTable.h"

#include <QAction>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QProxyStyle>
#include <QShortcut>
#include <QToolBar>

namespace {

// Lets pointer and keys rest on disabled entries, so that the status line can say why they are. A
// letter chooses by mnemonic, never by the beginning of a text: that may be a disabled entry's.
class XReachableMenuStyle final : public QProxyStyle
{
public:
    int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                  QStyleHintReturn* data) const override
    {
        if (hint == SH_Menu_AllowActiveAndDisabled) return 1;
        if (hint == SH_Menu_KeyboardSearch) return 0;
        return QProxyStyle::styleHint(hint, option, widget, data);
    }
};

QKeySequence Portable(const char* key)
{
    return QKeySequence(QString(key), QKeySequence::PortableText);
}

} // namespace

XMainActions::XMainActions(QMainWindow* window) : m_window(window)
{
    for (const tagXActionRow& row : XfnActionTable()) {
        auto* action = new QAction(row.text, window);
        action->setObjectName(row.id);
        QList<QKeySequence> keys;
        for (const char* key : row.keys)
            keys.append(Portable(key));
        action->setShortcuts(keys);
        action->setCheckable(row.isCheckable);
        action->setStatusTip(row.tip);
        if (row.symbol) action->setIcon(XfnSymbolIcon(*row.symbol));
        // without a menu bar, in full screen, keys must still reach the action
        window->addAction(action);
        m_actions.insert(row.id, action);
        m_tips.insert(row.id, row.tip);
    }
}

QAction* XMainActions::Get(const QString& id) const
{
    return m_actions.value(id, nullptr);
}

void XMainActions::Connect(const QString& id, std::function<void()> run)
{
    QAction* action = Get(id);
    if (!action) return;
    QObject::connect(action, &QAction::triggered, action, [run = std::move(run)] { run(); });
}

void XMainActions::SetEnabled(const QString& id, bool isEnabled, const QString& reason)
{
    QAction* action = Get(id);
    if (!action) return;
    action->setEnabled(isEnabled);
    action->setStatusTip(isEnabled || reason.isEmpty() ? m_tips.value(id) : reason);
}

void XMainActions::SetChecked(const QString& id, bool isChecked)
{
    if (QAction* action = Get(id)) action->setChecked(isChecked);
}

void XMainActions::BuildMenus(const std::function<void(const QString&, QMenu*)>& fill)
{
    auto* style = new XReachableMenuStyle;
    style->setParent(m_window);
    for (const tagXMenuRow& row : XfnMenuTable()) {
        QMenu* menu = m_window->menuBar()->addMenu(row.title);
        menu->setStyle(style);
        menu->setObjectName(QString("menu.") + QString(row.title).remove('&').toLower());
        for (const char* entry : row.entries) {
            const QString id(entry);
            if (id == "-")
                menu->addSeparator();
            else if (id.startsWith('@'))
                fill(id.mid(1), menu);
            else if (QAction* action = Get(id))
                menu->addAction(action);
        }
    }
}

QToolBar* XMainActions::BuildToolBar()
{
    QToolBar* bar = m_window->addToolBar("Tools");
    bar->setObjectName("toolbar.main");
    bar->setAccessibleName("Tools");
    for (const char* entry : XfnToolBarTable()) {
        const QString id(entry);
        if (id == "-") {
            bar->addSeparator();
            continue;
        }
        QAction* action = Get(id);
        if (!action) continue;
        QString tip = action->text().remove('&').remove("...");
        if (!action->shortcut().isEmpty())
            tip += " (" + action->shortcut().toString(QKeySequence::NativeText) + ")";
        action->setToolTip(tip);
        bar->addAction(action);
        if (QWidget* button = bar->widgetForAction(action)) {
            button->setObjectName("toolbar." + id);
            button->setAccessibleName(action->text().remove('&').remove("..."));
        }
    }
    return bar;
}

void XMainActions::BindImageKeys(QWidget* image)
{
    for (const tagXActionRow& row : XfnActionTable()) {
        QAction* action = Get(row.id);
        for (const char* key : row.imageKeys) {
            auto* shortcut = new QShortcut(Portable(key), image);
            shortcut->setContext(Qt::WidgetWithChildrenShortcut);
            QObject::connect(shortcut, &QShortcut::activated, action, &QAction::trigger);
        }
    }
}
