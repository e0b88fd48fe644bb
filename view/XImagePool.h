#pragma once

#include "foundation/base/XApi.h"

#include <QImage>

#include <memory>

/// Pictures that go back and forth between two threads, used again instead of made anew.
///
/// A picture comes back when the last holder lets it go, on whatever thread. One whose pixels
/// somebody still shares by then is dropped. Threads: any; pictures may outlive the pool.
class XAPI XImagePool
{
public:
    XImagePool();
    ~XImagePool();
    XImagePool(const XImagePool&) = delete;
    XImagePool& operator=(const XImagePool&) = delete;

    /// 32-bit, what it holds is of no meaning. Null without pixels or memory.
    std::shared_ptr<QImage> Take(const QSize& size);

private:
    struct tagFree;
    std::shared_ptr<tagFree> m_free;
};
