#pragma once

#include "foundation/reference/XSpatialReference.h"
#include "foundation/vector/XHitFlag.h"
#include "foundation/vector/XVectorRange.h"
#include "foundation/vector/XvcChildList.h"

#include <memory>

class XVertBuffer;
class XWarp2D;
class XvcLayer;
class XvcObj;
class XvcSymbolTable;
struct tagXDrawAttrs;
struct tagXVector3;

/// A list of layers, the last drawn in front.
///
/// Layers that are added learn their parent base. The base owns its layers: the destructor
/// destroys them with their objects. Taking a layer out (RemoveAt, RemoveAll and the like) only
/// unlinks it: it is neither destroyed nor read, so that it may be gone already, and its parent base
/// stays. The symbol table that is
/// set is lent.
/// Plain lists (class XObList), further bases and objects may stand among the layers or in plain
/// lists; they count as the layers do in ranges, recordings and hits, and the base owns them too.
/// Threads: no lock.
class XAPI XvcBase : public XvcChildList<XvcLayer>
{
    X_DECLARE_CLASS(XvcBase)
public:
    XvcBase();
    ~XvcBase() override;
    XvcBase(const XvcBase&) = delete;
    XvcBase& operator=(const XvcBase&) = delete;

    const XString& GetName() const { return m_name; }
    void SetName(const XString& name) { m_name = name; }
    const XString& GetLink() const { return m_link; }
    void SetLink(const XString& link) { m_link = link; }
    int IsHidden() const { return m_hideFlag; }
    int GetHideFlag() const { return m_hideFlag; }
    void SetHideFlag(int flag) { m_hideFlag = flag ? 1 : 0; }
    XvcSymbolTable* GetSymbolTable() const { return m_symbolTable; }
    void SetSymbolTable(XvcSymbolTable* table) { m_symbolTable = table; }
    /// The base's own table, made when it is first asked for; that of a file lies here.
    XvcSymbolTable& GetOwnSymbolTable();

    /// The coordinate system of what lies here, as far as it is known; hosts that place the base
    /// somewhere else need not ask for it.
    const XSpatialReference* GetSR() const { return &m_sr; }
    void SetSR(const XSpatialReference* sr); ///< copies; null clears

    void CalcRange(); ///< of every element, hidden ones too, and the union
    /// The union of the last CalcRange; an empty one has minima at 1.7e308 and maxima at -1.7e308.
    const tagXVectorRange& GetRange() const { return m_range; }
    void GetRange(double& minX, double& minY, double& minZ, double& maxX, double& maxY,
                  double& maxZ) const;
    /// Mean of minimum and maximum on each axis; 0 on all when the range is empty.
    void GetCenter(double& x, double& y, double& z) const;

    /// A hidden base and hidden elements record nothing.
    void CreateVertexBuffer(XVertBuffer* buffer, const XWarp2D* warp, const tagXDrawAttrs* attrs);

    /// The frontmost object hit, null in a hidden base.
    XvcObj* HitTest(const tagXVector3& point, double tolerance, tagXHitFlag& hitFlag);
    XvcObj* HitTest(const tagXVector3& point, double toleranceX, double toleranceY,
                    tagXHitFlag& hitFlag);

protected:
    void Adopt(XvcLayer& layer) override;

private:
    XString m_name;
    XString m_link;
    int m_hideFlag = 0;
    XvcSymbolTable* m_symbolTable = nullptr;
    std::unique_ptr<XvcSymbolTable> m_ownSymbolTable;
    XSpatialReference m_sr;
    tagXVectorRange m_range;
};
