#pragma once

#include "foundation/platform/XMessageWindow.h"

#include <QCoreApplication>
#include <QEventLoop>

#include <functional>
#include <utility>
#include <vector>

/// A window that keeps every message it gets, for hosts and dialogs under test.
class XMessageRecorder : public XMessageWindow
{
public:
    struct tagMessage
    {
        unsigned message;
        XWPARAM wParam;
        XLPARAM lParam;

        friend bool operator==(const tagMessage&, const tagMessage&) = default;
    };

    /// Runs after a message was kept; its result is the answer. Without one the answer is 0.
    std::function<XLRESULT(const tagMessage&)> handler;

    const std::vector<tagMessage>& GetMessages() const { return m_messages; }
    std::vector<XWPARAM> GetFirstParameters() const
    {
        std::vector<XWPARAM> list;
        for (const tagMessage& message : m_messages)
            list.push_back(message.wParam);
        return list;
    }
    void Forget() { m_messages.clear(); }
    using XMessageWindow::DestroyHandle;

    XLRESULT OnWindowMessage(unsigned message, XWPARAM wParam, XLPARAM lParam) override
    {
        m_messages.push_back({message, wParam, lParam});
        return handler ? handler(m_messages.back()) : 0;
    }

private:
    std::vector<tagMessage> m_messages;
};

/// Runs the event loop until the condition holds. The condition must be brought about by an event.
inline void XfnRunUntil(const std::function<bool()>& condition)
{
    while (!condition())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
}

/// Delivers everything that waits now.
inline void XfnRunPending()
{
    for (int i = 0; i < 50; ++i)
        QCoreApplication::processEvents();
}
