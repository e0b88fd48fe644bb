#include "host/XAutosaveActions.h"

#include "host/XEditActions.h"
#include "host/XRecoveryBar.h"
#include "host/XVectorActions.h"

#include <QElapsedTimer>
#include <QGuiApplication>
#include <QLocale>

#include <algorithm>
#include <utility>

namespace {

constexpr int kPeriodMs = 60'000;
constexpr int kSettleMs = 3'000;
constexpr int kMostPeriodMs = 600'000;
constexpr int kShare = 100; // of the period at most that the user waits

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
    QObject::connect(&m_timer, &QTimer::timeout, &m_timer, [this] { KeepByItself(); });
    QObject::connect(qGuiApp, &QGuiApplication::applicationStateChanged, &m_timer,
                     [this](Qt::ApplicationState state) {
                         if (state != Qt::ApplicationActive) KeepByItself();
                     });
    m_timer.start();
    m_settled.setSingleShot(true);
    m_settled.setInterval(kSettleMs);
    QObject::connect(&m_settled, &QTimer::timeout, &m_settled, [this] { KeepByItself(); });
    m_autosave.SetFailed([this](const QString& message) { Failed(message); });
    m_bar.SetAnswered([this](XRecoveryBar::Answer answer) {
        if (answer != XRecoveryBar::Answer::NotNow)
            Answered(answer == XRecoveryBar::Answer::Restore);
    });
    // a copy is given up only when this run has one of its own
    m_opener.SetRestored([this](const XAutosave::tagLost& lost) {
        if (KeepAndWait()) m_autosave.Drop(lost);
    });
    m_vectors.AddObserver([this](LayerChange change) {
        if (change != LayerChange::Closing) FollowEdits();
    });
}

void XAutosaveActions::FollowEdits()
{
    if (m_isKeeping) return;
    if (m_keptCount > 0 && CountEdited() < m_keptCount)
        KeepNow(); // saved, closed or undone: no copy may outlive that
    else if (CountEdited() > 0 && SumRevisions() != m_keptRevisions)
        m_settled.start(); // anew: while edits follow one another nothing is kept
}

unsigned long XAutosaveActions::SumRevisions() const
{
    unsigned long sum = 0;
    for (int i = 0; i < m_vectors.GetCount(); ++i)
        sum += m_vectors.GetAt(i)->revision;
    return sum;
}

int XAutosaveActions::CountEdited() const
{
    int edited = 0;
    for (int i = 0; i < m_vectors.GetCount(); ++i)
        edited += m_vectors.IsEdited({i, -1});
    return edited;
}

void XAutosaveActions::KeepNow()
{
    m_keptCount = CountEdited();
    m_isKeeping = true; // the note tells the observer
    const int typed = m_edit.NoteTyping();
    m_isKeeping = false;
    m_keptRevisions = SumRevisions();
    m_settled.stop();
    std::vector<XAutosave::tagSource> sources;
    for (int i = 0; i < m_vectors.GetCount(); ++i) {
        const tagXVectorFile& file = *m_vectors.GetAt(i);
        if (m_vectors.IsEdited({i, -1}) || i == typed)
            sources.push_back({file.base.get(), file.revision, file.name, file.path});
    }
    QString message;
    QElapsedTimer timer;
    timer.start();
    if (!m_autosave.Keep(sources, message)) Failed(message);
    const qint64 pause = timer.elapsed() * kShare;
    m_timer.setInterval(static_cast<int>(std::clamp<qint64>(pause, kPeriodMs, kMostPeriodMs)));
    m_settled.setInterval(static_cast<int>(std::clamp<qint64>(pause, kSettleMs, kMostPeriodMs)));
}

// A slow disk is not given more than it can take.
void XAutosaveActions::KeepByItself()
{
    if (!m_autosave.IsBusy()) KeepNow();
}

bool XAutosaveActions::KeepAndWait()
{
    m_hasFailed = false;
    KeepNow();
    m_autosave.Wait();
    return !m_hasFailed;
}

void XAutosaveActions::Failed(const QString& message)
{
    m_hasFailed = true;
    if (m_notice) m_notice(message, QString());
}

void XAutosaveActions::OfferLost()
{
    m_lost = m_autosave.TakeLost();
    if (m_lost.empty()) return;
    QStringList lines;
    for (const XAutosave::tagLost& lost : m_lost)
        lines.append(QString("%1, %2").arg(lost.path.isEmpty() ? lost.name : lost.path,
                                           QLocale().toString(lost.saved, QLocale::ShortFormat)));
    const XAutosave::tagLost& first = m_lost.front();
    QString what =
        QString("%1 (%2)").arg(first.name, QLocale().toString(first.saved, QLocale::ShortFormat));
    if (lines.size() > 1)
        what += QString(" and %1 more %2")
                    .arg(lines.size() - 1)
                    .arg(lines.size() > 2 ? "files" : "file");
    m_bar.Offer(QString("The program ended before all was saved. Edits of %1 were kept.").arg(what),
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
    m_settled.stop();
    m_autosave.Clear();
}
