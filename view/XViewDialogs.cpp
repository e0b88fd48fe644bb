#include "view/XViewDialogs.h"

XViewDialogFactories& XViewDialogFactories::Get()
{
    static XViewDialogFactories factories;
    return factories;
}
