#include "view/XObjectDialogs.h"

namespace {

XObjectDialogs* g_dialogs = nullptr;

} // namespace

XObjectDialogs* XObjectDialogs::Get()
{
    return g_dialogs;
}

void XObjectDialogs::Set(XObjectDialogs* dialogs)
{
    g_dialogs = dialogs;
}
