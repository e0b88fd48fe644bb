#include "host/XVectorActions.h"

#include "foundation/platform/XPrompts.h"
#include "foundation/platform/XQtText.h"
#include "host/XJobRunner.h"
#include "host/XLayerTree.h"
#include "host/XMainActions.h"
#include "host/XReadOut.h"
#include "host/XVectorReader.h"

#include <QAction>
#include <QFileInfo>

#include <algorithm>
#include <utility>

XVectorActions::XVectorActions(XHWND handle, XLayerTree& tree, XMainActions& actions,
                               XJobRunner& jobs)
    : m_handle(handle), m_tree(tree), m_vectors(tree.GetVectors()), m_actions(actions), m_jobs(jobs)
{
    m_actions.Connect("layer.lock", [this] {
        m_vectors.SetLocked(m_tree.GetCurrent().GetPlace(),
                            m_actions.Get("layer.lock")->isChecked());
    });
    m_actions.Connect("layer.color", [this] { ChooseColor(); });
    m_tree.AddObserver([this](LayerChange change) {
        if (change != LayerChange::Closing) EnableActions();
        if (change == LayerChange::List) FollowWorld();
    });
    EnableActions();
}

void XVectorActions::EnableActions()
{
    const tagXTreeNode& node = m_tree.GetCurrent();
    const bool isVector = node.IsVector();
    const bool isLocked = m_tree.IsLocked(node);
    const QString notVector = "The current layer is no vector layer";
    m_actions.SetEnabled("layer.lock", isVector, notVector);
    m_actions.SetChecked("layer.lock", isLocked);
    m_actions.SetEnabled("layer.color", isVector && !isLocked,
                         isLocked ? "The layer is locked" : notVector);
}

void XVectorActions::Open(const QString& path)
{
    m_waiting.push_back({path, nullptr, {}, false});
}

void XVectorActions::Restore(const XAutosave::tagLost& lost)
{
    m_waiting.push_back({lost.copy, nullptr, lost, false});
}

void XVectorActions::ReloadAll()
{
    for (int i = 0; i < m_vectors.GetCount(); ++i) {
        const tagXVectorFile& file = *m_vectors.GetAt(i);
        if (IsWaiting(file.base.get()) || file.path.isEmpty()) continue;
        if (!KeepsEdits(i)) m_waiting.push_back({file.path, file.base.get(), {}, false});
    }
}

// Whether a file stays as it is, since reading it again would lose unsaved changes; says so.
bool XVectorActions::KeepsEdits(int index)
{
    const tagXVectorFile& file = *m_vectors.GetAt(index);
    if (!file.isContentEdited && std::none_of(file.layers.begin(), file.layers.end(),
                                              [](const auto& layer) { return layer.isEdited; }))
        return false; // the names and colours that were chosen stay
    if (m_notice) m_notice(file.name + ": not read again, it has unsaved changes", QString());
    return true;
}

QString XVectorActions::tagWaiting::GetName() const
{
    return lost.copy.isEmpty() ? QFileInfo(path).fileName() : lost.name;
}

void XVectorActions::Start()
{
    if (m_isBusy) return;
    if (m_waiting.empty()) return TellErrors();
    const tagWaiting next = m_waiting.front();
    m_waiting.pop_front();
    Begin(next);
}

void XVectorActions::Stop()
{
    m_waiting.clear();
    m_jobs.Cancel();
}

void XVectorActions::Begin(const tagWaiting& wanted)
{
    m_isBusy = true;
    QString title = "Opening " + wanted.GetName();
    if (!m_waiting.empty()) title += QString(" (%1 more)").arg(m_waiting.size());
    const auto read = std::make_shared<tagXVectorRead>();
    m_jobs.Add({title,
                [path = wanted.path, world = m_vectors.GetWorld(), color = m_vectors.GetNextColor(),
                 isDark = !m_isGroundDark || m_isGroundDark(),
                 read](const tagXSaveControl& control, QString& message) {
                    return XfnReadVector(path, world, color, control, *read, message, isDark);
                },
                [this, wanted, read](bool isDone, bool isStopped, const QString& message) {
                    m_isBusy = false;
                    Ended(wanted, read, isDone, isStopped, message);
                    Start();
                }});
}

void XVectorActions::Ended(const tagWaiting& wanted, const std::shared_ptr<tagXVectorRead>& read,
                           bool isDone, bool isStopped, const QString& message)
{
    const QString name = wanted.GetName();
    if (isStopped) {
        m_waiting.clear(); // one stop is for all of them
        if (m_notice) m_notice(name + ": stopped, not opened", QString());
    } else if (!isDone) {
        const QString why =
            message.isEmpty() ? QString("It is no vector file of a known format.") : message;
        if (!wanted.replaced)
            m_errors.Add(wanted.path, why);
        else if (m_warning) // what was read before stays
            m_warning(wanted.path, QString("%1 was not read again. (%2)").arg(name, why));
    } else if (const XSpatialReference world = m_vectors.GetWorld();
               !world.IsEmpty() && !read->reference.IsEmpty() && !world.IsSame(&read->world)) {
        m_waiting.push_front(wanted); // an image came first
    } else {
        Take(wanted, *read);
    }
}

void XVectorActions::Take(const tagWaiting& wanted, tagXVectorRead& read)
{
    const tagXPlacement placement = read.placement;
    if (wanted.replaced) {
        for (int i = 0; i < m_vectors.GetCount(); ++i) {
            if (m_vectors.GetAt(i)->base.get() != wanted.replaced) continue;
            if (KeepsEdits(i)) return; // drawn while it was read
            m_vectors.Replace(i, read);
            if (!wanted.isMoved) return;
            TellOf(i, placement);
            if (m_moved) m_moved();
            return;
        }
        return; // closed meanwhile
    }
    m_vectors.Add(wanted.path, read);
    if (!wanted.lost.copy.isEmpty()) {
        m_vectors.SetRestored(wanted.lost.path, wanted.lost.name);
        if (m_restored) m_restored(wanted.lost);
    } else if (m_opened) {
        m_opened(wanted.path);
    }
    TellOf(0, placement);
}

// What was read before the view had its coordinate system may belong elsewhere in it.
void XVectorActions::FollowWorld()
{
    const bool isGuess = !XfnGuessReference(true, m_vectors.GetWorld()).IsEmpty();
    for (int i = 0; i < m_vectors.GetCount(); ++i) {
        const tagXVectorFile& file = *m_vectors.GetAt(i);
        if (!file.canBeDegrees || file.isGuessed == isGuess || file.path.isEmpty() ||
            m_vectors.IsEdited({i, -1}) || IsWaiting(file.base.get()))
            continue;
        m_waiting.push_back({file.path, file.base.get(), {}, true});
    }
    Start();
}

bool XVectorActions::IsWaiting(const XvcBase* replaced) const
{
    return std::any_of(m_waiting.begin(), m_waiting.end(), [replaced](const tagWaiting& waiting) {
        return waiting.replaced == replaced;
    });
}

QString XVectorActions::GetPlaceText(int index) const
{
    const tagXVectorFile* file = m_vectors.GetAt(index);
    if (!file) return QString();
    const XSpatialReference& world = m_vectors.GetViewReference();
    const tagXWorldSystem system = XfnDescribeSystem(world);
    QString text;
    if (file->reference.IsEmpty() && !file->path.isEmpty()) {
        text = file->name + " has no coordinate system";
        if (file->isGuessed)
            text += ". Its coordinates look like degrees; it is shown as WGS 84 longitude and "
                    "latitude.";
        else if (file->canBeDegrees && system.unit == WorldUnit::Degree)
            text +=
                ". Its coordinates look like degrees; it is shown as longitude and latitude in " +
                XfnSystemText(system) + ".";
        else if (system.name.isEmpty())
            text += "; its coordinates are shown as they are.";
        else
            text += "; its coordinates are taken as " + XfnSystemText(system) + ".";
    } else if (!file->isPlaced && m_tree.GetRowCount() > 1) {
        text = file->name + (world.IsEmpty() ? " is shown with its own coordinates: the view "
                                               "has no coordinate system."
                                             : " cannot be transformed to the coordinate system of "
                                               "the view; it is shown with its own coordinates.");
    }
    if (!m_tree.IsFarFromOthers(index)) return text;
    return (text.isEmpty() ? file->name : text + " It") +
           " lies outside all other layers: View > Fit Layer shows it.";
}

// Says what is missing of a file and what may be wrong with its place.
void XVectorActions::TellOf(int index, const tagXPlacement& placement)
{
    const tagXVectorFile& file = *m_vectors.GetAt(index);
    QStringList lines;
    if (!file.notes.isEmpty()) lines.append(file.name + ": " + file.notes.join(' '));
    const QString place = GetPlaceText(index);
    if (!place.isEmpty()) lines.append(place);
    if (placement.lost > 0)
        lines.append(QString("%1 of the %2 vertices of %3 have no place in the coordinate system "
                             "of the view and are left out.")
                         .arg(placement.lost)
                         .arg(placement.vertices)
                         .arg(file.name));
    if (!lines.isEmpty() && m_warning) m_warning(file.path, lines.join('\n'));
    double own[4] = {0, 0, 0, 0};
    if (!m_notice) return;
    if (!m_vectors.GetExtent({index, -1}, own))
        m_notice(file.name + " holds nothing that could be shown", QString());
    else if (!m_tree.IsFarFromOthers(index) && m_isInView && !m_isInView(own))
        m_notice(file.name + " lies outside the view; View > Fit Layer shows it", QString());
}

void XVectorActions::TellErrors()
{
    if (m_errors.IsEmpty()) return;
    const XOpenErrors errors = std::exchange(m_errors, XOpenErrors());
    XPrompts::Get()->Message(m_handle, XfnFromQString(errors.GetText()));
}

void XVectorActions::ChooseColor()
{
    const tagXVectorPlace place = m_tree.GetCurrent().GetPlace();
    std::uint32_t color = m_vectors.GetColor(place);
    if (XPrompts::Get()->ChooseColor(m_handle, color)) m_vectors.SetColor(place, color);
}
