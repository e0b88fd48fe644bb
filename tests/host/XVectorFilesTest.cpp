#include "foundation/raster/XDMCompManager.h"
#include "foundation/raster/XDMComposite.h"
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

TEST_F(XVectorFilesTest, AFileWithoutASystemIsShownAtItsNumbersAndThatIsSaid)
{
    ASSERT_EQ(Open({MakeRaster("a.dat", 200, 100, 1)}), 1);
    ASSERT_EQ(Open({MakeDrawing("near.dxf", kLeft + 100, kTop - 100)}), 1);
    EXPECT_TRUE(Text("notice.text").contains("near.dxf tells no coordinate system"));
    EXPECT_FALSE(Text("notice.text").contains("out of sight"));
    ASSERT_EQ(Open({MakeDrawing("far.dxf", 10, 20)}), 1);
    EXPECT_TRUE(Text("notice.text").contains("out of sight"));
    EXPECT_TRUE(prompts.GetMessages().empty());
    EXPECT_EQ(window->GetTree().GetChildCount(1), 2) << "a layer for each of the drawing";
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
    prompts.AnswerPath(Path("kept").toUtf8().constData());
    Run("layer.save");
    list->setCurrentIndex(model->index(0, 0));
    QTest::keyClick(list, Qt::Key_Delete);
    Settle();
    EXPECT_EQ(window->GetVectors().GetCount(), 0) << "nothing was lost, so nothing was asked";
    EXPECT_EQ(Grab(), bare);
    ASSERT_EQ(Open({Path("kept.xvc")}), 1) << prompts.GetLastMessage();
    ASSERT_TRUE(row("Streets").isValid());
    EXPECT_EQ(row("Streets").row(), 1 - place);

    list->setCurrentIndex(row("Streets"));
    QTest::keyClick(list, Qt::Key_Delete);
    Settle();
    EXPECT_EQ(window->GetTree().GetChildCount(0), 0);
    prompts.AnswerCancel();
    list->setCurrentIndex(model->index(0, 0));
    QTest::keyClick(list, Qt::Key_Delete);
    EXPECT_EQ(window->GetVectors().GetCount(), 1);
    prompts.AnswerNo();
    QTest::keyClick(list, Qt::Key_Delete);
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
    EXPECT_EQ(parts[0], "All supported files");
    for (const char* pattern : {"*.tif", "*.shp", "*.xvc"})
        EXPECT_TRUE(parts[1].split(';').contains(pattern)) << pattern;
    EXPECT_TRUE(filter.endsWith("|GPX (*.gpx)|*.gpx|All files (*)|*||")) << filter.toStdString();
    QDir(dir.path()).mkpath("both");
    for (const char* name : {"both/a.tif", "both/a.SHP", "both/a.dbf", "both/a.shx"})
        Write(name, "x");
    EXPECT_EQ(XfnSortDroppedPaths({Path("both")}).folderFiles,
              QStringList({Path("both/a.SHP"), Path("both/a.tif")}));
}

} // namespace
