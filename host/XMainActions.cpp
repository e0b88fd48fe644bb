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
    const bool isTold = !isEnabled && !reason.isEmpty();
    action->setStatusTip(isTold ? reason : m_tips.value(id));
    const QString text = m_buttonTips.value(id);
    action->setToolTip(isTold ? (text.isEmpty() ? reason : text + "\n" + reason) : text);
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
        // of what can be chosen the text of the entry says enough
        QObject::connect(menu, &QMenu::hovered, menu, [menu](const QAction* action) {
            menu->setToolTipsVisible(!action->isEnabled());
        });
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

QList<QToolBar*> XMainActions::BuildToolBars()
{
    QList<QToolBar*> bars;
    for (const tagXToolBarRow& row : XfnToolBarTable()) {
        auto* bar = new QToolBar(row.title, m_window);
        m_window->addToolBar(row.isUpright ? Qt::LeftToolBarArea : Qt::TopToolBarArea, bar);
        bar->setObjectName(row.name);
        bar->setAccessibleName(row.title);
        for (const char* entry : row.entries) {
            const QString id(entry);
            if (id == "-")
                bar->addSeparator();
            else if (QAction* action = Get(id))
                AddButton(*bar, *action);
        }
        bars.append(bar);
    }
    return bars;
}

void XMainActions::AddButton(QToolBar& bar, QAction& action)
{
    const QString id = action.objectName();
    const QString text = action.text().remove('&').remove("...");
    QString key = action.shortcut().toString(QKeySequence::NativeText);
    for (const tagXActionRow& row : XfnActionTable())
        if (key.isEmpty() && id == row.id && !row.imageKeys.empty())
            key = Portable(row.imageKeys.front()).toString(QKeySequence::NativeText);
    const QString tip = key.isEmpty() ? text : text + " (" + key + ")";
    m_buttonTips.insert(id, tip);
    action.setToolTip(tip);
    bar.addAction(&action);
    if (QWidget* button = bar.widgetForAction(&action)) {
        button->setObjectName("toolbar." + id);
        button->setAccessibleName(text);
    }
}

void XMainActions::BindImageKeys(QWidget* image)
{
    for (const tagXActionRow& row : XfnActionTable()) {
        QAction* action = Get(row.id);
        if (row.keys.empty() && !row.imageKeys.empty()) { // menus show them
            QList<QKeySequence> keys;
            for (const char* key : row.imageKeys)
                keys.append(Portable(key));
            action->setShortcuts(keys);
            action->setShortcutContext(Qt::WidgetShortcut);
            image->addAction(action);
            continue;
        }
        for (const char* key : row.imageKeys)
            Bind(key, image, *action);
    }
}

void XMainActions::BindLetters(QWidget* list)
{
    for (const tagXActionRow& row : XfnActionTable())
        for (const char* key : row.imageKeys)
            if (QString(key).size() == 1) Bind(key, list, *Get(row.id));
}

void XMainActions::Bind(const char* key, QWidget* widget, QAction& action)
{
    auto* shortcut = new QShortcut(Portable(key), widget);
    shortcut->setContext(Qt::WidgetShortcut); // not while something is typed over it
    QObject::connect(shortcut, &QShortcut::activated, &action, &QAction::trigger);
}
