#include "enhance/XPaletteDlg.h"
#include "tests/host/XHostFixture.h"

#include <QListWidget>

namespace {

class XColorTableTest : public XHostFixture
{
protected:
    XColorTableTest()
    {
        XViewDialogFactories::Get().palette = [] {
            return XViewWindowPtr<XViewPaletteDlg>(new XPaletteDlg);
        };
    }
    ~XColorTableTest() override
    {
        window.reset();
        XViewDialogFactories::Get().palette = nullptr;
    }
    XPaletteDlg* FindDialog()
    {
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        return window->findChild<XPaletteDlg*>("palette");
    }
};

TEST_F(XColorTableTest, ColoursAGrayImageAsLongAsItIsOne)
{
    ASSERT_EQ(Open({MakeRaster("rgb.dat", 40, 30, 3)}), 1);
    EXPECT_FALSE(Action("image.colorTable")->isEnabled());
    EXPECT_TRUE(Action("image.colorTable")->statusTip().contains("gray"));
    Run("image.gray");
    Run("image.colorTable");
    ASSERT_NE(FindDialog(), nullptr);
    FindDialog()->findChild<QListWidget*>("palette.list")->setCurrentRow(58);
    const QImage before = Grab();
    FindDialog()->OnButtonApply();
    Settle();
    EXPECT_NE(Grab(), before);
    Action("image.gray")->trigger(); // three bands again
    Settle();
    EXPECT_EQ(FindDialog(), nullptr);

    Run("image.gray");
    Run("image.colorTable");
    ASSERT_EQ(Open({MakeRaster("other.dat", 20, 20, 1)}), 1);
    Run("file.close");
    EXPECT_NE(FindDialog(), nullptr) << "another layer came and went";
    Run("file.close");
    EXPECT_EQ(FindDialog(), nullptr);
}

} // namespace
