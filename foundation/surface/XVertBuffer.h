#pragma once

#include "foundation/surface/XUpdateFlag.h"
#include "foundation/surface/XVertRecording.h"

#include <atomic>
#include <memory>

class XBackBuffer;

/// A recording of drawing primitives in world coordinates, replayed at any mapping.
///
/// Objects add their primitives between Start and End; until End, Draw and GetRecording go on with
/// the recording of before. What was recorded is never written again, so copies of the buffer and
/// of GetRecording are cheap and may be replayed by other threads. Additions outside Start and End
/// are ignored, and so is whatever cannot be drawn (see XVertRecording).
/// Threads: one thread at a time; the update flag may be used by any.
class XAPI XVertBuffer
{
public:
    XVertBuffer();

    void Start();
    void End();
    int IsRecording() const { return m_growing ? 1 : 0; }

    void AddPoint(const tagXVector3& at, const tagXVertPoint& point);
    void AddPolyline(const tagXVector3* vertices, std::size_t count, const tagXVertLine& line);
    /// A polygon of one or more rings, each closed by itself.
    /// @param vertices   the vertices of all rings, one ring after the other
    /// @param line, fill null leaves that part out
    /// @param isWinding  the winding rule decides what is inside; otherwise the even-odd rule
    void AddPolygon(const tagXVector3* vertices, const std::size_t* ringSizes,
                    std::size_t ringCount, const tagXVertLine* line, const tagXVertFill* fill,
                    bool isWinding = false);
    void AddPolygon(const tagXVector3* vertices, std::size_t count, const tagXVertLine* line,
                    const tagXVertFill* fill);
    void AddText(const tagXVertText& text);
    /// A picture whose corners lie at three world points. Its own alpha counts.
    /// @param opacity  0 to 1, held there; NaN is 1
    void AddImage(const QImage& image, const tagXVector3& upperLeft, const tagXVector3& upperRight,
                  const tagXVector3& lowerLeft, double opacity = 1.0);

    /// A recording as a part of this one. It is shared, not copied.
    void AddPart(std::shared_ptr<const XVertRecording> part);

    /// Replays the recording into the buffer, clipped to it.
    /// @param abort  polled all the time; a non-zero word ends the replay; may be null
    /// @return 0 when it was aborted or there is nothing to draw on
    int Draw(XBackBuffer* buffer, const std::atomic<int>* abort = nullptr) const;

    /// Never null.
    std::shared_ptr<const XVertRecording> GetRecording() const { return m_recording; }
    void SetRecording(std::shared_ptr<const XVertRecording> recording); ///< null empties
    int IsEmpty() const { return m_recording->GetCommands().empty() ? 1 : 0; }

    /// A code that the owner keeps here.
    void SetType(int type) { m_type = type; }
    int GetType() const { return m_type; }
    /// Non-zero: the heights of texts added from now on are pixels.
    void SetFontSizeFlag(int flag) { m_fontSizeFlag = flag; }
    int GetFontSizeFlag() const { return m_fontSizeFlag; }
    /// Non-zero: edges are smoothed. Off at first; never use it for exclusive-or overlays.
    void SetSmooth(int isSmooth) { m_isSmooth = isSmooth; }
    int IsSmooth() const { return m_isSmooth; }

    int IsUpdateNeeded() const { return m_update.IsRaised(); }
    void SetUpdateNeeded() { m_update.Raise(); }
    void UpdateNeeded() { m_update.Raise(); }
    void UpdateCompleted() { m_update.Clear(); }

private:
    std::shared_ptr<const XVertRecording> m_recording;
    std::shared_ptr<XVertRecording> m_growing;
    XUpdateFlag m_update;
    int m_type = 0;
    int m_fontSizeFlag = 0;
    int m_isSmooth = 0;
};
