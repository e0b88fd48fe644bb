#include "host/XAutosaveActions.h"

#include "host/XEditActions.h"
#include "host/XRecoveryBar.h"
#include "host/XVectorActions.h"

#include <QGuiApplication>
#include <QLocale>

#include <utility>

namespace {

constexpr int kPeriodMs = 60'000;

} // namespace

XAutosaveActions::XAutosaveActions(XVectorStack& vectors, XVectorActions& opener,
                                   XEditActions& edit, XRecoveryBar& bar)
    : m_vectors(vectors),
      m_opener(opener),
      m_edit(edit),
      m_bar(bar),
      m_autosave(XAutosave::GetUserFolder())
{
    m_timer.setInterval(kPeriodMs);
    QObject::connect(&m_timer, &QTimer::timeout, &m_timer, [this] { KeepNow(); });
    QObject::connect(qGuiApp, &QGuiApplication::applicationStateChanged, &m_timer,
                     [this](Qt::ApplicationState state) {
                         if (state != Qt::ApplicationActive) KeepNow();
                     });
    m_timer.start();
    m_bar.SetAnswered([this](XRecoveryBar::Answer answer) {
        if (answer != XRecoveryBar::Answer::NotNow)
            Answered(answer == XRecoveryBar::Answer::Restore);
    });
    // a copy is given up only when this run has one of its own
    m_opener.SetRestored([this](const XAutosave::tagLost& lost) {
        KeepNow();
        m_autosave.Drop(lost);
    });
    m_vectors.AddObserver([this](LayerChange change) {
        if (change == LayerChange::Closing || m_keptCount == 0) return;
        std::size_t edited = 0;
        for (int i = 0; i < m_vectors.GetCount(); ++i)
            edited += m_vectors.IsEdited({i, -1});
        if (edited < m_keptCount) KeepNow(); // saved, closed or undone: no copy may outlive that
    });
}

void XAutosaveActions::KeepNow()
{
    m_edit.NoteTyping();
    std::vector<XAutosave::tagSource> edited;
    for (int i = 0; i < m_vectors.GetCount(); ++i) {
        const tagXVectorFile& file = *m_vectors.GetAt(i);
        if (m_vectors.IsEdited({i, -1}))
            edited.push_back({file.base.get(), file.revision, file.name, file.path});
    }
    m_keptCount = edited.size();
    QString message;
    if (!m_autosave.Keep(edited, message) && m_notice) m_notice(message, QString());
}

void XAutosaveActions::OfferLost()
{
    m_lost = m_autosave.TakeLost();
    if (m_lost.empty()) return;
    QStringList lines;
    for (const XAutosave::tagLost& lost : m_lost)
        lines.append(QString("%1, %2%3")
                         .arg(lost.name, QLocale().toString(lost.saved, QLocale::ShortFormat),
                              lost.path.isEmpty() ? QString() : " (" + lost.path + ")"));
    const QString what =
        m_lost.size() == 1 ? m_lost.front().name : QString("%1 files").arg(m_lost.size());
    m_bar.Offer(QString("The program did not end well. Unsaved edits of %1 were kept: %2")
                        .arg(what, lines.front()) +
                    (lines.size() > 1 ? QString(" and %1 more").arg(lines.size() - 1) : QString()),
                lines.join('\n'));
}

void XAutosaveActions::Answered(bool isWanted)
{
    for (const XAutosave::tagLost& lost : std::exchange(m_lost, {})) {
        if (isWanted)
            m_opener.Restore(lost);
        else
            m_autosave.Drop(lost);
    }
    if (isWanted) m_opener.Start();
}

void XAutosaveActions::EndClean()
{
    m_timer.stop();
    m_autosave.Clear();
}
