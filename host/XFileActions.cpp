#include "host/XFileActions.h"

#include "foundation/platform/XPrompts.h"
#include "foundation/platform/XQtText.h"
#include "foundation/raster/XRSFileIO.h"
#include "host/XLayerPlacement.h"
#include "host/XLayerStack.h"
#include "host/XMainActions.h"
#include "host/XOpenErrors.h"
#include "host/XRasterFilters.h"
#include "host/XRasterOpener.h"
#include "host/XSessionSettings.h"

#include <QAction>
#include <QFileInfo>
#include <QMenu>

XFileActions::XFileActions(XHWND handle, XLayerStack& layers, XMainActions& actions,
                           XSessionSettings& settings)
    : m_handle(handle), m_layers(layers), m_actions(actions), m_settings(settings)
{
    m_recent.SetPaths(m_settings.GetRecentFiles());
    Connect();
    m_layers.AddObserver([this](LayerChange) { EnableActions(); });
    EnableActions();
}

void XFileActions::Connect()
{
    m_actions.Connect("file.open", [this] { AskAndOpen(); });
    m_actions.Connect("file.close", [this] { m_layers.Close(m_layers.GetCurrent()); });
    m_actions.Connect("file.closeAll", [this] { m_layers.CloseAll(); });
    m_actions.Connect("file.clearRecent", [this] {
        m_recent.Clear();
        m_settings.SetRecentFiles(m_recent.GetPaths());
    });
}

void XFileActions::AskAndOpen()
{
    tagXFilePrompt prompt;
    prompt.title = "Open";
    prompt.filter = XfnFromQString(XfnRasterFilter());
    prompt.folder = XfnFromQString(m_settings.GetLastFolder());
    std::vector<XString> chosen;
    if (!XPrompts::Get()->OpenFiles(m_handle, prompt, true, chosen)) return;
    QStringList paths;
    for (const XString& path : chosen)
        paths.append(XfnToQString(path));
    OpenFiles(paths);
}

int XFileActions::OpenFiles(const QStringList& paths)
{
    XOpenErrors errors;
    return OpenAll(paths, errors);
}

int XFileActions::OpenAll(const QStringList& paths, XOpenErrors& errors)
{
    QStringList misplaced;
    int opened = 0;
    QStringList queue = paths;
    for (int i = 0; i < queue.size(); ++i) {
        const QString given = queue[i];
        const bool isPlain = XfnIsPlainPath(given);
        const QString path = isPlain ? QFileInfo(given).absoluteFilePath() : given;
        QString message;
        Opening(QFileInfo(path).fileName());
        if (m_layers.Open(path, message)) {
            ++opened;
            m_recent.Add(path);
            if (isPlain) m_settings.SetLastFolder(QFileInfo(path).path());
            const tagXLayer& layer = *m_layers.GetAt(0); // an opened layer is the top one
            if (XfnIsGrossMiss(layer.miss))
                misplaced.append(layer.name + ": " + XfnPlacementText(layer.miss) + ".");
        } else if (const QStringList parts = AskForParts(path); !parts.isEmpty()) {
            for (int part = 0; part < parts.size(); ++part)
                queue.insert(i + 1 + part, parts[part]);
        } else {
            errors.Add(given, message);
            if (isPlain && !QFileInfo::exists(path)) m_recent.MarkMissing(path);
        }
    }
    Opening(QString());
    m_settings.SetRecentFiles(m_recent.GetPaths());
    if (!errors.IsEmpty()) XPrompts::Get()->Message(m_handle, XfnFromQString(errors.GetText()));
    if (!misplaced.isEmpty())
        XPrompts::Get()->Message(m_handle, XfnFromQString("Shown, but not where it belongs:\n\n" +
                                                          misplaced.join('\n')));
    return opened;
}

void XFileActions::Opening(const QString& name)
{
    if (m_opening) m_opening(name);
}

// A file that only holds others: those are what the user means.
QStringList XFileActions::AskForParts(const QString& path)
{
    constexpr int kListed = 12;
    const auto parts = XRSFileIO::GetParts(XfnFromQString(path));
    QStringList names;
    QStringList texts;
    for (const XRSFileIO::tagPart& part : parts) {
        names.append(XfnToQString(part.name));
        if (texts.size() < kListed) texts.append(XfnToQString(part.text));
    }
    if (names.size() > kListed) texts.append(QString("and %1 more").arg(names.size() - kListed));
    if (names.size() < 2) return names;
    Opening(QString());
    const bool isWanted = XPrompts::Get()->AskYesNo(
        m_handle, XfnFromQString(QString("%1 holds %2 images:\n\n%3\n\nOpen all of them?")
                                     .arg(QFileInfo(path).fileName())
                                     .arg(names.size())
                                     .arg(texts.join('\n'))));
    return isWanted ? names : QStringList();
}

int XFileActions::OpenDropped(const QStringList& paths)
{
    const tagXDroppedPaths sorted = XfnSortDroppedPaths(paths);
    QStringList files = sorted.files;
    if (!sorted.folderFiles.isEmpty() &&
        XPrompts::Get()->AskYesNo(m_handle, XfnFromQString(XfnFolderQuestion(sorted.folderFiles))))
        files += sorted.folderFiles;
    XOpenErrors errors; // folders without rasters are told in the same box
    for (const QString& folder : sorted.emptyFolders)
        errors.Add(folder, "There is no raster in this folder.");
    return OpenAll(files, errors);
}

void XFileActions::FillRecentMenu(QMenu* menu)
{
    menu->clear();
    const QStringList& paths = m_recent.GetPaths();
    for (int i = 0; i < paths.size(); ++i) {
        const QString path = paths[i];
        QAction* action = menu->addAction(m_recent.GetMenuText(i));
        action->setObjectName(QString("recent.%1").arg(i));
        action->setEnabled(!m_recent.IsMissing(path));
        action->setStatusTip(m_recent.IsMissing(path) ? path + " was not found" : path);
        QObject::connect(action, &QAction::triggered, menu, [this, path] { OpenFiles({path}); });
    }
    if (paths.isEmpty()) {
        QAction* none = menu->addAction("(none yet)");
        none->setEnabled(false);
    }
    menu->addSeparator();
    m_actions.SetEnabled("file.clearRecent", !paths.isEmpty(), "No file was opened before");
    menu->addAction(m_actions.Get("file.clearRecent"));
}

void XFileActions::EnableActions()
{
    const bool hasLayer = m_layers.GetCount() > 0;
    m_actions.SetEnabled("file.close", hasLayer, "No image is open");
    m_actions.SetEnabled("file.closeAll", hasLayer, "No image is open");
}
