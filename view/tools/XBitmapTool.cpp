#include "view/tools/XBitmapTool.h"

#include "foundation/platform/XPrompts.h"
#include "foundation/platform/XQtText.h"
#include "foundation/vector/XvcBitmap.h"

#include <QCoreApplication>
#include <QDir>

#include <cstring>

namespace {

void SetWhite(XvcBitmap& picture)
{
    constexpr int kSide = 4;
    tagBITMAPINFO info;
    info.bmiHeader.biSize = 44;
    info.bmiHeader.biWidth = info.bmiHeader.biHeight = kSide;
    info.bmiHeader.biBitCount = 24;
    unsigned char bits[kSide * kSide * 3];
    std::memset(bits, 0xFF, sizeof bits);
    picture.SetDIB(&info, bits);
}

} // namespace

bool XBitmapTool::IsBuilding() const
{
    return Current<XvcBitmap>() != nullptr;
}

void XBitmapTool::BeginObject()
{
    XvcBitmap& picture = Begin<XvcBitmap>();
    const QString path = QDir(QCoreApplication::applicationDirPath()).filePath("tqs.bmp");
    XString error;
    if (!picture.ReadBMP(XfnFromQString(path), error)) SetWhite(picture);
}

void XBitmapTool::SetCorners(const tagXVector3& a, const tagXVector3& b)
{
    Current<XvcBitmap>()->SetLeftTop(a);
    Current<XvcBitmap>()->SetRightBottom(b);
}

bool XBitmapTool::IsPoint() const
{
    return Current<XvcBitmap>()->GetLeftTop() == Current<XvcBitmap>()->GetRightBottom();
}

int XBitmapTool::ChooseFile(XvcBitmap& picture) const
{
    const int chosen = GetTarget().ChoosePicture(picture);
    if (chosen >= 0) return chosen;
    const XHWND owner = GetTarget().GetOwnerWindow();
    tagXFilePrompt prompt;
    prompt.filter = "BMP File(*.bmp)|*.bmp||";
    XString path, error;
    if (!XPrompts::Get()->OpenFile(owner, prompt, path)) return 0;
    if (picture.ReadBMP(path, error)) return 1;
    XPrompts::Get()->Message(owner, error);
    return 0;
}

void XBitmapTool::Release(const tagXToolEvent& event)
{
    if (!IsBuilding()) return;
    const auto isChosen =
        Hold([this](XvcObj& object) { return ChooseFile(static_cast<XvcBitmap&>(object)); });
    if (!isChosen) return;
    if (*isChosen)
        XBoxTool::Release(event);
    else
        Refuse(Keep::SelectionAndMode);
}
