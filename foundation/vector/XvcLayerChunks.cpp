#include "foundation/vector/XvcLayerChunks.h"

#include "foundation/base/XObList.h"
#include "foundation/surface/XVertBuffer.h"
#include "foundation/vector/XVectorWalk.h"
#include "foundation/vector/XvcObj.h"

#include <algorithm>
#include <bitset>
#include <cmath>
#include <utility>

/// Cuts the walked objects into runs, so that as many as can be are those of before.
class XvcLayerChunks::Builder
{
public:
    Builder(Chunks& former, Chunks& chunks) : m_former(former), m_chunks(chunks)
    {
        for (std::size_t i = 0; i < former.size(); ++i) {
            if (former[i]->other) continue;
            const std::uint32_t first = former[i]->revisions.front();
            m_firsts.emplace(first, i);
            m_firstBits.set(first % m_firstBits.size());
        }
    }

    void AddObject(__POSITION* position, XvcObj& object, std::uint32_t revision)
    {
        const std::size_t count = m_revisions.size();
        const bool isFull = count >= (m_firsts.empty() ? kUsualCount : kMostCount);
        if (isFull || (count >= kLeastCount && IsFirst(revision))) EndRun();
        if (m_revisions.empty()) m_head = position;
        m_revisions.push_back(revision);
        m_objects.push_back(&object);
    }

    void AddOther(XObject* element)
    {
        EndRun();
        m_chunks.push_back(std::make_unique<tagChunk>());
        m_chunks.back()->other = element;
    }

    void EndRun()
    {
        if (m_revisions.empty()) return;
        std::unique_ptr<tagChunk> chunk = TakeFormer();
        if (!chunk) chunk = Make();
        chunk->head = m_head;
        m_chunks.push_back(std::move(chunk));
        m_revisions.clear();
        m_objects.clear();
    }

private:
    bool IsFirst(std::uint32_t revision) const
    {
        return m_firstBits.test(revision % m_firstBits.size()) && m_firsts.count(revision);
    }

    std::unique_ptr<tagChunk> TakeFormer()
    {
        const auto found = m_firsts.find(m_revisions.front());
        if (found == m_firsts.end()) return nullptr;
        std::unique_ptr<tagChunk>& former = m_former[found->second];
        if (!former || former->revisions != m_revisions) return nullptr;
        return std::move(former);
    }

    std::unique_ptr<tagChunk> Make() const
    {
        auto chunk = std::make_unique<tagChunk>();
        chunk->revisions = m_revisions;
        std::vector<tagXVectorRange> extents;
        extents.reserve(m_objects.size());
        for (const XvcObj* object : m_objects) {
            extents.push_back(object->GetHitExtent());
            chunk->range.Add(object->GetDrawnExtent());
        }
        chunk->boxes = XHitBoxes(extents);
        return chunk;
    }

    Chunks& m_former;
    Chunks& m_chunks;
    std::unordered_map<std::uint32_t, std::size_t> m_firsts; // of the former runs
    std::bitset<16384> m_firstBits; // most others are told without a search
    __POSITION* m_head = nullptr;
    std::vector<std::uint32_t> m_revisions;
    std::vector<XvcObj*> m_objects;
};

void XvcLayerChunks::Update()
{
    // read before the walk: what is touched meanwhile is looked at the next time
    const unsigned changeCount = m_list.GetChangeCount();
    const std::uint32_t touchCount = XvcObjRange::GetTouchCount();
    const std::uint32_t epoch = XvcObjRange::GetEpoch();
    if (m_isFilled && changeCount == m_changeCount && touchCount == m_touchCount &&
        epoch == m_epoch) {
        return;
    }
    const bool isAllTouched = m_isFilled && epoch != m_epoch;
    m_isFilled = false;
    Chunks former = std::exchange(m_chunks, {});
    Builder builder(former, m_chunks);
    const XRuntimeClass* objectClass = nullptr; // the last one that was that of an object
    for (__POSITION* next = m_list.GetHeadPosition(); next;) {
        __POSITION* const position = next;
        XObject* const element = m_list.GetNext(next);
        if (!element) continue;
        const XRuntimeClass* const itsClass = element->GetRuntimeClass();
        if (itsClass != objectClass && !element->IsKindOf(XvcObj::GetRuntimeClassStatic())) {
            builder.AddOther(element);
            continue;
        }
        objectClass = itsClass;
        auto& object = static_cast<XvcObj&>(*element);
        if (isAllTouched) object.Touch();
        builder.AddObject(position, object, object.Refresh());
    }
    builder.EndRun();
    m_isFilled = true;
    m_changeCount = changeCount;
    m_touchCount = touchCount;
    m_epoch = epoch;
}

template <class Visit>
void XvcLayerChunks::ForEachObject(const tagChunk& chunk, Visit visit)
{
    __POSITION* position = chunk.head;
    for (std::size_t i = 0; i < chunk.revisions.size();) {
        XObject* const element = m_list.GetNext(position);
        if (!element) continue;
        visit(i++, static_cast<XvcObj&>(*element));
    }
}

tagXVectorRange XvcLayerChunks::CalcRange()
{
    Update();
    tagXVectorRange range;
    for (const auto& chunk : m_chunks)
        range.Add(chunk->other ? XfnCalcElementRange(chunk->other) : chunk->range);
    return range;
}

void XvcLayerChunks::Record(XVertBuffer& buffer)
{
    Update();
    for (const auto& chunk : m_chunks) {
        if (chunk->other) {
            XfnRecordElement(chunk->other, &buffer, nullptr, nullptr);
            continue;
        }
        if (!chunk->recording || chunk->type != buffer.GetType() ||
            chunk->fontSizeFlag != buffer.GetFontSizeFlag()) {
            XVertBuffer run;
            run.SetType(chunk->type = buffer.GetType());
            run.SetFontSizeFlag(chunk->fontSizeFlag = buffer.GetFontSizeFlag());
            run.Start();
            ForEachObject(*chunk, [&](std::size_t, XvcObj& object) {
                if (!object.IsHidden()) object.CreateVertexBuffer(&run, nullptr, nullptr);
            });
            run.End();
            chunk->recording = run.GetRecording();
        }
        buffer.AddPart(chunk->recording);
    }
}

XvcObj* XvcLayerChunks::HitTestChunk(const tagChunk& chunk, const tagXVector3& point,
                                     double toleranceX, double toleranceY, tagXHitFlag& hitFlag)
{
    std::uint16_t found[XHitBoxes::kMaxCount];
    // a point takes the larger of both tolerances; written so that one that is no number counts as 0
    const double reach =
        std::max(toleranceX > 0.0 ? toleranceX : 0.0, toleranceY > 0.0 ? toleranceY : 0.0);
    const std::size_t count = chunk.boxes.Find(point.x, point.y, reach, found);
    if (count == 0) return nullptr;
    XvcObj* objects[XHitBoxes::kMaxCount];
    std::size_t next = 0;
    ForEachObject(chunk, [&](std::size_t index, XvcObj& object) {
        if (next < count && found[next] == index) objects[next++] = &object;
    });
    while (next > 0) {
        XvcObj& object = *objects[--next];
        if (object.IsHidden()) continue;
        if (XvcObj* hit = object.HitTest(point, toleranceX, toleranceY, hitFlag)) return hit;
    }
    return nullptr;
}

XvcObj* XvcLayerChunks::HitTest(const tagXVector3& point, double toleranceX, double toleranceY,
                                tagXHitFlag& hitFlag)
{
    if (!XfnIsSet(point.x) || !XfnIsSet(point.y))
        return XfnHitTestElements(m_list, point, toleranceX, toleranceY, hitFlag);
    Update();
    for (auto chunk = m_chunks.rbegin(); chunk != m_chunks.rend(); ++chunk) {
        XvcObj* hit = nullptr;
        if ((*chunk)->other) {
            hit = XfnHitTestElement((*chunk)->other, point, toleranceX, toleranceY, hitFlag);
        } else {
            hit = HitTestChunk(**chunk, point, toleranceX, toleranceY, hitFlag);
        }
        if (hit) return hit;
    }
    return nullptr;
}
