#pragma once

#include "foundation/platform/XMessageWindow.h"

#include <QString>

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>

/// Does the work of an autosave on the disk, one piece after the other in the order it came in, on a
/// thread of its own that starts with the first piece.
///
/// User interface thread, but for the work itself. The destructor first does all that waits.
class XAutosaveWriter : public XMessageWindow
{
public:
    /// @return false with a sentence
    using Work = std::function<bool(QString& message)>;

    XAutosaveWriter() = default;
    ~XAutosaveWriter() override;

    void Add(int number, Work work); ///< `number` names it when it fails
    void Wait();                     ///< until all is done
    bool IsBusy();
    /// Called in the user interface thread, by itself or from within Wait, for each piece that failed.
    void SetFailed(std::function<void(int number, const QString& message)> failed)
    {
        m_failed = std::move(failed);
    }

    XLRESULT OnWindowMessage(unsigned message, XWPARAM wParam, XLPARAM lParam) override;

private:
    struct tagPiece
    {
        int number;
        Work work;
    };
    struct tagFailure
    {
        int number;
        QString message;
    };

    void Run();
    void TellFailures();

    std::function<void(int, const QString&)> m_failed;
    std::mutex m_mutex; // of all below
    std::condition_variable m_changed;
    std::deque<tagPiece> m_pieces; // the first is at hand while the thread runs
    std::deque<tagFailure> m_failures;
    bool m_isEnding = false;
    std::thread m_thread;
};
