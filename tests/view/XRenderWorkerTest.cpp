#include "view/XRenderWorker.h"

#include "tests/support/XMessageRecorder.h"

#include <QCoreApplication>

#include <gtest/gtest.h>

#include <functional>
#include <stdexcept>
#include <string>

namespace {

/// Notes which passes run at which draw levels and when the window is invalidated.
class XFakeTarget : public XRenderTarget
{
public:
    int IsAlive() const override { return isAlive; }
    void BeginSweep(const std::shared_ptr<XRenderScene>& begun) override
    {
        watched = scene = begun;
    }
    int GetCompositeCount() const override { return static_cast<int>(ranges.size()); }
    tagXLevelRange CalcLevels(int composite) override
    {
        if (onLevels) onLevels();
        return ranges[static_cast<std::size_t>(composite)];
    }
    int IsCompositeStale(int composite) const override { return composite == stale; }
    void DrawPass(const tagXPendingFlags& flags, const std::vector<int>& levels) override
    {
        std::string text;
        for (const int level : levels)
            text += (text.empty() ? "" : ",") + std::to_string(level);
        log += (log.empty() ? "" : " ") + (text.empty() ? "none" : text);
        drawn.Merge(flags);
        if (onPass) onPass(++passes);
    }
    void Invalidate() override { log += "!"; }
    void EndSweep() override { scene.reset(); }
    void OnIdle() override
    {
        log += ".";
        holders = watched.use_count();
    }

    std::atomic<int> isAlive{1};
    std::vector<tagXLevelRange> ranges;
    int stale = -1;
    std::function<void()> onLevels;
    std::function<void(int)> onPass;
    int passes = 0;
    std::string log; ///< levels of each pass, "!" where it was shown, "." where the worker rested
    tagXPendingFlags drawn;
    std::shared_ptr<XRenderScene> scene;
    std::weak_ptr<XRenderScene> watched;
    long holders = -1; ///< of the scene, at rest
};

constexpr tagXPendingFlags kMain{0, 0, 1, 0, 0};
constexpr tagXPendingFlags kTemp{0, 0, 0, 0, 1};

class XRenderWorkerTest : public ::testing::Test
{
protected:
    XRenderWorkerTest() { worker.SetProgressive(1); }

    /// Asks once, so that the next request finds level arrays, and forgets what happened.
    void FinishFirst()
    {
        Que();
        Drain();
        target.log.clear();
        target.drawn = {};
        target.passes = 0;
    }
    int Que(const tagXPendingFlags& flags = kMain) { return worker.Que(17, flags, nullptr); }
    XRenderWorker::XStep Drain()
    {
        auto step = worker.Step(0);
        for (int i = 0; i < 20 && step == XRenderWorker::XStep::Served; ++i)
            step = worker.Step(0);
        return step;
    }

    XFakeTarget target;
    XRenderWorker worker{target};
};

TEST_F(XRenderWorkerTest, WhichPassesRunAtWhichLevelsAndWhatIsShown)
{
    using Ranges = std::vector<tagXLevelRange>;
    struct Case
    {
        const char* name;
        Ranges ranges;
        bool isFirst;    // the first request of the worker's life
        bool isRefined;  // SetAlwaysRefine
        int queueInPass; // another request comes during this pass; 0 never
        const char* log;
        std::vector<int> levels; // in the end
    };
    const Ranges kTwo = {{0, 1}, {0, 3}};
    const Case kCases[] = {
        {"no composite", {}, false, false, 0, "none!.", {}},
        {"one level", {{2, 2}}, false, false, 0, "2!.", {2}},
        {"one composite", {{1, 4}}, false, false, 0, "4! 3! 2! 1!.", {1}},
        {"fewer levels wait", {{0, 1}, {2, 5}}, false, false, 0, "1,5! 1,4! 1,3! 0,2!.", {0, 2}},
        {"the first request of all", {{0, 3}}, true, false, 0, "3!.", {-1}},
        {"refined", {{0, 2}}, true, true, 0, "2! 2! 1! 0!.", {0}},
        {"in the coarse pass", {{0, 2}}, false, false, 1, "2! 2! 1! 0!.", {0}},
        {"in a later pass", {{0, 2}}, false, false, 2, "2! 1 2! 1! 0!.", {0}},
        {"in the last pass", {{0, 2}}, false, false, 3, "2! 1! 0 2! 1! 0!.", {0}},
        {"on top at its maximum", kTwo, false, false, 2, "1,3! 1,2! 1,3! 1,2! 1,1! 0,0!.", {0, 0}},
        {"one level on top", {{0, 0}, {0, 2}}, false, false, 0, "0,2!.", {-1, -1}},
        {"the same, refined", {{0, 0}, {0, 2}}, false, true, 0, "0,2! 0,2! 0,1! 0,0!.", {0, 0}},
        {"a request in a refining sweep", {{0, 2}}, true, true, 3, "2! 2! 1 2! 1! 0!.", {0}},
    };
    for (const Case& c : kCases) {
        SCOPED_TRACE(c.name);
        XFakeTarget fake;
        XRenderWorker own(fake);
        own.SetProgressive(1);
        const auto drain = [&own] {
            while (own.Step(0) == XRenderWorker::XStep::Served) {
            }
        };
        fake.ranges = c.ranges;
        if (!c.isFirst) { // a first sweep that stopped short takes another request to end whole
            do {
                own.Que(1, kMain, nullptr);
                drain();
            } while (!c.ranges.empty() && own.GetDrawLevels().front() < 0);
        }
        fake.log.clear();
        fake.passes = 0;
        own.SetAlwaysRefine(c.isRefined);
        fake.onPass = [&](int pass) {
            if (pass == c.queueInPass) own.Que(7, kMain, nullptr);
        };
        own.Que(5, kMain, nullptr);
        drain();
        EXPECT_EQ(fake.log, c.log);
        EXPECT_EQ(own.GetDrawLevels(), c.levels);
        EXPECT_FALSE(own.IsBusy());
    }
}

TEST_F(XRenderWorkerTest, ARequestWhileLevelsAreLookedUpLetsTheCoarsePassFinish)
{
    target.ranges = {{0, 2}};
    FinishFirst();
    int count = 0;
    target.onLevels = [&] {
        if (count++ == 0) Que();
    };
    Que();
    Drain();
    EXPECT_EQ(target.log, "2! 2! 1! 0!.");
}

TEST_F(XRenderWorkerTest, FlagsAreTakenOnceAndThoseOfABrokenSweepWaitOn)
{
    target.ranges = {{0, 2}};
    FinishFirst();
    tagXPendingFlags seen[2];
    target.onPass = [&](int pass) {
        seen[pass < 3 ? 0 : 1].Merge(target.drawn);
        target.drawn = {};
        if (pass == 2) Que(kTemp); // in mid-sweep
    };
    Que(kMain);
    Drain();
    EXPECT_EQ(seen[0], kMain);
    tagXPendingFlags both = kMain;
    both.Merge(kTemp);
    EXPECT_EQ(seen[1], both);
    EXPECT_EQ(worker.GetPendingFlags(), tagXPendingFlags());
}

TEST_F(XRenderWorkerTest, AStaleCompositeRaisesTheMainFlagInTheFirstSweepThatFindsOne)
{
    target.ranges = {{0, 0}, {0, 0}};
    const auto draw = [&] {
        target.drawn = {};
        Que(kTemp);
        Drain();
        return target.drawn.mainBack;
    };
    EXPECT_EQ(draw(), 0u);
    target.stale = 1;
    EXPECT_EQ(draw(), 1u);
    EXPECT_EQ(draw(), 0u);
}

TEST_F(XRenderWorkerTest, ADisabledQueueDropsRequestsAndSoDoesAWorkerThatIsNotProgressive)
{
    worker.QueDisable();
    EXPECT_FALSE(Que());
    EXPECT_EQ(worker.Step(0), XRenderWorker::XStep::Nothing);
    EXPECT_EQ(worker.GetPendingFlags(), tagXPendingFlags());
    worker.QueEnable();
    worker.SetProgressive(0);
    EXPECT_TRUE(Que());
    Drain();
    EXPECT_EQ(target.log, "");
    EXPECT_EQ(worker.GetPendingFlags(), kMain) << "kept for the day it is";
}

TEST_F(XRenderWorkerTest, AThrownPassLetsTheSweepGoOn)
{
    target.ranges = {{0, 2}};
    FinishFirst();
    target.onPass = [](int pass) {
        if (pass == 2) throw std::runtime_error("a pass");
    };
    Que();
    EXPECT_NO_THROW(Drain());
    EXPECT_EQ(target.log, "2! 1! 0!.");
    EXPECT_EQ(worker.GetPendingFlags(), tagXPendingFlags()) << "the last pass drew them";
    worker.SetAlwaysRefine(1); // a fault that lasts is not tried for ever
    target.onPass = [](int) { throw std::runtime_error("every pass"); };
    Que();
    EXPECT_EQ(Drain(), XRenderWorker::XStep::Nothing);
    EXPECT_EQ(worker.GetPendingFlags(), kMain);
    target.onPass = nullptr;
    Que();
    Drain();
    target.onLevels = [] { throw std::bad_alloc(); };
    Que(kTemp);
    EXPECT_NO_THROW(Drain());
    EXPECT_EQ(worker.GetPendingFlags(), kTemp);
}

TEST_F(XRenderWorkerTest, AtRestTheSceneIsHeldByNobodyWhoDraws)
{
    worker.Que(17, kMain, std::make_shared<XRenderScene>());
    Drain();
    EXPECT_EQ(target.holders, 1) << "for the next sweep";
    worker.QueCancel();
    EXPECT_TRUE(target.watched.expired());
}

TEST_F(XRenderWorkerTest, AWindowThatHasGoneEndsTheWorkerAtItsNextCheck)
{
    target.ranges = {{0, 3}};
    FinishFirst();
    target.onPass = [&](int pass) {
        if (pass == 2) target.isAlive = 0;
    };
    Que();
    EXPECT_EQ(Drain(), XRenderWorker::XStep::Left);
    EXPECT_EQ(target.log, "3! 2.");
    EXPECT_EQ(worker.GetDrawLevels(), std::vector<int>{-1});
}

/// The worker on its thread; passes halt in a gate.
class XRenderWorkerThreadTest : public XRenderWorkerTest
{
protected:
    XRenderWorkerThreadTest()
    {
        target.ranges = {{0, 3}};
        target.onPass = [this](int) {
            entered.Set();
            XEvent::WaitAny({&gate, &broken});
            wasCancelled = worker.GetCancelFlag()->load();
        };
        worker.Start([this] { result = worker.Run(); });
    }
    ~XRenderWorkerThreadTest() override
    {
        broken.Set();
        worker.Stop();
    }

    XEvent entered, gate, broken{XEvent::XReset::Manual};
    std::atomic<int> wasCancelled{0};
    std::atomic<unsigned> result{99};
};

TEST_F(XRenderWorkerThreadTest, QueCancelReturnsWhenNothingIsDrawnAndWithdrawsWhatWaits)
{
    worker.QueCancel(); // at rest
    Que();
    ASSERT_TRUE(entered.Wait(10000));
    EXPECT_TRUE(worker.IsDrawing());
    Que(kTemp); // waits
    std::thread opener([this] {
        while (!*worker.GetCancelFlag())
            std::this_thread::yield();
        broken.Set();
    });
    worker.QueCancel();
    EXPECT_FALSE(worker.IsDrawing());
    EXPECT_FALSE(worker.IsBusy());
    opener.join();
    EXPECT_EQ(wasCancelled, 1);
    EXPECT_EQ(target.log, "3.") << "read without a lock: the barrier orders it";
    tagXPendingFlags both = kMain;
    both.Merge(kTemp);
    EXPECT_EQ(worker.GetPendingFlags(), both);
    Que();
    while (worker.IsBusy())
        std::this_thread::yield();
    worker.QueCancel();
    EXPECT_EQ(target.log, "3. 3! 2! 1! 0!.") << "nothing of what was withdrawn cuts it short";
}

TEST_F(XRenderWorkerThreadTest, BarrierAgainstRequestsThatAreJustBeingTaken)
{
    broken.Set();
    std::atomic<int> isInside{0}, passes{0};
    target.onPass = [&](int) {
        isInside = 1;
        std::this_thread::yield();
        ++passes;
        isInside = 0;
    };
    for (int i = 0; i < 2000; ++i) {
        Que();
        while (i % 3 == 0 && !isInside && worker.IsBusy())
            std::this_thread::yield();
        worker.QueCancel();
        EXPECT_FALSE(isInside);
        target.log.clear(); // a race, for the sanitizer, if the worker still ran
        target.ranges[0].maximum = 1 + i % 3;
    }
    EXPECT_GT(passes, 600) << "every third request at the least";
}

TEST_F(XRenderWorkerThreadTest,
       ASendToAUserInterfaceThatWaitsInQueCancelFailsAtOnceUntilTheNextRequest)
{
    XMessageRecorder host;
    broken.Set();
    std::vector<int> delivered;
    target.ranges.clear();
    target.onPass = [&](int) {
        entered.Set();
        delivered.push_back(XfnSendMessageTimeout(host.GetHWND(), 1, 0, 0, kXForever));
    };
    Que();
    ASSERT_TRUE(entered.Wait(10000));
    worker.QueCancel(); // no event loop runs here: without the barrier this would never end
    EXPECT_EQ(delivered, std::vector<int>{0});
    Que();
    while (worker.IsBusy())
        QCoreApplication::processEvents();
    worker.QueCancel();
    EXPECT_EQ(delivered, (std::vector<int>{0, 1}));
}

TEST_F(XRenderWorkerThreadTest, StopEndsAPassThatHangsInASendAndJoins)
{
    XMessageRecorder host;
    target.onPass = [&](int) {
        entered.Set();
        XfnSendMessage(host.GetHWND(), 1, 0, 0);
    };
    Que();
    ASSERT_TRUE(entered.Wait(10000));
    worker.Stop();
    EXPECT_FALSE(Que());
    worker.QueCancel();
    EXPECT_EQ(host.GetMessages().size(), 0u);
    EXPECT_EQ(result, 1u);
}

} // namespace
