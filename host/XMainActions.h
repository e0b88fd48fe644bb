#pragma once

#include <QHash>
#include <QList>
#include <QString>

#include <functional>

class QAction;
class QMainWindow;
class QMenu;
class QToolBar;
class QWidget;

/// The commands of the window as actions, made from XfnActionTable; menus and toolbar share them.
///
/// A disabled entry says in the status line why. The object name of each action is its id. The
/// actions, menus and the toolbar belong to the window, which must outlive this object.
class XMainActions
{
public:
    explicit XMainActions(QMainWindow* window);

    QAction* Get(const QString& id) const; ///< null for an unknown id
    void Connect(const QString& id, std::function<void()> run);
    /// @param reason  said in the status line while the entry is disabled
    void SetEnabled(const QString& id, bool isEnabled, const QString& reason = QString());
    void SetChecked(const QString& id, bool isChecked);

    /// Fills the menu bar. `fill` is called for each "@name" entry with the menu it stands in.
    void BuildMenus(const std::function<void(const QString& name, QMenu* menu)>& fill);
    QList<QToolBar*> BuildToolBars();
    /// Gives `image` the plain keys, valid while it has the focus.
    void BindImageKeys(QWidget* image);
    /// Gives `list` those of them that are one letter or sign, so that a tool can be chosen from there.
    void BindLetters(QWidget* list);

private:
    void Bind(const char* key, QWidget* widget, QAction& action);
    void AddButton(QToolBar& bar, QAction& action);

    QMainWindow* m_window;
    QHash<QString, QAction*> m_actions;
    QHash<QString, QString> m_tips;       // of the status line
    QHash<QString, QString> m_buttonTips; // of tool bars
};
