#include "foundation/platform/XEvent.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>
#include <vector>

namespace {

TEST(Event, AutomaticEndsOneWaitManualAll)
{
    XEvent automatic(XEvent::XReset::Automatic, true);
    EXPECT_TRUE(automatic.Wait(0));
    EXPECT_FALSE(automatic.Wait(0));
    XEvent manual(XEvent::XReset::Manual);
    EXPECT_FALSE(manual.Wait(1));
    manual.Set();
    EXPECT_TRUE(manual.Wait(0));
    EXPECT_TRUE(manual.Wait());
    manual.Reset();
    EXPECT_FALSE(manual.Wait(0));
}

TEST(Event, LowestIndexWinsAndOthersStaySet)
{
    XEvent a, b, c;
    b.Set();
    c.Set();
    EXPECT_EQ(XEvent::WaitAny({&a, nullptr, &b, &c}, 0), 2);
    EXPECT_EQ(XEvent::WaitAny({&a, nullptr, &b, &c}), 3);
    EXPECT_EQ(XEvent::WaitAny({&a, nullptr, &b, &c}, 2), -1);
    EXPECT_EQ(XEvent::WaitAny({}, kXForever), -1) << "would wait for ever";
    EXPECT_EQ(XEvent::WaitAny({nullptr}, kXForever), -1);
}

TEST(Event, AutomaticIsTakenByExactlyOneOfManyWaiters)
{
    constexpr int kThreadCount = 4;
    constexpr int kSetCount = 500;
    XEvent token, taken;
    XEvent quit(XEvent::XReset::Manual);
    std::atomic<int> takenCount{0};
    std::vector<std::jthread> threads;
    for (int i = 0; i < kThreadCount; ++i) {
        threads.emplace_back([&] {
            while (XEvent::WaitAny({&token, &quit}) == 0) {
                ++takenCount;
                taken.Set();
            }
        });
    }
    for (int i = 0; i < kSetCount; ++i) {
        token.Set();
        taken.Wait();
    }
    quit.Set();
    threads.clear(); // joins
    EXPECT_EQ(takenCount, kSetCount);
}

} // namespace
