#include "host/gallery/XPaletteSheet.h"

#include "enhance/XPaletteDlg.h"
#include "enhance/XPalettePicture.h"
#include "foundation/platform/XQtText.h"
#include "foundation/raster/XDMComposite.h"
#include "foundation/raster/XDefaultDisplay.h"
#include "foundation/raster/XPalette.h"
#include "foundation/raster/XRSFile.h"
#include "foundation/raster/XRSFileIO.h"
#include "host/gallery/XPictureFile.h"

#include <QApplication>
#include <QDir>
#include <QImage>
#include <QLineEdit>
#include <QListWidget>
#include <QMouseEvent>
#include <QPainter>
#include <QPushButton>

namespace {

constexpr int kColumns = 2;
constexpr int kRampWidth = 256;
constexpr int kRampHeight = 18;
constexpr int kRowHeight = 24;
constexpr int kTextWidth = 220;
constexpr int kMargin = 12;

QImage DrawCatalogue()
{
    const XPaletteModel model;
    const QPalette colors = QApplication::palette();
    const int count = XfnGetNumberOfPalette();
    const int rows = (count + kColumns - 1) / kColumns;
    const int columnWidth = kTextWidth + kRampWidth + 2 * kMargin;
    QImage sheet(kColumns * columnWidth, rows * kRowHeight + 2 * kMargin, QImage::Format_RGB32);
    sheet.fill(colors.color(QPalette::Window));
    QPainter painter(&sheet);
    painter.setPen(colors.color(QPalette::WindowText));
    for (int index = 1; index <= count; ++index) {
        const int x = (index - 1) / rows * columnWidth + kMargin;
        const int y = (index - 1) % rows * kRowHeight + kMargin;
        const QString label =
            QString("%1  %2").arg(index, 2).arg(XfnToQString(XPaletteModel::GetListText(index)));
        painter.drawText(QRect(x, y, kTextWidth, kRampHeight), Qt::AlignVCenter, label);
        painter.drawImage(QRect(x + kTextWidth, y, kRampWidth, kRampHeight),
                          XfnDrawRamp(model.GetListTable(index), kRampWidth));
    }
    return sheet;
}

QImage Grab(QWidget& window)
{
    for (int i = 0; i < 5; ++i)
        QCoreApplication::processEvents(QEventLoop::AllEvents, 50);
    QImage picture = window.grab().toImage().convertToFormat(QImage::Format_RGB32);
    picture.setDevicePixelRatio(1);
    return picture;
}

void PointAt(QWidget& grid, QPointF at)
{
    QMouseEvent event(QEvent::MouseMove, at, grid.mapToGlobal(at), Qt::NoButton, Qt::NoButton,
                      Qt::NoModifier);
    QCoreApplication::sendEvent(&grid, &event);
}

} // namespace

const char* XfnSavePaletteSheets(const QString& folder, const char* suffix, const QString& sample)
{
    const auto save = [&](const QImage& picture, const char* name) {
        return XfnSavePicture(picture, folder, (QByteArray(name) + suffix + ".png").constData());
    };
    XRSFile file;
    XString error;
    if (!XRSFileIO::Open(XfnFromQString(sample), &file, error)) return "palette";
    XDMComposite composite(0);
    composite.SetBand(file.GetBandAt(0), 0);
    composite.SetName("L7_ETMs.tif");
    XfnDefaultStretch(&composite);

    XPaletteDlg dialog;
    dialog.SetXDMComposite(&composite);
    dialog.SetValueRange(48, 131, 1);
    dialog.Create(nullptr, 0);
    dialog.Show();
    dialog.findChild<QListWidget*>("palette.list")->setCurrentRow(53);
    auto& grid = *dialog.findChild<QWidget*>("palette.grid");
    if (!save(Grab(dialog), "palette")) return "palette";
    for (const int cell : {0, 5, 7, 15}) { // anchors along the diagonal
        PointAt(grid, QPointF(10 + 16 * cell, 10 + 16 * cell));
        QKeyEvent key(QEvent::KeyPress, Qt::Key_Space, Qt::NoModifier);
        QCoreApplication::sendEvent(&grid, &key);
    }
    PointAt(grid, QPointF(10 + 16 * 8, 10 + 16 * 6));
    dialog.findChild<QPushButton*>("palette.edit")->click();
    if (!save(Grab(dialog), "palette-edit")) return "palette-edit";
    // the sheet is a plain picture, the same at every scale
    const bool isScaled = dialog.devicePixelRatioF() != 1.0;
    return isScaled || save(DrawCatalogue(), "palettes") ? nullptr : "palettes";
}
