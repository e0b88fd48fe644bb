#include "dialogs/CButtonDlg.h"

#include "dialogs/XEnhanceMenu.h"

#include <QAction>
#include <QContextMenuEvent>
#include <QFrame>
#include <QKeyEvent>
#include <QMenu>
#include <QToolButton>

#include <algorithm>
#include <iterator>
#include <utility>
#include <vector>

namespace {

constexpr int kMargin = 6;    // from the corner of the view
constexpr int kPadding = 3;   // within the frame
constexpr int kSeparator = 7; // its line stands in the middle

} // namespace

/// The window of the buttons. What its buttons and menus do passes through it to the target, which
/// may end the view, and so the panel, meanwhile.
class CButtonDlg::XPanel final : public QFrame, public XPropButtonTarget
{
public:
    XPanel(QWidget* owner, XPropButtonTarget& target, const XButtonPanelModel& model)
        : QFrame(owner), m_target(&target), m_model(&model)
    {
        setObjectName("panel");
        setAccessibleName(tr("View buttons"));
        setFrameShape(QFrame::StyledPanel);
        setAutoFillBackground(true);
        setCursor(Qt::ArrowCursor);              // not that of the view's tool
        setAttribute(Qt::WA_NoMousePropagation); // nor does its tool hear of the pointer here
        setFocusPolicy(Qt::NoFocus);
        hide();
    }

    void Detach()
    {
        m_target = nullptr; // which goes, and the model too
        if (m_running == 0) {
            delete this;
            return;
        }
        hide();
        setParent(nullptr);
        deleteLater();
    }

    int CanRunPropButton(int id) const override
    {
        return m_target ? m_target->CanRunPropButton(id) : 0;
    }
    int IsPropButtonOn(int id) const override
    {
        return m_target ? m_target->IsPropButtonOn(id) : 0;
    }
    int GetLastStretchPreset() const override
    {
        return m_target ? m_target->GetLastStretchPreset() : 0;
    }
    void RunPropButton(int id) override
    {
        Run([id](XPropButtonTarget& target) { target.RunPropButton(id); });
    }
    void RunStretchPreset(int command) override
    {
        Run([command](XPropButtonTarget& target) { target.RunStretchPreset(command); });
    }

    void AddEntry(int id)
    {
        const tagXPanelButton* row = XButtonPanelModel::FindButton(id);
        m_entries.push_back(row ? MakeButton(*row) : MakeSeparator());
    }

    void PlaceEntries()
    {
        const QWidget* owner = parentWidget();
        if (!owner || !m_target) return;
        int side = 0;
        for (const QToolButton* button : GetButtons())
            side = std::max({side, button->sizeHint().height(), button->iconSize().width() + 6});
        const auto places =
            m_model->Place(side, kSeparator, owner->width() - 2 * (kMargin + kPadding));
        int width = 0, height = 0;
        for (std::size_t i = 0; i < m_entries.size() && i < places.size(); ++i) {
            const auto& place = places[i];
            m_entries[i]->setVisible(place.width > 0);
            m_entries[i]->setGeometry(kPadding + place.x, kPadding + place.y, place.width,
                                      place.height);
            width = std::max(width, place.x + place.width);
            height = std::max(height, place.y + place.height);
        }
        width += 2 * kPadding;
        height += 2 * kPadding;
        setGeometry(std::max(0, owner->width() - width - kMargin), kMargin, width, height);
    }

    void Follow()
    {
        if (!m_target) return;
        for (std::size_t i = 0; i < m_entries.size(); ++i) {
            auto* button = qobject_cast<QToolButton*>(m_entries[i]);
            if (!button) continue;
            const int id = m_model->GetEntries()[i];
            button->setEnabled(CanRunPropButton(id) != 0);
            button->setChecked(IsPropButtonOn(id) != 0);
        }
        update();
    }

protected:
    // before the button, which would take arrows for steps through all controls of the window
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (event->type() != QEvent::KeyPress) return QFrame::eventFilter(watched, event);
        const int key = static_cast<QKeyEvent*>(event)->key();
        if (!IsServed(key)) return false;
        ServeKey(*static_cast<QToolButton*>(watched), key);
        return true;
    }

    void keyReleaseEvent(QKeyEvent* event) override
    {
        // the view heard of no press
        if (!IsServed(event->key())) QFrame::keyReleaseEvent(event);
    }

    void contextMenuEvent(QContextMenuEvent* event) override
    {
        if (!m_target) return;
        Follow();
        auto* menu = new QMenu(this);
        menu->setObjectName("panel.menu");
        menu->setAttribute(Qt::WA_DeleteOnClose);
        bool hasPresets = false; // one sub-menu, the fuller one of two
        for (const int id : m_model->GetEntries()) {
            const tagXPanelButton* row = XButtonPanelModel::FindButton(id);
            if (!row) {
                menu->addSeparator();
                continue;
            }
            const bool isPresets = id == kXPropPresets || id == kXPropVisiblePresets;
            if (isPresets && std::exchange(hasPresets, true)) continue;
            QAction* action = nullptr;
            if (isPresets)
                action =
                    menu->addMenu(new XEnhanceMenu(*this, m_model->GetPresetForm() == 2, menu));
            else
                action = AddCommand(*menu, *row);
            action->setIcon(XfnSignIcon(row->sign));
            action->setEnabled(CanRunPropButton(id) != 0);
        }
        menu->popup(event->globalPos());
    }

    void changeEvent(QEvent* event) override
    {
        QFrame::changeEvent(event);
        if (event->type() == QEvent::PaletteChange) update();
    }

private:
    std::vector<QToolButton*> GetButtons() const
    {
        std::vector<QToolButton*> buttons;
        for (QWidget* entry : m_entries)
            if (auto* button = qobject_cast<QToolButton*>(entry)) buttons.push_back(button);
        return buttons;
    }

    QWidget* MakeButton(const tagXPanelButton& row)
    {
        auto* button = new QToolButton(this);
        button->setObjectName(QString("panel.%1").arg(row.id));
        button->setIcon(XfnSignIcon(row.sign));
        button->setAutoRaise(true);
        button->installEventFilter(this);
        button->setFocusPolicy(Qt::TabFocus); // a click leaves the keys with the view
        const QString text = tr(row.text);
        button->setToolTip(text);
        button->setAccessibleName(text);
        if (row.id == kXPropPresets || row.id == kXPropVisiblePresets) {
            button->setMenu(
                new XEnhanceMenu(*this, row.id == kXPropVisiblePresets ? 1 : 0, button));
            button->setPopupMode(QToolButton::InstantPopup);
        } else {
            button->setCheckable(row.id == kXPropZoomRect);
            connect(button, &QToolButton::clicked, this,
                    [this, id = row.id] { RunPropButton(id); });
        }
        return button;
    }

    QWidget* MakeSeparator()
    {
        auto* line = new QFrame(this);
        line->setFrameShape(QFrame::VLine);
        line->setFrameShadow(QFrame::Sunken);
        return line;
    }

    QAction* AddCommand(QMenu& menu, const tagXPanelButton& row)
    {
        QAction* action = menu.addAction(tr(row.text));
        action->setObjectName(QString("panel.menu.%1").arg(row.id));
        action->setCheckable(row.id == kXPropZoomRect);
        action->setChecked(IsPropButtonOn(row.id) != 0);
        connect(action, &QAction::triggered, this, [this, id = row.id] { RunPropButton(id); });
        return action;
    }

    template <class Act>
    void Run(Act act)
    {
        if (!m_target) return;
        ++m_running; // keeps this alive
        act(*m_target);
        --m_running;
        Follow();
    }

    static bool IsServed(int key)
    {
        constexpr int kKeys[] = {Qt::Key_Left,   Qt::Key_Right, Qt::Key_Up,    Qt::Key_Down,
                                 Qt::Key_Return, Qt::Key_Enter, Qt::Key_Escape};
        return std::ranges::find(kKeys, key) != std::end(kKeys);
    }

    void ServeKey(QToolButton& button, int key)
    {
        if (key == Qt::Key_Left || key == Qt::Key_Up) {
            MoveFocus(&button, -1);
        } else if (key == Qt::Key_Right || key == Qt::Key_Down) {
            MoveFocus(&button, 1);
        } else if (key == Qt::Key_Escape) {
            if (parentWidget()) parentWidget()->setFocus();
        } else if (button.menu()) {
            button.showMenu();
        } else {
            button.click();
        }
    }

    void MoveFocus(QToolButton* from, int step)
    {
        std::vector<QToolButton*> buttons = GetButtons();
        std::erase_if(buttons, [](const QToolButton* button) { return !button->isEnabled(); });
        const auto at = std::ranges::find(buttons, from);
        if (at == buttons.end()) return;
        const auto count = static_cast<std::ptrdiff_t>(buttons.size());
        const auto next = ((at - buttons.begin()) + step + count) % count;
        buttons[static_cast<std::size_t>(next)]->setFocus(Qt::TabFocusReason);
    }

    XPropButtonTarget* m_target; // null once the panel is released
    const XButtonPanelModel* m_model;
    int m_running = 0;
    std::vector<QWidget*> m_entries; // as the model's: a tool button, or the line of a separator
};

int CButtonDlg::Create(QWidget* owner, XHWND)
{
    auto* target = dynamic_cast<XPropButtonTarget*>(owner);
    if (!target || m_panel) return 0;
    m_panel = new XPanel(owner, *target, m_model);
    for (const int id : m_model.GetEntries())
        m_panel->AddEntry(id);
    ShowModel();
    return 1;
}

// The panel may be on the stack, in the click that ends its view.
void CButtonDlg::Release()
{
    if (m_panel) m_panel->Detach();
    delete this;
}

void CButtonDlg::AddButton(int id)
{
    if (!m_model.Add(id)) return;
    if (m_panel) m_panel->AddEntry(id);
    ShowModel();
}

void CButtonDlg::SetVisible(int visible)
{
    m_isVisible = visible ? 1 : 0;
    ShowModel();
}

void CButtonDlg::ShowModel()
{
    if (!m_panel) return;
    OwnerResized();
    Invalidate();
    m_panel->setVisible(m_isVisible && !m_model.GetEntries().empty());
    m_panel->raise();
}

int CButtonDlg::HasWindow() const
{
    return m_panel ? 1 : 0;
}

void CButtonDlg::Invalidate()
{
    if (m_panel) m_panel->Follow();
}

void CButtonDlg::OwnerResized()
{
    if (m_panel) m_panel->PlaceEntries();
}

QWidget* CButtonDlg::GetWindow() const
{
    return m_panel;
}
