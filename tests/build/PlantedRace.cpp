// Two threads write one word through a window message's receiver and a worker, with Qt in the
// stack of one of them: what a suppression that is too wide would hide.
#include "foundation/platform/XMessageWindow.h"

#include <QCoreApplication>
#include <QTimer>

#include <atomic>
#include <thread>

namespace {
int g_word = 0;

class Receiver : public XMessageWindow
{
public:
    XLRESULT OnWindowMessage(unsigned, XWPARAM, XLPARAM) override { return ++g_word; }
};
} // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    Receiver receiver;
    std::atomic<int> stop{0};
    std::thread worker([&] {
        while (!stop.load(std::memory_order_relaxed)) {
            XfnPostMessage(receiver.GetHWND(), 1, 0, 0);
            // long stretches between the posts: the lock of the queue orders what stands near it
            for (int i = 0; i < 20000 && !stop.load(std::memory_order_relaxed); ++i)
                ++g_word;
        }
    });
    QTimer::singleShot(500, [] { QCoreApplication::quit(); });
    app.exec();
    stop = 1;
    worker.join();
    return g_word == 0;
}
