#include "host/gallery/XEnhanceSheet.h"

#include "enhance/XStretchNames.h"
#include "foundation/platform/XQtText.h"
#include "foundation/raster/XDMCompManager.h"
#include "foundation/raster/XDMComposite.h"
#include "foundation/raster/XDefaultDisplay.h"
#include "foundation/raster/XRSFile.h"
#include "foundation/raster/XRSFileIO.h"
#include "foundation/raster/XStretchLUT.h"
#include "foundation/raster/XStretchPreset.h"
#include "foundation/surface/XBackBuffer.h"
#include "host/gallery/XPictureFile.h"

#include <QPainter>

namespace {

constexpr QSize kTile(246, 144); // the longest label fits
constexpr double kMagnified = 3;
constexpr int kGap = 8;
constexpr int kLabel = 18;
constexpr int kCurve = 52;

/// A raster in a manager, as a view has it.
struct tagShown
{
    XRSFile file;
    XDMCompManager manager;
    XDMComposite* composite = nullptr;

    bool Open(const QString& path)
    {
        XString error;
        if (!XRSFileIO::Open(XfnFromQString(path), &file, error)) return false;
        int rgb[3];
        const int mode = XfnDefaultBands(&file, rgb);
        if (mode < 0) return false;
        composite = manager.NewXDMComposite(mode);
        for (int ch = 0; ch < composite->GetNumberOfChannels(); ++ch)
            composite->SetBand(file.GetBandAt(rgb[2 - ch]), ch);
        manager.AddXDMComposite(composite);
        return true;
    }

    QImage Draw(const QSize& size)
    {
        XBackBuffer buffer;
        buffer.Resize(nullptr, size.width(), size.height());
        const XDMBand& band = *composite->GetFirstBand();
        double left = 0, right = 0, bottom = 0, top = 0;
        composite->GetBoundRect(left, right, bottom, top);
        buffer.SetWorldPerPixel(band.GetXPixelSize() / kMagnified,
                                band.GetYPixelSize() / kMagnified);
        buffer.SetWorldToCenter((left + right) / 2, (bottom + top) / 2);
        double x0 = 0, y0 = size.height(), x1 = size.width(), y1 = 0;
        buffer.ConvPixelToWorldCoord(x0, y0);
        buffer.ConvPixelToWorldCoord(x1, y1);
        composite->UpdateNeeded();
        composite->Draw(&buffer, x0, y0, x1, y1, 1, nullptr, nullptr);
        return buffer.GetImage().copy();
    }
};

QRect TileAt(int index, int columns)
{
    const QPoint corner(kGap + index % columns * (kTile.width() + kGap),
                        kGap + index / columns * (kTile.height() + kLabel + kGap));
    return {corner, kTile};
}

QImage MakeSheet(int count, int columns)
{
    const QRect last = TileAt((count - 1) / columns * columns + columns - 1, columns);
    QImage sheet(last.right() + kGap, last.bottom() + kLabel + kGap, QImage::Format_RGB32);
    sheet.fill(Qt::white);
    return sheet;
}

void PaintTile(QPainter& painter, const QRect& tile, const QImage& image, const QString& label)
{
    painter.drawImage(tile.topLeft(), image);
    painter.setPen(Qt::black);
    painter.drawText(tile.left(), tile.bottom() + 1, tile.width(), kLabel,
                     Qt::AlignLeft | Qt::AlignVCenter, label);
}

void PaintCurve(QPainter& painter, const QRect& tile, const unsigned char* lut)
{
    const QRect frame(tile.right() - kCurve - 3, tile.bottom() - kCurve - 3, kCurve, kCurve);
    painter.fillRect(frame, QColor(0, 0, 0, 150));
    QPolygonF curve;
    for (int i = 0; i < 256; ++i)
        curve << QPointF(frame.left() + i * kCurve / 256.0,
                         frame.bottom() + 1 - lut[i] * kCurve / 256.0);
    painter.setPen(QPen(Qt::white, 1.5));
    painter.drawPolyline(curve);
}

bool SaveTypes(tagShown& shown, const QString& folder, const char* name)
{
    const auto types = XfnGetStretchTypeNames();
    QImage sheet = MakeSheet(static_cast<int>(types.size()), 4);
    QPainter painter(&sheet);
    painter.setRenderHint(QPainter::Antialiasing);
    int index = 0;
    for (const tagXStretchName& type : types) {
        XfnEnhanceEx(shown.manager, 0, 2, type.value);
        for (int ch = 0; ch < 3; ++ch) { // counted by the piecewise stretch only
            shown.composite->RemoveAllHistPts(ch);
            shown.composite->AddHistPt(ch, 20, 70);
            shown.composite->AddHistPt(ch, 235, 170);
        }
        const QRect tile = TileAt(index++, 4);
        PaintTile(painter, tile, shown.Draw(kTile), type.label);
        PaintCurve(painter, tile, shown.composite->GetLUT(0));
    }
    painter.end();
    return XfnSavePicture(sheet, folder, name);
}

bool SavePresets(tagShown& shown, const QString& folder, const char* name)
{
    const auto presets = XfnGetStretchPresets();
    QImage sheet = MakeSheet(static_cast<int>(presets.size()), 3);
    QPainter painter(&sheet);
    QFont font = painter.font();
    font.setPixelSize(11);
    painter.setFont(font);
    int index = 0;
    for (const tagXStretchPreset& preset : presets) {
        XfnEnhanceEx(shown.manager, preset.coverage, preset.cutType, preset.stretchType);
        PaintTile(painter, TileAt(index++, 3), shown.Draw(kTile), preset.label);
    }
    painter.end();
    return XfnSavePicture(sheet, folder, name);
}

} // namespace

const char* XfnSaveEnhanceSheets(const QString& folder, const QString& sample)
{
    constexpr const char* kTypes = "stretch-types.png";
    constexpr const char* kPresets = "stretch-presets.png";
    tagShown shown;
    if (!shown.Open(sample) || !SaveTypes(shown, folder, kTypes)) return kTypes;
    return SavePresets(shown, folder, kPresets) ? nullptr : kPresets;
}
