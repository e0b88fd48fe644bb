// Two threads write one word through a window message's receiver and a worker, with Qt in the
// stack of one of them: what a suppression that is too wide would hide.
#include "foundation/platform/XMessageWindow.h"

#include <QCoreApplication>
#include <QTimer>

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
    std::thread worker([&] {
        for (int i = 0; i < 1000; ++i) {
            ++g_word;
            XfnPostMessage(receiver.GetHWND(), 1, 0, 0);
        }
    });
    QTimer::singleShot(200, [] { QCoreApplication::quit(); });
    app.exec();
    worker.join();
    return g_word == 0;
}
