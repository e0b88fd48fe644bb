// Files of other makers come in through GDAL; those of the tests are written by GDAL or by hand.

#include "foundation/base/XSentinels.h"
#include "foundation/platform/XThread.h"
#include "foundation/vector/XAttributeTable.h"
#include "foundation/vector/XOgrStyle.h"
#include "foundation/vector/XVectorFileInfo.h"
#include "foundation/vector/XVectorIO.h"
#include "foundation/vector/XvcBase.h"
#include "foundation/vector/XvcGroup2.h"
#include "foundation/vector/XvcLayer.h"
#include "foundation/vector/XvcMPolygon.h"
#include "foundation/vector/XvcPoint.h"
#include "foundation/vector/XvcText.h"
#include "tests/support/XVectorSamples.h"

#include <gdal_priv.h>
#include <ogrsf_frmts.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <cmath>
#include <limits>

namespace {

class VectorImport : public testing::Test
{
protected:
    void SetUp() override { GDALAllRegister(); }

    XString Name(const char* name) const
    {
        return m_folder.filePath(QString::fromUtf8(name)).toUtf8().constData();
    }
    void Write(const char* name, const QByteArray& bytes) const
    {
        QFile file(m_folder.filePath(QString::fromUtf8(name)));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size());
    }
    QStringList ListFiles() const
    {
        return QDir(m_folder.path()).entryList(QDir::Files | QDir::Hidden, QDir::Name);
    }
    /// Writes geometries with a text and a number each.
    void WriteShapes(const char* name, OGRwkbGeometryType type,
                     const std::vector<const char*>& wkts, const char* text = "caf\xC3\xA9",
                     const char* encoding = "UTF-8") const
    {
        OGRSpatialReference utm;
        utm.importFromEPSG(32652);
        char option[64];
        std::snprintf(option, sizeof option, "ENCODING=%s", encoding);
        const char* const options[] = {option, nullptr};
        GDALDriver* driver = GetGDALDriverManager()->GetDriverByName("ESRI Shapefile");
        GDALDataset* set = driver->Create(Name(name), 0, 0, 0, GDT_Unknown, nullptr);
        OGRLayer* layer = set->CreateLayer("x", &utm, type, const_cast<char**>(options));
        OGRFieldDefn textField("the_name", OFTString), numberField("number", OFTReal);
        layer->CreateField(&textField);
        layer->CreateField(&numberField);
        for (const char* wkt : wkts) {
            OGRFeature feature(layer->GetLayerDefn());
            OGRGeometry* geometry = nullptr;
            OGRGeometryFactory::createFromWkt(wkt, nullptr, &geometry);
            feature.SetGeometryDirectly(geometry);
            feature.SetField(0, text);
            feature.SetField(1, 2.5);
            ASSERT_EQ(layer->CreateFeature(&feature), OGRERR_NONE);
        }
        GDALClose(set);
    }
    XvcObj* GetObject(XvcBase& base, int index, int layer = 0) const
    {
        __POSITION* pos = base.GetHeadPosition();
        auto* found = static_cast<XvcLayer*>(base.GetNext(pos));
        while (layer-- > 0)
            found = static_cast<XvcLayer*>(base.GetNext(pos));
        pos = found->GetHeadPosition();
        XObject* object = found->GetNext(pos);
        while (index-- > 0)
            object = found->GetNext(pos);
        return static_cast<XvcObj*>(object);
    }

    QTemporaryDir m_folder;
    XString m_error;
    std::vector<XString> m_notes;
};

const char* const kHole = "POLYGON ((0 0,0 9,9 9,9 0,0 0),(1 1,2 1,2 2,1 2,1 1))";

TEST_F(VectorImport, ShapesWithOrWithoutTheirSiblings)
{
    const struct
    {
        const char* what;
        std::vector<const char*> removed;
        std::vector<std::pair<const char*, int>> cut; // bytes off the end
        int objects, texts;
        bool hasReference;
        const char* note; // of the last one
    } cases[] = {
        {"all there", {}, {}, 3, 3, true, ""},
        {"no index", {"a.shx"}, {}, 3, 3, true, ""},
        {"no attributes", {"a.dbf"}, {}, 3, 0, true, "a.dbf is missing"},
        {"no reference", {"a.prj"}, {}, 3, 3, false, ""},
        {"the shapes alone", {"a.shx", "a.dbf", "a.prj", "a.cpg"}, {}, 3, 0, false, "is missing"},
        {"half a record", {}, {{"a.dbf", 9}}, 3, 2, true, "2 of 3 objects have attributes"},
        {"the same, no index", {"a.shx"}, {{"a.dbf", 9}}, 3, 2, true, "2 of 3 objects have"},
        {"no record", {}, {{"a.dbf", 315}}, 3, 0, true, "0 of 3 objects have attributes"},
        {"half a head", {}, {{"a.dbf", 400}}, 3, 0, true, "a.dbf is damaged"},
        {"half a shape", {}, {{"a.shp", 9}}, 2, 2, true, "2 of 3 objects could be read"},
        {"the same, no index", {"a.shx"}, {{"a.shp", 9}}, 2, 2, true, "2 of 3 objects could"},
        {"half an index", {}, {{"a.shx", 9}}, 3, 3, true, "a.shx is cut short"},
        {"a broken reference", {}, {{"a.prj", 9}}, 3, 3, false, "a.prj cannot be understood"},
    };
    for (const auto& row : cases) {
        SCOPED_TRACE(row.what);
        WriteShapes("a.shp", wkbPolygon,
                    {kHole, "POLYGON ((20 20,20 30,30 20,20 20))", "POLYGON ((0 0,0 1,1 0,0 0))"});
        for (const char* name : row.removed)
            QFile::remove(m_folder.filePath(QString::fromUtf8(name)));
        for (const auto& [name, bytes] : row.cut) {
            QFile file(m_folder.filePath(QString::fromUtf8(name)));
            ASSERT_TRUE(file.resize(std::max<qint64>(20, file.size() - bytes)));
        }
        const QStringList before = ListFiles();
        XvcBase base;
        m_notes.clear();
        ASSERT_TRUE(
            XfnImportSHP(Name("a.shp"), &base, m_error, nullptr, nullptr, nullptr, &m_notes))
            << m_error.GetString();
        tagXVectorFileInfo info;
        ASSERT_TRUE(XfnGetSHPInfo(Name("a.shp"), info, m_error)) << m_error.GetString();
        EXPECT_EQ(ListFiles(), before);
        EXPECT_EQ(m_notes.size(), *row.note ? 1u : 0u);
        if (!m_notes.empty()) {
            EXPECT_GE(m_notes.back().Find(row.note), 0) << m_notes.back().GetString();
        }
        EXPECT_EQ(base.GetName(), "a");
        EXPECT_EQ(base.GetSR()->IsEmpty() != 0, !row.hasReference);
        EXPECT_EQ(info.reference.GetCoordType(), row.hasReference ? 3 : 2);
        EXPECT_TRUE(info.layers[0].hasAreas && !info.layers[0].hasPoints);
        EXPECT_EQ(info.range.maxX, 30.0);
        EXPECT_EQ(base.GetRange().maxX, 30.0);
        EXPECT_EQ(static_cast<XvcLayer*>(base.GetHead())->GetCount(), row.objects);
        for (int i = 0; i < row.objects; ++i) {
            int place = -1;
            const XvcObj* object = GetObject(base, i);
            const XAttributeTable* table = XfnGetAttributes(object, place);
            EXPECT_EQ(object->GetName(), i < row.texts ? "caf\xC3\xA9" : "");
            if (i >= row.texts) continue;
            ASSERT_TRUE(table);
            EXPECT_EQ(place, i);
            EXPECT_EQ(table->GetText(i, table->FindColumn("number")), "2.5");
        }
        XvcObj* holed = GetObject(base, 0);
        ASSERT_TRUE(XfnIsExactly(holed, "XvcMPolygon"));
        EXPECT_EQ(static_cast<XvcMPolygon*>(holed)->GetNumOfPolygons(), 2);
        EXPECT_TRUE(holed->GetFillStyle().IsNone());
        ASSERT_TRUE(XfnIsExactly(GetObject(base, 1), "XvcPolygon"));
        EXPECT_EQ(static_cast<XvcPolygon*>(GetObject(base, 1))->GetSize(), 3);
    }
}

TEST_F(VectorImport, EncodingsOfAttributes)
{
    const QByteArray utf8 = "\xEC\x84\x9C\xEC\x9A\xB8", korean = "\xBC\xAD\xBF\xEF",
                     western = "caf\xE9 \xFC"
                               "ber";
    const struct
    {
        const char* what;
        const char* cpg; // null for none
        int ldid;
        QByteArray stored;
        const char* expected;
    } cases[] = {
        {"UTF-8, told", "UTF-8", 0, utf8, utf8},
        {"UTF-8, not told", nullptr, 0x57, utf8, utf8},
        {"Korean, told", "949", 0, korean, utf8},
        {"Korean, not told", nullptr, 0, korean, utf8},
        {"Korean, the system's", nullptr, 0x57, korean, utf8},
        {"Western, not told", nullptr, 0, western,
         "caf\xC3\xA9 \xC3\xBC"
         "ber"},
        {"Western, told", "ISO-8859-1", 0, western,
         "caf\xC3\xA9 \xC3\xBC"
         "ber"},
    };
    for (const auto& row : cases) {
        SCOPED_TRACE(row.what);
        WriteShapes("a.shp", wkbPoint, {"POINT (1 2)"}, "@@@@@@@@@@@@");
        QFile table(m_folder.filePath(QStringLiteral("a.dbf")));
        ASSERT_TRUE(table.open(QIODevice::ReadWrite));
        QByteArray bytes = table.readAll();
        bytes.replace("@@@@@@@@@@@@", row.stored.leftJustified(12));
        bytes[29] = static_cast<char>(row.ldid);
        table.seek(0);
        table.write(bytes);
        table.close();
        QFile::remove(m_folder.filePath(QStringLiteral("a.cpg")));
        if (row.cpg) Write("a.cpg", row.cpg);
        XvcBase base;
        ASSERT_TRUE(XfnImportSHP(Name("a.shp"), &base, m_error)) << m_error.GetString();
        EXPECT_EQ(GetObject(base, 0)->GetName(), row.expected);
        int place = 0;
        EXPECT_EQ(XfnGetAttributes(GetObject(base, 0), place)->GetText(0, 0), row.expected);
    }
}

TEST_F(VectorImport, EveryKindOfGeometry)
{
    const struct
    {
        const char* wkt;
        const char* className; // null for none
        double maxX;
        bool hasHeights = false;
    } cases[] = {
        {"POINT Z (1 2 3)", "XvcPoint", 1, true},
        {"MULTIPOINT (1 2,3 4)", "XvcPolypoint", 3},
        {"LINESTRING ZM (1 2 3 4,5 6 7 8)", "XvcPolyline", 5, true},
        {"MULTILINESTRING ((1 2,3 4),(5 6,7 8))", "XvcMPolyline", 7},
        {"MULTILINESTRING ((1 2,3 4))", "XvcPolyline", 3},
        {kHole, "XvcMPolygon", 9},
        {"MULTIPOLYGON (((0 0,0 1,1 0,0 0)),((5 5,5 6,6 5,5 5)))", "XvcMPolygon", 6},
        {"CIRCULARSTRING (0 0,1 1,2 0)", "XvcPolyline", 2},
        {"CURVEPOLYGON (CIRCULARSTRING (0 0,1 1,2 0,1 -1,0 0))", "XvcPolygon", 2},
        {"MULTISURFACE (CURVEPOLYGON (CIRCULARSTRING (0 0,1 1,2 0,1 -1,0 0)))", "XvcPolygon", 2},
        {"TRIANGLE ((0 0,0 1,1 0,0 0))", "XvcPolygon", 1},
        {"TIN (((0 0,0 1,1 0,0 0)),((0 1,1 1,1 0,0 1)))", "XvcMPolygon", 1},
        {"GEOMETRYCOLLECTION (POINT (1 2),LINESTRING (0 0,4 4))", "XvcGroup2", 4},
        {"GEOMETRYCOLLECTION (LINESTRING (0 0,4 4))", "XvcPolyline", 4},
        {"GEOMETRYCOLLECTION EMPTY", nullptr, 0},
        {"POINT EMPTY", nullptr, 0},
        {"POLYGON EMPTY", nullptr, 0},
    };
    for (const auto& row : cases) {
        SCOPED_TRACE(row.wkt);
        GDALDriver* driver = GetGDALDriverManager()->GetDriverByName("GPKG");
        QFile::remove(m_folder.filePath(QStringLiteral("a.gpkg")));
        GDALDataset* set = driver->Create(Name("a.gpkg"), 0, 0, 0, GDT_Unknown, nullptr);
        OGRLayer* layer = set->CreateLayer("x", nullptr, wkbUnknown, nullptr);
        OGRFeature feature(layer->GetLayerDefn());
        OGRGeometry* geometry = nullptr;
        OGRGeometryFactory::createFromWkt(row.wkt, nullptr, &geometry);
        feature.SetGeometryDirectly(geometry);
        ASSERT_EQ(layer->CreateFeature(&feature), OGRERR_NONE);
        GDALClose(set);
        const QStringList before = ListFiles();
        XvcBase base;
        ASSERT_TRUE(XfnImportVector(Name("a.gpkg"), &base, m_error)) << m_error.GetString();
        EXPECT_EQ(ListFiles(), before);
        ASSERT_EQ(static_cast<XvcLayer*>(base.GetHead())->GetCount(), row.className ? 1 : 0);
        if (!row.className) continue;
        XvcObj* object = GetObject(base, 0);
        EXPECT_TRUE(XfnIsExactly(object, row.className))
            << object->GetRuntimeClass()->m_lpszClassName;
        EXPECT_NEAR(base.GetRange().maxX, row.maxX, 1e-9);
        EXPECT_EQ(base.GetRange().maxZ != 0.0, row.hasHeights);
    }
}

TEST_F(VectorImport, CoordinatesThatAreNoPlaces)
{
    // one good polygon, and others with a vertex that cannot be drawn
    WriteShapes("a.shp", wkbPolygon,
                {"POLYGON ((0 0,0 9,9 9,0 0))", "POLYGON ((111 222,0 9,9 9,111 222))",
                 "POLYGON ((5 5,5 5,5 5,5 5))"});
    QFile file(m_folder.filePath(QStringLiteral("a.shp")));
    for (const double bad :
         {1.7e308, std::numeric_limits<double>::infinity(),
          -std::numeric_limits<double>::infinity(), std::numeric_limits<double>::quiet_NaN()}) {
        ASSERT_TRUE(file.open(QIODevice::ReadWrite));
        QByteArray bytes = file.readAll();
        double value = 111.0;
        const QByteArray from(reinterpret_cast<const char*>(&value), 8);
        bytes.replace(from, QByteArray(reinterpret_cast<const char*>(&bad), 8));
        file.close();
        Write("b.shp", bytes);
        XvcBase base;
        ASSERT_TRUE(XfnImportSHP(Name("b.shp"), &base, m_error)) << m_error.GetString();
        EXPECT_LE(base.GetRange().maxX, 9.0);
        tagXVectorFileInfo info;
        EXPECT_TRUE(XfnGetSHPInfo(Name("b.shp"), info, m_error));
        __POSITION* pos = static_cast<XvcLayer*>(base.GetHead())->GetHeadPosition();
        while (pos)
            RecordObject(
                *static_cast<XvcObj*>(static_cast<XvcLayer*>(base.GetHead())->GetNext(pos)));
    }
}

const char kDrawing[] = "0\nSECTION\n2\nENTITIES\n"
                        "0\nLINE\n8\nroads\n62\n1\n10\n0\n20\n0\n11\n10\n21\n5\n"
                        "0\nCIRCLE\n8\nwells\n62\n5\n10\n3\n20\n3\n40\n2\n"
                        "0\nTEXT\n8\nroads\n62\n3\n10\n4\n20\n6\n40\n2.5\n50\n30\n1\nMain street\n"
                        "0\nLINE\n8\nsheet\n67\n1\n10\n0\n20\n0\n11\n1000\n21\n500\n"
                        "0\nENDSEC\n0\nEOF\n";

TEST_F(VectorImport, DrawingsKeepLayersColoursAndTexts)
{
    Write("a.dxf", kDrawing);
    XvcBase base;
    ASSERT_TRUE(XfnImportDXF(Name("a.dxf"), &base, m_error, nullptr, nullptr, nullptr, &m_notes))
        << m_error.GetString();
    ASSERT_EQ(base.GetCount(), 2);
    EXPECT_EQ(static_cast<XvcLayer*>(base.GetHead())->GetName(), "roads");
    EXPECT_EQ(static_cast<XvcLayer*>(base.GetTail())->GetName(), "wells");
    EXPECT_EQ(m_notes.size(), 1u); // the paper sheet
    EXPECT_EQ(GetObject(base, 0)->GetLineColor(), 0xFF0000FFu);
    EXPECT_EQ(GetObject(base, 0, 1)->GetLineColor(), 0xFFFF0000u);
    EXPECT_NEAR(GetObject(base, 0, 1)->GetRange().maxX, 5.0, 1e-6);
    auto* text = dynamic_cast<XvcText*>(GetObject(base, 1));
    ASSERT_TRUE(text);
    EXPECT_EQ(text->GetText(), "Main street");
    EXPECT_EQ(text->GetFontSize(), 2.5);
    EXPECT_EQ(text->GetAngle(), 30.0);
    EXPECT_EQ(text->GetTextColor(), 0xFF00FF00u);
    EXPECT_EQ(text->GetPosition().x, 4.0);
    int row = -1;
    EXPECT_TRUE(XfnGetAttributes(GetObject(base, 1), row));
    EXPECT_EQ(row, 1);
    tagXVectorFileInfo info;
    ASSERT_TRUE(XfnGetDXFInfo(Name("a.dxf"), info, m_error)) << m_error.GetString();
    ASSERT_EQ(info.layers.size(), 2u);
    EXPECT_EQ(info.objects, 3);
    EXPECT_EQ(info.range.maxX, 10.0);
    EXPECT_EQ(info.reference.GetCoordType(), 2);
}

TEST_F(VectorImport, StyleStringsFromAnyone)
{
    const XOgrStyle style =
        XOgrStyle::Parse("PEN(c:#FF000080,w:2px,id:\"mapinfo-pen-2,ogr-pen-5\");BRUSH(fc:#00FF00,"
                         "id:\"ogr-brush-3\");"
                         "LABEL(t:\"a \\\"b\\\", "
                         "c)\",s:12g,a:-5,p:8,bo:1,c:#0000FF);SYMBOL(id:\"ogr-sym-4\",s:3pt)");
    EXPECT_EQ(style.penColor, 0x800000FFu);
    EXPECT_EQ(style.penWidth, -2.0);
    EXPECT_EQ(style.penStyle, tagXLineStyle::kDot);
    EXPECT_EQ(style.brushFore, 0xFF00FF00u);
    EXPECT_EQ(style.brushStyle, tagXFillStyle::kVertical);
    EXPECT_EQ(style.label.text, "a \"b\", c)");
    EXPECT_EQ(style.label.size, 12.0);
    EXPECT_EQ(style.label.align, 4 | 16);
    EXPECT_TRUE(style.label.isBold);
    EXPECT_EQ(style.symbolShape, 2);
    EXPECT_EQ(style.symbolSize, -4.0);
    for (const char* text : {"", "(", "PEN", "PEN(", "PEN(c", "PEN(c:", "PEN(c:#12", "PEN(c:\"",
                             ";;()", "PEN(w:1e999g)", "LABEL(t:\"\\", "PEN(c:#GGGGGG,w:nan)"}) {
        const XOgrStyle odd = XOgrStyle::Parse(text);
        EXPECT_TRUE(std::isfinite(odd.penWidth) && odd.penColor == kXOpaque) << text;
    }
}

TEST_F(VectorImport, OneCoordinateSystemForAllLayers)
{
    GDALDriver* driver = GetGDALDriverManager()->GetDriverByName("GPKG");
    GDALDataset* set = driver->Create(Name("a.gpkg"), 0, 0, 0, GDT_Unknown, nullptr);
    for (const int code : {32652, 4326}) {
        OGRSpatialReference reference;
        reference.importFromEPSG(code);
        reference.SetAxisMappingStrategy(OAMS_TRADITIONAL_GIS_ORDER);
        OGRLayer* layer = set->CreateLayer(XfnFormat("in %d", code), &reference, wkbPoint, nullptr);
        OGRFeature feature(layer->GetLayerDefn());
        OGRPoint point(code == 4326 ? 129.0 : 5e5, code == 4326 ? 0.0 : 0.0);
        feature.SetGeometry(&point);
        ASSERT_EQ(layer->CreateFeature(&feature), OGRERR_NONE);
    }
    GDALClose(set);
    XvcBase base;
    ASSERT_TRUE(XfnImportVector(Name("a.gpkg"), &base, m_error)) << m_error.GetString();
    ASSERT_EQ(base.GetCount(), 2);
    for (const int layer : {0, 1}) {
        auto* point = static_cast<XvcPoint*>(GetObject(base, 0, layer));
        EXPECT_NEAR(point->GetX(), 5e5, 1e-3);
        EXPECT_NEAR(point->GetY(), 0.0, 1e-3);
    }
}

TEST_F(VectorImport, WhatCannotBeRead)
{
    Write("empty.shp", "");
    Write("text.shp", "not a shapefile");
    Write("a.vrt", "<OGRVRTDataSource><OGRVRTLayer name='x'><SrcDataSource>/etc/passwd"
                   "</SrcDataSource></OGRVRTLayer></OGRVRTDataSource>");
    Write("table.csv", "a,b\n1,2\n");
    Write("cut.dxf", "0\nSECTION\n2\nENTITIES\n0\nLINE\n8\nA\n10\n");
    Write("cut.geojson", "{\"type\":\"FeatureCollection\",\"features\":[{\"type\":");
    WriteShapes("cut.shp", wkbPolygon, {kHole, kHole, kHole});
    QFile cut(m_folder.filePath(QStringLiteral("cut.shp")));
    ASSERT_TRUE(cut.resize(120));
    for (const char* name : {"empty.shp", "text.shp", "a.vrt", "table.csv", "cut.dxf",
                             "cut.geojson", "missing.shp", ""}) {
        XvcBase base;
        EXPECT_FALSE(XfnImportVector(*name ? Name(name) : XString(), &base, m_error)) << name;
        EXPECT_GE(m_error.Find(name), 0) << m_error.GetString();
        for (const char* inner : {".cpp", "SHAPE_RESTORE"}) // names of a reader's own
            EXPECT_LT(m_error.Find(inner), 0) << m_error.GetString();
        EXPECT_EQ(base.GetCount(), 0);
        tagXVectorFileInfo info;
        EXPECT_FALSE(XfnGetVectorInfo(*name ? Name(name) : XString(), info, m_error)) << name;
    }
    XvcBase base;
    XfnImportSHP(Name("cut.shp"), &base, m_error, nullptr, nullptr, nullptr, &m_notes);
    EXPECT_TRUE(!m_notes.empty() || !m_error.IsEmpty());
    EXPECT_FALSE(XfnImportDXF(Name("cut.shp"), &base, m_error)); // another format

    // a stop, by the thread or by the callback
    XThread stopped;
    stopped.Terminate();
    XvcBase none;
    WriteShapes("a.shp", wkbPoint, {"POINT (1 2)", "POINT (3 4)"});
    EXPECT_FALSE(XfnImportSHP(Name("a.shp"), &none, m_error, &stopped));
    EXPECT_TRUE(m_error.IsEmpty());
    EXPECT_FALSE(XfnImportSHP(Name("a.shp"), &none, m_error, nullptr, nullptr,
                              [](void*, XvcObj*) { return 0; }));
    EXPECT_TRUE(m_error.IsEmpty() && none.GetCount() == 0);
}

} // namespace
