#pragma once

#include "foundation/base/XApi.h"

/// Sums the fine angles of free-spinning wheels and touchpads to whole notches.
///
/// 120 is one notch, an eighth of a degree the unit. What is left below a notch waits for the next
/// event; a change of direction drops it, so that the first notch back comes as early as any other.
class XAPI XWheelSteps
{
public:
    static constexpr int kNotch = 120;

    /// @return whole notches reached with this angle, signed; each is one wheel message
    int Add(int angle);
    void Reset() { m_rest = 0; }

private:
    int m_rest = 0;
};
