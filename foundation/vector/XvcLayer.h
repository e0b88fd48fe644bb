#pragma once

#include "foundation/vector/XHitFlag.h"
#include "foundation/vector/XVectorRange.h"
#include "foundation/vector/XvcChildList.h"
#include "foundation/vector/XvcObj.h"

#include <cstdint>
#include <memory>
#include <utility>

class XAttributeTable;
class XvcBase;
class XvcLayerChunks;

/// A list of vector objects in z-order: the head is rearmost, the tail is drawn last.
///
/// Objects that are added learn their parent layer. While the attach flag is set (as it is at
/// first) the layer owns its objects: the destructor destroys them; without the flag it drops its
/// nodes only. Taking an object out (RemoveAt, RemoveAll and the like) or replacing it (SetAt) only
/// unlinks it: it is neither destroyed nor read, so that it may be gone already or lie in another
/// layer by then. An object that was taken out therefore keeps its parent layer until it is added
/// elsewhere.
/// Plain lists (class XObList) among the objects are walked into, further layers and bases too.
/// Threads: no lock.
class XAPI XvcLayer : public XvcChildList<XvcObj>
{
    X_DECLARE_CLASS(XvcLayer)
public:
    XvcLayer();
    ~XvcLayer() override;
    XvcLayer(const XvcLayer&) = delete;
    XvcLayer& operator=(const XvcLayer&) = delete;

    void DestroyAll(); ///< empties the layer and destroys its objects
    /// Of this layer alone, also when another comes to lie at its address later; never 0.
    std::uint64_t GetNumber() const { return m_number; }

    const XString& GetName() const { return m_name; }
    void SetName(const XString& name) { m_name = name; }
    const XString& GetLink() const { return m_link; }
    void SetLink(const XString& link) { m_link = link; }
    int IsHidden() const { return m_hideFlag; }
    int GetHideFlag() const { return m_hideFlag; }
    void SetHideFlag(int flag) { m_hideFlag = flag ? 1 : 0; }
    int IsLocked() const { return m_lockFlag; } ///< kept for editors, no operation here asks
    void SetLockFlag(int flag) { m_lockFlag = flag ? 1 : 0; }
    int IsHitTestable() const { return m_hitTestable; }
    void SetHitTestable(int flag) { m_hitTestable = flag ? 1 : 0; }
    int GetAttachFlag() const { return m_attachFlag; }
    void SetAttachFlag(int flag) { m_attachFlag = flag ? 1 : 0; }
    XvcBase* GetParentBase() const { return m_parentBase; }
    void SetParentBase(XvcBase* base) { m_parentBase = base; }
    /// What a file told of the objects, shared and read only; null for none.
    const std::shared_ptr<const XAttributeTable>& GetAttributes() const { return m_attributes; }
    void SetAttributes(std::shared_ptr<const XAttributeTable> table)
    {
        m_attributes = std::move(table);
    }

    /// Type and font size flag that the layer's objects are recorded with; -1 (at first): those of
    /// the recording itself.
    int GetVertBufferType() const { return m_vertBufferType; }
    void SetVertBufferType(int type) { m_vertBufferType = type; }
    int GetVertBufferFontSizeFlag() const { return m_vertBufferFontSizeFlag; }
    void SetVertBufferFontSizeFlag(int flag) { m_vertBufferFontSizeFlag = flag; }

    /// Of every element, hidden ones too, and the union of what they draw (GetDrawnExtent). Objects
    /// that were not touched since the last time keep their range.
    void CalcRange();
    const tagXVectorRange& GetRange() const { return m_range; }
    void GetRange(double& minX, double& minY, double& minZ, double& maxX, double& maxY,
                  double& maxZ) const;

    /// Hidden layers and objects record nothing. Without warp and attributes the recording is made
    /// of parts that the layer keeps: only runs of objects in which one was touched, added or taken
    /// out since are recorded anew.
    void CreateVertexBuffer(XVertBuffer* buffer, const XWarp2D* warp, const tagXDrawAttrs* attrs);

    /// The frontmost object hit; null in a layer that is hidden or not to be hit.
    XvcObj* HitTest(const tagXVector3& point, double tolerance, tagXHitFlag& hitFlag);
    XvcObj* HitTest(const tagXVector3& point, double toleranceX, double toleranceY,
                    tagXHitFlag& hitFlag);

protected:
    void Adopt(XvcObj& object) override;

private:
    const std::uint64_t m_number;
    XString m_name;
    XString m_link;
    int m_hideFlag = 0;
    int m_attachFlag = 1;
    int m_lockFlag = 0;
    int m_hitTestable = 1;
    int m_vertBufferType = -1;
    int m_vertBufferFontSizeFlag = -1;
    XvcBase* m_parentBase = nullptr;
    std::shared_ptr<const XAttributeTable> m_attributes;
    tagXVectorRange m_range;
    std::unique_ptr<XvcLayerChunks> m_chunks; // never null
};
