#include "dialogs/CButtonDlg.h"
#include "foundation/raster/XStretchPreset.h"
#include "tests/view/XViewFixture.h"

#include <QContextMenuEvent>
#include <QMenu>
#include <QToolButton>

#include <memory>

namespace {

TEST(XButtonPanelModel, EntriesAndTheirPlaces)
{
    XButtonPanelModel model;
    for (const int id : {0, 24, 25, 0, 22, 24, 99, -1, 0, 18, 0})
        model.Add(id);
    const std::vector<int> wanted = {0, 24, 25, 0, 22, 0, 18, 0};
    EXPECT_EQ(std::vector<int>(model.GetEntries().begin(), model.GetEntries().end()), wanted);
    EXPECT_EQ(model.GetPresetForm(), 2);
    model.Add(17);
    EXPECT_EQ(model.GetPresetForm(), 1) << "the fuller of the two";

    // the begin x, y of each in buttons of 20, gaps of 6; -1: not shown
    const struct
    {
        const char* reason;
        int width;
        std::vector<int> x, y;
    } kCases[] = {
        {"one row", 1000, {-1, 0, 20, 40, 46, 66, 72, 92, 98}, {0, 0, 0, 0, 0, 0, 0, 0, 0}},
        {"a gap at the seam of rows goes",
         60,
         {-1, 0, 20, -1, 0, 20, 26, -1, 0},
         {0, 0, 0, 0, 20, 20, 20, 0, 40}},
        {"one a row at least", 1, {-1, 0, 0, -1, 0, -1, 0, -1, 0}, {0, 0, 20, 0, 40, 0, 60, 0, 80}},
    };
    for (const auto& row : kCases) {
        const auto places = model.Place(20, 6, row.width);
        ASSERT_EQ(places.size(), row.x.size());
        for (std::size_t i = 0; i < places.size(); ++i) {
            EXPECT_EQ(places[i].width > 0 ? places[i].x : -1, row.x[i]) << row.reason << i;
            EXPECT_EQ(places[i].y, row.y[i]) << row.reason << i;
        }
    }
}

class XBoundPanel
{
protected:
    XBoundPanel()
    {
        XViewDialogFactories::Get().buttonPanel = [] {
            return XViewWindowPtr<XViewButtonPanel>(new CButtonDlg);
        };
    }
    ~XBoundPanel() { XViewDialogFactories::Get() = {}; }
};

class CButtonDlgTest : public XBoundPanel, public XViewFixture
{
protected:
    CButtonDlgTest() : picture(41, 21, 0, 20, 1, 1, [](int x, int) { return 10 + x; })
    {
        for (const int id : {17, 0, 22, 24, 25, 19})
            view.AddPropButton(id);
        view.ShowPropButton(1);
        panel = view.findChild<QWidget*>("panel");
    }
    QToolButton* Button(int id) const
    {
        return panel->findChild<QToolButton*>(QString("panel.%1").arg(id));
    }

    XMemoryPicture picture;
    QWidget* panel;
};

TEST_F(CButtonDlgTest, StandsInTheCornerAndShowsWhatCanBeDone)
{
    ASSERT_TRUE(panel && panel->isVisible());
    EXPECT_FALSE(Button(17)->isEnabled()) << "there is no image";
    EXPECT_TRUE(Button(24)->isEnabled());
    Show(picture);
    view.InvalidateControl(1);
    Paint();
    EXPECT_TRUE(Button(17)->isEnabled());
    EXPECT_FALSE(Button(19)->isEnabled()) << "no stretch dialog is bound";
    for (const int width : {400, 90, 30}) {
        view.resize(width, 200);
        EXPECT_LE(panel->geometry().right(), width);
        for (const int id : {17, 22, 24, 25, 19})
            EXPECT_TRUE(panel->rect().contains(Button(id)->geometry())) << width << " " << id;
    }
    view.ShowPropButton(0);
    EXPECT_FALSE(panel->isVisible());
}

TEST_F(CButtonDlgTest, PressesDoNotReachTheToolBelow)
{
    view.setFocus();
    QTest::mouseClick(Button(24), Qt::LeftButton);
    EXPECT_EQ(Reports(), std::vector<XWPARAM>{41087});
    EXPECT_EQ(QApplication::focusWidget(), &view);
    QTest::mouseClick(Button(22), Qt::LeftButton);
    EXPECT_EQ(view.GetMode(), 201);
    EXPECT_TRUE(Button(22)->isChecked());
    view.SetMode(0);
    view.repaint();
    EXPECT_FALSE(Button(22)->isChecked());
}

TEST_F(CButtonDlgTest, ThePopupShowsTheLastPreset)
{
    XDMComposite* composite = Show(picture);
    view.AddPropButton(18);
    QMenu* all = Button(17)->menu();
    QMenu* visible = Button(18)->menu();
    EXPECT_EQ(all->title(), "Enhance");
    EXPECT_EQ(all->actions().size(), 19) << "with a separator between the regions";
    EXPECT_EQ(visible->actions().size(), 9);
    EXPECT_EQ(all->actions()[2]->text(), "Whole Region - MinMax - SqureRoot");
    all->actions()[0]->trigger();
    visible->findChild<QAction*>("40063")->trigger();
    EXPECT_EQ(composite->GetStretchCoverage(0), 1);
    EXPECT_EQ(composite->GetCutType(0), 1);
    EXPECT_EQ(composite->GetStretchType(0), 7);
    all->popup(QPoint(0, 0));
    for (const QAction* action : all->actions())
        EXPECT_EQ(action->isChecked(), action->data().toInt() == 40063);
    all->close();
}

TEST_F(CButtonDlgTest, KeysAndMenu)
{
    view.activateWindow();
    Button(22)->setFocus();
    QTest::keyClick(Button(22), Qt::Key_Right);
    ASSERT_EQ(QApplication::focusWidget(), Button(24));
    QTest::keyClick(Button(24), Qt::Key_Left);
    QTest::keyClick(Button(22), Qt::Key_Left);
    EXPECT_EQ(QApplication::focusWidget(), Button(25)) << "past what is disabled";
    QTest::keyClick(Button(25), Qt::Key_Return);
    EXPECT_EQ(Reports(), std::vector<XWPARAM>{41089});
    QTest::keyClick(Button(25), Qt::Key_Escape);
    EXPECT_EQ(QApplication::focusWidget(), &view);

    QContextMenuEvent event(QContextMenuEvent::Keyboard, QPoint(1, 1), QPoint(1, 1));
    QApplication::sendEvent(Button(24), &event);
    auto* menu = panel->findChild<QMenu*>("panel.menu");
    ASSERT_TRUE(menu);
    EXPECT_EQ(menu->actions()[0]->text(), "Enhance");
    EXPECT_TRUE(menu->actions()[0]->menu());
    menu->findChild<QAction*>("panel.menu.24")->trigger();
    EXPECT_EQ(Reports().back(), 41087u);
    menu->close();
}

TEST_F(CButtonDlgTest, APressMayEndItsView)
{
    auto doomed = std::make_unique<XTQSpaceView>();
    doomed->Create();
    doomed->resize(200, 100);
    doomed->Initialize(host.GetHWND(), kHostMessage);
    doomed->AddPropButton(24);
    doomed->ShowPropButton(1);
    doomed->show();
    auto* button = doomed->findChild<QToolButton*>("panel.24");
    onReport = [&doomed](unsigned code) {
        if (code == 41087) doomed.reset();
    };
    button->click();
    EXPECT_FALSE(doomed);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

} // namespace
