#pragma once

#include "view/tools/XShapeTool.h"

/// What the tools have in common that draw within a box.
///
///   idle     --press-->   building  both corners here
///   building --move-->    building  the second corner follows; Ctrl makes a square on the screen
///   building --release--> idle      finish; where both corners are one, refuse
///
/// The corners are those of the last move, wherever the release is.
class XAPI XBoxTool : public XShapeTool
{
public:
    using XShapeTool::XShapeTool;

protected:
    void Press(const tagXToolEvent& event) override;
    void Move(const tagXToolEvent& event) override;
    void Release(const tagXToolEvent& event) override;

    virtual bool IsBuilding() const = 0;
    virtual void BeginObject() = 0;
    virtual void SetCorners(const tagXVector3& a, const tagXVector3& b) = 0;
    virtual bool IsPoint() const = 0; ///< both corners are one
    /// What a point leaves when it is refused.
    virtual Keep GetKeep() const { return Keep::Nothing; }
};
