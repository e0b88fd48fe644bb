#pragma once

#include <cstddef>
#include <vector>

/// Where a view looks: its centre and the world length of a pixel. Independent of its size, so that
/// going back after a resize shows the same place at the same scale.
struct tagXViewState
{
    double centreX = 0;
    double centreY = 0;
    double perPixelX = 1;
    double perPixelY = 1;
};

/// The places a view has shown, with a present one, as a web browser keeps pages.
class XViewHistory
{
public:
    static constexpr std::size_t kLimit = 100;
    static constexpr long long kGestureGapMs = 700;

    enum class Gesture {
        Jump,      ///< a command: always an entry of its own
        Continuous ///< one notch of a wheel, one press of an arrow: a run of them is one entry
    };

    /// Notes that the view shows `state` now. What could be gone forward to is dropped. A state that
    /// is not finite or the same as the present one is not noted.
    /// @param timeMs  any steady clock; only differences count
    void Record(const tagXViewState& state, Gesture gesture, long long timeMs);

    /// The present entry shows `state` from now on: the view was resized, which is no step.
    void Amend(const tagXViewState& state);

    bool CanGoBack() const { return m_present > 0; }
    bool CanGoForward() const { return m_present + 1 < m_states.size(); }
    bool GoBack(tagXViewState& state);    ///< false, and `state` untouched, at the oldest
    bool GoForward(tagXViewState& state); ///< false, and `state` untouched, at the newest
    void Clear();

private:
    std::vector<tagXViewState> m_states;
    std::size_t m_present = 0;
    bool m_runOpen = false; // the present entry is the end of a run that may go on
    long long m_runTimeMs = 0;
};
