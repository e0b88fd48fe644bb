#pragma once

#include "foundation/base/XApi.h"
#include "foundation/base/XColor.h"
#include "foundation/base/XFillStyle.h"
#include "foundation/base/XLineStyle.h"
#include "foundation/base/XObject.h"
#include "foundation/base/XString.h"
#include "foundation/base/XVector3.h"
#include "foundation/vector/XHitFlag.h"
#include "foundation/vector/XSharedRecord.h"
#include "foundation/vector/XVectorRange.h"

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>

class XBackBuffer;
class XPtrArray;
class XVertBuffer;
class XWarp2D;
class XvcLayer;
struct tagXDrawAttrs;

/// The range of an object, and with it what tells whether the object is as it was when a layer
/// looked at it last. Whatever writes the range as a whole (CalcRange does) touches the object.
class XAPI XvcObjRange : public tagXVectorRange
{
public:
    XvcObjRange() = default;
    XvcObjRange(const XvcObjRange& other) : tagXVectorRange(other), hideFlag(other.hideFlag) {}
    XvcObjRange& operator=(const XvcObjRange& other)
    {
        hideFlag = other.hideFlag;
        return *this = static_cast<const tagXVectorRange&>(other);
    }
    XvcObjRange& operator=(const tagXVectorRange& range)
    {
        tagXVectorRange::operator=(range);
        Touch();
        return *this;
    }
    void Clear() { *this = tagXVectorRange(); }

    void Touch()
    {
        if (m_revision) Forget();
    }
    std::uint32_t GetRevision() const { return m_revision; } ///< 0 when touched
    void Settle();                                           ///< gives a touched one its number
    /// Rises with every touch of an object that had its number.
    static std::uint32_t GetTouchCount() { return s_touchCount.load(std::memory_order_relaxed); }
    static std::uint32_t GetEpoch() { return s_epoch.load(std::memory_order_relaxed); }
    static void TouchAll();

    int hideFlag = 0; // here it costs no room

private:
    void Forget();

    std::uint32_t m_revision = 0;
    static std::atomic<std::uint32_t> s_touchCount;
    static std::atomic<std::uint32_t> s_epoch; // rises with TouchAll
};

/// The root of all vector objects: the attributes that they share, and the operations by which
/// they are drawn, hit, moved and stored. The root has no geometry.
///
/// Size: a layer may hold a million objects, so what most have alike is shared. Fill and line styles
/// come from a pool; link, warp and reserved values take room once one of them is set.
/// Changes: layers draw and hit from what they took from an object last, and look again at those
/// that were touched since. The setters here touch, and so does CalcRange; setters of derived
/// classes call Touch, and who writes through a pointer to a vertex (AddCtrlPoints, MoveVertex,
/// GetVertexArray) calls CalcRange afterwards. An object that is drawn from other objects it holds
/// overrides Refresh.
/// Copies: assignment takes over every attribute, the range and the geometry, but not the parent
/// layer: a copy lies in no layer until it is added to one.
/// Ownership: an object belongs to its layer; the warp and the layer are lent.
/// Threads: no lock. One thread changes an object while no other reads it.
class XAPI XvcObj : public XObject
{
    X_DECLARE_CLASS(XvcObj)
public:
    static constexpr int kReservedCount = 5;

    XvcObj();
    XvcObj(const XvcObj& other);
    XvcObj& operator=(const XvcObj& other);
    ~XvcObj() override;

    const XString& GetName() const { return m_name; }
    void SetName(const XString& name) { m_name = name; }
    const XString& GetLink() const { return GetRare().link; }
    tagXColor GetLineColor() const { return m_lineColor; }
    tagXColor GetForeColor() const { return m_foreColor; }
    tagXColor GetBackColor() const { return m_backColor; }
    double GetThick() const { return m_thick; }
    /// Good until the style is set anew.
    const tagXFillStyle& GetFillStyle() const { return m_shared->styles->fill; }
    const tagXLineStyle& GetLineStyle() const { return m_shared->styles->line; }
    int GetHideFlag() const { return m_range.hideFlag; }
    int IsHidden() const { return m_range.hideFlag; }
    XvcLayer* GetParentLayer() const { return m_parentLayer; }
    /// Names the object's row in a table of attributes (XAttributeTable.h); 0 for none. Not stored here.
    std::uint32_t GetRecord() const { return m_record; }
    void SetRecord(std::uint32_t record) { m_record = record; }
    void GetRange(double& minX, double& minY, double& minZ, double& maxX, double& maxY,
                  double& maxZ) const;
    const tagXVectorRange& GetRange() const { return m_range; }
    XString GetReserved(int index) const; ///< empty for an index outside 0 to 4
    double GetReserved() const { return GetRare().reservedValue; }
    XWarp2D* GetWarpCeoff() const { return GetRare().warp; } ///< hosts know it under this spelling

    /// Tells layers that the object looks different or lies elsewhere.
    void Touch() { m_range.Touch(); }
    /// The same for all objects there are: something changed that they are drawn from.
    static void TouchAll() { XvcObjRange::TouchAll(); }

    /// Stores the attributes; objects with geometry add theirs behind. The parent layer and the
    /// warp are not stored. Loading throws XFileException on a file that ends early or lies.
    void Serialize(XArchive& archive) override;

    virtual void SetWarpCoeff(XWarp2D* warp); ///< lent; null for none
    virtual void SetLineColor(tagXColor color);
    virtual void SetForeColor(tagXColor color);
    virtual void SetBackColor(tagXColor color);
    virtual void SetReserved(int index, const XString& text); ///< outside 0 to 4: nothing
    virtual void SetReserved(double value);
    /// Thickness of lines or size of points: world units when positive, pixels when negative.
    virtual void SetThick(double value);
    virtual void SetFillStyle(const tagXFillStyle& style);
    virtual void SetLineStyle(const tagXLineStyle& style);
    virtual void SetLink(const XString& text);
    virtual void SetHideFlag(int flag);
    virtual void SetRange(double minX, double minY, double minZ, double maxX, double maxY,
                          double maxZ);
    virtual void SetParentLayer(XvcLayer* layer); ///< called by the layer

    /// Computes the range from the geometry; to be called after every change of it.
    virtual void CalcRange();

    /// Appends what the object looks like to a recording that was started.
    /// @param warp   carries the object's coordinates into those of the recording; null: the
    ///               object's own warp, if it has one
    /// @param attrs  attributes that stand in for the object's; may be null
    virtual void CreateVertexBuffer(XVertBuffer* buffer, const XWarp2D* warp,
                                    const tagXDrawAttrs* attrs);

    /// Draws the object at once, through a recording of its own.
    /// @param flag  the font size flag of that recording
    virtual void DrawToBackBuffer(XBackBuffer* buffer, int flag, const XWarp2D* warp,
                                  const tagXDrawAttrs* attrs);

    virtual void DrawToSmartBuffer(void* state); ///< draws nothing

    /// @param toleranceX, toleranceY  world units; below 0 counts as 0
    /// @param hitFlag  written on a hit only
    /// @return the object hit, which is this one save where a class says otherwise, or null
    virtual XvcObj* HitTest(const tagXVector3& point, double toleranceX, double toleranceY,
                            tagXHitFlag& hitFlag);
    virtual XvcObj* HitTest(const tagXVector3& point, double tolerance, tagXHitFlag& hitFlag);

    /// Adds the addresses of the control vertices (tagXVector3*) to `array`.
    virtual void AddCtrlPoints(XPtrArray& array);

    /// The operations that change geometry leave the range to CalcRange. Steps and angles that are
    /// not finite change nothing.
    virtual void MoveObject(double dx, double dy, double dz);
    /// @return the vertex moved, null for an index that the object does not have
    virtual tagXVector3* MoveVertex(int hitIndex, double dx, double dy, double dz);
    /// @param angle  degrees, counter-clockwise with y upwards
    virtual void RotateObject(double x, double y, double angle);
    virtual void RotateObject(double angle); ///< about the centre of the range, calculated anew

    /// Maps the box from (minX, minY) to (maxX, maxY) onto the unit square. A side without length
    /// maps to 0; a box that is not finite changes nothing.
    virtual void Normalize(double minX, double minY, double maxX, double maxY);

    /// Reads one geometry of the object's kind in well-known binary (ISO or with the extended
    /// flags, either byte order).
    /// @param size  in: bytes there are; out, on success: bytes used
    /// @return 0 with a sentence in `error`; then the object is as it was
    virtual int ImportFromWkb(const unsigned char* bytes, std::size_t& size, XString& error);
    virtual XString ExportToWkt() const; ///< the root's is empty

    /// What is seen and what is hit may lie outside the range, which is that of the geometry. Both
    /// are those of the range calculated last.
    virtual tagXVectorRange GetDrawnExtent() const { return m_range; } ///< what a view fits to
    virtual tagXVectorRange GetHitExtent() const { return GetDrawnExtent(); }

    /// Calculates the range if the object was touched since the last call. For layers.
    /// @return never 0; a number that no other object and no other state of this one has had
    virtual std::uint32_t Refresh();

protected:
    /// The warp to draw with.
    const XWarp2D* ChooseWarp(const XWarp2D* warp) const { return warp ? warp : GetWarpCeoff(); }

    XvcObjRange m_range;

private:
    struct tagStyles
    {
        tagXFillStyle fill;
        tagXLineStyle line;
        friend bool operator==(const tagStyles&, const tagStyles&) = default;
    };
    struct tagRare
    {
        std::array<XString, kReservedCount> reserved;
        double reservedValue = 0.0;
        XString link;
        XWarp2D* warp = nullptr;
        bool HasTexts() const;
        bool IsEmpty() const;
    };
    struct tagShared
    {
        XSharedRecord<tagStyles> styles; // never null
        XSharedRecord<tagRare> rare;     // null while it would be empty
        friend bool operator==(const tagShared&, const tagShared&) = default;
    };
    class StylePool;

    const tagRare& GetRare() const { return m_shared->rare ? *m_shared->rare : GetNoRare(); }
    static const tagRare& GetNoRare();
    template <class Change>
    void ChangeRare(const Change& change);

    XString m_name;
    tagXColor m_lineColor = kXOpaque | 0xFFFFFFu;
    tagXColor m_foreColor = kXOpaque | 0xFFFFFFu;
    tagXColor m_backColor = kXOpaque | 0xFFFFFFu;
    std::uint32_t m_record = 0;
    double m_thick = 0.0;
    XSharedRecord<tagShared> m_shared; // never null
    XvcLayer* m_parentLayer = nullptr;
};
