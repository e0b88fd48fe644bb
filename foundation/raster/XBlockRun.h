#pragma once

#include "foundation/base/XString.h"
#include "foundation/raster/XSaveControl.h"

#include <atomic>
#include <functional>

/// A long computation in pieces on several threads, with a result that does not depend on their
/// number: pieces are worked at the same time and joined one after another in rising order.
///
/// The calling thread works along and sends the percents. While it decodes one tile, the others
/// decode the next ones.
class XBlockRun
{
public:
    /// @param control  its stop flags are polled before each piece; it gets the percents
    explicit XBlockRun(tagXSaveControl control = {}) : m_control(std::move(control)) {}
    explicit XBlockRun(XThread* thread) { m_control.thread = thread; }

    /// The percents of the next Run go from `first` to `last`.
    void SetPercents(int first, int last)
    {
        m_firstPercent = first;
        m_lastPercent = last;
    }

    /// Threads for so many pieces, the calling one included: at most four.
    static int GetNumOfWorkers(int pieces);

    /// @param work  (piece, worker, message), any worker at any time; 0 ends the run
    /// @param join  (piece, worker) on that worker's thread, one at a time in rising order of
    ///              pieces; may be empty
    /// @return 0 after a stop (`message` is empty) or when a piece failed
    int Run(int pieces, const std::function<int(int, int, XString&)>& work,
            const std::function<void(int, int)>& join, XString& message);

    int IsStopped() const;
    const std::atomic<int>* GetAbort() const; ///< the word that tile reading polls; may be null

private:
    struct tagState;
    void Work(int worker, tagState& state, const std::function<int(int, int, XString&)>& work,
              const std::function<void(int, int)>& join);
    void Report(int done, int pieces);

    tagXSaveControl m_control;
    int m_firstPercent = 0;
    int m_lastPercent = 100;
    int m_reported = -1;
};
