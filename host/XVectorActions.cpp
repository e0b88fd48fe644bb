#include "host/XVectorActions.h"

#include "foundation/platform/XPrompts.h"
#include "foundation/platform/XQtText.h"
#include "host/XJobRunner.h"
#include "host/XLayerTree.h"
#include "host/XMainActions.h"
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
    m_waiting.push_back({path, nullptr, {}});
}

void XVectorActions::Restore(const XAutosave::tagLost& lost)
{
    m_waiting.push_back({lost.copy, nullptr, lost});
}

void XVectorActions::ReloadAll()
{
    for (int i = 0; i < m_vectors.GetCount(); ++i) {
        const tagXVectorFile& file = *m_vectors.GetAt(i);
        const bool isWaiting =
            std::any_of(m_waiting.begin(), m_waiting.end(), [&](const tagWaiting& waiting) {
                return waiting.replaced == file.base.get();
            });
        if (isWaiting || file.path.isEmpty()) continue;
        const bool hasEdits = std::any_of(file.layers.begin(), file.layers.end(),
                                          [](const auto& layer) { return layer.isEdited; });
        if (hasEdits) { // reading it again would lose them
            if (m_notice)
                m_notice(file.name + ": not read again, it has unsaved changes", QString());
            continue;
        }
        m_waiting.push_back({file.path, file.base.get(), {}});
    }
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
                 read](const tagXSaveControl& control, QString& message) {
                    return XfnReadVector(path, world, color, control, *read, message);
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
        for (int i = 0; i < m_vectors.GetCount(); ++i)
            if (m_vectors.GetAt(i)->base.get() == wanted.replaced)
                return m_vectors.Replace(i, read);
        return; // closed meanwhile
    }
    const QStringList notes = read.notes;
    m_vectors.Add(wanted.path, read);
    if (!wanted.lost.copy.isEmpty()) {
        m_vectors.SetRestored(wanted.lost.path, wanted.lost.name);
        if (m_restored) m_restored(wanted.lost);
    } else if (m_opened) {
        m_opened(wanted.path);
    }
    const QString name = m_vectors.GetAt(0)->name;
    if (!notes.isEmpty() && m_notice) m_notice(name + ": " + notes.first(), notes.join('\n'));
    TellPlace(wanted.path, placement.lost, placement.vertices);
}

QString XVectorActions::GetPlaceText(int index) const
{
    const tagXVectorFile* file = m_vectors.GetAt(index);
    if (!file || file->isPlaced || m_tree.GetRowCount() < 2) return QString();
    double own[4] = {0, 0, 0, 0};
    bool hasMet = false;
    bool isAny = false;
    if (!m_vectors.GetExtent({index, -1}, own)) return QString();
    for (int row = 0; row < m_tree.GetRowCount(); ++row) {
        double other[4] = {0, 0, 0, 0};
        if (row == index || !m_tree.GetExtent(m_tree.GetNode(row), other)) continue;
        isAny = true;
        hasMet = hasMet || (own[0] <= other[2] && own[2] >= other[0] && own[1] <= other[3] &&
                            own[3] >= other[1]);
    }
    const QString why = file->reference.IsEmpty()
                            ? QString("%1 tells no coordinate system").arg(file->name)
                            : QString("%1 cannot be carried over into the coordinate system of "
                                      "the view")
                                  .arg(file->name);
    if (!isAny) return QString();
    return hasMet ? why + ": it is shown at its own numbers, which may be another place."
                  : why + ", and its numbers lie far from all else: it is out of sight; "
                          "View > Fit Layer shows it.";
}

// The front file was opened: says what may be wrong with its place.
void XVectorActions::TellPlace(const QString& path, long long lost, long long vertices)
{
    QString text = GetPlaceText(0);
    const QString name = m_vectors.GetAt(0)->name;
    if (lost > 0)
        text = QString("%1 of the %2 vertices of %3 have no place in the coordinate system of the "
                       "view and are left out.")
                   .arg(lost)
                   .arg(vertices)
                   .arg(name);
    if (!text.isEmpty()) {
        if (m_warning) m_warning(path, text);
        return;
    }
    double own[4] = {0, 0, 0, 0};
    if (!m_vectors.GetExtent({0, -1}, own) && m_notice)
        m_notice(name + " holds nothing that could be shown", QString());
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
