#include "foundation/raster/XDMComposite.h"
#include "tests/host/XHostFixture.h"

#include <QMenu>
#include <QToolButton>

#include <vector>

namespace {

class XEnhanceActionsTest : public XHostFixture
{
protected:
    QMenu* Menu() const { return window->findChild<QMenu*>("menu.enhance"); }
    QAction* Preset(int command) const
    {
        return Menu()->findChild<QAction*>(QString::number(command));
    }
    void Run(const char* id)
    {
        window->GetActions().Get(id)->trigger();
        Settle();
    }
    const XDMComposite& Composite(int index) const
    {
        return *window->GetLayers().GetAt(index)->composite;
    }
};

TEST_F(XEnhanceActionsTest, PresetsReachEveryImage)
{
    EXPECT_FALSE(Menu()->menuAction()->isEnabled());
    EXPECT_FALSE(window->GetActions().Get("image.enhanceAgain")->isEnabled());
    ASSERT_EQ(window->GetFiles().OpenFiles(
                  {MakeRaster("a.tif", 40, 30, 3), MakeRaster("b.tif", 20, 20, 1)}),
              2);
    Settle();
    EXPECT_TRUE(Menu()->menuAction()->isEnabled());
    EXPECT_EQ(window->findChild<QToolButton*>("toolbar.image.enhanceAgain")->menu(), Menu());
    const double first = Composite(0).GetCutMin(0);
    Preset(40051)->trigger();
    Settle();
    for (int i = 0; i < 2; ++i) {
        EXPECT_EQ(Composite(i).GetCutType(0), 3);
        EXPECT_EQ(Composite(i).GetStretchType(0), 7);
    }
    EXPECT_TRUE(Preset(40051)->isChecked());
    EXPECT_FALSE(Preset(40046)->isChecked());

    std::vector<unsigned char> reds(Composite(0).GetCLT(2), Composite(0).GetCLT(2) + 256);
    reds[10] = 99;
    window->GetLayers().GetAt(0)->composite->SetCLT(reds.data(), 2);
    Run("image.defaultStretch");
    EXPECT_EQ(Composite(0).GetStretchType(0), 1);
    EXPECT_EQ(Composite(0).GetCutMin(0), first);
    EXPECT_EQ(Composite(0).GetCLT(2)[10], 99) << "colours are no part of the stretch";
    Run("image.enhanceAgain");
    EXPECT_EQ(Composite(1).GetStretchType(0), 7);
}

TEST_F(XEnhanceActionsTest, ThePanelIsRememberedAndFitsLikeTheMenu)
{
    QWidget* panel = window->GetView().findChild<QWidget*>("panel");
    ASSERT_TRUE(panel);
    EXPECT_FALSE(panel->isVisible());
    Run("view.buttons");
    EXPECT_TRUE(panel->isVisible());
    Restart();
    panel = window->GetView().findChild<QWidget*>("panel");
    EXPECT_TRUE(panel->isVisible());
    EXPECT_TRUE(window->GetActions().Get("view.buttons")->isChecked());

    ASSERT_EQ(window->GetFiles().OpenFiles({MakeRaster("a.tif", 40, 30, 3)}), 1);
    Settle();
    panel->findChild<QToolButton*>("panel.24")->click();
    EXPECT_FALSE(window->GetView().IsFitted());
    panel->findChild<QToolButton*>("panel.26")->click();
    EXPECT_TRUE(window->GetView().IsFitted());
    panel->findChild<QToolButton*>("panel.22")->click();
    Settle();
    EXPECT_TRUE(window->GetActions().Get("view.zoomRect")->isChecked());
}

} // namespace
