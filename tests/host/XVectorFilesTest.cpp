#include "foundation/platform/XQtText.h"
#include "foundation/raster/XDMCompManager.h"
#include "foundation/raster/XDMComposite.h"
#include "foundation/vector/XVectorIO.h"
#include "foundation/vector/XvcLayer.h"
#include "foundation/vector/XvcPolygon.h"
#include "host/XLayerTree.h"
#include "host/XObjectPicker.h"
#include "host/XRasterFilters.h"
#include "tests/host/XHostFixture.h"

#include <QApplication>
#include <QClipboard>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QStatusBar>
#include <QTableView>
#include <QTreeView>

namespace {

constexpr double kLeft = 300000, kTop = 9100000; // of the rasters of the fixture

class XVectorFilesTest : public XHostFixture
{
protected:
    QString Write(const QString& name, const QByteArray& bytes)
    {
        QFile file(Path(name));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
        return file.fileName();
    }
    /// A square of UTM zone 25 south, whose reference older GeoJSON names in the file.
    QString MakeSquare(const QString& name, double x, double y, double side,
                       const QByteArray& label = "north", int code = 32725)
    {
        const auto corner = [&](double dx, double dy) {
            return "[" + QByteArray::number(x + dx, 'f', 6) + "," +
                   QByteArray::number(y + dy, 'f', 6) + "]";
        };
        return Write(name,
                     R"({"type":"FeatureCollection","crs":{"type":"name","properties":{"name":)"
                     R"("urn:ogc:def:crs:EPSG::)" +
                         QByteArray::number(code) +
                         R"("}},"features":[{"type":"Feature","properties":{"label":")" + label +
                         R"(","people":1200},"geometry":{"type":"Polygon","coordinates":[[)" +
                         corner(0, 0) + "," + corner(side, 0) + "," + corner(side, side) + "," +
                         corner(0, side) + "," + corner(0, 0) + "]]}}]}");
    }
    /// A drawing without reference: a line on each of two layers.
    QString MakeDrawing(const QString& name, double x, double y)
    {
        QByteArray text = "0\nSECTION\n2\nENTITIES\n";
        for (const char* layer : {"ROADS", "WALLS"}) {
            const auto number = [](double value) { return QByteArray::number(value, 'f', 3); };
            text += QByteArray("0\nLINE\n8\n") + layer + "\n62\n1\n10\n" + number(x) + "\n20\n" +
                    number(y) + "\n11\n" + number(x + 900) + "\n21\n" + number(y - 600) + "\n";
            y -= 300;
        }
        return Write(name, text + "0\nENDSEC\n0\nEOF\n");
    }
    /// A square in a file of our own that has no coordinate system.
    QString MakeBare(const QString& name, double x, double y, double side)
    {
        XvcBase base;
        auto* polygon = new XvcPolygon;
        const std::pair<int, int> corners[] = {{0, 0}, {1, 0}, {1, 1}, {0, 1}};
        for (const auto& [dx, dy] : corners)
            polygon->Add(x + dx * side, y + dy * side, 0);
        auto* layer = new XvcLayer;
        layer->AddTail(polygon);
        base.AddTail(layer);
        XString error;
        EXPECT_TRUE(XfnExportXVC(XfnFromQString(Path(name)), &base, error)) << error.GetString();
        return Path(name);
    }
    QPoint PixelOf(double x, double y)
    {
        window->GetView().GetBackBuffer()->ConvWorldToPixelCoord(x, y);
        return QPoint(static_cast<int>(x), static_cast<int>(y));
    }
    void ClickAt(double x, double y)
    {
        const QPoint pixel = PixelOf(x, y);
        Mouse(QEvent::MouseMove, pixel, Qt::NoButton, Qt::NoButton);
        Mouse(QEvent::MouseButtonPress, pixel, Qt::LeftButton, Qt::LeftButton);
        Mouse(QEvent::MouseButtonRelease, pixel, Qt::LeftButton, Qt::NoButton);
        Settle();
    }
    /// The value of a row of a panel's table, "-" for one that there is not.
    std::string Value(const char* table, const char* name)
    {
        const QAbstractItemModel* model = Find<QTableView>(table)->model();
        for (int row = 0; row < model->rowCount(); ++row)
            if (model->index(row, 0).data() == name)
                return model->index(row, 1).data().toString().toStdString();
        return "-";
    }
    std::string Attribute(const char* name) { return Value("attributes.table", name); }
};

TEST_F(XVectorFilesTest, AFileLiesOverTheImageInItsPlaceAndAnswersToAClick)
{
    ASSERT_EQ(Open({MakeRaster("a.dat", 200, 100, 1)}), 1);
    const tagXLook before = Look();
    const QRgb bare = Grab().pixel(PixelOf(kLeft + 1500, kTop - 1500));
    ASSERT_EQ(Open({MakeSquare("s.geojson", kLeft + 1000, kTop - 2000, 1000)}), 1)
        << prompts.GetLastMessage();
    EXPECT_EQ(Look(), before);
    EXPECT_EQ(window->windowTitle(), "s.geojson[*] - tqlview");
    EXPECT_NE(Grab().pixel(PixelOf(kLeft + 1500, kTop - 1500)), bare) << "lightly filled";
    EXPECT_EQ(Value("layers.properties", "Kind"), "Polygon");

    ClickAt(kLeft + 4000, kTop - 500);
    EXPECT_EQ(window->GetPicker().GetObject(), nullptr);
    ClickAt(kLeft + 1500, kTop - 1500);
    ASSERT_NE(window->GetPicker().GetObject(), nullptr);
    EXPECT_EQ(window->GetView().GetSelectedObj()->GetCount(), 1);
    EXPECT_EQ(Attribute("label"), "north");
    EXPECT_EQ(Attribute("people"), "1200");
    EXPECT_EQ(Attribute("Vertices"), "4");
    EXPECT_EQ(Attribute("Area").substr(0, 5), "99.98")
        << "hectares on the ground: the zone is stretched there";
    const QImage marked = Grab();
    PointAt({5, 5});
    EXPECT_EQ(window->GetView().GetSelectedObj()->GetCount(), 1) << "a move drops nothing";

    // a drag is no click, and a tool leaves the selection
    Mouse(QEvent::MouseButtonPress, {20, 20}, Qt::LeftButton, Qt::LeftButton);
    Mouse(QEvent::MouseMove, {60, 60}, Qt::NoButton, Qt::LeftButton);
    Mouse(QEvent::MouseButtonRelease, {60, 60}, Qt::LeftButton, Qt::NoButton);
    Run("view.zoomRect");
    window->GetView().setFocus();
    QTest::keyClick(&window->GetView(), Qt::Key_Escape);
    Settle();
    EXPECT_EQ(Grab(), marked);
    Run("edit.copyAttributes");
    EXPECT_TRUE(QApplication::clipboard()->text().contains("people\t1200\n"));
    QTest::keyClick(&window->GetView(), Qt::Key_F);
    Settle();
    EXPECT_NEAR(Look().x, kLeft + 1500, 1);
    EXPECT_LT(Look().perX, before.perX);
    EXPECT_GT(PixelOf(kLeft + 1500, kTop - 1000).y(), 5) << "its marks have room";
    QTest::keyClick(&window->GetView(), Qt::Key_Escape);
    Settle();
    EXPECT_EQ(Attribute("label"), "-");
    EXPECT_TRUE(Find<QLabel>("attributes.none")->isVisibleTo(Find<QWidget>("attributes")));
    EXPECT_FALSE(Action("view.fitObject")->isEnabled());
}

TEST_F(XVectorFilesTest, OtherSystemsAreCarriedOverAndTheFirstOneDecides)
{
    // the square of one hundredth of a degree at 34.82 W 8.14 S is about 1100 m wide
    ASSERT_EQ(Open({MakeSquare("geo.geojson", -34.82, -8.14, 0.01, "a", 4326),
                    MakeRaster("a.dat", 200, 100, 1)}),
              2);
    double box[4] = {};
    ASSERT_TRUE(window->GetTree().GetExtent(window->GetTree().GetNode(0), box));
    EXPECT_NEAR(box[2] - box[0], 1103, 15);
    EXPECT_NEAR(box[0], kLeft - 540, 60) << "the image came first though it was named last";
    EXPECT_NE(Text("status.system").indexOf("UTM zone 25S"), -1);
    Run("file.closeAll");
    ASSERT_EQ(Open({Path("geo.geojson")}), 1);
    EXPECT_NE(Text("status.system").indexOf("WGS 84"), -1);
    EXPECT_EQ(Text("status.system").indexOf("UTM"), -1);
    EXPECT_NEAR(Look().x, -34.815, 1e-6) << "fills the view";
    EXPECT_FALSE(Action("view.oneToOne")->isEnabled());
    EXPECT_NE(Text("status.scale"), "");
    ASSERT_EQ(Open({MakeRaster("b.dat", 200, 100, 1)}), 1);
    EXPECT_EQ(Text("status.system").indexOf("UTM"), -1) << "the image follows";
    ASSERT_TRUE(window->GetLayers().GetExtent(0, box));
    EXPECT_NEAR(box[0], -34.8155, 2e-3);
}

TEST_F(XVectorFilesTest, AFileWithoutASystemHasOnePlaceWhateverCameFirst)
{
    const QString utm = MakeRaster("a.dat", 200, 100, 1);
    const QString geo = MakeSquare("geo.geojson", -34.82, -8.14, 0.01, "a", 4326);
    const QString degrees = MakeBare("degrees.xvc", -34.82, -8.14, 0.01);
    const QString metres = MakeBare("metres.xvc", kLeft + 100, kTop - 900, 600);
    const struct
    {
        const char* what;
        QString bare, other;
        double left; // of the file without a system
        const char* told;
        bool isFar;
    } rows[] = {
        {"degrees on a projected map", degrees, utm, kLeft - 540, "shown as WGS 84", false},
        {"degrees on a map in degrees", degrees, geo, -34.82, "longitude and latitude in", false},
        {"the map's own numbers", metres, utm, kLeft + 100, "taken as EPSG", false},
        {"numbers of elsewhere", metres, geo, kLeft + 100, "taken as EPSG", true},
        {"a drawing is never in degrees", MakeDrawing("d.dxf", 10, 20), utm, 10, "taken as", true},
    };
    for (const auto& row : rows) {
        for (const bool isFirst : {true, false}) {
            SCOPED_TRACE(std::string(row.what) + (isFirst ? ", first" : ", second"));
            ASSERT_EQ(Open({isFirst ? row.bare : row.other}), 1);
            ASSERT_EQ(Open({isFirst ? row.other : row.bare}), 1);
            const XVectorStack& vectors = window->GetVectors();
            const int file = vectors.GetAt(0)->path == row.bare ? 0 : 1;
            double box[4] = {};
            ASSERT_TRUE(vectors.GetExtent({file, -1}, box));
            EXPECT_NEAR(box[0], row.left, row.left > 1000 ? 60 : 1e-6);
            EXPECT_EQ(vectors.GetAt(file)->path, row.bare);
            if (!isFirst || row.left > 1000) {
                EXPECT_TRUE(Text("notice.text").contains("has no coordinate system"));
            }
            if (!isFirst) {
                EXPECT_TRUE(Text("notice.text").contains(row.told))
                    << Text("notice.text").toStdString();
                EXPECT_EQ(Text("notice.text").contains("outside all other layers"), row.isFar);
            }
            Run("file.closeAll");
        }
    }
    EXPECT_TRUE(prompts.GetMessages().empty());
}

TEST_F(XVectorFilesTest, WhatIsMissingStandsInTheBarAndNoticesGoWithTheNextPress)
{
    ASSERT_EQ(Open({Write("some.geojson", R"({"type":"FeatureCollection","features":[)"
                                          R"({"type":"Feature","properties":{},"geometry":null},)"
                                          R"({"type":"Feature","properties":{},"geometry":)"
                                          R"({"type":"Point","coordinates":[1,2]}}]})")}),
              1);
    EXPECT_EQ(Text("notice.text"), "some.geojson: 1 object without a shape left out.");
    for (int i = 0; i < 3; ++i)
        window->GetView().ZoomIn();
    Settle();
    ASSERT_EQ(Open({MakeSquare("far.geojson", 9, 9, 1, "b", 4326),
                    MakeSquare("wide.geojson", 8, 8, 3, "c", 4326)}),
              2);
    auto* status = Find<QStatusBar>("status");
    EXPECT_TRUE(Text("notice.text").contains("far.geojson lies outside all other layers"));
    EXPECT_TRUE(status->currentMessage().contains("wide.geojson lies outside the view"))
        << status->currentMessage().toStdString();
    QTest::keyClick(&window->GetView(), Qt::Key_3);
    EXPECT_TRUE(status->currentMessage().isEmpty());
}

TEST_F(XVectorFilesTest, TheTableListsFindsSortsAndSelects)
{
    QByteArray towns;
    const std::pair<const char*, int> rows[] = {
        {"Olinda", 370}, {"recife", 1650}, {"Paulista", 330}};
    int x = 0;
    for (const auto& [name, people] : rows) {
        towns += QByteArray(x ? "," : "") + R"({"type":"Feature","properties":{"name":")" + name +
                 R"(","people":)" + QByteArray::number(people) +
                 R"(},"geometry":{"type":"Point","coordinates":[)" + QByteArray::number(x * 10) +
                 ",1]}}";
        ++x;
    }
    ASSERT_EQ(Open({Write("towns.geojson",
                          R"({"type":"FeatureCollection","features":[)" + towns + "]}")}),
              1);
    window->GetView().FitBox(-1, 0, 1, 2);
    Settle();
    Run("layer.table");
    auto* table = Find<QTableView>("table.rows");
    const auto column = [&](int at) {
        QStringList texts;
        for (int row = 0; row < table->model()->rowCount(); ++row)
            texts.append(table->model()->index(row, at).data().toString());
        return texts.join(' ').toStdString();
    };
    EXPECT_EQ(column(1), "Olinda recife Paulista");
    table->sortByColumn(1, Qt::AscendingOrder);
    EXPECT_EQ(column(1), "Olinda Paulista recife");
    table->sortByColumn(2, Qt::DescendingOrder);
    EXPECT_EQ(column(2), "1650 370 330");
    table->selectRow(0);
    Settle();
    EXPECT_EQ(Attribute("name"), "recife");
    EXPECT_NEAR(Look().x, 10, 1e-6) << "brought into view";
    table->setFocus();
    QTest::keyClick(table, Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QApplication::clipboard()->text(), "Object\tname\tpeople\n2\trecife\t1650\n");
    auto* search = Find<QLineEdit>("table.search");
    QTest::keyClicks(search, "IST");
    EXPECT_TRUE(QTest::qWaitFor([&] { return table->model()->rowCount() == 1; }));
    EXPECT_EQ(column(0), "3");
    EXPECT_EQ(Text("table.count"), "1 of 3 objects");
    EXPECT_EQ(Attribute("name"), "recife") << "a search selects nothing";
    search->clear();
    EXPECT_TRUE(QTest::qWaitFor([&] { return table->model()->rowCount() == 3; }));
    window->GetView().FitBox(-1, 0, 1, 2);
    Settle();
    ClickAt(0, 1);
    ASSERT_EQ(table->selectionModel()->selectedRows().size(), 1);
    EXPECT_EQ(table->selectionModel()->selectedRows()[0].row(), 1) << "what the view selects";
    Run("file.closeAll");
    EXPECT_EQ(table->model()->rowCount(), 0);
    EXPECT_EQ(Text("table.title"), "No vector layer is open");
}

TEST_F(XVectorFilesTest, TheTreeHidesLocksRenamesMovesAndCloses)
{
    ASSERT_EQ(Open({MakeRaster("a.dat", 200, 100, 1)}), 1);
    const QImage bare = Grab();
    ASSERT_EQ(Open({MakeDrawing("d.dxf", kLeft + 100, kTop - 100)}), 1);
    const double x = kLeft + 400;
    const double y = kTop - 300; // on the line of ROADS; that of WALLS is 300 below
    auto* list = Find<QTreeView>("layers.list");
    QAbstractItemModel* model = list->model();
    const QModelIndex file = model->index(0, 0);
    ASSERT_EQ(model->rowCount(file), 2);
    EXPECT_TRUE(list->isExpanded(file));
    const auto row = [&](const char* name) {
        for (int i = 0; i < model->rowCount(model->index(0, 0)); ++i)
            if (model->index(i, 0, model->index(0, 0)).data() == name)
                return model->index(i, 0, model->index(0, 0));
        return QModelIndex();
    };
    ClickAt(x, y);
    EXPECT_EQ(Attribute("Layer"), "ROADS");
    list->setCurrentIndex(row("ROADS"));
    list->setFocus();
    QTest::keyClick(list, Qt::Key_Space);
    Settle();
    EXPECT_EQ(window->GetPicker().GetObject(), nullptr) << "what is hidden is not selected";
    ClickAt(x, y);
    EXPECT_EQ(window->GetPicker().GetObject(), nullptr);
    Run("layer.visible");
    Run("layer.lock");
    ClickAt(x, y);
    EXPECT_EQ(window->GetPicker().GetObject(), nullptr);
    EXPECT_FALSE(Action("file.close")->isEnabled());
    Run("layer.lock");

    Run("layer.rename");
    auto* box = list->findChild<QLineEdit*>();
    ASSERT_NE(box, nullptr);
    box->selectAll();
    QTest::keyClicks(box, "Streets");
    QTest::keyClick(box, Qt::Key_Return);
    Settle();
    ASSERT_TRUE(row("Streets").isValid());
    const int place = row("Streets").row();
    list->setFocus();
    QTest::keyClick(list, place == 0 ? Qt::Key_Down : Qt::Key_Up, Qt::AltModifier);
    EXPECT_EQ(row("Streets").row(), 1 - place);

    // kept in a file of the library's own, with what was done to it
    window->GetVectors().Rename({0, -1}, "Town plan");
    ClickAt(x, y);
    EXPECT_EQ(Attribute("File"), "d.dxf") << "the file is called as before";
    prompts.AnswerPath(Path("kept").toUtf8().constData());
    Run("layer.save");
    list->setCurrentIndex(model->index(0, 0));
    Run("file.close");
    Settle();
    EXPECT_EQ(window->GetVectors().GetCount(), 0) << "nothing was lost, so nothing was asked";
    EXPECT_EQ(Grab(), bare);
    ASSERT_EQ(Open({Path("kept.xvc")}), 1) << prompts.GetLastMessage();
    ASSERT_TRUE(row("Streets").isValid());
    EXPECT_EQ(row("Streets").row(), 1 - place);
    EXPECT_EQ(window->GetVectors().GetAt(0)->name, "Town plan");
    EXPECT_EQ(Value("layers.properties", "File"), "kept.xvc");

    list->setFocus(); // opening gave it to the image
    list->setCurrentIndex(row("Streets"));
    Run("file.close");
    Settle();
    EXPECT_EQ(window->GetTree().GetChildCount(0), 0);
    prompts.AnswerCancel();
    list->setCurrentIndex(model->index(0, 0));
    Run("file.close");
    EXPECT_EQ(window->GetVectors().GetCount(), 1);
    prompts.AnswerNo();
    Run("file.close");
    EXPECT_EQ(window->GetVectors().GetCount(), 0);
    Settle();
}

TEST_F(XVectorFilesTest, F5ReadsTheFilesAgainAndKeepsTheirLook)
{
    ASSERT_EQ(Open({MakeRaster("a.dat", 200, 100, 2),
                    MakeSquare("s.geojson", kLeft + 1000, kTop - 2000, 1000)}),
              2);
    XLayerStack& layers = window->GetLayers();
    layers.GetAt(0)->composite->SetCutRange(10, 900, 0);
    layers.ChangeBands(0, [](XBandChoice& choice) { choice.SetGray(1); });
    layers.GetAt(0)->composite->SetCutRange(0, 500, 0);
    window->GetVectors().SetColor({0, -1}, 0xFF123456);
    window->GetVectors().Rename({0, -1}, "mine");
    ClickAt(kLeft + 1500, kTop - 1500);
    const tagXLook before = Look();
    PointAt(PixelOf(kLeft + 30 * 20.5, kTop - 30 * 10.5));
    EXPECT_EQ(Text("status.samples"), "220");

    XfnWriteRawRaster(Path("a.dat"), {200, 100, 2}, std::vector<unsigned short>(40000, 7));
    MakeRaster("fresh.dat", 200, 100, 2, kLeft, kTop);
    QFile::remove(Path("a.hdr")); // with the place that it had
    ASSERT_TRUE(QFile::copy(Path("fresh.hdr"), Path("a.hdr")) ||
                QFile::copy(Path("fresh.dat.hdr"), Path("a.dat.hdr")));
    MakeSquare("s.geojson", kLeft + 1000, kTop - 2000, 1000, "south");
    QTest::keyClick(&window->GetView(), Qt::Key_F5);
    Settle();
    EXPECT_EQ(Look(), before);
    EXPECT_EQ(window->GetPicker().GetObject(), nullptr) << "it is another one now";
    PointAt(PixelOf(kLeft + 30 * 20.5, kTop - 30 * 10.5));
    Settle();
    EXPECT_EQ(Text("status.samples"), "7");
    EXPECT_EQ(layers.GetAt(0)->composite->GetCutMax(0), 500);
    EXPECT_EQ(layers.GetAt(0)->bands->GetGrayBand(), 1);
    EXPECT_EQ(window->GetVectors().GetColor({0, -1}), 0xFF123456u);
    EXPECT_EQ(window->GetVectors().GetAt(0)->name, "mine");
    ClickAt(kLeft + 1500, kTop - 1500);
    EXPECT_EQ(Attribute("label"), "south");

    MakeSquare("s.geojson", kLeft + 1000, kTop - 2000, 1000, "north");
    QTest::keyClick(&window->GetView(), Qt::Key_F5);
    window->GetVectors().SetEdited({0, 0}, true); // drawn while the file is read
    Settle();
    ClickAt(kLeft + 1500, kTop - 1500);
    EXPECT_EQ(Attribute("label"), "south") << "what was drawn is not thrown away";
    EXPECT_TRUE(window->GetVectors().IsEdited({0, 0}));
    window->GetVectors().SetEdited({0, 0}, false);

    QFile::remove(Path("a.dat"));
    Write("s.geojson", "{");
    QTest::keyClick(&window->GetView(), Qt::Key_F5);
    Settle();
    EXPECT_EQ(window->GetTree().GetRowCount(), 2) << "what was read before stays";
    EXPECT_TRUE(Text("notice.text").contains("was not read again"));
    EXPECT_TRUE(prompts.GetMessages().empty());
}

TEST_F(XVectorFilesTest, BadFilesAreToldOnceAndAStopOpensNothing)
{
    const QString good = MakeSquare("good.geojson", 0, 0, 10);
    EXPECT_EQ(Open({Write("bad.geojson", "{\"type\":"), Write("empty.shp", ""), good,
                    Path("missing.dxf")}),
              3);
    Settle();
    ASSERT_EQ(prompts.GetMessages().size(), 2u) << "rasters at once, vector files at their end";
    EXPECT_NE(prompts.GetLastMessage().find("2 files"), std::string::npos)
        << prompts.GetLastMessage();
    EXPECT_EQ(window->GetVectors().GetCount(), 1);
    auto* recent = Find<QMenu>("menu.recent");
    Q_EMIT recent->aboutToShow();
    EXPECT_TRUE(recent->actions()[0]->text().contains("good.geojson"));
    Run("file.closeAll");

    QByteArray many = R"({"type":"FeatureCollection","features":[)";
    for (int i = 0; i < 40000; ++i)
        many += QByteArray(i ? "," : "") +
                R"({"type":"Feature","properties":{},"geometry":{"type":"Point","coordinates":[)" +
                QByteArray::number(i % 180) + ",1]}}";
    Write("many.geojson", many + "]}");
    EXPECT_EQ(window->GetFiles().OpenFiles({Path("many.geojson"), good}), 2);
    window->GetView().setFocus();
    QTest::keyClick(&window->GetView(), Qt::Key_Escape);
    Settle();
    EXPECT_EQ(window->GetVectors().GetCount(), 0);
    EXPECT_FALSE(window->GetLoads().IsBusy());
}

TEST_F(XVectorFilesTest, TheDialogAndFoldersOfferVectorFilesToo)
{
    const QString filter = XfnOpenFilter();
    const QStringList parts = filter.split('|');
    EXPECT_EQ(parts.size() % 2, 0) << filter.toStdString();
    const qsizetype all = parts.indexOf(kAllFilesLabel);
    ASSERT_GT(all, 0);
    for (const char* pattern : {"*.tif", "*.shp", "*.xvc", "*.jp2"})
        EXPECT_TRUE(parts[all + 1].split(';').contains(pattern)) << pattern;
    EXPECT_EQ(filter.count("*.dt1;"), 4) << "the formats of the first entries do not stand twice";
    EXPECT_TRUE(filter.endsWith("|GPX (*.gpx)|*.gpx||")) << filter.toStdString();
    QDir(dir.path()).mkpath("both");
    for (const char* name : {"both/a.tif", "both/a.SHP", "both/a.dbf", "both/a.shx"})
        Write(name, "x");
    EXPECT_EQ(XfnSortDroppedPaths({Path("both")}).folderFiles,
              QStringList({Path("both/a.SHP"), Path("both/a.tif")}));
}

} // namespace
