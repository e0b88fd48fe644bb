#include "foundation/vector/XvcArcClosed.h"

X_IMPLEMENT_CLASS(XvcArcClosed, XvcArcObj)

void XvcArcClosed::SetCloseType(int type)
{
    SetLoadedMode(type);
    Touch();
}

bool XvcArcClosed::SetLoadedMode(int mode)
{
    if (mode != kChord && mode != kPie) return false;
    m_closeType = mode;
    return true;
}
