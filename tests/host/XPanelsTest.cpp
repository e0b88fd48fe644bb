#include "tests/host/XHostFixture.h"

#include "foundation/raster/XDMCompManager.h"
#include "foundation/raster/XDMComposite.h"
#include "host/XLayerPlacement.h"
#include "host/XLayerReport.h"

#include <QAbstractItemModelTester>
#include <QComboBox>
#include <QDataStream>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QMimeData>
#include <QRadioButton>
#include <QSlider>
#include <QSpinBox>
#include <QStatusBar>
#include <QTableView>
#include <QToolButton>
#include <QTreeView>

namespace {

class XPanelsTest : public XHostFixture
{
protected:
    void OpenThree()
    {
        ASSERT_EQ(Open({MakeRaster("c.dat", 40, 30, 1), MakeRaster("b.dat", 40, 30, 4),
                        MakeRaster("a.dat", 40, 30, 6)}),
                  3)
            << prompts.GetLastMessage();
    }
    /// Layer names from the top, and the manager must agree with them.
    QString Order()
    {
        XLayerStack& layers = window->GetLayers();
        XDMCompManager* manager = window->GetView().GetXDMCompManager();
        QString order;
        EXPECT_EQ(manager->GetNumberOfXDMComposite(), layers.GetCount());
        for (int i = 0; i < layers.GetCount(); ++i) {
            EXPECT_EQ(manager->GetXDMCompositeAt(i), layers.GetAt(i)->composite);
            order += layers.GetAt(i)->name.left(1);
        }
        return order;
    }
    void Type(const char* box, const char* text)
    {
        auto* edit = Find<QComboBox>(box)->lineEdit();
        edit->setFocus();
        edit->selectAll();
        QTest::keyClicks(edit, text);
        QTest::keyClick(edit, Qt::Key_Return);
        Settle();
    }
};

TEST_F(XPanelsTest, LayersMoveByButtonsKeysAndDragging)
{
    OpenThree();
    QAbstractItemModel* model = Find<QTreeView>("layers.list")->model();
    QAbstractItemModelTester tester(model, QAbstractItemModelTester::FailureReportingMode::Fatal);
    EXPECT_EQ(Order(), "abc");
    QTest::mouseClick(Find<QToolButton>("layers.down"), Qt::LeftButton);
    EXPECT_EQ(Order(), "bac");
    EXPECT_EQ(window->GetLayers().GetCurrent(), 1) << "the layer moved stays the current one";
    QTest::keyClick(window.get(), Qt::Key_PageDown, Qt::ControlModifier);
    EXPECT_EQ(Order(), "bca");
    EXPECT_FALSE(Action("layer.down")->isEnabled());
    QTest::mouseClick(Find<QToolButton>("layers.top"), Qt::LeftButton);
    EXPECT_EQ(Order(), "abc");

    struct tagXRow
    {
        const char* name;
        int from, row;
        const char* order;
    };
    const tagXRow rows[] = {
        {"below the last", 0, 3, "bca"},    {"back above the first", 2, 0, "abc"},
        {"between", 2, 1, "acb"},           {"onto its own place", 1, 1, "acb"},
        {"just below itself", 1, 2, "acb"}, {"on no row at all", 0, -1, "cba"}};
    for (const tagXRow& row : rows) {
        std::unique_ptr<QMimeData> data(model->mimeData({model->index(row.from, 0)}));
        EXPECT_TRUE(model->dropMimeData(data.get(), Qt::MoveAction, row.row, 0, QModelIndex()));
        EXPECT_EQ(Order(), row.order) << row.name;
    }
    QMimeData foreign;
    foreign.setData(model->mimeTypes().first(), "99");
    EXPECT_FALSE(model->dropMimeData(&foreign, Qt::MoveAction, 0, 0, QModelIndex()));
    EXPECT_EQ(Order(), "cba");
}

TEST_F(XPanelsTest, HidingOpacityAndClosingChangeThePicture)
{
    ASSERT_EQ(Open({MakeRaster("a.dat", 300, 200, 3)}), 1);
    window->GetView().SetBackgroundColor(0xFF00FF00);
    Settle();
    const QRgb background = qRgb(0, 255, 0);
    const QPoint middle(window->GetView().width() / 2, window->GetView().height() / 2);
    const QRgb shown = Grab().pixel(middle);
    ASSERT_NE(shown, background);

    auto* list = Find<QTreeView>("layers.list");
    list->setFocus();
    QTest::keyClick(list, Qt::Key_Space);
    Settle();
    EXPECT_FALSE(window->GetLayers().IsVisible(0));
    EXPECT_EQ(Grab().pixel(middle), background);
    Run("layer.visible");
    EXPECT_EQ(Grab().pixel(middle), shown);

    Find<QSlider>("layers.opacity")->setValue(0);
    Settle();
    EXPECT_EQ(Grab().pixel(middle), background);
    auto* box = Find<QSpinBox>("layers.opacityBox");
    EXPECT_EQ(box->value(), 0);
    box->setValue(50);
    Settle();
    EXPECT_EQ(Find<QSlider>("layers.opacity")->value(), 50);
    const QRgb mixed = Grab().pixel(middle);
    EXPECT_NEAR(qGreen(mixed), (qGreen(shown) + 255) / 2, 2);
    EXPECT_NEAR(qRed(mixed), qRed(shown) / 2, 2);

    QTest::mouseClick(Find<QToolButton>("layers.close"), Qt::LeftButton);
    Settle();
    EXPECT_EQ(Grab().pixel(middle), background);
    EXPECT_FALSE(box->isEnabled());
}

TEST_F(XPanelsTest, BandsAreChosenByListNumberAndWavelength)
{
    std::vector<unsigned char> samples(6 * 20 * 20, 5);
    XfnWriteRawRaster(
        Path("six.dat"),
        {20, 20, 6, "wavelength units = Nanometers\nwavelength = {485, 560, 662, 830, 1650, 2215}"},
        samples);
    ASSERT_EQ(Open({Path("six.dat")}), 1);
    const XBandChoice& choice = *window->GetLayers().GetAt(0)->bands;
    auto* red = Find<QComboBox>("bands.red");
    EXPECT_EQ(red->count(), 6);
    EXPECT_TRUE(red->itemText(2).contains("662")) << red->itemText(2).toStdString();
    EXPECT_EQ(choice.GetBand(0), 2) << "natural colours at first";

    Type("bands.red", "0.83 um");
    EXPECT_EQ(choice.GetBand(0), 3);
    EXPECT_EQ(choice.GetBand(1), 1);
    Type("bands.green", "5");
    EXPECT_EQ(choice.GetBand(1), 4);
    Type("bands.blue", "no such band");
    EXPECT_EQ(choice.GetBand(2), 0);
    EXPECT_EQ(Find<QComboBox>("bands.blue")->currentText().left(1), "1") << "taken back";
    Run("image.falseColour");
    EXPECT_EQ(choice.GetBand(0), 3);
    EXPECT_EQ(choice.GetBand(1), 2);
    EXPECT_TRUE(red->currentText().startsWith("4"));

    QTest::mouseClick(Find<QRadioButton>("bands.grayMode"), Qt::LeftButton);
    EXPECT_FALSE(choice.IsColour());
    EXPECT_FALSE(red->isEnabled());
    EXPECT_TRUE(Action("image.gray")->isChecked());
    Run("image.gray");
    EXPECT_TRUE(choice.IsColour());
    EXPECT_EQ(choice.GetBand(0), 3);

    QWheelEvent wheel(QPointF(5, 5), red->mapToGlobal(QPointF(5, 5)), QPoint(), QPoint(0, -120),
                      Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
    red->clearFocus();
    QCoreApplication::sendEvent(red, &wheel);
    EXPECT_EQ(choice.GetBand(0), 3) << "the wheel counts only with the focus";
}

TEST_F(XPanelsTest, AOneBandLayerAndBackKeepsTheChoiceOfTheOther)
{
    OpenThree();
    XLayerStack& layers = window->GetLayers();
    Type("bands.red", "5");
    layers.GetAt(0)->composite->SetCutRange(3, 4, 2);
    Run("layer.next");
    Run("layer.next");
    EXPECT_EQ(Find<QLabel>("bands.title")->text(), "c.dat");
    EXPECT_FALSE(Find<QRadioButton>("bands.colourMode")->isEnabled());
    EXPECT_EQ(Find<QComboBox>("bands.gray")->count(), 1);
    EXPECT_FALSE(Action("image.gray")->isEnabled());
    Run("layer.previous");
    Run("layer.previous");
    EXPECT_TRUE(Find<QComboBox>("bands.red")->currentText().startsWith("5"));
    EXPECT_EQ(layers.GetAt(0)->composite->GetCutMax(2), 4);
}

TEST_F(XPanelsTest, PropertiesTellWhatTheFileIs)
{
    ASSERT_EQ(Open({Sample()}), 1) << prompts.GetLastMessage();
    QString all;
    for (const auto& [name, value] : XfnLayerReport(*window->GetLayers().GetAt(0)))
        all += name + ": " + value + "\n";
    for (const char* text :
         {"File: L7_ETMs.tif", "File size: 779.7 KiB", "Size: 349 x 352 pixels", "Bands: 6",
          "Type: Unsigned char", "UTM zone 25S", "Pixel size: 28.5 x", "Band 1: "})
        EXPECT_TRUE(all.contains(text)) << text << "\nin\n" << all.toStdString();
    auto* table = Find<QTableView>("layers.properties");
    QAbstractItemModelTester tester(table->model(),
                                    QAbstractItemModelTester::FailureReportingMode::Fatal);
    EXPECT_EQ(table->model()->rowCount(),
              static_cast<int>(XfnLayerReport(*window->GetLayers().GetAt(0)).size()));
    Run("file.close");
    EXPECT_EQ(table->model()->rowCount(), 0);
}

TEST_F(XPanelsTest, ALayerInAnotherSystemLandsInItsPlace)
{
    ASSERT_EQ(Open({MakeRaster("utm.dat", 200, 200, 1)}), 1);
    // the same piece of ground in degrees: about 30 m a pixel
    XfnWriteRawRaster(Path("geo.dat"),
                      {220, 220, 1,
                       "map info = {Geographic Lat/Lon, 1, 1, -34.8200, -8.1360, 0.00027, 0.00027, "
                       "WGS-84, units=Degrees}"},
                      std::vector<unsigned char>(220 * 220, 77));
    ASSERT_EQ(Open({Path("geo.dat")}), 1) << prompts.GetLastMessage();
    double utm[4] = {};
    double geo[4] = {};
    ASSERT_TRUE(window->GetLayers().GetExtent(1, utm));
    ASSERT_TRUE(window->GetLayers().GetExtent(0, geo));
    for (int i = 0; i < 4; ++i)
        EXPECT_NEAR(geo[i], utm[i], 1500) << i;
    // the upper-left pixel: 34.8200 W 8.1360 S, half a pixel in, carried over by the UTM formulas
    double x = 0;
    double y = 0;
    window->GetLayers().GetAt(0)->composite->ConvPixelToWorldCoord(x, y, 0);
    EXPECT_NEAR(x, 299474.5, 20);
    EXPECT_NEAR(y, 9100209.0, 20);
    window->GetLayers().ChangeBands(0, [](XBandChoice& choice) { choice.SetColourMode(true); });
    ASSERT_TRUE(window->GetLayers().GetExtent(0, geo));
    EXPECT_NEAR(geo[0], utm[0], 1500) << "still there after a change of bands";
}

TEST_F(XPanelsTest, ALayerFarBeyondTheZoneStillFindsItsPlace)
{
    EXPECT_EQ(XfnPlacementText(0), "");
    EXPECT_EQ(XfnPlacementText(1), "");
    EXPECT_EQ(XfnPlacementText(1.5), "Placed within 2 pixels");
    EXPECT_NE(XfnPlacementText(-1), "");
    ASSERT_EQ(Open({MakeRaster("utm.dat", 200, 200, 1)}), 1);
    // a zone of six degrees holds no polynomial for what is many times as wide
    constexpr int kSide = 1600;
    for (const auto& [name, place] : {std::pair{"wide.dat", "-73, 40, 0.05, 0.05"},
                                      std::pair{"wider.dat", "-103, 70, 0.0875, 0.0875"}}) {
        XfnWriteRawRaster(Path(name),
                          {kSide, kSide, 1,
                           QByteArray("map info = {Geographic Lat/Lon, 1, 1, ") + place +
                               ", WGS-84, units=Degrees}"},
                          std::vector<unsigned char>(std::size_t(kSide) * kSide, 77));
        ASSERT_EQ(Open({Path(name)}), 1) << prompts.GetLastMessage();
        const double miss = window->GetLayers().GetAt(0)->miss;
        EXPECT_GE(miss, 0) << name;
        EXPECT_LT(miss, 0.2) << name;
        EXPECT_TRUE(prompts.GetMessages().empty()) << name;
    }
}

TEST_F(XPanelsTest, PartsOfFilesOpenByTheirOwnNames)
{
    const QString whole = "/vsisubfile/0," + Sample();
    ASSERT_EQ(Open({whole}), 1) << prompts.GetLastMessage();
    EXPECT_EQ(window->GetLayers().GetAt(0)->path, whole);
    bool isNamed = false;
    for (const auto& [name, value] : XfnLayerReport(*window->GetLayers().GetAt(0))) {
        isNamed |= value == whole;
        EXPECT_NE(value, "gone since");
    }
    EXPECT_TRUE(isNamed);
}

TEST_F(XPanelsTest, AFileOfTwoImagesSaysThatOneIsShown)
{
    const QString path = Path("pages.tif");
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    QDataStream bytes(&file);
    bytes.setByteOrder(QDataStream::LittleEndian);
    constexpr quint32 kHead = 8, kDirectory = 2 + 8 * 12 + 4, kSide = 4;
    bytes << quint16(0x4949) << quint16(42) << kHead;
    for (const quint32 next : {kHead + kDirectory, 0U}) { // both share the strip behind them
        bytes << quint16(8);
        for (const auto& [tag, value] :
             {std::pair{256, kSide}, std::pair{257, kSide}, std::pair{258, 8U}, std::pair{259, 1U},
              std::pair{262, 1U}, std::pair{273, kHead + 2 * kDirectory}, std::pair{278, kSide},
              std::pair{279, kSide * kSide}})
            bytes << quint16(tag) << quint16(4) << quint32(1) << value;
        bytes << next;
    }
    file.write(QByteArray(kSide * kSide, 'x'));
    file.close();
    ASSERT_EQ(Open({Sample(), path, Sample()}), 3);
    EXPECT_TRUE(window->statusBar()->currentMessage().startsWith(
        "pages.tif: this is 1 of 2 images in the file."))
        << "told of though another was opened since";
    EXPECT_TRUE(XfnLayerReport(*window->GetLayers().GetAt(1)).back().second.contains("1 of 2"));
    Run("file.closeAll");
    ASSERT_EQ(Open({Sample()}), 1);
    EXPECT_FALSE(window->statusBar()->currentMessage().contains(" of "));
}

TEST_F(XPanelsTest, TheTipOfAPresetFollowsItsState)
{
    auto* button = Find<QToolButton>("bands.natural");
    EXPECT_TRUE(button->toolTip().contains("Open an image"));
    ASSERT_EQ(Open({Sample()}), 1) << prompts.GetLastMessage();
    EXPECT_EQ(button->toolTip(), Action("image.natural")->statusTip());
    EXPECT_FALSE(button->toolTip().contains("Open an image"));
}

} // namespace
