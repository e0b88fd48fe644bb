#include "view/XWheelSteps.h"

int XWheelSteps::Add(int angle)
{
    if ((angle < 0) != (m_rest < 0)) m_rest = 0;
    const long long sum = static_cast<long long>(m_rest) + angle;
    m_rest = static_cast<int>(sum % kNotch);
    return static_cast<int>(sum / kNotch);
}
