#include "foundation/platform/XThread.h"

#include "tests/support/XMessageRecorder.h"

#include <gmock/gmock.h>

#include <memory>
#include <new>

namespace {

using testing::ElementsAre;

/// Starts `work()` on the thread, which reports to a window.
template <class Work>
int Start(XThread& thread, XHWND window, Work work, unsigned flags = 0, void* owner = nullptr)
{
    const auto run = [work](void*) mutable {
        work();
        return 0u;
    };
    return thread.Create(owner, window, run, nullptr, flags);
}

TEST(Thread, EachCallbackStoresItsCodeAndPosts)
{
    struct tagCase
    {
        const char* name;
        void (*call)(XThread&);
        int status;
        const char* text;
        XLPARAM value;
    };
    const tagCase cases[] = {
        {"success", [](XThread& t) { t.CallbackSuccess(); }, 1, "", 0},
        {"fail keeps the text", [](XThread& t) { t.CallbackFail("broken"); }, 2, "broken", 0},
        {"cancel", [](XThread& t) { t.CallbackCancel(); }, 3, "", 0},
        {"percent carries the value", [](XThread& t) { t.CallbackPercent(42); }, 4, "", 42},
        {"text", [](XThread& t) { t.CallbackText("reading"); }, 5, "reading", 0},
        {"own code", [](XThread& t) { t.Callback(1009, -7); }, 1009, "", -7},
    };
    for (const tagCase& row : cases) {
        SCOPED_TRACE(row.name);
        XMessageRecorder window;
        XThread thread;
        int owner = 0;
        ASSERT_TRUE(Start(
            thread, window.GetHWND(), [&] { row.call(thread); }, 0, &owner));
        XfnRunUntil([&] { return !window.GetMessages().empty(); });
        EXPECT_TRUE(thread.Wait());
        EXPECT_EQ(thread.GetStatus(), row.status);
        EXPECT_EQ(thread.GetText(), row.text);
        EXPECT_EQ(thread.GetOwner(), &owner);
        ASSERT_EQ(window.GetMessages().size(), 1u);
        EXPECT_EQ(
            window.GetMessages()[0],
            (XMessageRecorder::tagMessage{2024, reinterpret_cast<XWPARAM>(&thread), row.value}));
    }
}

TEST(Thread, WithoutAWindowNothingIsPosted)
{
    XMessageRecorder window;
    XThread thread;
    EXPECT_FALSE(thread.IsValid());
    EXPECT_FALSE(thread.Wait(0));
    EXPECT_FALSE(thread.Create(nullptr, 0, nullptr, nullptr));
    int parameter = 0;
    ASSERT_TRUE(thread.Create(
        nullptr, 0,
        [&](void* p) {
            *static_cast<int*>(p) = 5;
            thread.CallbackPercent(3);
            return 0u;
        },
        &parameter));
    EXPECT_TRUE(thread.Wait());
    XfnRunPending();
    EXPECT_EQ(parameter, 5);
    EXPECT_EQ(thread.GetStatus(), kXThreadPercent);
    EXPECT_TRUE(window.GetMessages().empty());
}

TEST(Thread, DestructorStopsJoinsAndWithdrawsReports)
{
    XMessageRecorder window;
    bool hasEnded = false;
    {
        XThread thread;
        XEvent running;
        Start(thread, window.GetHWND(), [&] {
            thread.CallbackText("on");
            running.Set();
            while (!thread.IsStopRequested())
                std::this_thread::yield();
            thread.CallbackCancel();
            hasEnded = true;
        });
        running.Wait();
        EXPECT_EQ(thread.GetStopFlag()->load(), 0);
    }
    EXPECT_TRUE(hasEnded);
    XfnRunPending();
    EXPECT_TRUE(window.GetMessages().empty()) << "a report names a thread object that is gone";
}

TEST(Thread, DestructorFreesAWorkerThatWaitsForThisThread)
{
    XMessageRecorder window;
    const XHWND handle = window.GetHWND();
    int isSent = -1;
    {
        XThread thread;
        Start(thread, handle, [&] { isSent = XfnSendMessageTimeout(handle, 7, 0, 0, kXForever); });
    }
    EXPECT_EQ(isSent, 0);
}

TEST(Thread, WaitFreesAWorkerThatSendsAndATimeOutLetsItSendAgain)
{
    XMessageRecorder window;
    const XHWND handle = window.GetHWND();
    constexpr unsigned kFarTooLongMs = 20000; // a wait that hangs fails instead of stopping the run
    for (const bool isTimedOutFirst : {false, true}) {
        SCOPED_TRACE(isTimedOutFirst);
        window.Forget();
        XEvent go;
        std::atomic<int> isSent{-1};
        XThread thread;
        ASSERT_TRUE(Start(thread, handle, [&] {
            if (isTimedOutFirst) go.Wait();
            isSent = XfnSendMessageTimeout(handle, 7, 0, 0, kXForever);
        }));
        if (isTimedOutFirst) {
            EXPECT_FALSE(thread.Wait(1));
            go.Set();
            XfnRunUntil([&] { return !window.GetMessages().empty(); });
        }
        EXPECT_TRUE(thread.Wait(kFarTooLongMs));
        EXPECT_EQ(isSent, isTimedOutFirst ? 1 : 0);
    }
}

TEST(Thread, ALookTakesNoSendAway)
{
    XMessageRecorder window;
    const XHWND handle = window.GetHWND();
    constexpr int kSendCount = 200;
    int sentCount = 0;
    XThread thread;
    ASSERT_TRUE(Start(thread, handle, [&] {
        for (int i = 0; i < kSendCount; ++i)
            sentCount += XfnSendMessageTimeout(handle, 7, 0, 0, kXForever);
    }));
    while (!thread.Wait(0))
        QCoreApplication::processEvents();
    EXPECT_EQ(sentCount, kSendCount);
}

TEST(Thread, SuspendHaltsInTheNextCallback)
{
    XThread thread;
    std::atomic<int> step{0};
    XEvent stepped;
    const auto work = [&] {
        for (int i = 1; !thread.IsStopRequested(); ++i) {
            step = i;
            stepped.Set();
            thread.CallbackPercent(i);
        }
    };
    Start(thread, 0, work, kXCreateSuspended);
    EXPECT_FALSE(stepped.Wait(20)) << "started although created suspended";
    thread.Resume();
    stepped.Wait();
    thread.Suspend();
    const int seen = step;
    stepped.Wait(20);
    stepped.Wait(20);
    EXPECT_LE(step, seen + 1) << "only the step under way may end";
    thread.Resume();
    EXPECT_TRUE(stepped.Wait());
    thread.Suspend();
    thread.Callback(9, 0); // only the worker itself halts
    thread.Terminate();    // and a halted one is let go
    EXPECT_TRUE(thread.Wait());
}

TEST(Thread, CanBeCreatedAgain)
{
    XMessageRecorder window;
    XThread thread;
    const auto work = [&](void* text) {
        thread.CallbackText(static_cast<const char*>(text));
        while (!thread.IsStopRequested())
            std::this_thread::yield();
        return 0u;
    };
    char first[] = "first";
    char second[] = "second";
    thread.Create(nullptr, window.GetHWND(), work, first);
    XfnRunUntil([&] { return !window.GetMessages().empty(); });
    thread.Terminate();
    EXPECT_TRUE(thread.Wait());
    EXPECT_TRUE(thread.IsStopRequested());
    thread.Create(nullptr, window.GetHWND(), work, second);
    EXPECT_FALSE(thread.IsStopRequested());
    XfnRunUntil([&] { return window.GetMessages().size() == 2; });
    EXPECT_EQ(thread.GetText(), "second");
}

TEST(Thread, StatusAndTextAreReadWhileTheyChange)
{
    XMessageRecorder window;
    XThread thread;
    constexpr int kReportCount = 500;
    Start(thread, window.GetHWND(), [&] {
        for (int i = 0; i < kReportCount; ++i)
            thread.CallbackText(i % 2 ? "odd step of the work" : "even step");
        thread.CallbackSuccess();
    });
    while (thread.GetStatus() != kXThreadSuccess) {
        const XString text = thread.GetText();
        ASSERT_TRUE(text.IsEmpty() || text == "odd step of the work" || text == "even step");
    }
    XfnRunUntil([&] { return window.GetMessages().size() == kReportCount + 1; });
}

TEST(Thread, AnExceptionBecomesAFailure)
{
    XThread thread;
    Start(thread, 0, [] { throw std::bad_alloc(); });
    EXPECT_TRUE(thread.Wait());
    EXPECT_EQ(thread.GetStatus(), kXThreadFail);
    EXPECT_GE(thread.GetText().Find("memory"), 0);
}

} // namespace
