#pragma once

#include "foundation/base/XWarp2D.h"
#include "foundation/vector/XvcSymbolTable.h"
#include "foundation/vector/XvcVertexObj.h"

class XvcSymbolDef;

/// An instance of a symbol of a table: a number, a centre, a turn and a size on each axis.
///
/// The scale is the side of the symbol's square in world units; a negative one mirrors. The table is
/// lent, but its definitions are shared: copies in other layers look the same when the table is
/// gone. Without one, or when it does not hold the number, the library's own symbols are asked; a
/// number that neither knows is drawn as a box with a cross, so that it can be found and mended.
/// The outline is drawn in the object's colours and thickness (XSymbolOutline).
/// A symbol whose centre is not set draws nothing and is not hit. A new one is number 1, of scale 1.
class XAPI XvcSymbol : public XvcVertexObj
{
    X_DECLARE_CLASS(XvcSymbol)
public:
    XvcSymbol();
    explicit XvcSymbol(int id, double x = 0.0, double y = 0.0, double z = 0.0);

    int GetID() const { return m_id; }
    void SetID(int id)
    {
        m_id = id;
        Touch();
    }
    void SetSymbolTable(const XvcSymbolTable* table)
    {
        m_shared = table ? table->m_shared : nullptr;
        Touch();
    }
    /// Null when there is none or it is gone.
    const XvcSymbolTable* GetSymbolTable() const { return m_shared ? m_shared->table : nullptr; }
    const XvcSymbolDef* GetDefinition() const; ///< null when no table knows the number

    tagXVector3 GetCenter() const { return GetAt(0); }
    void SetCenter(const tagXVector3& center) { SetAt(0, center); }
    void SetCenter(double x, double y, double z = 0.0) { SetAt(0, x, y, z); }
    double GetRotate() const { return m_angleDeg; } ///< degrees, counter-clockwise
    void SetRotate(double angleDeg);                ///< one that is not finite is ignored
    double GetScale() const { return m_scaleX; }    ///< that on x
    void SetScale(double scale);
    void SetScale(double scaleX, double scaleY);
    double GetScaleX() const { return m_scaleX; }
    double GetScaleY() const { return m_scaleY; }
    void SetScaleX(double scale); ///< one that is not finite is ignored, as in the others
    void SetScaleY(double scale);

    /// The map between the symbol's square of side 1 and the world.
    /// @param flag  0: from the square to the world; otherwise back, not valid at a scale of 0
    XWarp2D CalcWarpCoeff(int flag) const;

    void CalcRange() override; ///< of the square, as it is turned
    void CreateVertexBuffer(XVertBuffer* buffer, const XWarp2D* warp,
                            const tagXDrawAttrs* attrs) override;
    /// Near the centre vertex 0, elsewhere in the square the body.
    XvcObj* HitTest(const tagXVector3& point, double toleranceX, double toleranceY,
                    tagXHitFlag& hitFlag) override;
    using XvcObj::HitTest;
    void RotateObject(double x, double y, double angle) override; ///< turns the symbol as well
    void RotateObject(double angle) override;
    void Normalize(double minX, double minY, double maxX, double maxY) override;
    /// A point; an empty one becomes a centre that is not set.
    int ImportFromWkb(const unsigned char* bytes, std::size_t& size, XString& error) override;
    XString ExportToWkt() const override; ///< POINT

protected:
    XHitShape GetHitShape() const override { return XHitShape::Points; }
    bool IsVertexCountAllowed(int count) const override { return count == 1; }
    void StoreOwn(XArchive& archive) const override; ///< the table is not stored
    void LoadOwn(XArchive& archive) override;

private:
    const XvcSymbolDef* GetOwnDefinition() const; // of its table alone

    int m_id = 1;
    std::shared_ptr<const XvcSymbolTable::tagShared> m_shared;
    double m_angleDeg = 0.0;
    double m_scaleX = 1.0;
    double m_scaleY = 1.0;
};
