#include "foundation/base/XSentinels.h"
#include "foundation/surface/XBackBuffer.h"
#include "foundation/surface/XVertBuffer.h"
#include "foundation/vector/XvcBase.h"
#include "foundation/vector/XvcLayer.h"
#include "foundation/vector/XvcPoint.h"
#include "foundation/vector/XvcSymbolTable.h"
#include "tests/support/XVectorSamples.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace {

// A point that counts how many of its kind live.
class CountedPoint : public XvcPoint
{
public:
    explicit CountedPoint(double x = 0.0, double y = 0.0) : XvcPoint(x, y) { ++alive; }
    ~CountedPoint() override { --alive; }
    static inline int alive = 0;
};

std::string Order(XvcLayer& layer)
{
    std::string names;
    for (__POSITION* position = layer.GetHeadPosition(); position;) {
        names += static_cast<XvcObj*>(layer.GetNext(position))->GetName().GetString();
    }
    return names;
}

XvcPoint* Named(const char* name, double x = 0.0, double y = 0.0)
{
    auto* point = new CountedPoint(x, y);
    point->SetName(name);
    return point;
}

TEST(VectorObject, ReservedTextsAndStylesAreShared)
{
    XvcPoint first;
    for (const int index : {-1, 0, 4, 5, 1000000})
        EXPECT_TRUE(first.GetReserved(index).IsEmpty());
    first.SetReserved(5, "beyond");
    first.SetReserved(-1, "before");
    first.SetReserved(3, "kept");
    XvcPoint second = first;
    second.SetReserved(3, "changed");
    EXPECT_EQ(first.GetReserved(3), "kept");
    EXPECT_EQ(second.GetReserved(3), "changed");
    EXPECT_TRUE(first.GetReserved(2).IsEmpty());

    unsigned char pattern[128] = {0xAA, 0x55};
    tagXFillStyle custom;
    custom.SetStyle(pattern);
    first.SetFillStyle(custom);
    XvcPoint third;
    third.SetFillStyle(custom);
    EXPECT_EQ(&first.GetFillStyle(), &third.GetFillStyle());
    pattern[0] = 0;
    custom.SetStyle(pattern);
    third.SetFillStyle(custom);
    EXPECT_EQ(first.GetFillStyle().pattern[0], 0xAA);
    EXPECT_EQ(third.GetFillStyle().pattern[0], 0);
    // a predefined code over another pattern is not the predefined style
    EXPECT_TRUE(XvcPoint().GetFillStyle() == tagXFillStyle(0)) << "solid, with its pattern";
    tagXFillStyle liar(tagXFillStyle::kSolid);
    liar.pattern[7] = 0;
    third.SetFillStyle(liar);
    EXPECT_TRUE(third.GetFillStyle() == liar);
    EXPECT_LE(sizeof(XvcObj), 208u); // a million of them are to fit
}

TEST(VectorObject, ACopyLiesInNoLayer)
{
    XvcLayer layer;
    XvcPoint* original = Named("a", 1.0, 2.0);
    original->SetType(4);
    layer.AddTail(original);
    XvcPoint copy;
    copy = *original;
    EXPECT_EQ(copy.GetParentLayer(), nullptr);
    EXPECT_EQ(copy.GetName(), "a");
    EXPECT_EQ(copy.GetType(), 4);
    *original = XvcPoint(5.0, 6.0);
    EXPECT_EQ(original->GetParentLayer(), &layer); // nor does an assignment take one out
    EXPECT_EQ(original->GetX(), 5.0);
}

TEST(VectorLayer, OrderParentsAndOwnership)
{
    {
        XvcLayer layer;
        __POSITION* b = layer.AddTail(Named("b"));
        layer.AddHead(Named("a"));
        layer.InsertAfter(b, Named("d"));
        layer.InsertAfter(nullptr, Named("e"));
        __POSITION* c = layer.InsertBefore(layer.FindIndex(2), Named("c"));
        EXPECT_EQ(Order(layer), "abcde");
        EXPECT_EQ(layer.AddTail(nullptr), nullptr);
        EXPECT_EQ(layer.GetCount(), 5);
        for (__POSITION* p = layer.GetHeadPosition(); p;) {
            EXPECT_EQ(static_cast<XvcObj*>(layer.GetNext(p))->GetParentLayer(), &layer);
        }
        std::unique_ptr<XvcObj> taken(static_cast<XvcObj*>(layer.GetAt(c)));
        layer.RemoveAt(c);
        EXPECT_EQ(CountedPoint::alive, 5); // taken out, not destroyed
        delete layer.GetAt(b);             // as undo does: destroy, then put another in its place
        layer.SetAt(b, Named("x"));
        EXPECT_EQ(Order(layer), "axde");
        EXPECT_EQ(static_cast<XvcObj*>(layer.GetAt(b))->GetParentLayer(), &layer);
        delete layer.GetAt(b); // or destroy, then remove the position
        layer.RemoveAt(b);
        delete layer.RemoveTail();
        EXPECT_EQ(Order(layer), "ad");
        layer.DestroyAll();
        EXPECT_EQ(CountedPoint::alive, 1);
        layer.AddTail(Named("y"));
        auto* group = new XObList;
        group->AddTail(Named("in a group"));
        static_cast<XObList&>(layer).AddTail(group);
        EXPECT_EQ(CountedPoint::alive, 3);
    }
    EXPECT_EQ(CountedPoint::alive, 0);

    CountedPoint kept;
    {
        XvcLayer lent;
        lent.SetAttachFlag(0);
        lent.AddTail(&kept);
    }
    EXPECT_EQ(CountedPoint::alive, 1);
}

// Objects that are gone, or lie elsewhere by now, when their positions are removed.
TEST(VectorLayer, RemovingAPositionNeverReadsTheObject)
{
    const struct
    {
        const char* what;
        void (*remove)(XvcLayer& layer);
    } kCases[] = {
        {"RemoveAt", [](XvcLayer& layer) { layer.RemoveAt(layer.GetHeadPosition()); }},
        {"RemoveHead", [](XvcLayer& layer) { layer.RemoveHead(); }},
        {"RemoveTail", [](XvcLayer& layer) { layer.RemoveTail(); }},
        {"RemoveAll", [](XvcLayer& layer) { layer.RemoveAll(); }},
        {"destructor without the attach flag", [](XvcLayer&) {}},
    };
    for (const auto& row : kCases) {
        SCOPED_TRACE(row.what);
        XvcPoint mover;
        XvcLayer target;
        {
            XvcLayer source;
            source.SetAttachFlag(0);
            source.AddTail(&mover);
            target.SetAttachFlag(0);
            target.AddTail(&mover);
            row.remove(source);
        }
        EXPECT_EQ(mover.GetParentLayer(), &target) << "it lies there by now";

        XvcLayer undone;
        undone.SetAttachFlag(0);
        XvcPoint* destroyed = Named("x");
        undone.AddTail(destroyed);
        delete destroyed;
        row.remove(undone);
    }
}

TEST(VectorBase, RangeAndCentre)
{
    auto* base = new XvcBase;
    double r[6], c[3] = {9, 9, 9};
    base->CalcRange();
    base->GetRange(r[0], r[1], r[2], r[3], r[4], r[5]);
    EXPECT_TRUE(r[0] == kXNotSet && r[3] == kXNoData);
    base->GetCenter(c[0], c[1], c[2]);
    EXPECT_TRUE(c[0] == 0.0 && c[1] == 0.0 && c[2] == 0.0);

    for (int i = 0; i < 2; ++i) {
        auto* layer = new XvcLayer;
        base->AddTail(layer);
        EXPECT_EQ(layer->GetParentBase(), base);
        layer->AddTail(Named("p", 10.0 + 20.0 * i, -5.0 * i));
        layer->AddTail(Named("unset", kXNotSet, kXNotSet));
    }
    auto* hidden = Named("hidden", -100.0, 3.0);
    hidden->SetHideFlag(1);
    static_cast<XvcLayer*>(base->GetHead())->AddTail(hidden); // hidden, but it has a place
    base->CalcRange();
    base->GetRange(r[0], r[1], r[2], r[3], r[4], r[5]);
    EXPECT_TRUE(r[0] == -100.0 && r[3] == 30.0 && r[1] == -5.0 && r[4] == 3.0);
    base->GetCenter(c[0], c[1], c[2]);
    EXPECT_TRUE(c[0] == -35.0 && c[1] == -1.0);
    base->AddTail(new XvcLayer); // an empty layer changes nothing
    base->CalcRange();
    base->GetCenter(c[0], c[1], c[2]);
    EXPECT_EQ(c[0], -35.0);

    delete base;
    EXPECT_EQ(CountedPoint::alive, 0);
}

TEST(VectorBase, WalksListsWithinListsAndTakesObjectsAnywhere)
{
    auto* base = new XvcBase;
    XObList& asList = *base;
    auto* layer = new XvcLayer;
    base->AddTail(layer);
    layer->AddTail(Named("in the layer", 1.0, 0.0));
    XvcPoint* straight = Named("straight in the base", 2.0, 0.0);
    asList.AddTail(straight);
    auto* outer = new XObList;
    auto* inner = new XObList;
    auto* deepLayer = new XvcLayer;
    asList.AddTail(outer);
    outer->AddTail(inner);
    XvcPoint* deep = Named("two lists down", 3.0, 0.0);
    inner->AddTail(deep);
    inner->AddTail(deepLayer);
    XvcPoint* deepest = Named("in a layer of a list", 4.0, 0.0);
    deepLayer->AddTail(deepest);
    auto* nested = new XvcBase;
    asList.AddTail(nested);
    XvcPoint* inNested = Named("in a base in the base", 5.0, 0.0);
    static_cast<XObList*>(nested)->AddTail(inNested);
    asList.AddTail(new XvcSymbolTable); // neither a list nor an object

    double range[6];
    base->CalcRange();
    base->GetRange(range[0], range[1], range[2], range[3], range[4], range[5]);
    EXPECT_TRUE(range[0] == 1.0 && range[3] == 5.0);
    EXPECT_EQ(deepLayer->GetRange().minX, 4.0) << "a layer knows its own range";

    const auto recorded = [&] {
        std::string places;
        ForEachPrimitive(*RecordObject(*base), [&](const auto& part, const auto& command) {
            for (std::size_t i = 0; i < command.count; ++i)
                places += std::to_string(static_cast<int>(*part.GetVertices(command.first + i)));
        });
        return places;
    };
    tagXHitFlag flag;
    const auto hit = [&](double x) { return base->HitTest({x, 0.0}, 0.5, flag); };
    EXPECT_EQ(recorded(), "12345");
    EXPECT_EQ(hit(2.0), straight);
    EXPECT_EQ(hit(3.0), deep);
    EXPECT_EQ(hit(4.0), deepest);
    EXPECT_EQ(hit(5.0), inNested);
    EXPECT_EQ(base->HitTest({2.5, 0.0}, 1.0, flag), deep) << "what lies in front";

    straight->SetHideFlag(1);
    deepLayer->SetHideFlag(1);
    EXPECT_EQ(recorded(), "135");
    EXPECT_EQ(hit(2.0), nullptr);
    deepLayer->SetHideFlag(0);
    deepLayer->SetHitTestable(0);
    EXPECT_EQ(hit(4.0), nullptr) << "a nested layer answers for itself";
    nested->SetHideFlag(1);
    EXPECT_EQ(recorded(), "134");
    layer->SetHideFlag(1);
    EXPECT_EQ(recorded(), "34");
    base->SetHideFlag(1);
    EXPECT_EQ(recorded(), "");
    base->CreateVertexBuffer(nullptr, nullptr, nullptr);
    layer->CreateVertexBuffer(nullptr, nullptr, nullptr);
    delete base;
    EXPECT_EQ(CountedPoint::alive, 0);
}

TEST(VectorBase, HitsWhatIsInFrontAndVisible)
{
    XvcBase base;
    auto* rear = new XvcLayer;
    auto* front = new XvcLayer;
    base.AddTail(rear);
    base.AddTail(front);
    XvcPoint* a = Named("a", 1.0, 1.0);
    XvcPoint* b = Named("b", 1.0, 1.0);
    XvcPoint* c = Named("c", 1.0, 1.0);
    rear->AddTail(a);
    rear->AddTail(b);
    front->AddTail(c);
    const tagXVector3 at(1.2, 1.0);
    tagXHitFlag flag;
    const auto hit = [&] { return base.HitTest(at, 0.5, flag); };
    EXPECT_EQ(hit(), c);
    c->SetHideFlag(1);
    EXPECT_EQ(hit(), b);
    c->SetHideFlag(0);
    front->SetHideFlag(1);
    EXPECT_EQ(hit(), b);
    front->SetHideFlag(0);
    front->SetHitTestable(0);
    EXPECT_EQ(hit(), b);
    front->SetLockFlag(1);
    front->SetHitTestable(1);
    EXPECT_EQ(hit(), c); // a lock concerns editing
    base.SetHideFlag(1);
    EXPECT_EQ(hit(), nullptr);
    base.SetHideFlag(0);
    EXPECT_EQ(base.HitTest({1.6, 1.0}, 0.5, flag), nullptr);
}

// Writes a text of 10 units, and keeps the type of the buffer that it was recorded into.
class TextObject : public XvcObj
{
public:
    void CreateVertexBuffer(XVertBuffer* buffer, const XWarp2D*, const tagXDrawAttrs*) override
    {
        typeSeen = buffer->GetType();
        buffer->AddText({.text = "H", .height = 10.0, .colour = 0, .backColour = 0xFF0000FFu});
    }
    int typeSeen = -1;
};

TEST(VectorLayer, RecordsWithItsTypeAndFontSizeFlag)
{
    const struct
    {
        const char* what;
        int layerType, layerFlag;
        int typeSeen, heightPx;
    } kCases[] = {
        {"those of the buffer", -1, -1, 3, 20},   {"a type of its own", 5, -1, 5, 20},
        {"type 0 is a type", 0, -1, 0, 20},       {"heights in pixels", -1, 1, 3, 10},
        {"heights in world units", -1, 0, 3, 20},
    };
    for (const auto& row : kCases) {
        SCOPED_TRACE(row.what);
        XvcBase base;
        auto* layer = new XvcLayer;
        auto* text = new TextObject;
        base.AddTail(layer);
        layer->AddTail(text);
        layer->SetVertBufferType(row.layerType);
        layer->SetVertBufferFontSizeFlag(row.layerFlag);
        XVertBuffer buffer;
        buffer.SetType(3);
        buffer.Start();
        base.CreateVertexBuffer(&buffer, nullptr, nullptr);
        buffer.End();
        EXPECT_EQ(text->typeSeen, row.typeSeen);
        EXPECT_EQ(buffer.GetType(), 3);
        EXPECT_EQ(buffer.GetFontSizeFlag(), 0);
        XBackBuffer surface = MakeSurface(4, 60);
        surface.SetWorldToCenter(0.0, 0.0);
        surface.SetWorldPerPixel(0.5, 0.5);
        buffer.Draw(&surface);
        int height = 0;
        for (int y = 0; y < 60; ++y)
            height += surface.GetImage().pixel(3, y) == 0xFFFF0000u;
        EXPECT_EQ(height, row.heightPx);
    }
}

TEST(VectorSymbolTable, OwnsItsDefinitions)
{
    {
        XvcSymbolTable table;
        EXPECT_EQ(table.GetCount(), 0);
        EXPECT_EQ(table.GetFreeID(), 1);
        EXPECT_TRUE(table.Add(1, std::make_unique<CountedPoint>()));
        EXPECT_TRUE(table.Add(3, std::make_unique<CountedPoint>()));
        EXPECT_TRUE(table.Add(-7, std::make_unique<CountedPoint>()));
        EXPECT_FALSE(table.Add(3, std::make_unique<CountedPoint>()));
        EXPECT_FALSE(table.Add(4, nullptr));
        EXPECT_EQ(CountedPoint::alive, 3);
        EXPECT_EQ(table.GetFreeID(), 2);
        EXPECT_NE(table.Find(3), nullptr);
        EXPECT_EQ(table.Find(4), nullptr);
        EXPECT_TRUE(table.Remove(3));
        EXPECT_FALSE(table.Remove(3));
        EXPECT_EQ(CountedPoint::alive, 2);
    }
    EXPECT_EQ(CountedPoint::alive, 0);
}

} // namespace
