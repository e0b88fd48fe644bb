#pragma once

#include "foundation/vector/XHitBoxes.h"
#include "foundation/vector/XVectorRange.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <unordered_map>
#include <vector>

class XObList;
class XObject;
class XVertBuffer;
class XVertRecording;
class XvcObj;
struct __POSITION;
struct tagXHitFlag;
struct tagXVector3;

/// What a list keeps of its objects so as not to ask all of them each time: ranges, boxes to hit, and
/// recordings, for runs of a few hundred objects that follow each other. For layers; internal to this
/// folder.
///
/// Each operation first looks whether the list was changed or an object touched since. If so it walks
/// the list and makes anew the runs in which something is different; objects are asked for their range
/// only when they were touched. Elements that are no objects (lists, layers, bases) are asked each
/// time.
/// Memory: 12 bytes an object and the recordings. Threads: those of the list.
class XvcLayerChunks
{
public:
    explicit XvcLayerChunks(XObList& list) : m_list(list) {}

    tagXVectorRange CalcRange();
    /// Recordings are kept for the type and font size flag that the buffer has.
    void Record(XVertBuffer& buffer);
    XvcObj* HitTest(const tagXVector3& point, double toleranceX, double toleranceY,
                    tagXHitFlag& hitFlag);

private:
    static constexpr std::size_t kUsualCount = 256;
    static constexpr std::size_t kLeastCount = 64; // a shorter run goes on into the next
    static constexpr std::size_t kMostCount = 384;

    struct tagChunk
    {
        XObject* other = nullptr; // an element that is no object; the rest is empty then
        __POSITION* head = nullptr;
        std::vector<std::uint32_t> revisions; // of the objects
        tagXVectorRange range;
        XHitBoxes boxes;
        std::shared_ptr<const XVertRecording> recording; // null until it is asked for
        int type = 0;
        int fontSizeFlag = 0;
    };
    using Chunks = std::vector<std::unique_ptr<tagChunk>>;

    class Builder;

    void Update();
    template <class Visit>
    void ForEachObject(const tagChunk& chunk, Visit visit);
    XvcObj* HitTestChunk(const tagChunk& chunk, const tagXVector3& point, double toleranceX,
                         double toleranceY, tagXHitFlag& hitFlag);

    XObList& m_list;
    Chunks m_chunks;
    bool m_isFilled = false;
    // as they were when the list was walked last
    unsigned m_changeCount = 0;
    std::uint32_t m_touchCount = 0;
    std::uint32_t m_epoch = 0;
};
