#pragma once

#include "foundation/platform/XWindowMessages.h"
#include "host/XVectorStack.h"

#include <QString>

#include <functional>

class XLayerTree;
class XMainActions;
class XSessionSettings;

/// Saves vector files in the library's own format, and asks before unsaved edits are lost. All parts
/// outlive it.
class XSaveActions
{
public:
    XSaveActions(XHWND handle, XLayerTree& tree, XMainActions& actions, XSessionSettings& settings);

    /// In its own file when that is of the library's format, else as SaveAs.
    /// @return false when it was not saved: refused by the user, or it failed, which was told
    bool Save(int file);
    bool SaveAs(int file);
    /// Asks whether what would be lost with a file or layer is to be saved, and saves it.
    /// @return false when it is to stay open
    bool AskBeforeClosing(tagXVectorPlace place);
    bool AskBeforeClosingAll();
    void EnableActions();

    /// Called before a file is written, and when it was: its place in the stack.
    void SetSaving(std::function<void()> saving) { m_saving = std::move(saving); }
    void SetSaved(std::function<void(int)> saved) { m_saved = std::move(saved); }
    /// Receives what is worth a line in the status bar, and what a tip adds to it.
    void SetNotice(std::function<void(const QString& text, const QString& detail)> notice)
    {
        m_notice = std::move(notice);
    }

private:
    bool Write(int file, const QString& path);

    XHWND m_handle;
    XLayerTree& m_tree;
    XVectorStack& m_vectors;
    XMainActions& m_actions;
    XSessionSettings& m_settings;
    std::function<void()> m_saving;
    std::function<void(int)> m_saved;
    std::function<void(const QString&, const QString&)> m_notice;
};
