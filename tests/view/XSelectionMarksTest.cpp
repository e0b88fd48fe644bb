#include "view/XSelectionMarks.h"

#include "foundation/base/XSentinels.h"
#include "foundation/vector/XvcArc.h"
#include "foundation/vector/XvcArcClosed.h"
#include "foundation/vector/XvcBalloon.h"
#include "foundation/vector/XvcBitmap.h"
#include "foundation/vector/XvcBspline.h"
#include "foundation/vector/XvcEllipse.h"
#include "foundation/vector/XvcGroup.h"
#include "foundation/vector/XvcLayer.h"
#include "foundation/vector/XvcMLine.h"
#include "foundation/vector/XvcMPoint.h"
#include "foundation/vector/XvcMPolygon.h"
#include "foundation/vector/XvcMPolyline.h"
#include "foundation/vector/XvcMText.h"
#include "foundation/vector/XvcNorthArrow.h"
#include "foundation/vector/XvcPolygon.h"
#include "foundation/vector/XvcPolyline.h"
#include "foundation/vector/XvcRaster.h"
#include "foundation/vector/XvcRectangle.h"
#include "foundation/vector/XvcScaleBar.h"
#include "foundation/vector/XvcSymbol.h"
#include "tests/view/XViewFixture.h"
#include "view/XViewFrame.h"

namespace {

using Places = std::vector<std::pair<double, double>>;

template <class Class, class Build>
std::unique_ptr<XvcObj> Make(Build build)
{
    auto object = std::make_unique<Class>();
    build(*object);
    object->SetFillStyle(tagXFillStyle(tagXFillStyle::kSolid));
    object->CalcRange();
    return object;
}

constexpr auto kPath = [](auto& o) {
    for (const double end : {100, 130})
        o.Add(end, 50, 0);
    o.Add(130, 80, 0);
};
constexpr auto kBox = [](auto& o) { o.Set(100, 50, 0, 130, 80, 0); };
constexpr auto kRound = [](auto& o) {
    o.SetCenter(115, 65);
    o.SetAxis(30, -15);
};
constexpr auto kPicture = [](auto& o) {
    o.SetLeftTop(100, 80);
    o.SetRightBottom(130, 50);
};
constexpr auto kPatch = [](XvcRaster& o) {
    const unsigned char samples[4] = {50, 100, 150, 200};
    o.SetData(samples, 2, 2, 1, 1);
    kPicture(o);
};

Places CornersOf(const XvcObj& object)
{
    const tagXVectorRange& r = object.GetRange();
    return {{r.minX, r.minY}, {r.maxX, r.minY}, {r.maxX, r.maxY}, {r.minX, r.maxY}};
}

class XSelectionMarksTest : public XViewFixture
{
protected:
    XSelectionMarksTest() { view.SetWorldPerPixel(0.5, 0.5); }

    const XVertRecording& Record()
    {
        view.GetOverlay().Raise({XViewBuffer::TempVertex, XViewBuffer::TempBack});
        view.OnDraw(nullptr);
        recording = view.GetOverlay().GetVertex(XViewBuffer::TempVertex).GetRecording();
        return *recording;
    }

    /// The centres of the squares of 3 units a side that the overlay holds, which has no picture.
    Places FindSquares()
    {
        Places places;
        for (const auto& command : Record().GetCommands()) {
            EXPECT_NE(command.kind, XVertRecording::XKind::Image);
            if (command.kind != XVertRecording::XKind::Polygon || command.count != 4) continue;
            const double* at = recording->GetVertices(command.first);
            const auto& line = recording->GetLine(command.line);
            EXPECT_EQ(line.colour, 0xFF00FF00u);
            EXPECT_EQ(line.thick, 0.0);
            EXPECT_EQ(command.fill, XVertRecording::kNoStyle) << "nothing below is hidden";
            if (at[4] - at[0] == 3.0 && at[5] - at[1] == 3.0)
                places.emplace_back(at[0] + 1.5, at[1] + 1.5);
        }
        return places;
    }

    std::shared_ptr<const XVertRecording> recording;
};

TEST_F(XSelectionMarksTest, EachClassHasItsControlPoints)
{
    const Places path = {{100, 50}, {130, 50}, {130, 80}}, point = {{100, 50}};
    const Places box = {{100, 50}, {130, 50}, {130, 80}, {100, 80}};
    const Places round = {{115, 65}, {145, 65}, {115, 50}}, ends = {{100, 50}, {130, 80}};
    const Places none, corners = {{-1, -1}}; // of the range
    struct Case
    {
        const char* name;
        std::unique_ptr<XvcObj> object;
        Places places;
    };
    Case cases[] = {
        {"point", Make<XvcPoint>([](auto& o) { o.SetVertex(100, 50, 0); }), point},
        {"not set", Make<XvcPoint>([](auto& o) { o.SetVertex(kXNotSet, 50, 0); }), none},
        {"symbol", Make<XvcSymbol>([](auto& o) { o.SetCenter(100, 50); }), point},
        {"points", Make<XvcMPoint>([](auto& o) { o.AddPoint(100, 50); }), point},
        {"polygon", Make<XvcPolygon>(kPath), path},
        {"with a gap", Make<XvcPolyline>([](auto& o) { kPath(o), o.Add(kXNotSet, 0, 0); }), path},
        {"polygons",
         Make<XvcMPolygon>([](auto& o) { kPath(*o.GetPolygonObjAt(o.AddPolygon(XvcPolygon()))); }),
         path},
        {"polylines", Make<XvcMPolyline>([](auto& o) {
             kPath(*o.GetPolylineObjAt(o.AddPolyline(XvcPolyline())));
         }),
         path},
        {"line", Make<XvcLine>([](auto& o) { o.SetVertices(100, 50, 0, 130, 80, 0); }), ends},
        {"lines", Make<XvcMLine>([](auto& o) {
             o.AddLine({100, 50, 0}, {130, 80, 0});
         }),
         ends},
        {"ellipse", Make<XvcEllipse>(kRound), round},
        {"arc", Make<XvcArc>(kRound), round},
        {"closed arc", Make<XvcArcClosed>(kRound), none},
        {"no centre", Make<XvcEllipse>([](auto& o) { o.SetAxis(30, 15); }), none},
        {"spline", Make<XvcBspline>([&](auto& o) {
             for (const auto& [x, y] : box)
                 o.AddPole(x, y);
         }),
         box},
        {"text",
         Make<XvcText>([](auto& o) { o.SetText("A"), o.SetFontSize(9), o.SetPosition(1, 2); }),
         corners},
        {"texts", Make<XvcMText>([](auto& o) { o.AddText("A", 1, 2), o.SetFontSize(9); }), corners},
        {"bitmap", Make<XvcBitmap>(kPicture), box},
        {"raster", Make<XvcRaster>(kPatch), box},
        {"group", Make<XvcGroup>([](auto& o) { o.AddObj(Make<XvcRaster>(kPatch)); }), box},
        {"rectangle", Make<XvcRectangle>(kBox), box},
        {"north arrow", Make<XvcNorthArrow>(kBox), box},
        {"scale bar", Make<XvcScaleBar>(kBox), box},
        {"text box", Make<XvcTextBox>(kPicture), box},
        {"balloon",
         Make<XvcBalloon>([](auto& o) { kPicture(o), o.SetPointPosition(90, 30); }),
         {{100, 50}, {130, 50}, {130, 80}, {100, 80}, {90, 30}}},
    };
    view.SetWorldToCenter(115, 60);
    for (Case& c : cases) {
        SCOPED_TRACE(c.name);
        view.GetSelectedObj()->RemoveAll();
        view.GetSelectedObj()->AddTail(c.object.get());
        EXPECT_EQ(FindSquares(), c.places == corners ? CornersOf(*c.object) : c.places);
        EXPECT_EQ(c.object->GetFillStyle().GetStyle(), tagXFillStyle::kSolid);
        if (auto* edited = dynamic_cast<XvcTextBox*>(c.object.get())) {
            int left, top, right, bottom;
            edited->GetEditBound(left, top, right, bottom);
            EXPECT_EQ((Places{{left, top}, {right, bottom}}), (Places{{170, 60}, {230, 120}}));
        }
    }
}

TEST_F(XSelectionMarksTest, TheObjectUnderConstructionIsSeenWhileNothingIsSelected)
{
    EXPECT_TRUE(Record().GetCommands().empty());
    const auto current = Make<XvcPolygon>(kPath);
    view.GetObjectManager().m_currentObject = current.get();
    EXPECT_EQ(Record().GetCommands().size(), 1u);
    for (const tagXColor ground : {0xFF000000u, 0xFFFFFFFFu, 0xFF808080u}) {
        view.SetBackgroundColor(ground);
        current->SetLineColor(0xFF000000u);
        current->SetForeColor(0xFF0000FFu);
        view.SetWorldToCenter(115, 60);
        Record();
        const QImage seen = Paint();
        EXPECT_NE(seen.pixel(200, 120), seen.pixel(2, 2)) << "a black outline on " << ground;
        current->SetForeColor(0xFF000000u);
        Record();
        const QImage filled = Paint();
        EXPECT_NE(filled.pixel(220, 110), filled.pixel(2, 2)) << "a black area on " << ground;
    }
    XvcPoint unset(kXNotSet, kXNotSet); // selected, it shows nothing by itself
    view.GetSelectedObj()->AddTail(&unset);
    EXPECT_TRUE(Record().GetCommands().empty());
    view.GetObjectManager().m_currentObject = nullptr;
}

TEST_F(XSelectionMarksTest, VeryManyAreMarkedCoarsely)
{
    XvcPoint points[] = {{10, 10}, {10.5, 10.5}, {40, 40}}; // a cell is 2 units wide
    const auto area = Make<XvcPolygon>(kPath);
    for (XvcPoint& point : points) {
        point.CalcRange();
        view.GetSelectedObj()->AddTail(&point);
    }
    view.GetSelectedObj()->AddTail(area.get());
    view.SetFullMarkCount(5);
    EXPECT_GT(FindSquares().size(), 4u);
    view.SetFullMarkCount(4);
    EXPECT_EQ(FindSquares(), (Places{{10, 10}, {40, 40}}));
    EXPECT_EQ(Record().GetCommands().size(), 3u) << "and the range of the area";
    view.GetSelectedObj()->RemoveAll();
}

TEST(XLayOverlayTest, MarksAreEncasedAndSeen)
{
    const QRgb grounds[] = {0xFF00E000u, 0xFF808080u, 0xFFFFFFFFu, 0xFF000000u};
    for (const QRgb ground : grounds) {
        QImage picture(8, 8, QImage::Format_RGB32), overlay(8, 8, QImage::Format_RGB32);
        picture.fill(ground);
        overlay.fill(0xFF000000u);
        overlay.setPixel(0, 0, 0xFF00FF00u); // in a corner: nothing beyond is touched
        overlay.setPixel(1, 0, 0xFF00FF00u);
        XfnLayOverlay(picture, overlay);
        const QRgb mark = picture.pixel(1, 0), casing = picture.pixel(1, 1);
        EXPECT_EQ(mark, picture.pixel(0, 0));
        EXPECT_EQ(casing, picture.pixel(2, 0));
        EXPECT_EQ(casing, mark == 0xFF000000u ? 0xFFFFFFFFu : 0xFF000000u);
        EXPECT_EQ(picture.pixel(2, 1), ground) << "no more than four sides";
        EXPECT_EQ(picture.pixel(1, 2), ground);

        picture.fill(ground);
        overlay.setPixel(7, 7, 0xFF00FF00u);
        XfnLayOverlay(picture, overlay);
        EXPECT_EQ(picture.pixel(7, 7), mark);
        EXPECT_EQ(picture.pixel(1, 1), ground) << "marks that stand dense have no casing";
    }
}

} // namespace
