#pragma once

#include "foundation/base/XApi.h"
#include "foundation/surface/XBackBuffer.h"
#include "foundation/surface/XVertBuffer.h"

#include <initializer_list>

/// The recordings and surfaces of a view, in the order in which they are brought up to date.
enum class XViewBuffer { Measure, BookMark, MainVertex, MainBack, TempVertex, TempBack };

/// How each of them is brought up to date. Each clears its own flag before it begins, so that one
/// that is raised meanwhile stays up and asks for another update.
class XAPI XViewOverlaySteps
{
public:
    virtual ~XViewOverlaySteps() = default;
    virtual void UpdateVertBufferMeasure() = 0;
    virtual void UpdateVertBufferBookMark() = 0;
    virtual void UpdateVertBuffer() = 0;
    virtual void UpdateBackBuffer() = 0;
    virtual void UpdateVertBufferTemp() = 0;
    virtual void UpdateBackBufferTemp() = 0;
};

/// Four recordings (main, temporary, measure, bookmark) and two surfaces (main and the overlay that
/// is laid over it), each with its own update flag.
///
/// The main surface replays the main, measure and bookmark recordings, the overlay the temporary
/// one; so the order of updates is that of XViewBuffer. Raising a flag is all that a change needs.
class XAPI XViewOverlay
{
public:
    static constexpr int kVertexType = 3;
    static constexpr int kSurfaceKind = 2;
    static constexpr tagXColor kOverlayBackground = 0xFF000000u;

    /// Types, kinds and sizes as a new view has them.
    void Create(int width, int height);

    void Raise(std::initializer_list<XViewBuffer> buffers);
    int IsRaised(XViewBuffer buffer) const;
    /// Vectors moved, and nothing else is different: raises both surfaces and the recordings of what
    /// moves, and notes that rasters may stay as they were drawn last.
    void RaiseMoved();
    /// Whether nothing but RaiseMoved raised the main surface; forgets it.
    int TakeMoved();
    /// Runs the step of each buffer whose flag is raised.
    /// @param isAlive  asked before each step: a step may have destroyed the view
    template <class Alive>
    void UpdateRaised(XViewOverlaySteps& steps, Alive isAlive)
    {
        for (const Step& step : kSteps) {
            if (!isAlive()) return;
            if (IsRaised(step.buffer)) (steps.*step.update)();
        }
    }

    /// The same for the four recordings alone.
    void UpdateVertices(XViewOverlaySteps& steps);

    XVertBuffer& GetVertex(XViewBuffer buffer); ///< one of the four recordings
    XBackBuffer& GetMainBack() { return m_mainBack; }
    XBackBuffer& GetTempBack() { return m_tempBack; }
    const XBackBuffer& GetMainBack() const { return m_mainBack; }

    /// Replays the temporary recording on a black overlay and clears the flag.
    void UpdateTempBack();

private:
    struct Step
    {
        XViewBuffer buffer;
        void (XViewOverlaySteps::*update)();
    };
    static const Step kSteps[6];

    XVertBuffer m_mainVertex;
    XVertBuffer m_tempVertex;
    XVertBuffer m_measureVertex;
    XVertBuffer m_bookMarkVertex;
    XBackBuffer m_mainBack;
    XBackBuffer m_tempBack;
    bool m_isOnlyMoved = false;
};
