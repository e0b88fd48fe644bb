#pragma once

#include "foundation/platform/XWindowMessages.h"
#include "host/XAutosave.h"
#include "host/XOpenErrors.h"
#include "host/XVectorStack.h"

#include <QString>
#include <QStringList>

#include <deque>
#include <functional>
#include <memory>

class XJobRunner;
class XLayerTree;
class XMainActions;
struct tagXPlacement;
struct tagXVectorRead;

/// Opens vector files by jobs, one after the other, and serves the commands that only they have. All
/// parts outlive it.
///
/// A file is read for the coordinate system that the view has when its turn comes; when the view has
/// another one by the time it was read, it is read once more. So is a file without a coordinate system
/// whose numbers can be degrees, when the view gets a system that they must be carried over into. What cannot be opened is told in one
/// box when the last of those that wait is done.
class XVectorActions
{
public:
    XVectorActions(XHWND handle, XLayerTree& tree, XMainActions& actions, XJobRunner& jobs);

    void Open(const QString& path);               ///< in its turn
    void Restore(const XAutosave::tagLost& lost); ///< in its turn; it counts as edited
    void ReloadAll(); ///< every file that is open and has no unsaved objects, in its turn
    void Start();     ///< begins with what waits, if nothing is at hand
    bool IsBusy() const { return m_isBusy; }
    /// Stops the file at hand and forgets those that wait.
    void Stop();

    /// Called when a file was opened: its path.
    void SetOpened(std::function<void(const QString&)> opened) { m_opened = std::move(opened); }
    /// Called when a copy of unsaved edits was opened.
    void SetRestored(std::function<void(const XAutosave::tagLost&)> restored)
    {
        m_restored = std::move(restored);
    }
    /// Receives what is worth a line in the status bar, and what a tip adds to it.
    void SetNotice(std::function<void(const QString& text, const QString& detail)> notice)
    {
        m_notice = std::move(notice);
    }
    /// Receives what has to stand until it is read, about a file.
    void SetWarning(std::function<void(const QString& path, const QString& text)> warning)
    {
        m_warning = std::move(warning);
    }
    /// Asked whether black lines would be lost on what the view shows below vectors.
    void SetIsGroundDark(std::function<bool()> isDark) { m_isGroundDark = std::move(isDark); }
    /// Asked whether some of a box is in the view: minimum x, minimum y, maximum x, maximum y.
    void SetIsInView(std::function<bool(const double (&box)[4])> isInView)
    {
        m_isInView = std::move(isInView);
    }
    /// Called when a file was carried elsewhere because the view has another coordinate system.
    void SetMoved(std::function<void()> moved) { m_moved = std::move(moved); }
    void EnableActions();

    /// What has to be said about where a file lies; empty when it lies where it belongs.
    QString GetPlaceText(int file) const;

private:
    struct tagWaiting
    {
        QString path;
        const XvcBase* replaced = nullptr; ///< to find its file by; it may be gone by then
        XAutosave::tagLost lost;           ///< what the file is a copy of, if it is one
        bool isMoved = false;              ///< read again for another place in the view

        QString GetName() const;
    };

    void Begin(const tagWaiting& wanted);
    void Ended(const tagWaiting& wanted, const std::shared_ptr<tagXVectorRead>& read, bool isDone,
               bool isStopped, const QString& message);
    void Take(const tagWaiting& wanted, tagXVectorRead& read);
    bool KeepsEdits(int index);
    void FollowWorld();
    bool IsWaiting(const XvcBase* replaced) const;
    void TellOf(int file, const tagXPlacement& placement);
    void TellErrors();
    void ChooseColor();

    XHWND m_handle;
    XLayerTree& m_tree;
    XVectorStack& m_vectors;
    XMainActions& m_actions;
    XJobRunner& m_jobs;
    std::deque<tagWaiting> m_waiting;
    bool m_isBusy = false;
    XOpenErrors m_errors;
    std::function<void(const QString&)> m_opened;
    std::function<void(const XAutosave::tagLost&)> m_restored;
    std::function<void(const QString&, const QString&)> m_notice;
    std::function<void(const QString&, const QString&)> m_warning;
    std::function<bool()> m_isGroundDark;
    std::function<bool(const double (&)[4])> m_isInView;
    std::function<void()> m_moved;
};
