#pragma once

#include "foundation/base/XApi.h"

#include <cstdint>
#include <memory>
#include <vector>

/// The update flags of a view that cross to its worker, in this order; non-zero is raised.
struct tagXPendingFlags
{
    std::uint32_t bookMark = 0;
    std::uint32_t mainVertex = 0;
    std::uint32_t mainBack = 0;
    std::uint32_t tempVertex = 0;
    std::uint32_t tempBack = 0;

    void Merge(const tagXPendingFlags& other)
    {
        bookMark |= other.bookMark;
        mainVertex |= other.mainVertex;
        mainBack |= other.mainBack;
        tempVertex |= other.tempVertex;
        tempBack |= other.tempBack;
    }
    friend bool operator==(const tagXPendingFlags&, const tagXPendingFlags&) = default;
};

/// Pyramid levels of a composite; 0 is full resolution.
struct tagXLevelRange
{
    int highest = 0; ///< the one that the zoom needs
    int maximum = 0; ///< the coarsest there is
};

/// What a request is about, recorded by the thread that asks: the worker draws from it alone.
class XAPI XRenderScene
{
public:
    virtual ~XRenderScene() = default;
};

/// What the worker draws on.
///
/// Threads: IsAlive and AwaitHelpers from any; the rest from the worker only, one call at a time, and never with a
/// lock of the worker held.
class XAPI XRenderTarget
{
public:
    virtual ~XRenderTarget() = default;

    /// 0 once the window has gone. The worker leaves then.
    virtual int IsAlive() const = 0;

    /// A sweep begins; what is asked and drawn until EndSweep is about `scene`.
    virtual void BeginSweep(const std::shared_ptr<XRenderScene>& scene) = 0;
    virtual int GetCompositeCount() const = 0;
    virtual tagXLevelRange CalcLevels(int composite) = 0;
    virtual int IsCompositeStale(int composite) const = 0;

    /// Brings up to date what the flags name, polling the worker's cancel flag. What it throws is
    /// dropped; the sweep goes on, and its flags wait on when the last pass threw.
    /// @param levels  one draw level a composite; empty before the first sweep with a composite
    virtual void DrawPass(const tagXPendingFlags& flags, const std::vector<int>& levels) = 0;
    /// The pass before came to its end: wakes the thread that shows it.
    virtual void Invalidate() = 0;

    /// Returns when nothing that passes began goes on behind them. From any thread, while no pass
    /// is drawn.
    virtual void AwaitHelpers() {}

    virtual void EndSweep() = 0; ///< lets the scene go and all that was made from it
    virtual void OnIdle() = 0;   ///< nothing is left to do
};
