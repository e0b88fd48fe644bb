#pragma once

#include "foundation/base/XObList.h"

class XvcObj;

/// The objects selected in a view, in the order in which they were selected. The objects stay owned
/// by their layers. Threads: user interface only.
class XAPI XGVSelectedObjs
{
public:
    /// The list itself, which hosts read and fill; it must hold vector objects only.
    XObList* GetList() { return &m_list; }
    const XObList* GetList() const { return &m_list; }
    int IsEmpty() const;
    int Clear(); ///< @return non-zero when something was selected

private:
    XObList m_list{10};
};
