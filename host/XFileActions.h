#pragma once

#include "foundation/platform/XWindowMessages.h"
#include "host/XRecentFiles.h"
#include "host/XVectorStack.h"

#include <QStringList>

#include <functional>

class QMenu;
class XLayerStack;
class XLayerTree;
class XMainActions;
class XOpenErrors;
class XSessionSettings;
class XVectorActions;

/// Everything that opens or closes files. The dialog, a drop, the command line and the recent list
/// all end in OpenFiles. All parts outlive it.
class XFileActions
{
public:
    /// @param handle  the window that prompts lie over
    XFileActions(XHWND handle, XLayerTree& tree, XVectorActions& vectors, XMainActions& actions,
                 XSessionSettings& settings);

    /// Opens each file as a new top layer, in order; vector files after all rasters, by jobs. What
    /// cannot be opened is told once, in one box, when the others are open.
    /// @return the number of rasters opened and of vector files that will be
    int OpenFiles(const QStringList& paths);
    /// Files and folders as dropped or named on the command line; asks before the files of a folder are opened.
    int OpenDropped(const QStringList& paths);
    void AskAndOpen();

    /// Close the current layer, or everything; ask first when the user would lose something.
    void CloseCurrent();
    void CloseAll();
    /// Asked before a vector file or a layer of one is closed; false keeps it.
    void SetMayClose(std::function<bool(tagXVectorPlace)> mayClose)
    {
        m_mayClose = std::move(mayClose);
    }
    /// Reads all that is open again. What cannot be read is told by `warn`, with its path.
    void ReloadAll(const std::function<void(const QString&, const QString&)>& warn);

    void FillRecentMenu(QMenu* menu); ///< call when the menu is about to show
    void EnableActions();
    /// Called with its name before a file is opened, which may take a moment, and with none when all
    /// are open and before the user is asked something.
    void SetOpening(std::function<void(const QString&)> opening) { m_opening = std::move(opening); }

private:
    void Connect();
    void Opening(const QString& name);
    QStringList AskForParts(const QString& path);
    int OpenAll(const QStringList& paths, XOpenErrors& errors);
    void Remember(const QString& path);

    XHWND m_handle;
    XLayerTree& m_tree;
    XLayerStack& m_layers;
    XVectorActions& m_vectors;
    XMainActions& m_actions;
    XSessionSettings& m_settings;
    XRecentFiles m_recent;
    std::function<void(const QString&)> m_opening;
    std::function<bool(tagXVectorPlace)> m_mayClose;
};
