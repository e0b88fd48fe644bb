#pragma once

#include <atomic>

/// "This must be drawn anew". Any thread; copies take the value of the moment.
class XUpdateFlag
{
public:
    XUpdateFlag() = default;
    XUpdateFlag(const XUpdateFlag& other) : m_isRaised(other.IsRaised()) {}
    XUpdateFlag& operator=(const XUpdateFlag& other)
    {
        m_isRaised.store(other.IsRaised());
        return *this;
    }

    void Raise() { m_isRaised.store(1); }
    void Clear() { m_isRaised.store(0); }
    int IsRaised() const { return m_isRaised.load(); }

private:
    std::atomic<int> m_isRaised{0};
};
