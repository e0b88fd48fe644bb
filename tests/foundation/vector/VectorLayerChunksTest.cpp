#include "foundation/base/XPtrArray.h"
#include "foundation/surface/XVertBuffer.h"
#include "foundation/vector/XvcArc.h"
#include "foundation/vector/XvcArcClosed.h"
#include "foundation/vector/XvcBalloon.h"
#include "foundation/vector/XvcBspline.h"
#include "foundation/vector/XvcEllipse.h"
#include "foundation/vector/XvcFactory.h"
#include "foundation/vector/XvcGroup.h"
#include "foundation/vector/XvcLayer.h"
#include "foundation/vector/XvcLine.h"
#include "foundation/vector/XvcPoint.h"
#include "foundation/vector/XvcPolygon.h"
#include "tests/support/XVectorSamples.h"

#include <gtest/gtest.h>

#include <random>
#include <set>

namespace {

using Recording = std::shared_ptr<const XVertRecording>;

// Each primitive in the order of drawing: kind, colour, vertices.
std::vector<double> Flatten(const XVertRecording& recording)
{
    std::vector<double> flat;
    ForEachPrimitive(recording, [&](const XVertRecording& part, const auto& command) {
        for (std::size_t i = 0; i < command.count; ++i) {
            const bool isPoint = command.kind == XVertRecording::XKind::Points;
            flat.push_back(static_cast<double>(command.kind));
            if (isPoint) flat.push_back(part.GetPoint(command.line).lineColour);
            if (!isPoint) flat.push_back(part.GetLine(command.line).colour);
            const double* at = part.GetVertices(command.first + i);
            flat.insert(flat.end(), at, at + 2);
        }
    });
    return flat;
}

class Scene
{
public:
    std::unique_ptr<XvcObj> MakeObject()
    {
        const double x = Next(1000), y = Next(1000);
        switch (Next(5)) {
        case 0: {
            auto polygon = std::make_unique<XvcPolygon>();
            for (int i = 0; i < 3; ++i)
                polygon->Add(x + Next(9), y + Next(9));
            return polygon;
        }
        case 1: {
            auto ellipse = std::make_unique<XvcEllipse>();
            ellipse->SetResolution(8);
            ellipse->SetCenter(x, y);
            ellipse->SetAxis(1 + Next(5), 1 + Next(5));
            return ellipse;
        }
        case 2: {
            auto group = std::make_unique<XvcGroup>();
            group->AddObj(std::make_unique<XvcPoint>(x, y));
            group->AddObj(std::make_unique<XvcPoint>(x + 3, y));
            return group;
        }
        case 3:
            return std::make_unique<XvcLine>(tagXVector3(x, y), tagXVector3(x + Next(9), y));
        default:
            return std::make_unique<XvcPoint>(x, y);
        }
    }

    XvcObj& At(__POSITION* pos) { return static_cast<XvcObj&>(*layer.GetAt(pos)); }
    __POSITION* Somewhere() { return layer.FindIndex(Next(layer.GetCount())); }
    int Next(int below) { return static_cast<int>(m_random() % static_cast<unsigned>(below)); }

    // One edit of any kind a user can make.
    void Edit()
    {
        __POSITION* pos = Somewhere();
        XvcObj& object = At(pos);
        switch (Next(9)) {
        case 0:
            layer.AddTail(MakeObject().release());
            break;
        case 1:
            layer.InsertBefore(pos, MakeObject().release());
            break;
        case 2:
            delete &object;
            layer.RemoveAt(pos);
            break;
        case 3: // to the front
            layer.RemoveAt(pos);
            layer.AddTail(&object);
            break;
        case 4:
            delete &object;
            layer.SetAt(pos, MakeObject().release());
            break;
        case 5:
            object.SetLineColor(0xFF000000u | static_cast<unsigned>(Next(1 << 24)));
            break;
        case 6:
            object.SetHideFlag(!object.IsHidden());
            break;
        case 7: // as a tool drags a vertex: through its address, then CalcRange
            if (XPtrArray points; object.AddCtrlPoints(points), points.GetSize() > 0) {
                static_cast<tagXVector3*>(points.GetAt(0))->x += 20.0;
                object.CalcRange();
            }
            break;
        default:
            if (auto* group = dynamic_cast<XvcGroup*>(&object)) {
                static_cast<XvcPoint*>(group->GetObjAt(0))->SetX(Next(1000));
            } else {
                object.MoveObject(30.0, -20.0, 0.0);
            }
        }
    }

    // The layer as it would be without anything kept.
    Recording RecordEach()
    {
        XVertBuffer buffer;
        buffer.Start();
        for (__POSITION* pos = layer.GetHeadPosition(); pos;) {
            auto& object = static_cast<XvcObj&>(*layer.GetNext(pos));
            if (!object.IsHidden()) object.CreateVertexBuffer(&buffer, nullptr, nullptr);
        }
        buffer.End();
        return buffer.GetRecording();
    }
    XvcObj* HitEach(const tagXVector3& point, double tolerance, tagXHitFlag& flag)
    {
        for (__POSITION* pos = layer.GetTailPosition(); pos;) {
            auto& object = static_cast<XvcObj&>(*layer.GetPrev(pos));
            if (object.IsHidden()) continue;
            if (XvcObj* hit = object.HitTest(point, tolerance, flag)) return hit;
        }
        return nullptr;
    }
    tagXVectorRange RangeOfEach()
    {
        tagXVectorRange range;
        for (__POSITION* pos = layer.GetHeadPosition(); pos;) {
            const auto copy = XfnCloneVectorObject(static_cast<XvcObj*>(layer.GetNext(pos)));
            copy->CalcRange();
            range.Add(copy->GetRange());
        }
        return range;
    }

    XvcLayer layer;

private:
    std::mt19937 m_random{7};
};

TEST(LayerChunks, WhatIsKeptAgreesWithTheObjectsAfterEveryEdit)
{
    Scene scene;
    for (int i = 0; i < 1500; ++i)
        scene.layer.AddTail(scene.MakeObject().release());
    for (int step = 0; step < 60; ++step) {
        for (int edits = scene.Next(4); edits > 0; --edits)
            scene.Edit();
        SCOPED_TRACE(step);
        if (step % 3 == 0) {
            scene.layer.CalcRange();
            const tagXVectorRange expected = scene.RangeOfEach();
            const tagXVectorRange& range = scene.layer.GetRange();
            ASSERT_TRUE(range.minX == expected.minX && range.maxX == expected.maxX);
            ASSERT_TRUE(range.minY == expected.minY && range.maxY == expected.maxY);
        }
        if (step % 3 == 1) {
            ASSERT_EQ(Flatten(*RecordObject(scene.layer)), Flatten(*scene.RecordEach()));
        }
        for (int i = 0; i < 40; ++i) {
            const tagXVector3 point(scene.Next(2000) / 2.0, scene.Next(2000) / 2.0);
            const double tolerance = scene.Next(4);
            tagXHitFlag flag, expectedFlag;
            XvcObj* expected = scene.HitEach(point, tolerance, expectedFlag);
            ASSERT_EQ(scene.layer.HitTest(point, tolerance, flag), expected);
            ASSERT_TRUE(flag.kind == expectedFlag.kind && flag.index == expectedFlag.index);
        }
    }
}

TEST(LayerChunks, OnlyTheRunOfAChangeIsRecordedAnew)
{
    Scene scene;
    for (int i = 0; i < 5000; ++i)
        scene.layer.AddTail(scene.MakeObject().release());
    const auto parts = [&] {
        const Recording recording = RecordObject(scene.layer);
        std::set<Recording> set;
        for (const auto& command : recording->GetCommands())
            set.insert(recording->GetPart(command.extra));
        return set;
    };
    std::set<Recording> known = parts();
    ASSERT_GT(known.size(), 10u);
    EXPECT_EQ(parts(), known) << "nothing changed";
    for (int step = 0; step < 30; ++step) {
        scene.Edit();
        const std::set<Recording> now = parts();
        std::size_t fresh = 0;
        for (const Recording& part : now)
            fresh += known.count(part) == 0;
        EXPECT_LE(fresh, 2u); // that of the change, and the last when the object went there
        known = now;
    }
}

TEST(LayerChunks, WhatReachesBeyondTheRangeIsHit)
{
    const auto make = [](auto object, const auto& fill) -> std::unique_ptr<XvcObj> {
        fill(object);
        return std::make_unique<decltype(object)>(object);
    };
    const auto arc = [](auto& o) {
        o.SetCenter(0, 0);
        o.SetAxis(100, 50);
        o.SetAngle(180, 200);
    };
    const auto balloon = [](XvcBalloon& o) {
        o.SetBound(0, 100, 100, 0);
        o.SetPointPosition(50, -200);
    };
    const struct
    {
        std::unique_ptr<XvcObj> object;
        tagXVector3 at;
        double bottom; // of what is drawn
    } rows[] = {
        {make(XvcBspline(),
              [](XvcBspline& o) {
                  for (const tagXVector3 pole : {tagXVector3(0, 0), {50, 100}, {100, 0}})
                      o.AddPole(pole);
              }),
         {50, 100},
         0},
        {make(XvcArc(), arc), {100, 0}, -17.1},
        {make(XvcArcClosed(), arc), {0, 50}, -17.1},
        {make(XvcBalloon(), balloon), {50, -200}, -200},
        {make(XvcBalloon(), balloon), {50, -60}, -200},
    };
    for (const auto& row : rows) {
        for (const bool isGrouped : {false, true}) {
            SCOPED_TRACE(row.object->GetRuntimeClass()->m_lpszClassName);
            std::unique_ptr<XvcObj> object = XfnCloneVectorObject(row.object.get());
            if (isGrouped) {
                auto group = std::make_unique<XvcGroup>();
                group->AddObj(std::move(object));
                object = std::move(group);
            }
            XvcLayer layer;
            layer.AddTail(object.release());
            layer.CalcRange();
            EXPECT_NEAR(layer.GetRange().minY, row.bottom, 0.1);
            layer.AddHead(new XvcPoint(-1000, -1000)); // so that the box is not the whole
            layer.AddHead(new XvcPoint(1000, 1000));
            tagXHitFlag flag;
            EXPECT_EQ(layer.HitTest(row.at, 2.0, flag), layer.GetTail());
        }
    }
}

TEST(LayerChunks, ObjectsOfHugeOrNoRangeAreHit)
{
    XvcLayer layer;
    layer.AddTail(new XvcLine(tagXVector3(-1e300, 5.0), tagXVector3(1e300, 5.0)));
    layer.AddTail(new XvcPoint(1e-9, 0.0));
    layer.AddTail(new XvcPoint(kXNotSet, 0.0));
    tagXHitFlag flag;
    EXPECT_EQ(layer.HitTest({3.0, 5.0}, 0.5, flag), layer.GetHead());
    EXPECT_NE(layer.HitTest({0.0, 0.0}, 1e-6, flag), nullptr);
    EXPECT_EQ(layer.HitTest({100.0, 100.0}, 1.0, flag), nullptr);
    EXPECT_EQ(layer.HitTest({kXNotSet, 5.0}, 1.0, flag), nullptr);
    EXPECT_NE(layer.HitTest({3.0, 4.0}, HUGE_VAL, flag), nullptr);
}

} // namespace
