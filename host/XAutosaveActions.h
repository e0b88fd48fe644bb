#pragma once

#include "host/XAutosave.h"

#include <QTimer>

#include <functional>
#include <vector>

class XEditActions;
class XRecoveryBar;
class XVectorActions;
class XVectorStack;

/// Keeps copies of what is edited: three seconds after an edit, every minute, when the program loses the focus, and once there is
/// less to keep than before; and offers what a run left that crashed or was ended. What takes long to
/// take down is kept less often. All parts outlive it.
class XAutosaveActions
{
public:
    XAutosaveActions(XVectorStack& vectors, XVectorActions& opener, XEditActions& edit,
                     XRecoveryBar& bar);

    void KeepNow();     ///< what is edited is written meanwhile
    bool KeepAndWait(); ///< the same, and all is written; false when something could not be
    void OfferLost();   ///< once, when the window is seen
    void EndClean();    ///< all was saved, or is not wanted
    /// Receives what is worth a line in the status bar, and what a tip adds to it.
    void SetNotice(std::function<void(const QString& text, const QString& detail)> notice)
    {
        m_notice = std::move(notice);
    }

private:
    int CountEdited() const;
    unsigned long SumRevisions() const;
    void FollowEdits();
    void KeepByItself();
    void Failed(const QString& message);
    void Answered(bool isWanted);

    XVectorStack& m_vectors;
    XVectorActions& m_opener;
    XEditActions& m_edit;
    XRecoveryBar& m_bar;
    XAutosave m_autosave;
    std::vector<XAutosave::tagLost> m_lost; // offered and not answered yet
    QTimer m_timer;
    QTimer m_settled; // runs from an edit on
    unsigned long m_keptRevisions = 0;
    bool m_isKeeping = false;
    int m_keptCount = 0;
    bool m_hasFailed = false; // since it was last asked
    std::function<void(const QString&, const QString&)> m_notice;
};
