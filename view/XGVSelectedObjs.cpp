#include "view/XGVSelectedObjs.h"

int XGVSelectedObjs::IsEmpty() const
{
    return m_list.GetCount() == 0;
}

int XGVSelectedObjs::Clear()
{
    if (IsEmpty()) return 0;
    m_list.RemoveAll();
    return 1;
}
