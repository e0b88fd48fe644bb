#include "host/gallery/XObjectDialogSheet.h"

#include "foundation/base/XObList.h"
#include "foundation/base/XTextStyle.h"
#include "foundation/vector/XvcBase.h"
#include "foundation/vector/XvcLayer.h"
#include "foundation/vector/XvcMPoint.h"
#include "vecprop/CNorthArrowDlg.h"
#include "vecprop/CTextInputDlg.h"
#include "vecprop/XvcArcClosedDlg.h"
#include "vecprop/XvcArcDlg.h"
#include "vecprop/XvcBitmapDlg.h"
#include "vecprop/XvcBsplineDlg.h"
#include "vecprop/XvcEllipseDlg.h"
#include "vecprop/XvcLineDlg.h"
#include "vecprop/XvcObjDlg.h"
#include "vecprop/XvcObjGrpDlg.h"
#include "vecprop/XvcPointDlg.h"
#include "vecprop/XvcPolygonDlg.h"
#include "vecprop/XvcPolylineDlg.h"
#include "vecprop/XvcPolypointDlg.h"
#include "vecprop/XvcRasterDlg.h"
#include "vecprop/XvcRectDlg.h"
#include "vecprop/XvcSymbolDlg.h"
#include "vecprop/XvcTextDlg.h"

#include <QCoreApplication>
#include <QDir>
#include <QImage>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QTabWidget>

#include <cstring>

namespace {

// Enters no text cursor into the picture: whether it blinks is a matter of time.
bool Save(QWidget& window, const QString& folder, const QString& name, int page = 0)
{
    if (auto* tabs = window.findChild<QTabWidget*>("pages")) tabs->setCurrentIndex(page);
    window.show();
    for (int i = 0; i < 5; ++i)
        QCoreApplication::processEvents(QEventLoop::AllEvents, 50);
    if (QWidget* focus = window.focusWidget()) focus->clearFocus();
    QImage picture = window.grab().toImage().convertToFormat(QImage::Format_RGB32);
    picture.setDevicePixelRatio(1);
    return picture.save(QDir(folder).filePath(name), "PNG", 0);
}

void Dress(XvcObj& object)
{
    object.SetName("Sample");
    object.SetLineColor(XfnMakeColor(255, 214, 0, 255));
    object.SetForeColor(XfnMakeColor(0, 140, 190, 160));
    object.SetBackColor(XfnMakeColor(255, 255, 255, 255));
    object.SetThick(-2.0);
}

template <class Class>
void FillRing(Class& object)
{
    constexpr double kPlaces[][2] = {{293412.5, 9116020},
                                     {293655, 9116312.25},
                                     {293980, 9116198},
                                     {293860.75, 9115870},
                                     {293590, 9115795.5}};
    for (const auto& place : kPlaces)
        object.Add(place[0], place[1]);
}

template <class Class>
void FillRound(Class& object)
{
    object.SetCenter(293650, 9116145);
    object.SetAxis(320, 180);
    object.SetRotate(20);
}

void FillRaster(XvcRaster& raster)
{
    constexpr int kSide = 24;
    std::vector<float> samples(kSide * kSide);
    for (int i = 0; i < kSide * kSide; ++i)
        samples[static_cast<std::size_t>(i)] = static_cast<float>((i % kSide) * (i / kSide));
    raster.SetData(samples.data(), kSide, kSide, 1, 7);
    raster.SetBound(293400, 9116300, 293800, 9116000);
}

void FillBitmap(XvcBitmap& bitmap)
{
    constexpr int kSide = 16;
    tagBITMAPINFO info{};
    info.bmiHeader.biSize = 40;
    info.bmiHeader.biWidth = kSide;
    info.bmiHeader.biHeight = kSide;
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = 24;
    std::vector<unsigned char> bits(kSide * kSide * 3);
    for (std::size_t i = 0; i < bits.size(); i += 3) {
        bits[i] = static_cast<unsigned char>(i / 3 % kSide * 16);
        bits[i + 1] = static_cast<unsigned char>(i / 3 / kSide * 16);
        bits[i + 2] = 120;
    }
    bitmap.SetDIB(&info, bits.data());
    bitmap.SetBound(293400, 9116300, 293800, 9116000);
    bitmap.SetBorderFlag(1);
}

/// A map in metres for the objects to stand in.
class MetreMap
{
public:
    MetreMap()
    {
        XSpatialReference reference;
        reference.importFromEPSG(31985);
        m_base.SetSR(&reference);
        m_layer = new XvcLayer;
        m_base.AddTail(m_layer);
    }
    void Add(XvcObj& object) { object.SetParentLayer(m_layer); }

private:
    XvcBase m_base;
    XvcLayer* m_layer;
};

/// Makes the pictures one after the other until one fails.
class Shooter
{
public:
    Shooter(const QString& folder, const char* suffix, bool isAll)
        : m_folder(folder), m_suffix(suffix), m_isAll(isAll)
    {}
    const char* GetFailed() const { return m_failed; }

    template <class Dialog, class Class, class Fill>
    void Shoot(const char* name, const Fill& fill, int page = 0, const char* wrongField = nullptr)
    {
        if (IsLeftOut(name)) return;
        Class object;
        Dress(object);
        fill(object);
        object.CalcRange();
        m_map.Add(object);
        Dialog dialog(&object);
        if (wrongField) {
            auto& model = dialog.GetModel();
            model.SetText(model.FindField(wrongField), "12 m");
        }
        Take(dialog, name, page);
    }
    void ShootGroup()
    {
        if (IsLeftOut("group")) return;
        XvcPoint point(293500, 9116100);
        XvcPolygon area;
        XvcEllipse round;
        FillRing(area);
        FillRound(round);
        XObList objects;
        for (XvcObj* object : {static_cast<XvcObj*>(&area), static_cast<XvcObj*>(&round),
                               static_cast<XvcObj*>(&point)}) {
            Dress(*object);
            objects.AddTail(object);
            object->CalcRange();
        }
        round.SetLineColor(XfnMakeColor(255, 82, 82, 255));
        round.SetFillStyle(tagXFillStyle(tagXFillStyle::kDiagonalCross));
        point.SetThick(-9.0);
        point.SetType(1);
        XvcObjGrpDlg dialog(objects);
        Take(dialog, "group", 0);
    }
    void ShootTextInput()
    {
        if (IsLeftOut("textinput")) return;
        CTextInputDlg dialog;
        dialog.SetPosition(100, 100, 220, 32);
        tagXTextStyle style;
        style.font.SetFaceName("DejaVu Sans");
        dialog.SetFont(style, XfnMakeColor(255, 214, 0), 28);
        dialog.findChild<QPlainTextEdit*>("text")->setPlainText("Harbour");
        Take(dialog, "textinput", 0);
    }

private:
    bool IsLeftOut(const char* name) const
    {
        const bool isShown = m_isAll || !std::strcmp(name, "line") || !std::strcmp(name, "group") ||
                             !std::strcmp(name, "polygon");
        return m_failed || !isShown;
    }
    void Take(QWidget& window, const char* name, int page)
    {
        if (!Save(window, m_folder, QString("object-%1%2.png").arg(name, m_suffix), page))
            m_failed = name;
    }

    QString m_folder;
    const char* m_suffix;
    bool m_isAll;
    MetreMap m_map;
    const char* m_failed = nullptr;
};

} // namespace

const char* XfnSaveObjectDialogs(const QString& folder, const char* suffix, bool isAll)
{
    Shooter shooter(folder, suffix, isAll);
    shooter.Shoot<XvcPointDlg, XvcPoint>(
        "point",
        [](XvcPoint& point) {
            point.SetVertex(293650.25, 9116145.5, 0.0);
            point.SetType(3);
            point.SetThick(-40.0);
        },
        0, "positiony");
    shooter.Shoot<XvcLineDlg, XvcLine>("line", [](XvcLine& line) {
        line.SetVertices({293400, 9115900, 0}, {293900, 9116300, 0});
        line.SetStartShapeID(kXLineEndFilledCircle);
        line.SetEndShapeID(kXLineEndBarbedArrow);
        line.SetEndSize(60.0);
    });
    shooter.Shoot<XvcPolylineDlg, XvcPolyline>("polyline", &FillRing<XvcPolyline>, 1);
    shooter.Shoot<XvcPolygonDlg, XvcPolygon>("polygon", &FillRing<XvcPolygon>);
    shooter.Shoot<XvcPolygonDlg, XvcPolygon>("polygon-style", &FillRing<XvcPolygon>, 1);
    shooter.Shoot<XvcPolygonDlg, XvcPolygon>("polygon-general", &FillRing<XvcPolygon>, 2);
    shooter.Shoot<XvcPolypointDlg, XvcPolypoint>("polypoint", [](XvcPolypoint& points) {
        FillRing(points);
        points.SetType(2);
        points.SetThick(-10.0);
    });
    shooter.Shoot<XvcEllipseDlg, XvcEllipse>("ellipse", &FillRound<XvcEllipse>);
    shooter.Shoot<XvcBitmapDlg, XvcBitmap>("bitmap", &FillBitmap);
    shooter.Shoot<XvcTextDlg, XvcText>("text", [](XvcText& text) {
        tagXTextStyle style;
        style.font.SetFaceName("DejaVu Sans");
        style.font.weight = 700;
        text.SetTextStyle(style);
        text.SetText("Harbour\nBasin 2");
        text.SetPosition(293650, 9116145);
        text.SetFontSize(60.0);
        text.SetDrawBorder(1);
    });
    shooter.Shoot<XvcBsplineDlg, XvcBspline>("bspline", [](XvcBspline& spline) {
        XvcPolyline places;
        FillRing(places);
        for (int i = 0; i < places.GetSize(); ++i)
            spline.AddPole(places.GetAt(i));
    });
    shooter.Shoot<XvcSymbolDlg, XvcSymbol>("symbol", [](XvcSymbol& symbol) {
        symbol.SetID(61);
        symbol.SetCenter(293650, 9116145);
        symbol.SetScale(80.0);
    });
    shooter.Shoot<XvcArcDlg, XvcArc>("arc", &FillRound<XvcArc>);
    shooter.Shoot<XvcRectDlg, XvcRectangle>("rect", [](XvcRectangle& rect) {
        rect.Set(293400, 9116000, 0, 293800, 9116300, 0);
        rect.RotateObject(293400, 9116000, 15.0); // leaves digits that say nothing
        rect.RotateObject(15.0 / 7);
    });
    shooter.Shoot<XvcArcClosedDlg, XvcArcClosed>("arcclosed", [](XvcArcClosed& arc) {
        FillRound(arc);
        arc.SetAngle(30, 290);
        arc.SetCloseType(XvcArcClosed::kPie);
    });
    shooter.Shoot<XvcRasterDlg, XvcRaster>("raster", &FillRaster);
    shooter.Shoot<CNorthArrowDlg, XvcNorthArrow>("northarrow", [](XvcNorthArrow& arrow) {
        arrow.Set(293400, 9116000, 0, 293700, 9116300, 0);
        arrow.SetStyle(kXNorthArrowRose16);
        arrow.SetAngle(12.5);
    });
    shooter.Shoot<XvcObjDlg, XvcMPoint>("object", [](XvcMPoint& points) {
        points.SetThick(-12.0);
        XvcPolyline places;
        FillRing(places);
        for (int i = 0; i < places.GetSize(); ++i)
            points.GetPointObjAt(points.AddPoint(places.GetAt(i).x, places.GetAt(i).y))->SetType(1);
    });
    shooter.ShootGroup();
    shooter.ShootTextInput();
    return shooter.GetFailed();
}
