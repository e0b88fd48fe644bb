#pragma once

#include <QString>

#include <functional>

class XHostView;
class XLayerTree;
class XMainActions;
class XObjectPicker;

/// The commands on the selected object. All parts outlive it.
class XObjectActions
{
public:
    XObjectActions(XHostView& view, XLayerTree& tree, XObjectPicker& picker, XMainActions& actions);

    /// Receives text that is to go to the clipboard, and what to say of it.
    void SetCopied(std::function<void(const QString& text, const QString& notice)> copied)
    {
        m_copied = std::move(copied);
    }
    void EnableActions();

private:
    void Copy();

    XHostView& m_view;
    XLayerTree& m_tree;
    XObjectPicker& m_picker;
    XMainActions& m_actions;
    std::function<void(const QString&, const QString&)> m_copied;
};
