#include "tests/support/XScriptedPrompts.h"
#include "tests/view/XFakeDialogs.h"
#include "tests/view/XViewFixture.h"

#include <array>

namespace {

template <class Dialog, class Interface>
std::function<XViewWindowPtr<Interface>()> Bind(XFakeDialogLog& log, Dialog*& last)
{
    return [&log, &last] {
        last = new Dialog(log);
        return XViewWindowPtr<Interface>(last);
    };
}

/// The factories are bound before the view is made, as a program does.
class XBoundDialogs
{
protected:
    XBoundDialogs()
    {
        XViewDialogFactories& f = XViewDialogFactories::Get();
        f.stretch = Bind<XFakeStretchDlg, XViewStretchDlg>(log, stretch);
        f.palette = Bind<XFakePaletteDlg, XViewPaletteDlg>(log, palette);
        f.measure = Bind<XFakeMeasureDlg, XViewMeasureDlg>(log, measure);
        f.thumb = Bind<XFakeThumbDlg, XViewThumbDlg>(log, thumb);
        f.mapGrid = Bind<XFakeMapGrid, XViewMapGrid>(log, grid);
        f.buttonPanel = Bind<XFakeButtonPanel, XViewButtonPanel>(log, panel);
    }
    ~XBoundDialogs()
    {
        XViewDialogFactories::Get() = {};
        EXPECT_EQ(log.living, 0) << "the view let a window go on living";
    }

    XFakeDialogLog log;
    XFakeStretchDlg* stretch = nullptr;
    XFakePaletteDlg* palette = nullptr;
    XFakeMeasureDlg* measure = nullptr;
    XFakeThumbDlg* thumb = nullptr;
    XFakeMapGrid* grid = nullptr;
    XFakeButtonPanel* panel = nullptr;
};

class XViewDialogsTest : public XBoundDialogs, public XViewFixture
{
protected:
    XViewDialogsTest() : picture(41, 21, 0, 20, 1, 1, [](int x, int) { return 10 + x; })
    {
        log.calls.clear();
    }
    void Tell(unsigned message) { XfnSendMessage(view.GetHWND(), message, 0, 0); }

    XMemoryPicture picture;
};

TEST_F(XViewDialogsTest, NothingOpensWithoutACompositeAndTheColourTableSaysWhy)
{
    const XScriptedPrompts prompts;
    EXPECT_TRUE(view.CanShowStretchDlg());
    view.ShowStretchDlg(1);
    view.ShowColorTable(0);
    view.ShowMeasureDlg(1);
    EXPECT_TRUE(prompts.GetMessages().empty());
    view.ShowColorTable(1);
    EXPECT_EQ(prompts.GetLastMessage(), "There is no Gray Composite");
    EXPECT_TRUE(log.calls.empty());
}

TEST_F(XViewDialogsTest, StretchIsMadeShownAndLetGo)
{
    XDMComposite* composite = Show(picture);
    view.ShowStretchDlg(1);
    EXPECT_EQ(stretch->m_manager, view.GetXDMCompManager());
    EXPECT_EQ(stretch->m_composite, composite);
    view.ShowStretchDlg(1);
    const std::vector<std::string> opened = {"stretch create", "stretch show",    "stretch update",
                                             "stretch clear",  "stretch release", "stretch create",
                                             "stretch show",   "stretch update",  "stretch clear"};
    EXPECT_EQ(log.calls, opened);
    view.ShowStretchDlg(0);
    EXPECT_EQ(log.calls.back(), "stretch destroy") << "it stays until it says that it closes";
    Tell(1326);
    EXPECT_EQ(log.calls.back(), "stretch release");
}

TEST_F(XViewDialogsTest, ApplyMessagesRedrawAndCloseMessagesLetGo)
{
    Show(picture);
    for (unsigned message : {1324u, 1325u, 1327u}) {
        Paint();
        ASSERT_FALSE(view.GetBackBuffer()->IsUpdateNeeded());
        EXPECT_EQ(XfnSendMessage(view.GetHWND(), message, 0, 0), 0);
        EXPECT_TRUE(view.GetBackBuffer()->IsUpdateNeeded()) << message;
    }
    view.ShowColorTable(1);
    view.ShowThumbView(1);
    view.ShowMeasureDlg(1);
    Paint();
    Tell(1328);
    EXPECT_EQ(log.calls.back(), "palette release");
    Tell(1334);
    EXPECT_EQ(log.calls.back(), "thumb release");
    Tell(1331); // the dialog destroys itself
    EXPECT_FALSE(view.IsShowMeasureDlg());
    EXPECT_TRUE(view.GetOverlay().IsRaised(XViewBuffer::Measure));
    EXPECT_EQ(log.Count("measure release"), 0);
    delete measure;
    for (unsigned message : {1326u, 1328u, 1331u, 1334u, 1323u})
        Tell(message); // nothing open any more
}

TEST_F(XViewDialogsTest, TheColourTableTakesTheFirstGrayComposite)
{
    XMemoryPicture other(3, 3, 0, 0, 1, 1, [](int, int) { return 5; });
    XDMComposite* gray = Show(picture);
    XDMComposite* color = view.GetXDMCompManager()->NewXDMComposite(1);
    color->SetBand(other.GetBand(), 0);
    view.GetXDMCompManager()->AddXDMComposite(color);
    std::array<unsigned char, 256> table{}, red{}, blue{};
    for (std::size_t i = 0; i < 256; ++i)
        table[i] = static_cast<unsigned char>(i < 20 ? 0 : i > 80 ? 255 : i);
    red[255] = 200;
    blue[255] = 100;
    gray->SetLUT(table.data(), 0);
    gray->SetCLT(red.data(), 2);
    gray->SetCLT(blue.data(), 0);
    view.ShowColorTable(1);
    EXPECT_EQ(palette->m_composite, gray);
    EXPECT_EQ(palette->m_low, 19);
    EXPECT_EQ(palette->m_high, 82);
    EXPECT_EQ(palette->m_dataType, 1);
    EXPECT_EQ(palette->m_last[0], 200) << "red is channel 2";
    EXPECT_EQ(palette->m_last[2], 100) << "blue is channel 0";
    EXPECT_EQ(palette->m_anchors, 0);

    // without a gray one the walk ends on the last
    gray->SetMode(2);
    view.ShowColorTable(1);
    EXPECT_EQ(palette->m_composite, gray);
    view.ShowColorTable(0);
    EXPECT_EQ(log.calls.back(), "palette destroy");
}

TEST_F(XViewDialogsTest, ThePaletteHearsTheStretchAsItIsNow)
{
    XDMComposite* gray = Show(picture);
    gray->AddHistPt(0, 0, 40);
    gray->AddHistPt(0, 255, 200);
    gray->SetStretchType(2, 0);
    view.ShowColorTable(1); // nothing has drawn with it
    EXPECT_EQ(palette->m_low, 40);
    EXPECT_EQ(palette->m_high, 201);
    // nor does a drawing that does not reach it
    view.SetWorldToCenter(5000, 5000);
    gray->RemoveAllHistPts(0);
    gray->AddHistPt(0, 0, 60);
    gray->AddHistPt(0, 255, 100);
    view.InvalidateControl(1);
    Paint();
    EXPECT_EQ(palette->m_low, 60);
    EXPECT_EQ(palette->m_high, 101);
}

TEST_F(XViewDialogsTest, AnOpenPaletteAndThumbHearOfEveryDrawing)
{
    XDMComposite* gray = Show(picture);
    view.ShowColorTable(1);
    view.ShowThumbView(1);
    log.calls.clear();
    view.ZoomFitRect(0, 0, 40, 20);
    Paint();
    EXPECT_GE(log.Count("palette range"), 1);
    EXPECT_GE(log.Count("thumb box"), 1);
    ExpectBox({thumb->m_box[0], thumb->m_box[1], thumb->m_box[2], thumb->m_box[3]}, Bound(), 0.0);

    // no gray composite: the palette ends both
    gray->SetMode(2);
    view.InvalidateControl(1);
    log.calls.clear();
    Paint();
    EXPECT_EQ(log.Count("palette range"), 0);
    EXPECT_EQ(log.Count("thumb box"), 0);
}

TEST_F(XViewDialogsTest, WindowsLetGoOfACompositeThatWentAndStillClose)
{
    Show(picture);
    view.ShowColorTable(1);
    view.ShowStretchDlg(1);
    view.ShowMeasureDlg(1);
    view.GetXDMCompManager()->RemoveXDMCompositeAll();
    EXPECT_EQ(palette->m_composite, nullptr);
    EXPECT_EQ(stretch->m_composite, nullptr);
    view.ShowColorTable(0);
    view.ShowStretchDlg(0);
    view.ShowMeasureDlg(0);
    EXPECT_EQ(log.Count("palette destroy"), 1);
    EXPECT_EQ(log.Count("stretch destroy"), 1);
    EXPECT_FALSE(view.IsShowMeasureDlg());
}

TEST_F(XViewDialogsTest, TheThumbViewIsPlacedOnce)
{
    Show(picture);
    view.ZoomFitRect(0, 0, 40, 20);
    view.ShowThumbView(1);
    const std::vector<std::string> calls = {"thumb create", "thumb show", "thumb box",
                                            "thumb corner"};
    EXPECT_EQ(log.calls, calls);
    ExpectBox({thumb->m_box[0], thumb->m_box[1], thumb->m_box[2], thumb->m_box[3]},
              {0, 0.1, 39.9, 20}, 1e-9);
    view.ShowThumbView(1);
    view.ShowThumbView(0);
    EXPECT_EQ(log.Count("thumb corner"), 1);
    EXPECT_EQ(log.Count("thumb release"), 2);
}

TEST_F(XViewDialogsTest, AMeasurementIsDrawnAsItGrows)
{
    Show(picture);
    view.ZoomFitRect(0, 0, 40, 20);
    view.ShowMeasureDlg(1);
    EXPECT_EQ(log.calls.back(), "measure show");
    EXPECT_TRUE(view.IsShowMeasureDlg());
    const std::pair<double, double> from{10, 10}, to{30, 10};
    Mouse(QEvent::MouseButtonPress, 100, 100, Qt::LeftButton, Qt::LeftButton);
    Mouse(QEvent::MouseButtonRelease, 100, 100, Qt::LeftButton, Qt::NoButton);
    ASSERT_EQ(measure->m_points.size(), 2u) << "the point and its rubber end";
    Mouse(QEvent::MouseMove, 300, 100, Qt::NoButton, Qt::NoButton);
    ASSERT_EQ(measure->m_points.size(), 2u);
    EXPECT_EQ(measure->m_points[0], from);
    EXPECT_EQ(measure->m_points[1], to);
    const auto isDrawn = [](const QImage& image) {
        return image.pixel(200, 99) == qRgb(255, 0, 255) ||
               image.pixel(200, 100) == qRgb(255, 0, 255);
    };
    EXPECT_TRUE(isDrawn(Paint()));

    measure->m_type = 2;
    Mouse(QEvent::MouseButtonDblClick, 300, 100, Qt::LeftButton, Qt::LeftButton);
    EXPECT_FALSE(measure->m_running);
    EXPECT_EQ(measure->m_points.back(), from) << "an area is closed";
    measure->m_type = 3;
    Drag(Qt::LeftButton, {100, 100}, {120, 100});
    EXPECT_FALSE(measure->m_running) << "a range ends with its drag";
    view.ShowMeasureDlg(0);
    EXPECT_EQ(log.calls.back(), "measure release");
    EXPECT_FALSE(isDrawn(Paint()));
}

TEST_F(XViewDialogsTest, ALeftReleasePicksStretchLimits)
{
    Show(picture);
    view.ZoomFitRect(0, 0, 40, 20);
    view.ShowStretchDlg(1);
    const auto click = [this](int x) {
        Mouse(QEvent::MouseButtonPress, x, 100, Qt::LeftButton, Qt::LeftButton);
        Mouse(QEvent::MouseButtonRelease, x, 100, Qt::LeftButton, Qt::NoButton);
    };
    click(50);
    EXPECT_EQ(stretch->m_min[0], -1) << "no mode, no limit";
    stretch->m_mode = 0;
    click(50); // world 5
    EXPECT_EQ(stretch->m_min[0], 15);
    EXPECT_EQ(stretch->m_min[1], -1) << "a channel without a band";
    stretch->m_mode = 1;
    click(302);
    EXPECT_EQ(stretch->m_max[0], 40);
    view.SetWorldToCenter(5000, 5000);
    click(10);
    EXPECT_EQ(stretch->m_max[0], 40) << "no data there";
    EXPECT_EQ(log.Count("stretch picked"), 4) << "every release";
}

TEST_F(XViewDialogsTest, TheGridIsDrawnOnceItIsShown)
{
    Show(picture);
    view.ShowMapGridProperty(&view);
    const std::vector<std::string> calls = {"grid calc", "grid run"};
    EXPECT_EQ(log.calls, calls);
    EXPECT_TRUE(view.GetBackBuffer()->IsUpdateNeeded()) << "on Cancel too";
    Paint();
    EXPECT_GE(log.Count("grid draw"), 1);
    grid->m_shown = 0;
    log.calls.clear();
    view.InvalidateControl(1);
    Paint();
    EXPECT_EQ(log.Count("grid draw"), 0);
    view.ClearMapGrid();
    EXPECT_EQ(log.calls.back(), "grid release");
}

TEST_F(XViewDialogsTest, AProgressiveViewLaysTheGridOverItsPictureOnce)
{
    Show(picture);
    const auto settle = [this] { XfnRunUntil([this] { return !view.IsBusy(); }); };
    const auto value = [this] { return view.GetBackBuffer()->GetImage().pixel(1, 1) & 0xFF; };
    view.SetAlwaysRefine(1);
    view.SetProgressiveView(1);
    settle();
    const unsigned plain = value();
    view.ShowMapGridProperty(&view);
    settle();
    EXPECT_EQ(value(), plain + 16);
    view.SetBackgroundColor(view.GetXvcBackColor());
    EXPECT_EQ(value(), plain + 16);
    view.GetOverlay().Raise({XViewBuffer::TempVertex, XViewBuffer::TempBack});
    view.InvalidateControl(0); // the rasters are not drawn anew
    settle();
    EXPECT_EQ(value(), plain + 16);
}

TEST_F(XViewDialogsTest, ButtonsGoToThePanel)
{
    view.AddPropButton(24);
    view.ShowPropButton(1);
    view.ShowPropButton(0);
    const std::vector<std::string> calls = {"panel add", "panel visible", "panel hidden"};
    EXPECT_EQ(log.calls, calls);
    view.InvalidateControl(1);
    Paint();
    EXPECT_GE(log.Count("panel invalidate"), 1);
}

class XUnboundDialogsTest : public XViewFixture
{};

TEST_F(XUnboundDialogsTest, WithoutFactoriesEntriesAreDisabledAndCallsDoNothing)
{
    XMemoryPicture picture(4, 4, 0, 0, 1, 1, [](int, int) { return 1; });
    Show(picture);
    EXPECT_FALSE(view.CanShowStretchDlg() || view.CanShowColorTable() || view.CanShowMeasureDlg() ||
                 view.CanShowThumbView() || view.CanShowMapGridProperty());
    for (int show : {1, 0, 1}) {
        view.ShowStretchDlg(show);
        view.ShowColorTable(show);
        view.ShowMeasureDlg(show);
        view.ShowThumbView(show);
        view.ShowMapGridProperty(nullptr);
        view.AddPropButton(24);
        view.ShowPropButton(show);
    }
    EXPECT_FALSE(view.IsShowMeasureDlg());
    Paint();
    view.GetXDMCompManager()->RemoveXDMCompositeAll();
}

} // namespace
