#include "vecprop/XObjectPictures.h"

#include "foundation/base/XSentinels.h"
#include "foundation/surface/XBackBuffer.h"
#include "foundation/surface/XTextAlign.h"
#include "foundation/vector/XvcArcClosed.h"
#include "foundation/vector/XvcBspline.h"
#include "foundation/vector/XvcLine.h"
#include "foundation/vector/XvcNorthArrow.h"
#include "foundation/vector/XvcPoint.h"
#include "foundation/vector/XvcRectangle.h"
#include "foundation/vector/XvcSymbol.h"

#include <algorithm>

namespace {

using Objects = std::vector<std::unique_ptr<XvcObj>>;

QImage Draw(const Objects& objects, XBackBuffer& buffer, tagXColor paper)
{
    buffer.Clear(paper);
    for (const auto& object : objects)
        if (!object->IsHidden()) object->DrawToBackBuffer(&buffer, 0, nullptr, nullptr);
    return buffer.GetImage();
}

/// The objects of one entry's picture, in pixels with y upwards.
class Sketch
{
public:
    Sketch(int widthPx, int heightPx, tagXColor ink, tagXColor paper)
        : m_width(widthPx), m_height(heightPx), m_ink(ink | kXOpaque), m_paper(paper | kXOpaque)
    {}

    void Make(XChoicePicture picture, int value, const XvcObj* like);
    const Objects& Get() const { return m_objects; }

private:
    template <class Class>
    Class& Add(double thickPx)
    {
        auto made = std::make_unique<Class>();
        Class& object = *made;
        object.SetLineColor(m_ink);
        object.SetForeColor((m_ink & ~kXOpaque) | 0x50000000u);
        object.SetBackColor(m_paper);
        object.SetThick(-thickPx);
        m_objects.push_back(std::move(made));
        return object;
    }
    XvcLine& AddLine()
    {
        XvcLine& line = Add<XvcLine>(2.0);
        line.SetVertices({0.1 * m_width, 0.5 * m_height, 0.0},
                         {0.9 * m_width, 0.5 * m_height, 0.0});
        line.SetStartSize(0.6 * m_height);
        line.SetEndSize(0.6 * m_height);
        return line;
    }
    void AddSpline(int type);
    void AddAlign(int align);

    Objects m_objects;
    double m_width;
    double m_height;
    tagXColor m_ink;
    tagXColor m_paper;
};

void Sketch::AddSpline(int type)
{
    XvcBspline& spline = Add<XvcBspline>(2.0);
    constexpr double kPoles[][2] = {{0.1, 0.2}, {0.3, 0.95}, {0.5, 0.05}, {0.7, 0.95}, {0.9, 0.2}};
    for (const auto& pole : kPoles)
        spline.AddPole(pole[0] * m_width, pole[1] * m_height);
    spline.SetType(type);
}

void Sketch::AddAlign(int align)
{
    const double left = 0.2 * m_width, right = 0.8 * m_width;
    const double bottom = 0.25 * m_height, top = 0.75 * m_height;
    Add<XvcRectangle>(1.0).Set(left, bottom, 0.0, right, top, 0.0);
    const double x = align & kXTextRight ? right : align & kXTextCentre ? (left + right) / 2 : left;
    const double y = align & kXTextBottom   ? bottom
                     : align & kXTextMiddle ? (bottom + top) / 2
                                            : top;
    XvcPoint& mark = Add<XvcPoint>(0.3 * m_height);
    mark.SetForeColor(m_ink);
    mark.SetType(1);
    mark.SetVertex(x, y, 0.0);
}

void Sketch::Make(XChoicePicture picture, int value, const XvcObj* like)
{
    const double side = std::min(m_width, m_height);
    switch (picture) {
    case XChoicePicture::None:
        break;
    case XChoicePicture::PointShape: {
        XvcPoint& point = Add<XvcPoint>(0.7 * side);
        point.SetType(value);
        point.SetVertex(m_width / 2, m_height / 2, 0.0);
        break;
    }
    case XChoicePicture::LineStart:
        AddLine().SetStartShapeID(value);
        break;
    case XChoicePicture::LineEnd:
        AddLine().SetEndShapeID(value);
        break;
    case XChoicePicture::LineStyle: {
        XvcLine& line = AddLine();
        line.SetLineStyle(value == kXOwnPattern && like ? like->GetLineStyle()
                                                        : tagXLineStyle(value));
        break;
    }
    case XChoicePicture::FillStyle: {
        XvcRectangle& area = Add<XvcRectangle>(1.0);
        area.Set(2.0, 2.0, 0.0, m_width - 3.0, m_height - 3.0, 0.0);
        area.SetForeColor(m_ink);
        area.SetFillStyle(value == kXOwnPattern && like ? like->GetFillStyle()
                                                        : tagXFillStyle(value));
        break;
    }
    case XChoicePicture::Symbol: {
        XvcSymbol& symbol = Add<XvcSymbol>(1.0);
        if (const auto* own = dynamic_cast<const XvcSymbol*>(like))
            symbol.SetSymbolTable(own->GetSymbolTable());
        symbol.SetID(value);
        symbol.SetCenter(m_width / 2, m_height / 2);
        symbol.SetScale(0.9 * side);
        break;
    }
    case XChoicePicture::NorthArrow: {
        XvcNorthArrow& arrow = Add<XvcNorthArrow>(1.0);
        arrow.Set(m_width / 2 - side / 2 + 1, 1.0, 0.0, m_width / 2 + side / 2 - 2, side - 2, 0.0);
        arrow.SetForeColor(m_ink);
        arrow.SetStyle(value);
        break;
    }
    case XChoicePicture::SplineType:
        AddSpline(value);
        break;
    case XChoicePicture::CloseType: {
        XvcArcClosed& arc = Add<XvcArcClosed>(1.0);
        arc.SetCenter(m_width / 2, m_height / 2);
        arc.SetAxis(0.4 * m_width, 0.4 * m_height);
        arc.SetAngle(20.0, 250.0);
        arc.SetCloseType(value);
        break;
    }
    case XChoicePicture::TextAlign:
        AddAlign(value);
        break;
    }
}

XBackBuffer MakeBuffer(int widthPx, int heightPx)
{
    XBackBuffer buffer;
    buffer.Create(nullptr, 2);
    buffer.Resize(nullptr, std::max(widthPx, 1), std::max(heightPx, 1));
    return buffer;
}

// The same drawn on black and on white tells how much of the paper shows through: what differs by
// all of it is nothing but paper, what does not differ hides it.
QImage JoinToAlpha(const QImage& onBlack, const QImage& onWhite)
{
    QImage joined(onBlack.size(), QImage::Format_ARGB32_Premultiplied);
    for (int y = 0; y < joined.height(); ++y) {
        auto* to = reinterpret_cast<QRgb*>(joined.scanLine(y));
        for (int x = 0; x < joined.width(); ++x) {
            const QRgb black = onBlack.pixel(x, y);
            const int paper = qGreen(onWhite.pixel(x, y)) - qGreen(black);
            const int alpha = 255 - std::clamp(paper, 0, 255);
            to[x] = qRgba(std::min(qRed(black), alpha), std::min(qGreen(black), alpha),
                          std::min(qBlue(black), alpha), alpha);
        }
    }
    return joined;
}

} // namespace

QImage XfnDrawObjects(const std::vector<std::unique_ptr<XvcObj>>& objects, int widthPx,
                      int heightPx, tagXColor paper)
{
    XBackBuffer buffer = MakeBuffer(widthPx, heightPx);
    tagXVectorRange range;
    for (const auto& object : objects)
        range.Add(object->GetRange());
    if (range.IsEmpty()) return Draw({}, buffer, paper);
    constexpr double kShare = 0.8; // the rest is for thick outlines
    const double length = std::max((range.maxX - range.minX) / (kShare * buffer.GetWidth()),
                                   (range.maxY - range.minY) / (kShare * buffer.GetHeight()));
    const double scale = length > 0.0 && XfnIsSet(length) ? length : 1.0;
    buffer.SetWorldPerPixel(scale, scale);
    buffer.SetWorldToCenter(range.minX / 2 + range.maxX / 2, range.minY / 2 + range.maxY / 2);
    return Draw(objects, buffer, paper);
}

QImage XfnDrawChoice(XChoicePicture picture, int value, int widthPx, int heightPx, tagXColor ink,
                     const XvcObj* like)
{
    XBackBuffer buffer = MakeBuffer(widthPx, heightPx);
    buffer.SetWorldPerPixel(1.0, 1.0);
    buffer.SetWorldToCenter(buffer.GetWidth() / 2.0, buffer.GetHeight() / 2.0);
    const auto drawOn = [&](tagXColor paper) {
        Sketch sketch(buffer.GetWidth(), buffer.GetHeight(), ink, paper);
        sketch.Make(picture, value, like);
        return Draw(sketch.Get(), buffer, paper);
    };
    return JoinToAlpha(drawOn(XfnMakeColor(0, 0, 0)), drawOn(XfnMakeColor(255, 255, 255)));
}
