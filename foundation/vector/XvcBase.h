#pragma once

#include "foundation/base/XObList.h"
#include "foundation/vector/XHitFlag.h"
#include "foundation/vector/XVectorRange.h"

class XVertBuffer;
class XWarp2D;
class XvcLayer;
class XvcObj;
class XvcSymbolTable;
struct tagXDrawAttrs;
struct tagXVector3;

/// A list of layers, the last drawn in front.
///
/// The base owns its layers: the destructor destroys them with their objects. Taking a layer out
/// (RemoveAt, RemoveAll) never destroys it and hands it to the caller. The symbol table is lent.
/// Threads: no lock.
class XAPI XvcBase : public XObList
{
    X_DECLARE_CLASS(XvcBase)
public:
    XvcBase();
    ~XvcBase() override;
    XvcBase(const XvcBase&) = delete;
    XvcBase& operator=(const XvcBase&) = delete;

    __POSITION* AddTail(XvcLayer* layer); ///< the layer learns its parent base
    void RemoveAt(__POSITION* position);
    void RemoveAll();

    const XString& GetName() const { return m_name; }
    void SetName(const XString& name) { m_name = name; }
    const XString& GetLink() const { return m_link; }
    void SetLink(const XString& link) { m_link = link; }
    int IsHidden() const { return m_hideFlag; }
    int GetHideFlag() const { return m_hideFlag; }
    void SetHideFlag(int flag) { m_hideFlag = flag ? 1 : 0; }
    XvcSymbolTable* GetSymbolTable() const { return m_symbolTable; }
    void SetSymbolTable(XvcSymbolTable* table) { m_symbolTable = table; }

    void CalcRange(); ///< of every layer and the union
    /// The union of the last CalcRange; an empty one has minima at 1.7e308 and maxima at -1.7e308.
    void GetRange(double& minX, double& minY, double& minZ, double& maxX, double& maxY,
                  double& maxZ) const;
    /// Mean of minimum and maximum on each axis; 0 on all when the range is empty.
    void GetCenter(double& x, double& y, double& z) const;

    void CreateVertexBuffer(XVertBuffer* buffer, const XWarp2D* warp, const tagXDrawAttrs* attrs);

    /// The frontmost object hit, null in a hidden base.
    XvcObj* HitTest(const tagXVector3& point, double tolerance, tagXHitFlag& hitFlag);

private:
    XString m_name;
    XString m_link;
    int m_hideFlag = 0;
    XvcSymbolTable* m_symbolTable = nullptr;
    tagXVectorRange m_range;
};
