#include "host/XFileActions.h"

#include "foundation/platform/XFileFilter.h"
#include "foundation/platform/XPrompts.h"
#include "foundation/platform/XQtText.h"
#include "foundation/raster/XRSFileIO.h"
#include "foundation/vector/XVectorIO.h"
#include "host/XLayerPlacement.h"
#include "host/XLayerTree.h"
#include "host/XMainActions.h"
#include "host/XOpenErrors.h"
#include "host/XRasterFilters.h"
#include "host/XRasterOpener.h"
#include "host/XSessionSettings.h"
#include "host/XVectorActions.h"
#include "host/XVectorReader.h"

#include <QAction>
#include <QFileInfo>
#include <QMenu>

XFileActions::XFileActions(XHWND handle, XLayerTree& tree, XVectorActions& vectors,
                           XMainActions& actions, XSessionSettings& settings)
    : m_handle(handle),
      m_tree(tree),
      m_layers(tree.GetRasters()),
      m_vectors(vectors),
      m_actions(actions),
      m_settings(settings)
{
    m_recent.SetPaths(m_settings.GetRecentFiles());
    Connect();
    m_tree.AddObserver([this](LayerChange) { EnableActions(); });
    m_vectors.SetOpened([this](const QString& path) { Remember(path); });
    EnableActions();
}

void XFileActions::Connect()
{
    m_actions.Connect("file.open", [this] { AskAndOpen(); });
    m_actions.Connect("file.close", [this] { CloseCurrent(); });
    m_actions.Connect("file.closeAll", [this] { CloseAll(); });
    m_actions.Connect("file.clearRecent", [this] {
        m_recent.Clear();
        m_settings.SetRecentFiles(m_recent.GetPaths());
    });
}

void XFileActions::AskAndOpen()
{
    tagXFilePrompt prompt;
    prompt.title = "Open";
    prompt.filter = XfnFromQString(XfnOpenFilter());
    prompt.filterIndex = XFileFilter(prompt.filter).FindLabel(kAllFilesLabel);
    prompt.hasRasterPreview = true;
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
    QStringList queue = m_tree.GetRowCount() > 0 ? paths : XfnPlacedFirst(paths);
    for (int i = 0; i < queue.size(); ++i) {
        const QString given = queue[i];
        const bool isPlain = XfnIsPlainPath(given);
        const QString path = isPlain ? QFileInfo(given).absoluteFilePath() : given;
        QString message;
        const bool isThere = isPlain && QFileInfo(path).isFile();
        if (isThere && XfnHasVectorSuffix(path) && !XfnHasRasterSuffix(path)) {
            m_vectors.Open(path); // when its turn comes
            ++opened;
            continue;
        }
        Opening(QFileInfo(path).fileName());
        if (m_layers.Open(path, message)) {
            ++opened;
            Remember(path);
            const tagXLayer& layer = *m_layers.GetAt(0); // an opened layer is the top one
            if (XfnIsGrossMiss(layer.miss))
                misplaced.append(layer.name + ": " + XfnPlacementText(layer.miss) + ".");
        } else if (message.isEmpty()) {
            break; // given up by the user, and what waits with it
        } else if (const QStringList parts = AskForParts(path); !parts.isEmpty()) {
            for (int part = 0; part < parts.size(); ++part)
                queue.insert(i + 1 + part, parts[part]);
        } else if (isThere && XfnIsVectorFile(XfnFromQString(path))) {
            m_vectors.Open(path);
            ++opened;
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
    m_vectors.Start();
    return opened;
}

void XFileActions::Remember(const QString& path)
{
    m_recent.Add(path);
    m_settings.SetRecentFiles(m_recent.GetPaths());
    if (XfnIsPlainPath(path)) m_settings.SetLastFolder(QFileInfo(path).path());
}

void XFileActions::CloseCurrent()
{
    const tagXTreeNode node = m_tree.GetCurrent();
    if (m_tree.IsLocked(node)) return;
    tagXVectorPlace place = node.GetPlace();
    const tagXVectorFile* file = m_tree.GetVectors().GetAt(place.file);
    if (file && file->layers.size() < 2) place.layer = -1;
    if (!file || !m_mayClose || m_mayClose(place)) m_tree.Close(node);
}

void XFileActions::CloseAll()
{
    for (int i = 0; i < m_tree.GetVectors().GetCount(); ++i)
        if (m_mayClose && !m_mayClose({i, -1})) return;
    m_tree.CloseAll();
}

void XFileActions::ReloadAll(const std::function<void(const QString&, const QString&)>& warn)
{
    for (int i = 0; i < m_layers.GetCount(); ++i) {
        const QString path = m_layers.GetAt(i)->path;
        QString message;
        Opening(QFileInfo(path).fileName());
        if (!m_layers.Reload(i, message) && warn)
            warn(path,
                 QString("%1 was not read again. (%2)").arg(m_layers.GetAt(i)->name, message));
    }
    Opening(QString());
    m_vectors.ReloadAll();
    m_vectors.Start();
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
        errors.Add(folder, "There is nothing in this folder that could be opened.");
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
    const bool hasLayer = m_tree.GetRowCount() > 0;
    const bool isLocked = m_tree.IsLocked(m_tree.GetCurrent());
    m_actions.SetEnabled("file.close", hasLayer && !isLocked,
                         isLocked ? "The layer is locked" : "No file is open");
    m_actions.SetEnabled("file.closeAll", hasLayer, "No file is open");
}
