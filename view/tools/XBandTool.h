#pragma once

#include "view/tools/XShapeTool.h"

#include <QRect>

/// What the tools have in common that pull a box open for text.
///
///   idle     --press-->   building  a text object, and a green band from here
///   building --move-->    building  the band follows while the left button alone is down
///   building --release--> building  the band goes, and the box gets its text
///
/// The object stays under construction until it has one.
class XAPI XBandTool : public XShapeTool
{
public:
    using XShapeTool::XShapeTool;

protected:
    void Press(const tagXToolEvent& event) override;
    void Move(const tagXToolEvent& event) override;
    void Release(const tagXToolEvent& event) override;

    virtual bool IsBuilding() const = 0;
    virtual void BeginObject() = 0;
    virtual void SetPosition(const tagXVector3& position) = 0;
    /// @param box  device pixels of the view; a side may be 0
    virtual void TakeBox(const QRect& box) = 0;
};
