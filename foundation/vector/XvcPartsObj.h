#pragma once

#include "foundation/vector/XvcObj.h"

#include <memory>
#include <vector>

/// What objects made of other objects have in common. They own their parts.
///
/// Copies and files hold the parts of classes that XvcFactory.h knows, and leave others out. What is
/// done to the whole is done to each part; the range is the union of theirs. Vertices and edges are counted through all parts: the index of a hit is that of the part
/// plus the numbers of vertices of the parts before it, and MoveVertex takes it so.
/// Parts learn the parent layer of the whole.
class XAPI XvcPartsObj : public XvcObj
{
    X_DECLARE_CLASS(XvcPartsObj)
public:
    /// Objects of this kind in each other that a file holds; storing more throws XFileException with
    /// a sentence that says so.
    static constexpr int kMaxDepth = 32;

    ~XvcPartsObj() override;

    void RemoveAll()
    {
        m_parts.clear();
        Touch();
    }
    /// @return 0 for an index that there is not
    int RemoveAt(int index);

    void Serialize(XArchive& archive) override;
    void SetParentLayer(XvcLayer* layer) override;
    void CalcRange() override;
    tagXVectorRange GetDrawnExtent() const override;
    tagXVectorRange GetHitExtent() const override;
    std::uint32_t Refresh() override;
    void CreateVertexBuffer(XVertBuffer* buffer, const XWarp2D* warp,
                            const tagXDrawAttrs* attrs) override;
    /// Answers the whole for a hit on any part that is not hidden.
    XvcObj* HitTest(const tagXVector3& point, double toleranceX, double toleranceY,
                    tagXHitFlag& hitFlag) override;
    using XvcObj::HitTest;
    void AddCtrlPoints(XPtrArray& array) override;
    void MoveObject(double dx, double dy, double dz) override;
    tagXVector3* MoveVertex(int hitIndex, double dx, double dy, double dz) override;
    void RotateObject(double x, double y, double angle) override;
    using XvcObj::RotateObject;
    void Normalize(double minX, double minY, double maxX, double maxY) override;

protected:
    XvcPartsObj() = default;
    XvcPartsObj(const XvcPartsObj& other);
    XvcPartsObj& operator=(const XvcPartsObj& other);

    int GetPartCount() const { return static_cast<int>(m_parts.size()); }
    XvcObj* GetPartAt(int index) const; ///< null for an index that there is not
    /// Takes the object. @return its index; -1 for null, which is not added
    int AddPart(std::unique_ptr<XvcObj> part);
    /// Adds an empty part that takes over the attributes of the whole.
    template <class Part>
    Part& AddNewPart()
    {
        auto part = std::make_unique<Part>();
        GiveAttributes(*part);
        Part& added = *part;
        AddPart(std::move(part));
        return added;
    }
    void GiveAttributes(XvcObj& part) const;
    /// Points and objects of vertices have some, others none.
    static int CountVertices(const XvcObj& object);

    /// Whether an object of this class may be a part; asked when loading.
    virtual bool IsPartAllowed(const XvcObj& part) const;
    /// The part of Serialize behind attributes and parts; as in XvcVertexObj.
    virtual void StoreOwn(XArchive& archive) const;
    virtual void LoadOwn(XArchive& archive);

    std::vector<std::unique_ptr<XvcObj>> m_parts;
};
