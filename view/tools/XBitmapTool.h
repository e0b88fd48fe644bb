#pragma once

#include "view/tools/XBoxTool.h"

class XvcBitmap;

/// The tool of mode 109: puts a picture of a file into a box, see XBoxTool.
///
///   building --release--> idle  asks for the file; one that cannot be read is told in a box, and
///                               refused like one that is not chosen: the mode and the selection
///                               stay
///
/// While the box grows it shows "tqs.bmp" of the program's folder, or plain white.
class XAPI XBitmapTool final : public XBoxTool
{
public:
    explicit XBitmapTool(XToolTarget& target)
        : XBoxTool(target, XViewReport::PictureCreated, XObjectDialog::Bitmap)
    {}

protected:
    bool IsBuilding() const override;
    void BeginObject() override;
    void SetCorners(const tagXVector3& a, const tagXVector3& b) override;
    bool IsPoint() const override;
    void Release(const tagXToolEvent& event) override;

private:
    int ChooseFile(XvcBitmap& picture) const;
};
