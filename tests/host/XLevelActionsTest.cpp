#include "foundation/raster/XRSFile.h"
#include "foundation/raster/XRSFileIO.h"
#include "host/XJobRunner.h"
#include "tests/host/XHostFixture.h"

#include <QFrame>
#include <QPushButton>
#include <QToolButton>

#include <atomic>

namespace {

class XLevelActionsTest : public XHostFixture
{
protected:
    XRSFile& File(int layer) { return *window->GetLayers().GetAt(layer)->file; }
    bool IsOffered() { return Find<QFrame>("levels")->isVisible(); }
    void Answer(const char* button)
    {
        Find<QPushButton>(button)->click();
        Settle();
    }
    bool WaitForJobs()
    {
        return QTest::qWaitFor([this] { return !window->GetJobs().IsBusy(); }, 30000);
    }
    /// A job that runs until it is stopped.
    XJobRunner::tagJob Endless(std::atomic<int>& started, QStringList& ends)
    {
        return {"Endless",
                [&started](const tagXSaveControl& control, QString&) {
                    ++started;
                    while (!control.thread->IsStopRequested())
                        std::this_thread::sleep_for(std::chrono::milliseconds(1));
                    return false;
                },
                [&ends](bool isDone, bool isStopped, const QString&) {
                    ends << QString("%1%2").arg(isDone).arg(isStopped);
                }};
    }
};

} // namespace

TEST_F(XLevelActionsTest, TheBarOffersOnceAndEveryLayerOfTheFileTakesThePyramidUp)
{
    const QString wide = MakeRaster("wide.img", 16384, 24, 1);
    const QString other = MakeRaster("other.img", 16384, 30, 1);
    ASSERT_EQ(Open({MakeRaster("small.img", 300, 300, 1)}), 1);
    EXPECT_FALSE(IsOffered());
    ASSERT_EQ(Open({wide, wide}), 2);
    ASSERT_TRUE(IsOffered());
    Answer("levels.build");
    EXPECT_FALSE(IsOffered());
    ASSERT_TRUE(WaitForJobs());
    for (const int layer : {0, 1})
        EXPECT_FALSE(File(layer).GetBandAt(0)->IsVirtualLevel(1)) << layer;
    EXPECT_TRUE(QFileInfo::exists(wide + ".ovr"));

    ASSERT_EQ(Open({other}), 1);
    ASSERT_TRUE(IsOffered());
    Answer("levels.notNow");
    Open({other});
    EXPECT_FALSE(IsOffered()); // in this session
    Restart();
    Open({other});
    ASSERT_TRUE(IsOffered());
    Answer("levels.never");
    Restart();
    Open({other});
    EXPECT_FALSE(IsOffered());
}

TEST_F(XLevelActionsTest, CommandsOfTheMenu)
{
    EXPECT_FALSE(Action("image.pyramid")->isEnabled());
    EXPECT_FALSE(Action("image.statistics")->isEnabled());
    const QString path = MakeRaster("scene.img", 1200, 1100, 2);
    Open({path});
    prompts.AnswerNo();
    Run("image.pyramid");
    EXPECT_NE(prompts.GetQuestions().back().text.find("scene.img.ovr"), std::string::npos);
    EXPECT_FALSE(window->GetJobs().IsBusy());
    prompts.AnswerNo();
    Run("image.statistics");
    EXPECT_NE(prompts.GetQuestions().back().text.find("scene.img.aux.xml"), std::string::npos);
    EXPECT_FALSE(window->GetJobs().IsBusy());
    prompts.AnswerYes();
    prompts.AnswerYes();
    Run("image.pyramid");
    Run("image.statistics"); // waits for the other
    ASSERT_TRUE(WaitForJobs());
    EXPECT_TRUE(QFileInfo::exists(path + ".ovr"));
    EXPECT_FALSE(File(0).GetBandAt(1)->HasEstimatedStatistics());
    EXPECT_EQ(File(0).GetBandAt(1)->GetBandMax(), 1199 + 10990 + 100);
    XRSFile later;
    XString error;
    ASSERT_TRUE(XRSFileIO::Open(path.toUtf8().constData(), &later, error));
    EXPECT_FALSE(later.GetBandAt(1)->HasEstimatedStatistics());
}

TEST_F(XLevelActionsTest, JobsFollowEachOtherAndStopWhenAsked)
{
    std::atomic<int> started{0};
    QStringList ends;
    XJobRunner& jobs = window->GetJobs();
    jobs.Add(Endless(started, ends));
    jobs.Add(Endless(started, ends));
    Settle();
    auto* cancel = Find<QToolButton>("status.job.cancel");
    EXPECT_TRUE(cancel->isVisible());
    EXPECT_EQ(jobs.GetWaiting(), 1);
    Run("view.fullScreen");
    QTest::keyClick(&window->GetView(), Qt::Key_Escape); // the job before the full screen
    ASSERT_TRUE(QTest::qWaitFor([&] { return started == 2; }, 10000));
    EXPECT_EQ(ends, QStringList{"01"});
    EXPECT_TRUE(window->isFullScreen());
    Run("view.fullScreen");
    EXPECT_TRUE(cancel->isEnabled());
    cancel->click();
    EXPECT_FALSE(cancel->isEnabled());
    window->close(); // waits until the job has ended
    EXPECT_FALSE(jobs.IsBusy());
    EXPECT_EQ(ends, (QStringList{"01", "01"}));

    jobs.Add({"Failing",
              [](const tagXSaveControl&, QString& message) {
                  message = "It went wrong.";
                  return false;
              },
              [&](bool, bool, const QString& message) { ends << message; }});
    ASSERT_TRUE(WaitForJobs());
    EXPECT_EQ(ends.last(), "It went wrong.");
    jobs.Add(Endless(started, ends));
    ASSERT_TRUE(QTest::qWaitFor([&] { return started == 3; }, 10000));
    window.reset(); // so does the end of the window
    EXPECT_EQ(ends.size(), 3);
}
