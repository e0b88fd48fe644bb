#pragma once

#include "host/XAutosaveWriter.h"

#include <QDateTime>
#include <QString>

#include <functional>
#include <map>
#include <vector>

class XvcBase;

/// Copies of vector files that hold unsaved edits, kept in the user's cache while the program runs
/// and found again by the next one when it did not end well.
///
/// Each run has a folder of its own below the common one, which it holds locked as long as it lives;
/// the system opens the lock with its last breath. A folder that nobody holds is one of a run that
/// crashed. Who takes it over holds it in turn, so two programs never take each other's files.
/// A file is taken down in memory at once and written by a thread of its own, so the disk keeps nobody
/// waiting. Every copy is written beside and put in place, so one that is there is whole.
/// User interface thread.
class XAutosave
{
public:
    /// A file with unsaved edits.
    struct tagSource
    {
        const XvcBase* base = nullptr;
        unsigned long revision = 0; ///< copied anew when it is another than last time
        QString name;
        QString path; ///< empty for one that was never saved
    };
    /// A copy that a crashed run left.
    struct tagLost
    {
        QString copy; ///< the file to read, native format
        QString name;
        QString path;
        QDateTime saved;
    };

    /// @param folder  of all runs; made when there is something to keep
    explicit XAutosave(const QString& folder);
    ~XAutosave(); ///< leaves copies as they are: only Clear takes them away
    XAutosave(const XAutosave&) = delete;
    XAutosave& operator=(const XAutosave&) = delete;

    static QString GetUserFolder(); ///< in the cache of the user

    /// Brings the copies up to date: those of files not among these go. Returns once the files are
    /// taken down; they may change then.
    /// @return false with a sentence when one could not be taken down; the others were
    bool Keep(const std::vector<tagSource>& edited, QString& message);
    void Wait();                                ///< until all that was taken down is written
    bool IsBusy() { return m_writer.IsBusy(); } ///< something is not written yet
    /// Receives a sentence for each copy that could not be written, by itself or from within Wait;
    /// it is tried again the next time.
    void SetFailed(std::function<void(const QString& message)> failed)
    {
        m_failed = std::move(failed);
    }
    void Clear(); ///< after a clean end

    /// What crashed runs left, the newest first, each once in the life of this object.
    std::vector<tagLost> TakeLost();
    void Drop(const tagLost& lost); ///< it is kept elsewhere now, or not wanted

private:
    struct tagKept
    {
        int number = 0;
        unsigned long revision = 0;
        QString name;
        QString path;
        bool isStale = false; // the last writing failed
    };
    struct tagHeld ///< a folder and its lock
    {
        QString folder;
        int lock = -1;
    };

    bool MakeRun(QString& message);
    bool TakeDown(const tagSource& source, const QString& copy, int number, QString& message);
    void Failed(int number, const QString& message);
    static void Release(tagHeld& held);
    static bool RemoveEmpty(tagHeld& held);

    QString m_folder;
    tagHeld m_run;
    std::vector<tagHeld> m_lost;
    std::map<const XvcBase*, tagKept> m_kept;
    int m_next = 1;
    std::function<void(const QString&)> m_failed;
    XAutosaveWriter m_writer;
};
