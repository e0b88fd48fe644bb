#include "foundation/raster/XStretchPreset.h"
#include "tests/view/XViewFixture.h"

namespace {

class XViewEnhanceTest : public XViewFixture
{
protected:
    XViewEnhanceTest() : picture(41, 21, 0, 20, 1, 1, [](int x, int) { return 10 + x; })
    {
        composite = Show(picture);
        view.ZoomFitRect(0, 0, 40, 20);
        Paint();
        host.Forget();
    }
    static int GrayAt(const QImage& image, int x) { return qRed(image.pixel(x, 100)); }

    XMemoryPicture picture;
    XDMComposite* composite;
};

TEST_F(XViewEnhanceTest, PresetsAreDrawn)
{
    EXPECT_EQ(GrayAt(Paint(), 5), 11);
    view.EnhanceEx(0, 1, 1);
    EXPECT_DOUBLE_EQ(composite->GetCutMin(0), 10);
    EXPECT_DOUBLE_EQ(composite->GetCutMax(0), 50);
    EXPECT_TRUE(view.GetOverlay().IsRaised(XViewBuffer::TempBack)) << "everything is made anew";
    EXPECT_EQ(GrayAt(Paint(), 5), 6) << "value 11 of 10 to 50";

    view.EnhanceEx(1, 1, 1);
    view.ZoomFitRect(10, 5, 20, 10); // values 20 to 30
    Paint();
    EXPECT_DOUBLE_EQ(composite->GetCutMin(0), 20);
    EXPECT_DOUBLE_EQ(composite->GetCutMax(0), 30);
    ASSERT_FALSE(view.GetBackBuffer()->IsUpdateNeeded());
    view.Enhance(3, 7);
    EXPECT_EQ(composite->GetStretchCoverage(0), 1) << "Enhance leaves it alone";
    EXPECT_EQ(composite->GetCutType(0), 3);
    EXPECT_TRUE(view.GetBackBuffer()->IsUpdateNeeded());
    EXPECT_FALSE(view.GetOverlay().IsRaised(XViewBuffer::TempBack)) << "nothing but the rasters";
}

TEST_F(XViewEnhanceTest, AProgressiveViewDrawsThemOnItsWorker)
{
    const auto settle = [this] { return QTest::qWaitFor([this] { return !view.IsBusy(); }); };
    view.SetAlwaysRefine(1);
    view.SetProgressiveView(1);
    ASSERT_TRUE(settle());
    view.RunStretchPreset(40046);
    EXPECT_TRUE(view.IsBusy());
    ASSERT_TRUE(settle());
    EXPECT_EQ(GrayAt(Paint(), 5), 6);
    view.EnhanceEx(1, 1, 1);
    ASSERT_TRUE(settle());
    view.Enhance(1, 7);
    EXPECT_TRUE(view.IsBusy()) << "as request 19";
    ASSERT_TRUE(settle());
    EXPECT_GT(GrayAt(Paint(), 5), 30) << "the square root lifts what is dark";
}

TEST_F(XViewEnhanceTest, ButtonsDoWhatTheyCan)
{
    for (const auto& [id, reports] : std::initializer_list<std::pair<int, std::string>>{
             {23, "88"}, {24, "87"}, {25, "89"}, {26, "86"}, {19, ""}, {37, ""}, {99, ""}}) {
        host.Forget();
        EXPECT_EQ(view.CanRunPropButton(id) != 0, !reports.empty()) << id;
        view.RunPropButton(id);
        EXPECT_EQ(Edits(), reports) << id;
    }
    view.SetMode(0);
    view.RunPropButton(22);
    EXPECT_TRUE(view.IsPropButtonOn(22));
    view.RunPropButton(22);
    EXPECT_EQ(view.GetMode(), 0) << "the tool of before comes back";
    view.RunStretchPreset(40064);
    EXPECT_EQ(view.GetLastStretchPreset(), 0) << "no such preset";
}

} // namespace
