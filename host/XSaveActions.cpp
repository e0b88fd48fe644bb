#include "host/XSaveActions.h"

#include "foundation/platform/XPrompts.h"
#include "foundation/platform/XQtText.h"
#include "foundation/vector/XVectorIO.h"
#include "host/XLayerTree.h"
#include "host/XMainActions.h"
#include "host/XSessionSettings.h"

#include <QCursor>
#include <QFileInfo>
#include <QGuiApplication>

namespace {

constexpr const char* kEnding = ".xvc";

} // namespace

XSaveActions::XSaveActions(XHWND handle, XLayerTree& tree, XMainActions& actions,
                           XSessionSettings& settings)
    : m_handle(handle),
      m_tree(tree),
      m_vectors(tree.GetVectors()),
      m_actions(actions),
      m_settings(settings)
{
    m_actions.Connect("file.save", [this] {
        if (m_tree.GetCurrent().IsVector()) Save(m_tree.GetCurrent().index);
    });
    m_actions.Connect("layer.save", [this] {
        if (m_tree.GetCurrent().IsVector()) SaveAs(m_tree.GetCurrent().index);
    });
    m_tree.AddObserver([this](LayerChange change) {
        if (change != LayerChange::Closing) EnableActions();
    });
    EnableActions();
}

void XSaveActions::EnableActions()
{
    const bool isVector = m_tree.GetCurrent().IsVector();
    for (const char* id : {"file.save", "layer.save"})
        m_actions.SetEnabled(id, isVector, "The current layer is no vector layer");
}

bool XSaveActions::Save(int index)
{
    const tagXVectorFile* file = m_vectors.GetAt(index);
    if (!file) return false;
    const bool isOwn = file->path.endsWith(kEnding, Qt::CaseInsensitive);
    return isOwn ? Write(index, file->path) : SaveAs(index);
}

bool XSaveActions::SaveAs(int index)
{
    const tagXVectorFile* file = m_vectors.GetAt(index);
    if (!file) return false;
    const bool isOwn = file->path.endsWith(kEnding, Qt::CaseInsensitive);
    tagXFilePrompt prompt;
    prompt.title = "Save As XVC";
    prompt.filter = "XVC (*.xvc)|*.xvc||";
    prompt.folder =
        XfnFromQString(isOwn ? QFileInfo(file->path).path() : m_settings.GetLastFolder());
    const QString name =
        file->path.isEmpty() ? file->name : QFileInfo(file->name).completeBaseName();
    prompt.fileName = XfnFromQString(name + kEnding);
    XString chosen;
    if (!XPrompts::Get()->SaveFile(m_handle, prompt, chosen)) return false;
    QString path = XfnToQString(chosen);
    if (QFileInfo(path).suffix().compare(kEnding + 1, Qt::CaseInsensitive) != 0) {
        path += kEnding; // which the prompt did not ask about
        if (QFileInfo::exists(path) &&
            !XPrompts::Get()->AskYesNo(m_handle,
                                       XfnFromQString(QString("%1 exists. Replace it?").arg(path))))
            return false;
    }
    return Write(index, path);
}

bool XSaveActions::Write(int index, const QString& path)
{
    if (m_saving) m_saving();
    XString error;
    QGuiApplication::setOverrideCursor(Qt::WaitCursor);
    const bool isSaved =
        XfnExportXVC(XfnFromQString(path), m_vectors.GetAt(index)->base.get(), error) != 0;
    QGuiApplication::restoreOverrideCursor();
    if (!isSaved) {
        XPrompts::Get()->Message(m_handle, error);
        return false;
    }
    m_vectors.SetSaved(index, QFileInfo(path).absoluteFilePath());
    if (m_saved) m_saved(index);
    if (m_notice) m_notice("Saved in " + QFileInfo(path).fileName(), path);
    return true;
}

bool XSaveActions::AskBeforeClosing(tagXVectorPlace place)
{
    const tagXVectorFile* file = m_vectors.GetAt(place.file);
    if (!file || !m_vectors.IsEdited(place)) return true;
    const bool isOwn = file->path.endsWith(kEnding, Qt::CaseInsensitive);
    QString text = QString("Save the changes of %1 before it is closed? Otherwise they are lost.")
                       .arg(file->name);
    if (place.layer >= 0)
        text = QString("Save the changes of %1 before its layer %2 is closed? Otherwise those of "
                       "the layer are lost.")
                   .arg(file->name, m_vectors.GetName(place));
    if (!isOwn && !file->path.isEmpty())
        text += QString("\n\nThey are saved in a file of their own; %1 stays as it is.")
                    .arg(QFileInfo(file->path).fileName());
    switch (XPrompts::Get()->AskYesNoCancel(m_handle, XfnFromQString(text))) {
    case XPrompts::XAnswer::Yes:
        return Save(place.file);
    case XPrompts::XAnswer::No:
        return true;
    default:
        return false;
    }
}

bool XSaveActions::AskBeforeClosingAll()
{
    for (int i = 0; i < m_vectors.GetCount(); ++i)
        if (!AskBeforeClosing({i, -1})) return false;
    return true;
}
