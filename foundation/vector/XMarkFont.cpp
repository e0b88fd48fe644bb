#include "foundation/vector/XMarkFont.h"

#include "foundation/base/XArchive.h"
#include "foundation/base/XFileException.h"
#include "foundation/base/XSentinels.h"
#include "foundation/base/XWarp2D.h"
#include "foundation/reference/XSpatialReference.h"
#include "foundation/surface/XTextLayout.h"
#include "foundation/surface/XVertBuffer.h"

#include <cmath>
#include <numbers>

namespace {
constexpr double kMeasuredPx = 256.0; // large enough that hinting hardly shows
constexpr double kDegPerRad = 180.0 / std::numbers::pi;
} // namespace

void XMarkFont::SetSize(double height)
{
    if (height != 0.0 && XfnIsSet(height)) size = height;
}

double XMarkFont::GetHeight(double worldPerPixel) const
{
    return size > 0.0 ? size : -size * worldPerPixel;
}

double XMarkFont::GetWidth(const XString& text) const
{
    if (text.IsEmpty()) return 0.0;
    return XTextLayout(text, style, kMeasuredPx).GetSize().width() / kMeasuredPx;
}

void XMarkFont::Record(XVertBuffer& buffer, const tagXVertText& text, const XWarp2D* warp,
                       tagXColor lineColour) const
{
    if (text.text.IsEmpty()) return;
    tagXVertText label = text;
    label.style = style;
    label.height = std::fabs(size);
    label.colour = colour ? colour : lineColour;
    if (warp) {
        const double angle = text.angleDeg / kDegPerRad;
        const double step = label.height;
        double x = label.position.x, y = label.position.y;
        double alongX = x + step * std::cos(angle), alongY = y + step * std::sin(angle);
        double aboveX = x - step * std::sin(angle), aboveY = y + step * std::cos(angle);
        warp->Warp(x, y);
        warp->Warp(alongX, alongY);
        warp->Warp(aboveX, aboveY);
        if (size > 0.0) label.height = std::hypot(aboveX - x, aboveY - y);
        if (text.angleDeg != 0.0) label.angleDeg = std::atan2(alongY - y, alongX - x) * kDegPerRad;
        label.position.x = x;
        label.position.y = y;
    }
    const int flag = buffer.GetFontSizeFlag();
    if (size < 0.0) buffer.SetFontSizeFlag(1);
    buffer.AddText(label);
    buffer.SetFontSizeFlag(flag);
}

void XMarkFont::RecordInWorld(XVertBuffer& buffer, const tagXVertText& text, double height,
                              const XWarp2D* warp, tagXColor lineColour) const
{
    XMarkFont font = *this;
    font.size = height;
    const int flag = buffer.GetFontSizeFlag();
    buffer.SetFontSizeFlag(0);
    font.Record(buffer, text, warp, lineColour);
    buffer.SetFontSizeFlag(flag);
}

void XMarkFont::Store(XArchive& archive) const
{
    archive << size << colour;
    XfnStoreTextStyle(archive, style);
}

void XMarkFont::Load(XArchive& archive)
{
    XMarkFont loaded;
    double height = 0.0;
    archive >> height >> loaded.colour;
    loaded.style = XfnLoadTextStyle(archive);
    loaded.SetSize(height);
    *this = loaded;
}

void XfnStoreTextStyle(XArchive& archive, const tagXTextStyle& style)
{
    archive << style.word;
    archive.Write(&style.font, sizeof style.font);
}

tagXTextStyle XfnLoadTextStyle(XArchive& archive)
{
    tagXTextStyle style;
    archive >> style.word;
    archive.ReadExactly(&style.font, sizeof style.font);
    style.font.faceName[sizeof style.font.faceName - 1] = '\0';
    return style;
}

void XfnStoreReference(XArchive& archive, const XSpatialReference& reference)
{
    XString wkt;
    reference.exportToWkt(wkt);
    archive << wkt << reference.GetCoordType();
}

XSpatialReference XfnLoadReference(XArchive& archive)
{
    XString wkt;
    int coordType = 0;
    archive >> wkt >> coordType;
    XSpatialReference reference;
    if (!wkt.IsEmpty() && !reference.importFromWkt(wkt)) {
        throw XFileException(XFileException::kInvalidFile);
    }
    reference.SetCoordType(coordType);
    return reference;
}
