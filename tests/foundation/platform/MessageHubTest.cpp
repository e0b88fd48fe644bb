#include "foundation/platform/XMessageHub.h"

#include "foundation/platform/XEvent.h"
#include "foundation/platform/XMessageWorker.h"
#include "tests/support/XMessageRecorder.h"

#include <gmock/gmock.h>

#include <atomic>
#include <chrono>
#include <memory>
#include <thread>

namespace {

using testing::ElementsAre;

constexpr unsigned kMessage = 41024;

TEST(MessageHub, DeadAndForeignHandlesAreHarmless)
{
    auto window = std::make_unique<XMessageRecorder>();
    const XHWND dead = window->GetHWND();
    EXPECT_TRUE(XfnIsWindow(dead));
    window.reset();
    XMessageRecorder later; // takes over the place of the first
    EXPECT_NE(later.GetHWND(), dead);
    XLRESULT result = 77;
    for (const XHWND handle : {XHWND{0}, dead, later.GetHWND() + 1, ~XHWND{0}, XHWND{1} << 32}) {
        EXPECT_FALSE(XfnIsWindow(handle)) << handle;
        EXPECT_EQ(XfnSendMessage(handle, kMessage, 0, 0), 0) << handle;
        EXPECT_EQ(XfnPostMessage(handle, kMessage, 0, 0), 0) << handle;
        EXPECT_EQ(XfnSendMessageTimeout(handle, kMessage, 0, 0, 10, &result), 0) << handle;
    }
    EXPECT_EQ(result, 77) << "a failed send wrote its result";
    XfnRunPending();
    EXPECT_TRUE(later.GetMessages().empty());
}

TEST(MessageHub, SendInTheUiThreadIsADirectCall)
{
    XMessageRecorder window;
    window.handler = [](const auto& message) { return message.lParam * 2; };
    EXPECT_EQ(XfnSendMessage(window.GetHWND(), kMessage, 5, 21), 42);
    XLRESULT result = 0;
    EXPECT_EQ(XfnSendMessageTimeout(window.GetHWND(), kMessage, 5, -4, 0, &result), 1);
    EXPECT_EQ(result, -8);
    ASSERT_EQ(window.GetMessages().size(), 2u);
    EXPECT_EQ(window.GetMessages()[0], (XMessageRecorder::tagMessage{kMessage, 5, 21}));
}

TEST(MessageHub, WorkerGetsTheHandlersResult)
{
    XMessageRecorder window;
    std::thread::id handlerThread;
    window.handler = [&](const auto& message) {
        handlerThread = std::this_thread::get_id();
        return static_cast<XLRESULT>(message.wParam) + 1;
    };
    const XHWND handle = window.GetHWND();
    XLRESULT plain = 0;
    XLRESULT timed = 0;
    int isSent = 0;
    std::thread worker([&] {
        plain = XfnSendMessage(handle, kMessage, 41, 0);
        isSent = XfnSendMessageTimeout(handle, kMessage, 99, 0, kXForever, &timed);
        XfnPostMessage(handle, kMessage, 0, 0);
    });
    XfnRunUntil([&] { return window.GetMessages().size() == 3; });
    worker.join();
    EXPECT_EQ(plain, 42);
    EXPECT_EQ(isSent, 1);
    EXPECT_EQ(timed, 100);
    EXPECT_EQ(handlerThread, std::this_thread::get_id());
}

TEST(MessageHub, GivenUpMessageIsNeverDelivered)
{
    XMessageRecorder window;
    const XHWND handle = window.GetHWND();
    int sentCount = 0;
    std::thread worker([&] {
        for (const unsigned timeoutMs : {0u, 1u, 5u}) {
            sentCount += XfnSendMessageTimeout(handle, kMessage, 1, 0, timeoutMs);
        }
    });
    worker.join(); // no event loop has run meanwhile
    XfnRunPending();
    EXPECT_EQ(sentCount, 0);
    EXPECT_TRUE(window.GetMessages().empty());
}

TEST(MessageHub, SenderWaitsForARunningHandlerBeyondItsTimeout)
{
    constexpr unsigned kTimeoutMs = 15;
    XMessageRecorder window;
    window.handler = [](const auto& message) {
        if (message.wParam != 1) return 0;
        const auto end =
            std::chrono::steady_clock::now() + std::chrono::milliseconds(2 * kTimeoutMs);
        while (std::chrono::steady_clock::now() < end) {
        }
        *reinterpret_cast<int*>(message.lParam) = 17; // on the sender's stack
        return 1;
    };
    const XHWND handle = window.GetHWND();
    int written = 0;
    std::thread worker([&] {
        int isSent = 0;
        for (int i = 0; i < 2000 && !isSent; ++i) { // a busy machine may not begin in time
            int local = 0;
            isSent = XfnSendMessageTimeout(handle, kMessage, 1, reinterpret_cast<XLPARAM>(&local),
                                           kTimeoutMs);
            written = local;
        }
        XfnPostMessage(handle, kMessage, 2, 0);
    });
    XfnRunUntil(
        [&] { return !window.GetMessages().empty() && window.GetMessages().back().wParam == 2; });
    worker.join();
    EXPECT_EQ(written, 17);
    EXPECT_THAT(window.GetFirstParameters(), ElementsAre(1u, 2u)) << "delivered and given up";
}

TEST(MessageHub, SendFailsWhenItsWindowDiesMeanwhile)
{
    for (int i = 0; i < 50; ++i) {
        auto window = std::make_unique<XMessageRecorder>();
        const XHWND handle = window->GetHWND();
        XEvent reached;
        int result = -1;
        std::thread worker([&] {
            reached.Set();
            result = XfnSendMessageTimeout(handle, kMessage, 0, 0, kXForever);
        });
        reached.Wait();
        window.reset();
        worker.join();
        EXPECT_EQ(result, 0);
    }
}

TEST(MessageHub, ReleaseFreesAWaitingWorkerAndLiftAllowsItAgain)
{
    XMessageRecorder window;
    const XHWND handle = window.GetHWND();
    XMessageWorker self;
    XEvent next;
    XEvent reached;
    int first = -1;
    int barred = -1;
    int second = -1;
    std::thread thread([&] {
        const XMessageWorker::XScope scope(self);
        first = XfnSendMessageTimeout(handle, kMessage, 1, 0, kXForever);
        barred = XfnSendMessageTimeout(handle, kMessage, 2, 0, kXForever);
        reached.Set();
        next.Wait();
        second = XfnSendMessageTimeout(handle, kMessage, 3, 0, kXForever);
    });
    self.Release();
    EXPECT_TRUE(self.IsReleased());
    reached.Wait(); // the UI thread waits for the worker, which must not wait for it
    EXPECT_EQ(first, 0);
    EXPECT_EQ(barred, 0);
    self.Lift();
    next.Set();
    XfnRunUntil([&] { return !window.GetMessages().empty(); });
    thread.join();
    EXPECT_EQ(second, 1);
    EXPECT_THAT(window.GetFirstParameters(), ElementsAre(3u));
}

TEST(MessageHub, HandlerMayJoinItsOwnSender)
{
    XMessageRecorder window;
    const XHWND handle = window.GetHWND();
    XMessageWorker self;
    std::thread thread;
    int result = -1;
    window.handler = [&](const auto&) {
        self.Release();
        thread.join();
        return 1;
    };
    XEvent start;
    thread = std::thread([&] {
        start.Wait();
        const XMessageWorker::XScope scope(self);
        result = XfnSendMessageTimeout(handle, kMessage, 0, 0, kXForever);
    });
    start.Set();
    XfnRunUntil([&] { return !window.GetMessages().empty(); });
    EXPECT_EQ(result, 0) << "an early answer is no success";
}

TEST(MessageHub, EventLoopInsideAHandlerDeliversTheRest)
{
    // sends and posts that were there before the loop began, and one that comes during it
    XMessageRecorder window;
    const XHWND handle = window.GetHWND();
    for (XWPARAM i = 1; i <= 3; ++i)
        XfnPostMessage(handle, kMessage, i, 0);
    int sent = -1;
    std::thread worker;
    window.handler = [&](const auto& message) {
        if (message.wParam != 1) return 0;
        worker =
            std::thread([&] { sent = XfnSendMessageTimeout(handle, kMessage, 9, 0, kXForever); });
        XfnRunUntil([&] { return window.GetMessages().size() == 4; });
        return 0;
    };
    XfnRunUntil([&] { return !window.GetMessages().empty(); });
    worker.join();
    EXPECT_EQ(sent, 1);
    EXPECT_EQ(window.GetMessages().size(), 4u);
}

TEST(MessageHub, PostsKeepTheirOrderAndAreDroppedForDeadWindows)
{
    XMessageRecorder window;
    auto other = std::make_unique<XMessageRecorder>();
    for (XWPARAM i = 0; i < 5; ++i) {
        XfnPostMessage(window.GetHWND(), kMessage, i, 0);
        XfnPostMessage(other->GetHWND(), kMessage, i, 0);
    }
    other.reset();
    XMessageHub::Get().WithdrawPosts(kMessage, 3);
    XfnRunUntil([&] { return window.GetMessages().size() == 4; });
    XfnRunPending();
    EXPECT_THAT(window.GetFirstParameters(), ElementsAre(0u, 1u, 2u, 4u));
}

TEST(MessageHub, AFloodOfPostsLetsTheLoopTurn)
{
    XMessageRecorder window;
    for (XWPARAM i = 0; i < 100; ++i)
        XfnPostMessage(window.GetHWND(), kMessage, i, 0);
    QCoreApplication::processEvents();
    EXPECT_LE(window.GetMessages().size(), 1u);
    XfnRunUntil([&] { return window.GetMessages().size() == 100; });
}

TEST(MessageHub, WindowsBelongToTheUiThread)
{
    XHWND handle = 1;
    int isSeen = 0;
    XMessageRecorder window;
    std::thread worker([&] {
        XMessageRecorder foreign;
        handle = foreign.GetHWND();
        isSeen = XfnIsWindow(window.GetHWND());
    });
    worker.join();
    EXPECT_EQ(handle, 0u);
    EXPECT_EQ(isSeen, 1);
}

TEST(MessageHub, EveryDeliveryIsOneSuccessfulSend)
{
    // short time-outs and dying windows: the handlers run exactly as often as senders were told
    constexpr int kWorkerCount = 4;
    constexpr int kSendCount = 400;
    XMessageRecorder witness;
    auto window = std::make_unique<XMessageRecorder>();
    int deliveredCount = 0;
    const auto count = [&](const auto&) { return ++deliveredCount; };
    window->handler = count;
    std::atomic<XHWND> target{window->GetHWND()};
    std::atomic<int> successCount{0};
    const XHWND witnessHandle = witness.GetHWND();
    std::vector<std::jthread> workers;
    for (int i = 0; i < kWorkerCount; ++i) {
        workers.emplace_back([&, i] {
            for (int k = 0; k < kSendCount; ++k) {
                const auto timeoutMs = static_cast<unsigned>((i + k) % 3);
                successCount += XfnSendMessageTimeout(target, kMessage, 0, 0, timeoutMs);
            }
            XfnPostMessage(witnessHandle, kMessage, 0, 0);
        });
    }
    int turn = 0;
    XfnRunUntil([&] {
        if (++turn % 16 == 0) {
            window.reset();
            window = std::make_unique<XMessageRecorder>();
            window->handler = count;
            target = window->GetHWND();
        }
        return witness.GetMessages().size() == kWorkerCount;
    });
    workers.clear(); // joins
    XfnRunPending();
    EXPECT_EQ(successCount, deliveredCount);
    EXPECT_GT(deliveredCount, 0);
}

} // namespace
