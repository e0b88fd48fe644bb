#include "foundation/base/XPtrArray.h"
#include "foundation/base/XWarp2D.h"
#include "foundation/vector/XDrawAttrs.h"
#include "foundation/vector/XvcLayer.h"
#include "tests/support/XVectorClassSamples.h"
#include "tests/support/XVectorSamples.h"

#include <cmath>
#include <functional>
#include <limits>

// What every class of geometry has to do alike, over all of them.

namespace {

const double kNan = std::numeric_limits<double>::quiet_NaN();
const double kInfinity = std::numeric_limits<double>::infinity();

using Object = std::unique_ptr<XvcObj>;

struct Kind
{
    const char* name;
    std::function<Object(double bad)> make; // `bad` replaces one coordinate; 0 leaves it sound
    tagXVectorRange range;
    tagXVector3 hitAt;
    tagXHitFlag hit;
    tagXVector3 missAt;
};

template <class Class, class Fill>
std::function<Object(double)> Maker(Fill fill)
{
    return [fill](double bad) {
        auto made = std::make_unique<Class>();
        fill(*made, bad == 0.0 ? 12.0 : bad);
        made->CalcRange();
        return made;
    };
}

// All within a box of 10 to 14 by 20 to 28, higher than wide and away from the origin.
const std::vector<Kind>& Kinds()
{
    static const auto triangle = [](auto& o, double x) {
        o.Add(10, 20, 1);
        o.Add(x, 28, 2);
        o.Add(14, 20, 3);
    };
    static const auto ellipse = [](auto& o, double x) {
        o.SetCenter(x, 24, 5);
        o.SetAxis(2, 4);
    };
    static const auto arc = [](auto& o, double x) {
        ellipse(o, x);
        o.SetAngle(-450, -91);
        o.SetCreateMode(XvcArc::kHalf);
    };
    static const auto pie = [](auto& o, double x) {
        ellipse(o, x);
        o.SetAngle(180, 0);
        o.SetCloseType(XvcArcClosed::kPie);
    };
    const auto arrow = [](auto& o, double x) {
        o.SetVertices({10, 20, 1}, {x + 2, 28, 3});
        o.SetEndShapeID(kXLineEndFilledArrow);
        o.SetStartSize(-7);
    };
    const auto spline = [](auto& o, double x) {
        for (const tagXVector3 pole : {tagXVector3(10, 20, 1), {x, 28, 2}, {14, 20, 3}})
            o.AddPole(pole);
        o.SetOrder(2);
        o.SetResolution(5);
        for (const double knot : {0, 0, 2, 3, 3})
            o.AddKnot(knot);
    };
    const auto upsideDown = [](auto& o, double x) { o.Set(10, 28, 3, x + 2, 20, 1); };
    const auto north = [](auto& o, double x) {
        o.Set(10, 20, 1, x + 2, 28, 3);
        o.SetAngle(30);
    };
    const auto bar = [](auto& o, double x) {
        o.Set(10, 20, 1, x + 2, 28, 3);
        o.SetType(kXScaleBarHollow);
        o.SetFontSize(0.5);
    };
    const auto leader = [](auto& o, double x) {
        triangle(o, x);
        o.SetText("note");
        o.SetStartShapeID(kXLineEndNone);
    };
    const auto axis = [](auto& o, double x) {
        o.SetVertices({10, 20, 1}, {x + 2, 28, 3});
        o.SetValueRange(5, 0.01);
        o.SetLogFlag(1);
        o.SetTitle("title");
    };
    const auto points = [](auto& o, double x) {
        o.AddPoint(10, 20, 1);
        o.AddPoint(x, 24, 2);
        o.AddPoint(14, 28, 3);
    };
    const auto lines = [](auto& o, double x) {
        o.AddLine({10, 20, 1}, {10, 28, 1});
        o.AddLine({x, 20, 2}, {14, 28, 3});
    };
    const auto polylines = [](auto& o, double x) {
        XvcPolyline part;
        triangle(part, x);
        o.AddPolyline(part);
        o.AddPolyline(part);
        o.GetPolylineObjAt(1)->MoveObject(0, 1, 0);
        o.GetPolylineObjAt(1)->SetAt(1, 12, 28, 2);
    };
    const auto rings = [](auto& o, double x) {
        for (const double rim : {0.0, 1.0}) { // the second is a hole
            XvcPolygon ring;
            ring.Add(10 + rim, 20 + 2 * rim);
            ring.Add(10 + rim, 28 - 2 * rim);
            ring.Add((rim == 0.0 ? x : 12) + 2 - rim, 28 - 2 * rim);
            ring.Add((rim == 0.0 ? x : 12) + 2 - rim, 20 + 2 * rim);
            o.AddPolygon(ring);
        }
    };
    const auto group = [](auto& o, double x) {
        auto polyline = std::make_unique<XvcPolyline>();
        triangle(*polyline, x);
        auto inner = std::make_unique<XvcGroup2>();
        auto round = std::make_unique<XvcEllipse>();
        round->SetCenter(12, 24, 2);
        round->SetAxis(0.5, 0.5);
        inner->AddObj(std::move(round));
        o.AddObj(std::move(polyline));
        o.AddObj(std::move(inner));
    };
    const tagXVectorRange flat{10, 20, 0, 14, 28, 0}, deep{10, 20, 1, 14, 28, 3};
    const tagXVectorRange flat5{10, 20, 5, 14, 28, 5}, half5{10, 20, 5, 14, 24, 5};
    static const std::vector<Kind> kinds = {
        {"XvcPolypoint", Maker<XvcPolypoint>(triangle), deep, {12.1, 27.9}, {1, 1}, {12, 24}},
        {"XvcPolyline", Maker<XvcPolyline>(triangle), deep, {13, 24}, {2, 1}, {12, 20}},
        {"XvcPolygon", Maker<XvcPolygon>(triangle), deep, {12, 20}, {2, 2}, {10.3, 24}},
        {"XvcPolygon", Maker<XvcPolygon>(triangle), deep, {12, 23}, {0, 0}, {13.7, 24}},
        {"XvcLine", Maker<XvcLine>(arrow), deep, {12, 24}, {2, 0}, {10.5, 27}},
        {"XvcBspline", Maker<XvcBspline>(spline), deep, {13, 24}, {0, 0}, {12, 21}},
        {"XvcRectangle", Maker<XvcRectangle>(upsideDown), deep, {13.9, 20.1}, {1, 3}, {14.5, 24}},
        {"XvcNorthArrow", Maker<XvcNorthArrow>(north), deep, {10.1, 27.9}, {1, 1}, {14.5, 24}},
        {"XvcScaleBar", Maker<XvcScaleBar>(bar), deep, {12, 24}, {0, 0}, {14.5, 24}},
        {"XvcLeaderLine", Maker<XvcLeaderLine>(leader), deep, {13, 24}, {2, 1}, {12, 20}},
        {"XvcAxis", Maker<XvcAxis>(axis), deep, {12, 24}, {2, 0}, {10.5, 27}},
        {"XvcEllipse", Maker<XvcEllipse>(ellipse), flat5, {13.9, 24}, {1, 0}, {13.7, 27.7}},
        {"XvcArc", Maker<XvcArc>(arc), flat5, {10, 24}, {0, 0}, {12, 24}},
        {"XvcArcClosed", Maker<XvcArcClosed>(pie), half5, {11, 23.8}, {0, 0}, {12, 26}},
        {"XvcMPoint", Maker<XvcMPoint>(points), deep, {14, 28.1}, {1, 2}, {12, 27}},
        {"XvcMLine", Maker<XvcMLine>(lines), deep, {13, 24}, {2, 2}, {11, 24}},
        {"XvcMPolyline", Maker<XvcMPolyline>(polylines), deep, {10, 21}, {1, 3}, {12, 20.4}},
        {"XvcMPolygon", Maker<XvcMPolygon>(rings), flat, {12, 21}, {0, 0}, {12, 24}},
        {"XvcGroup", Maker<XvcGroup>(group), deep, {12, 24}, {0, 0}, {12, 21}},
    };
    return kinds;
}

// What is drawn, as numbers; equal drawings give equal texts.
std::string Drawing(XvcObj& object, const XWarp2D* warp = nullptr,
                    const tagXDrawAttrs* attrs = nullptr)
{
    const auto recording = RecordObject(object, warp, attrs);
    std::string text;
    for (const auto& command : recording->GetCommands()) {
        text += std::to_string(static_cast<int>(command.kind)) + ":";
        if (command.kind == XVertRecording::XKind::Polyline)
            text += std::to_string(recording->GetLine(command.line).colour);
        if (command.kind == XVertRecording::XKind::Points)
            text += std::to_string(recording->GetPoint(command.line).shape);
        const double* at = recording->GetVertices(command.first);
        for (std::size_t i = 0; i < 2 * command.count; ++i)
            text += " " + std::to_string(at[i]);
        text += "\n";
    }
    return text;
}

void ExpectRange(const XvcObj& object, const tagXVectorRange& expected, double tolerance = 1e-12)
{
    const tagXVectorRange& range = object.GetRange();
    EXPECT_NEAR(range.minX, expected.minX, tolerance);
    EXPECT_NEAR(range.minY, expected.minY, tolerance);
    EXPECT_NEAR(range.minZ, expected.minZ, tolerance);
    EXPECT_NEAR(range.maxX, expected.maxX, tolerance);
    EXPECT_NEAR(range.maxY, expected.maxY, tolerance);
    EXPECT_NEAR(range.maxZ, expected.maxZ, tolerance);
}

TEST(VectorGeometry, RangeAndHit)
{
    for (const Kind& kind : Kinds()) {
        SCOPED_TRACE(kind.name);
        Object object = kind.make(0);
        ExpectRange(*object, kind.range);
        tagXHitFlag flag{77, 78};
        EXPECT_EQ(object->HitTest(kind.missAt, 0.05, flag), nullptr);
        EXPECT_EQ(object->HitTest({kNan, kXNotSet}, kInfinity, flag), nullptr);
        EXPECT_EQ(flag.kind, 77); // written on a hit only
        EXPECT_EQ(object->HitTest(kind.hitAt, 0.2, 0.3, flag), object.get());
        EXPECT_EQ(flag.kind, kind.hit.kind);
        EXPECT_EQ(flag.index, kind.hit.index);
    }
}

TEST(VectorGeometry, CopiesAndFilesOfEveryClassHoldEverything)
{
    for (const tagXVectorSample& sample : MakeVectorSamples()) {
        XvcObj& object = *sample.object;
        const char* const name = object.GetRuntimeClass()->m_lpszClassName;
        SCOPED_TRACE(name);
        XvcLayer layer;
        object.SetParentLayer(&layer);
        const XSampleBytes bytes = StoreObject(object);
        Object copy = XfnCloneVectorObject(&object);
        ASSERT_TRUE(XfnIsExactly(copy.get(), name));
        EXPECT_EQ(copy->GetParentLayer(), nullptr);
        object.MoveObject(1, 1, 1); // does not reach the copy
        EXPECT_EQ(StoreObject(*copy), bytes);

        Object read = XfnNewVectorObject(name);
        const XSampleBytes untouched = StoreObject(*read);
        for (std::size_t cut = 0; cut < bytes.size(); ++cut) {
            ASSERT_FALSE(LoadObject(*read, bytes, cut)) << cut;
            if (cut % 16 != 0) continue;
            ASSERT_EQ(StoreObject(*read), untouched) << cut;
        }
        ASSERT_TRUE(LoadObject(*read, bytes, bytes.size()));
        EXPECT_EQ(StoreObject(*read), bytes);
        EXPECT_EQ(Drawing(*read), Drawing(*copy));

        for (std::size_t i = 0; i < bytes.size(); ++i) { // no byte may do harm
            XSampleBytes hostile = bytes;
            hostile[i] ^= 0xFF;
            Object damaged = XfnNewVectorObject(name);
            if (!LoadObject(*damaged, hostile, hostile.size())) continue;
            EXPECT_NE(i, 0u) << "another version";
            damaged->CalcRange();
            RecordObject(*damaged);
        }
        XWarp2D warp;
        warp.SetAffine(1e308, 1e300, 0, 7, 0, -3);
        RecordObject(*copy, &warp);
        for (const double bad : {kNan, kXNotSet, 1e308}) {
            copy->MoveObject(bad, 0, 0);
            copy->MoveVertex(7, bad, bad, 0);
            copy->MoveVertex(0, 0, bad, 0);
            copy->Normalize(0, bad, 1, 1);
            copy->RotateObject(bad, 0, 45);
            copy->SetThick(bad);
            copy->CalcRange();
            RecordObject(*copy);
        }
    }
}

TEST(VectorGeometry, DrawsThroughWarpAndStandIns)
{
    XWarp2D warp;
    warp.SetAffine(100, 2, 0, 7, 0, -3);
    tagXDrawAttrs attrs;
    attrs.lineColor = 0xFF445566u;
    for (const Kind& kind : Kinds()) {
        SCOPED_TRACE(kind.name);
        Object object = kind.make(0);
        const std::string plain = Drawing(*object);
        EXPECT_FALSE(plain.empty());
        const std::string warped = Drawing(*object, &warp);
        EXPECT_NE(plain, warped);
        object->SetWarpCoeff(&warp);
        EXPECT_EQ(Drawing(*object), warped);
        object->SetWarpCoeff(nullptr);
        if (plain[0] == '1') { // a line tells its colour
            EXPECT_NE(Drawing(*object, nullptr, &attrs).find(std::to_string(0xFF445566u)),
                      std::string::npos);
        }
        object->CreateVertexBuffer(nullptr, nullptr, nullptr);
    }
}

TEST(VectorGeometry, MovesTurnsAndNormalizes)
{
    for (const Kind& kind : Kinds()) {
        SCOPED_TRACE(kind.name);
        const tagXVectorRange& from = kind.range;
        Object object = kind.make(0);
        const auto bytes = StoreObject(*object);
        for (const double bad : {kNan, kInfinity, kXNotSet}) {
            object->MoveObject(bad, 0, 0);
            object->RotateObject(0, bad, 30);
            object->Normalize(0, bad, 1, 1);
            object->RotateObject(bad == kXNotSet ? kNan : bad);
        }
        EXPECT_EQ(StoreObject(*object), bytes);

        object->MoveObject(100, -50, 0.5);
        object->CalcRange();
        ExpectRange(*object, {from.minX + 100, from.minY - 50, from.minZ + 0.5, from.maxX + 100,
                              from.maxY - 50, from.maxZ + 0.5});
        object->MoveObject(-100, 50, -0.5);
        object->RotateObject(0, 0, 90); // counter-clockwise: (x, y) goes to (-y, x)
        object->CalcRange();
        ExpectRange(*object, {-from.maxY, from.minX, from.minZ, -from.minY, from.maxX, from.maxZ});
        object->MoveObject(1000, 0, 0); // about the centre of where it is now
        object->RotateObject(-450);
        object->CalcRange();
        const double centerX = 1000 - (from.minY + from.maxY) / 2,
                     centerY = (from.minX + from.maxX) / 2;
        if (std::string(kind.name) != "XvcArcClosed") { // turns about its own centre
            EXPECT_NEAR(object->GetRange().minX, centerX - (from.maxX - from.minX) / 2, 1e-9);
            EXPECT_NEAR(object->GetRange().maxY, centerY + (from.maxY - from.minY) / 2, 1e-9);
        }
        Object unit = kind.make(0);
        unit->Normalize(from.minX, from.minY, from.maxX, from.maxY);
        unit->CalcRange();
        ExpectRange(*unit, {0, 0, from.minZ, 1, 1, from.maxZ});
        unit->Normalize(1, 1, 1, 2); // no width
        unit->CalcRange();
        const double ofEnds = std::string(kind.name) == "XvcLine" ? 0.04 : 0.0; // its arrow
        EXPECT_NEAR(unit->GetRange().minX, -ofEnds, 1e-12);
        EXPECT_NEAR(unit->GetRange().maxX, ofEnds, 1e-12);
    }
}

TEST(VectorGeometry, MovesTheVertexThatWasHit)
{
    for (const Kind& kind : Kinds()) {
        if (kind.hit.kind != tagXHitFlag::kVertex) continue;
        SCOPED_TRACE(kind.name);
        Object object = kind.make(0);
        const auto bytes = StoreObject(*object);
        tagXHitFlag flag;
        ASSERT_TRUE(object->HitTest(kind.hitAt, 0.2, flag));
        ASSERT_NE(object->MoveVertex(flag.index, 0.5, 0.25, 0), nullptr);
        object->CalcRange();
        EXPECT_NE(StoreObject(*object), bytes);
        EXPECT_EQ(object->HitTest(kind.hitAt, 0.2, flag) && flag.kind == 1, false);
        object->MoveVertex(kind.hit.index, -0.5, -0.25, 0); // undone by the step back
        object->CalcRange();
        EXPECT_EQ(StoreObject(*object), bytes);
        object->MoveVertex(kind.hit.index, kNan, 0, 0);
        EXPECT_EQ(StoreObject(*object), bytes);
        for (const int none : {-1, 1000000})
            EXPECT_EQ(object->MoveVertex(none, 1, 1, 1), nullptr);
    }
    for (const Kind& kind : Kinds()) { // pointers through which a caller moves the object
        Object object = kind.make(0);
        XPtrArray points;
        object->AddCtrlPoints(points);
        ASSERT_GT(points.GetSize(), 0) << kind.name;
        for (int i = 0; i < points.GetSize(); ++i)
            static_cast<tagXVector3*>(points[i])->x += 1000;
        object->CalcRange();
        EXPECT_GT(object->GetRange().maxX, 1000) << kind.name;
    }
}

TEST(VectorGeometry, BadCoordinatesAreNeitherDrawnNorHit)
{
    for (const Kind& kind : Kinds()) {
        for (const double bad : {kNan, kInfinity, -kInfinity, kXNotSet, kXNoData, 1e308}) {
            SCOPED_TRACE(std::string(kind.name) + " " + std::to_string(bad));
            Object object = kind.make(bad);
            tagXHitFlag flag;
            Drawing(*object); // expects usable numbers itself
            if (bad != 1e308) {
                EXPECT_FALSE(object->HitTest({bad, 28}, 1, flag));
                EXPECT_TRUE(object->GetRange().IsEmpty() || object->GetRange().maxX <= 14);
            }
            object->ExportToWkt();
            object->MoveObject(1e308, 0, 0);
            object->RotateObject(33);
            object->Normalize(0, 0, 1e-300, 1e300);
            object->CalcRange();
            Drawing(*object);
        }
    }
}

TEST(VectorGeometry, FactoryMakesEveryClassEmptyAndHarmless)
{
    for (const char* name : XfnGetVectorClassNames()) {
        SCOPED_TRACE(name);
        Object object = XfnNewVectorObject(name);
        ASSERT_TRUE(XfnIsExactly(object.get(), name));
        object->CalcRange();
        EXPECT_TRUE(XfnIsExactly(XfnCloneVectorObject(object.get()).get(), name));
    }
    Object deep = std::make_unique<XvcGroup>();
    for (int i = 0; i < XvcGroup::kMaxDepth; ++i) {
        auto outer = std::make_unique<XvcGroup>();
        outer->AddObj(std::move(deep));
        deep = std::move(outer);
    }
    XString sentence;
    try {
        StoreObject(*deep);
    } catch (const XFileException& e) {
        sentence = e.GetErrorMessage();
    }
    EXPECT_STREQ(sentence, "Objects lie in each other more than 32 deep.");
    EXPECT_FALSE(XfnNewVectorObject("XvcObj"));
    EXPECT_FALSE(XfnNewVectorObject(nullptr));
    EXPECT_FALSE(XfnCloneVectorObject(nullptr));
}

} // namespace
