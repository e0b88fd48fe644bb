#include "foundation/raster/XDMCompManager.h"
#include "foundation/reference/XSpatialReference.h"
#include "foundation/vector/XHitFlag.h"
#include "foundation/vector/XvcEllipse.h"
#include "foundation/vector/XvcLayer.h"
#include "foundation/vector/XvcMPolygon.h"
#include "foundation/vector/XvcPoint.h"
#include "foundation/vector/XvcPolyline.h"
#include "foundation/vector/XvcText.h"
#include "host/XLayerTree.h"
#include "host/XLayerTreeModel.h"
#include "host/XObjectReport.h"
#include "host/XObjectSize.h"
#include "host/XVectorLook.h"
#include "host/XVectorPlacement.h"
#include "host/XVectorReader.h"

#include <QAbstractItemModelTester>
#include <QMimeData>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace {

XSpatialReference Epsg(int code)
{
    XSpatialReference reference;
    if (code > 0) reference.importFromEPSG(code);
    return reference;
}

std::unique_ptr<XvcPolygon> MakeSquare(double x, double y, double side)
{
    auto polygon = std::make_unique<XvcPolygon>();
    polygon->Add(x, y, 0);
    polygon->Add(x + side, y, 0);
    polygon->Add(x + side, y + side, 0);
    polygon->Add(x, y + side, 0);
    polygon->CalcRange();
    return polygon;
}

XvcLayer* AddLayer(XvcBase& base, const char* name, XvcObj* object)
{
    auto* layer = new XvcLayer;
    layer->SetName(name);
    layer->AddTail(object);
    base.AddTail(layer);
    return layer;
}

class XVectorTreeTest : public ::testing::Test
{
protected:
    /// A file whose layers are the letters of `layers`, the rear one first, each with a square.
    void Add(const char* name, const char* layers, int code = 32725)
    {
        tagXVectorRead read;
        read.base = std::make_unique<XvcBase>();
        for (const char* letter = layers; *letter; ++letter)
            AddLayer(*read.base, std::string(1, *letter).c_str(), MakeSquare(0, 0, 10).release());
        read.base->CalcRange();
        read.world = vectors.GetWorld();
        read.reference = Epsg(code);
        read.placement.isPlaced = !read.world.IsEmpty() && code > 0;
        vectors.Add(name, read);
    }
    /// Names from front to back, with layers behind a file of several, and the bases that the view
    /// draws must agree.
    std::string Order()
    {
        QString order;
        for (int row = 0; row < tree.GetRowCount(); ++row) {
            order += tree.GetName(tree.GetNode(row));
            for (int child = 0; child < tree.GetChildCount(row); ++child)
                order += (child ? "" : ":") + tree.GetName(tree.GetNode(row, child));
            order += " ";
        }
        __POSITION* pos = shown.GetTailPosition();
        for (int i = 0; i < vectors.GetCount(); ++i) {
            EXPECT_TRUE(pos && shown.GetPrev(pos) == vectors.GetAt(i)->base.get());
            __POSITION* at = vectors.GetAt(i)->base->GetTailPosition();
            for (const tagXVectorLayer& layer : vectors.GetAt(i)->layers)
                EXPECT_TRUE(at && vectors.GetAt(i)->base->GetPrev(at) == layer.layer);
        }
        return order.trimmed().toStdString();
    }
    tagXTreeNode Vector(int file, int layer = -1)
    {
        return {tagXTreeNode::Kind::Vector, file, layer};
    }

    XDMCompManager manager;
    XObList shown;
    XLayerStack rasters{&manager};
    XVectorStack vectors{&shown, &manager};
    XLayerTree tree{rasters, vectors};
};

TEST_F(XVectorTreeTest, RowsMoveAmongTheirKindAndTheCurrentOneGoesAlong)
{
    Add("one", "abc");
    Add("two", "x");
    Add("three", "pq");
    XLayerTreeModel model(tree);
    QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::Fatal);
    EXPECT_EQ(Order(), "three:qp two one:cba");
    EXPECT_EQ(tree.GetCurrent(), Vector(0)) << "what was opened";
    tree.SetCurrent(Vector(2, 0));
    struct tagXRow
    {
        const char* what;
        QByteArray from;
        int row, parent; // parent -1: the files
        const char* order;
    };
    const tagXRow rows[] = {
        {"a file to the end", "0", 3, -1, "two one:cba three:qp"},
        {"a file onto another", "2", -1, 0, "three:qp two one:cba"},
        {"a file between layers of another", "0", 1, 2, "two three:qp one:cba"},
        {"a layer to the end of its file", "2/0", 3, 2, "two three:qp one:bac"},
        {"a layer beyond its file", "2/0", 0, -1, "two three:qp one:bac"},
        {"a layer into another file", "2/0", 0, 1, "two three:qp one:bac"},
        {"no such row", "2/9", 0, 2, "two three:qp one:bac"},
        {"nonsense", "x/1/2", 0, -1, "two three:qp one:bac"},
    };
    for (const tagXRow& row : rows) {
        QMimeData data;
        data.setData(model.mimeTypes().first(), row.from);
        const QModelIndex parent = row.parent < 0 ? QModelIndex() : model.index(row.parent, 0);
        const std::string before = Order();
        EXPECT_EQ(model.dropMimeData(&data, Qt::MoveAction, row.row, 0, parent),
                  before != row.order)
            << row.what;
        EXPECT_EQ(Order(), row.order) << row.what;
        EXPECT_EQ(tree.GetName(tree.GetCurrent()), "c") << row.what;
    }
    EXPECT_EQ(tree.GetName(tree.GetNeighbour(-1)), "a");
    EXPECT_EQ(tree.GetNeighbour(1).kind, tagXTreeNode::Kind::None);
    EXPECT_TRUE(vectors.GetAt(2)->isEdited);
    EXPECT_FALSE(vectors.GetAt(1)->isEdited) << "the order of files is in none of them";
    tree.Close(tree.GetCurrent());
    EXPECT_EQ(Order(), "two three:qp one:ba");
    tree.Close(Vector(0));
    tree.Close(Vector(0, 0));
    EXPECT_EQ(Order(), "three one:ba") << "a file of one layer is one row, under its own name";
    tree.CloseAll();
    EXPECT_EQ(tree.GetCurrent(), tagXTreeNode());
    EXPECT_EQ(shown.GetCount(), 0);
}

TEST_F(XVectorTreeTest, WhatIsHiddenOrLockedIsNotHitAndALockKeepsTheLook)
{
    Add("one", "ab");
    Add("two", "x");
    const auto hit = [this]() -> std::string {
        tagXHitFlag flag;
        const XvcObj* object = vectors.HitTest({5, 5, 0}, 1, 1, flag);
        return object ? object->GetParentLayer()->GetName().GetString() : "";
    };
    EXPECT_EQ(hit(), "x") << "the front one";
    tree.SetVisible(Vector(0), false);
    EXPECT_EQ(hit(), "b");
    vectors.SetLocked({1, 0}, true);
    EXPECT_EQ(hit(), "a");
    EXPECT_FALSE(vectors.IsLocked({1, -1})) << "not all of its layers";
    vectors.SetColor({1, -1}, 0xFF0000FF);
    EXPECT_NE(vectors.GetColor({1, 0}), 0xFF0000FF);
    EXPECT_EQ(vectors.GetColor({1, 1}), 0xFF0000FF);
    EXPECT_EQ(vectors.GetColor({1, -1}), 0u) << "several";
    EXPECT_FALSE(tree.Rename(Vector(1, 0), "other"));
    EXPECT_TRUE(tree.Rename(Vector(1, 1), " two\nlines "));
    EXPECT_EQ(tree.GetName(Vector(1, 1)), "two lines");
    EXPECT_FALSE(tree.Rename(Vector(1, 1), "  "));
    vectors.SetLocked({1, -1}, true);
    EXPECT_EQ(hit(), "");
}

TEST_F(XVectorTreeTest, TheFirstFileWithASystemGivesItToTheView)
{
    Add("bare", "a", 0);
    EXPECT_TRUE(vectors.GetWorld().IsEmpty());
    EXPECT_FALSE(vectors.GetAt(0)->isPlaced);
    Add("utm", "a", 32725);
    const XSpatialReference utm = Epsg(32725);
    EXPECT_TRUE(manager.GetSR()->IsSame(&utm));
    EXPECT_TRUE(vectors.GetWorld().IsSame(&utm));
    Add("geo", "a", 4326);
    EXPECT_TRUE(manager.GetSR()->IsSame(&utm)) << "the view keeps what it has";
    tree.CloseAll();
    Add("geo", "a", 4326);
    EXPECT_TRUE(manager.GetSR()->IsGeographic()) << "until all are closed";
}

TEST(XVectorPlacementTest, VerticesGoExactlyAndShapesAsAWhole)
{
    XvcBase base;
    XvcLayer* layer = AddLayer(base, "a", MakeSquare(-34.82, -8.136, 0.01).release());
    auto* text = new XvcText;
    text->SetText("Name");
    text->SetPosition(-34.82, -8.136);
    text->SetFontSize(0.001);
    layer->AddTail(text);
    auto* circle = new XvcEllipse;
    circle->SetCenter({-34.82, -8.136, 0});
    circle->SetAxis(0.01, 0.01);
    layer->AddTail(circle);
    auto* thick = new XvcPolyline;
    thick->Add(-34.82, -8.136, 5);
    thick->Add(std::numeric_limits<double>::quiet_NaN(), 7, 0);
    thick->Add(-34.81, 91, 0);
    layer->AddTail(thick);
    auto* square = static_cast<XvcPolygon*>(layer->GetHead());
    square->SetThick(0.001);
    const tagXPlacement placement = XfnPlaceVector(base, Epsg(4326), Epsg(32725), {});
    EXPECT_TRUE(placement.isPlaced);
    EXPECT_EQ(placement.lost, 2) << "no number, and beyond the pole";
    // the UTM formulas of the manual, and 0.001 degrees of a meridian there
    const tagXVector3 corner = square->GetVertexArray().GetAt(0);
    EXPECT_NEAR(corner.x, 299459, 20);
    EXPECT_NEAR(corner.y, 9100224, 20);
    EXPECT_EQ(thick->GetVertexArray().GetAt(0).z, 5);
    EXPECT_NEAR(text->GetPosition().x, corner.x, 1e-6);
    EXPECT_NEAR(text->GetFontSize(), 110.6, 1);
    double axisX = 0;
    double axisY = 0;
    circle->GetAxis(axisX, axisY);
    EXPECT_NEAR(axisY, 1106, 10);
    EXPECT_NEAR(circle->GetCenter().y, corner.y, 1e-6);
    EXPECT_NEAR(square->GetThick(), 110.2, 1);
    EXPECT_FALSE(XfnPlaceVector(base, Epsg(0), Epsg(4326), {}).isPlaced);
    EXPECT_NEAR(base.GetRange().minX, corner.x, 1200) << "calculated anew";
}

TEST(XObjectSizeTest, LengthsAndAreasOnTheEllipsoidAndInThePlane)
{
    XvcMPolygon ringed;
    ringed.AddPolygon(MakeSquare(0, 0, 1));
    ringed.AddPolygon(MakeSquare(0.25, 0.25, 0.5));
    XvcPolyline meridian;
    meridian.Add(0, 0, 0);
    meridian.Add(0, std::numeric_limits<double>::infinity(), 0);
    meridian.Add(0, 90, 0);
    XvcPolyline mercator;
    mercator.Add(0, 8399737.89, 0); // 60 degrees north: a metre there is half of one in the plane
    mercator.Add(111319.49, 8399737.89, 0);
    XvcPoint point(1, 2);
    const auto single = MakeSquare(0, 0, 1);
    struct tagXRow
    {
        const char* name;
        const XvcObj* object;
        int code;
        double length, area, tolerance;
        int parts, vertices;
    };
    // 12308.778 km2: a cell of one degree at the equator; 10001.966 km: a quarter of a meridian
    const tagXRow rows[] = {
        {"a cell of one degree", single.get(), 4326, 443770, 12308.778e6, 2e-4, 1, 4},
        {"a hole", &ringed, 0, 6, 0.75, 1e-12, 2, 8},
        {"a meridian, past what is no number", &meridian, 4326, 10001965.7, 0, 1e-6, 1, 3},
        {"a stretched projection", &mercator, 3857, 55799.5, 0, 1e-3, 1, 2},
        {"a point", &point, 4326, 0, 0, 0, 1, 1},
    };
    for (const tagXRow& row : rows) {
        const tagXObjectSize size = XfnMeasureObject(*row.object, Epsg(row.code));
        EXPECT_EQ(size.isMetric, row.code != 0) << row.name;
        EXPECT_NEAR(size.length, row.length, row.length * row.tolerance) << row.name;
        EXPECT_NEAR(size.area, row.area, row.area * row.tolerance) << row.name;
        EXPECT_EQ(size.parts * 100 + size.vertices, row.parts * 100 + row.vertices) << row.name;
    }
    EXPECT_EQ(XfnLengthText(999.9994), "999.999 m");
    EXPECT_EQ(XfnLengthText(-2500), "-2.5 km");
    EXPECT_EQ(XfnLengthText(std::nan("")), "");
    EXPECT_EQ(XfnAreaText(25000), "2.5 ha");
    EXPECT_EQ(XfnAreaText(3e6), QString::fromUtf8("3 km²"));
}

TEST(XVectorLookTest, OnlyLayersWithoutALookGetOne)
{
    XvcBase base;
    XvcLayer* plain = AddLayer(base, "plain", MakeSquare(0, 0, 1).release());
    plain->AddTail(new XvcPoint(1, 1));
    EXPECT_FALSE(XfnHasOwnLook(*plain));
    XfnGiveLook(*plain, XfnGetPaletteColor(-3));
    EXPECT_TRUE(XfnHasOwnLook(*plain));
    EXPECT_EQ(XfnGetLayerColor(*plain), XfnGetPaletteColor(kXLayerColorCount - 3));
    const auto* square = static_cast<XvcObj*>(plain->GetHead());
    const unsigned alpha = XfnGetAlpha(square->GetForeColor());
    EXPECT_LT(alpha, 128u) << "what lies below is seen";
    XfnColorLayer(*plain, XfnMakeColor(1, 2, 3, 255));
    EXPECT_EQ(square->GetForeColor(), XfnMakeColor(1, 2, 3, alpha));
    EXPECT_EQ(square->GetLineColor(), XfnMakeColor(1, 2, 3, 255));
    XvcLayer* own = AddLayer(base, "own", new XvcPoint(1, 1));
    static_cast<XvcObj*>(own->GetHead())->SetThick(-3);
    EXPECT_TRUE(XfnHasOwnLook(*own));
}

} // namespace
