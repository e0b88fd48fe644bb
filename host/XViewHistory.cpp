#include "host/XViewHistory.h"

#include <cmath>

namespace {

bool IsUsable(const tagXViewState& s)
{
    return std::isfinite(s.centreX) && std::isfinite(s.centreY) && std::isfinite(s.perPixelX) &&
           std::isfinite(s.perPixelY) && s.perPixelX != 0 && s.perPixelY != 0;
}

// Within a thousandth of a pixel: a zoom in and out again does not come back to the last bit.
bool IsSamePlace(const tagXViewState& a, const tagXViewState& b)
{
    const double stepX = std::fabs(b.perPixelX) * 1e-3;
    const double stepY = std::fabs(b.perPixelY) * 1e-3;
    return std::fabs(a.centreX - b.centreX) <= stepX && std::fabs(a.centreY - b.centreY) <= stepY &&
           std::fabs(a.perPixelX - b.perPixelX) <= std::fabs(b.perPixelX) * 1e-9 &&
           std::fabs(a.perPixelY - b.perPixelY) <= std::fabs(b.perPixelY) * 1e-9;
}

} // namespace

void XViewHistory::Record(const tagXViewState& state, Gesture gesture, long long timeMs)
{
    if (!IsUsable(state)) return;
    if (!m_states.empty() && IsSamePlace(m_states[m_present], state)) return;
    const bool goesOn = gesture == Gesture::Continuous && m_runOpen &&
                        timeMs - m_runTimeMs <= kGestureGapMs && !CanGoForward();
    m_runOpen = gesture == Gesture::Continuous;
    m_runTimeMs = timeMs;
    if (goesOn) {
        m_states[m_present] = state;
        return;
    }
    if (!m_states.empty()) m_states.resize(m_present + 1);
    m_states.push_back(state);
    if (m_states.size() > kLimit) m_states.erase(m_states.begin());
    m_present = m_states.size() - 1;
}

void XViewHistory::Amend(const tagXViewState& state)
{
    if (IsUsable(state) && !m_states.empty()) m_states[m_present] = state;
}

bool XViewHistory::GoBack(tagXViewState& state)
{
    if (!CanGoBack()) return false;
    m_runOpen = false;
    state = m_states[--m_present];
    return true;
}

bool XViewHistory::GoForward(tagXViewState& state)
{
    if (!CanGoForward()) return false;
    m_runOpen = false;
    state = m_states[++m_present];
    return true;
}

void XViewHistory::Clear()
{
    m_states.clear();
    m_present = 0;
    m_runOpen = false;
}
