#include "dialogs/XThreadDlg.h"

#include "foundation/platform/XQtText.h"
#include "foundation/platform/XThread.h"

#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QTest>
#include <QTimer>

#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <string>
#include <thread>
#include <vector>

namespace {

using Work = std::function<int(XString& error, XThread& thread)>;

class XRunDlg : public XThreadDlg
{
public:
    explicit XRunDlg(Work work) : m_work(std::move(work)) {}
    ~XRunDlg() override { m_work = nullptr; } // work that still ran would meet this

    QString Shown(const char* name) const { return findChild<QLabel*>(name)->text(); }

    void LoopAtEnd() { m_loopsAtEnd = true; } ///< as an error box does

    std::vector<std::string> log;

private:
    int ThreadProcess(void*, XString& error, XThread* thread) override
    {
        return m_work(error, *thread);
    }
    void OnCallbackFail(void*, const XString& text) override
    {
        log.push_back("fail " + std::string(text));
        if (m_loopsAtEnd) QTest::qWait(1);
    }
    void OnCallbackSuccess(void*) override
    {
        log.push_back(GetThread()->IsStopRequested() ? "late success" : "success");
    }

    Work m_work;
    bool m_loopsAtEnd = false;
};

// Runs `act` once `ready` holds, while the dialog's own loop runs.
void When(QObject& context, std::function<bool()> ready, std::function<void()> act)
{
    QTimer::singleShot(0, &context, [&context, ready, act] {
        if (ready()) {
            act();
        } else {
            When(context, ready, act);
        }
    });
}

void Stopped(XThread& thread)
{
    while (!thread.IsStopRequested())
        std::this_thread::yield();
}

TEST(XThreadDlg, EndsAsItsWorkEnds)
{
    XRunDlg good([](XString&, XThread&) { return 1; });
    EXPECT_EQ(good.DoModal(), XThreadDlg::kOk);
    EXPECT_EQ(good.log, std::vector<std::string>{"success"});
    EXPECT_FALSE(good.isVisible());
    EXPECT_EQ(good.DoModal(), XThreadDlg::kOk) << "a second run starts a new thread";

    XRunDlg bad([](XString& error, XThread&) {
        error = "no such file";
        return 0;
    });
    EXPECT_EQ(bad.DoModal(), XThreadDlg::kCancel);
    EXPECT_EQ(bad.log, std::vector<std::string>{"fail no such file"});
}

TEST(XThreadDlg, WithADelayOnlySlowWorkShowsItsWindow)
{
    for (const bool isSlow : {false, true}) {
        bool wasShown = false;
        XRunDlg dialog([isSlow](XString&, XThread& thread) {
            if (isSlow) Stopped(thread);
            return !isSlow;
        });
        dialog.SetShowDelay(isSlow ? 1 : 10000);
        When(
            dialog, [&] { return dialog.isVisible(); },
            [&] {
                wasShown = true;
                dialog.close();
            });
        EXPECT_EQ(dialog.DoModal(), isSlow ? XThreadDlg::kCancel : XThreadDlg::kOk);
        EXPECT_EQ(wasShown, isSlow);
    }
}

TEST(XThreadDlg, EndsOnceHoweverManyReportsAreUnderWay)
{
    for (const int result : {0, 1}) {
        XRunDlg dialog([result](XString&, XThread& thread) {
            thread.CallbackPercent(50);
            thread.CallbackPercent(100);
            return result;
        });
        dialog.LoopAtEnd();
        dialog.SetPercent(30);
        EXPECT_EQ(dialog.Shown("thread.percent"), "") << "not open yet";
        EXPECT_EQ(dialog.DoModal(), result ? XThreadDlg::kOk : XThreadDlg::kCancel);
        QTest::qWait(1);
        EXPECT_EQ(dialog.log.size(), 1u);
    }
}

TEST(XThreadDlg, ShowsWhatTheWorkReports)
{
    for (const int isMarquee : {0, 1}) {
        XRunDlg dialog([](XString&, XThread& thread) {
            thread.CallbackPercent(40);
            Stopped(thread);
            return 0;
        });
        dialog.SetMarquee(isMarquee);
        dialog.SetTitle("Calculating");
        dialog.SetMessage("band 3");
        EXPECT_EQ(dialog.Shown("thread.message"), "") << "kept until it opens";
        When(
            dialog, [&] { return dialog.Shown("thread.percent") == "40"; },
            [&] {
                EXPECT_EQ(dialog.windowTitle(), "Calculating");
                EXPECT_EQ(dialog.Shown("thread.message"), "band 3");
                EXPECT_EQ(dialog.Shown("thread.unit"), isMarquee ? "" : "%");
                auto* bar = dialog.findChild<QProgressBar*>("thread.bar");
                EXPECT_EQ(bar->maximum(), isMarquee ? 0 : 100);
                QTest::mouseClick(dialog.findChild<QPushButton*>("thread.cancel"), Qt::LeftButton);
            });
        EXPECT_EQ(dialog.DoModal(), XThreadDlg::kCancel);
        EXPECT_TRUE(dialog.log.empty()) << "what comes after a cancel finds no dialog";
    }
}

TEST(XThreadDlg, WorkThatIgnoresItsStopFlagMeetsNoFreedMemory)
{
    std::atomic<int> steps{0};
    {
        XRunDlg dialog([&](XString&, XThread&) {
            for (int i = 0; i < 50; ++i) {
                std::this_thread::sleep_for(std::chrono::milliseconds(1));
                ++steps;
            }
            return 1;
        });
        When(
            dialog, [&] { return steps > 2; }, [&] { QTest::keyClick(&dialog, Qt::Key_Escape); });
        EXPECT_EQ(dialog.DoModal(), XThreadDlg::kCancel);
    }
    EXPECT_EQ(steps, 50);
}

} // namespace
