#include "host/XAutosave.h"

#include "foundation/base/XMemFile.h"
#include "foundation/base/XSafeFile.h"
#include "foundation/platform/XQtText.h"
#include "foundation/vector/XVectorIO.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSaveFile>
#include <QStandardPaths>
#include <QUuid>

#include <algorithm>
#include <memory>
#include <utility>

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

namespace {

constexpr const char* kLockName = "lock";
constexpr const char* kUnready = "new-"; // of folders that are not locked yet
constexpr qint64 kMostNoteBytes = 1 << 16;

/// @return the lock, -1 when another program holds it or there is none
int Lock(const QString& folder, int flags)
{
    const QByteArray path = QFile::encodeName(QDir(folder).filePath(kLockName));
    const int lock = ::open(path.constData(), O_RDWR | O_CLOEXEC | O_NOFOLLOW | flags, 0600);
    if (lock < 0) return -1;
    if (::flock(lock, LOCK_EX | LOCK_NB) == 0) return lock;
    ::close(lock);
    return -1;
}

QString GetCopyPath(const QString& folder, int number)
{
    return QDir(folder).filePath(QString("%1.xvc").arg(number));
}

QString GetNotePath(const QString& copy)
{
    return copy.chopped(4) + ".json";
}

void RemoveCopy(const QString& copy)
{
    QFile::remove(copy);
    QFile::remove(GetNotePath(copy));
}

bool WriteNote(const QString& copy, const QString& name, const QString& path)
{
    QSaveFile file(GetNotePath(copy));
    if (!file.open(QIODevice::WriteOnly)) return false;
    file.write(QJsonDocument(QJsonObject{{"name", name}, {"path", path}}).toJson());
    return file.commit();
}

XAutosave::tagLost ReadNote(const QString& copy)
{
    QFile file(GetNotePath(copy));
    QJsonObject note;
    if (file.open(QIODevice::ReadOnly))
        note = QJsonDocument::fromJson(file.read(kMostNoteBytes)).object();
    const QString name = note["name"].toString().simplified();
    return {copy, name.isEmpty() ? QString("Drawing") : name, note["path"].toString(),
            QFileInfo(copy).lastModified()};
}

} // namespace

XAutosave::XAutosave(const QString& folder) : m_folder(folder)
{
    m_writer.SetFailed([this](int number, const QString& message) { Failed(number, message); });
}

XAutosave::~XAutosave()
{
    m_failed = nullptr;
    m_writer.Wait(); // the folder is held until all is written
    Release(m_run);
    for (tagHeld& held : m_lost)
        Release(held);
}

QString XAutosave::GetUserFolder()
{
    return QStandardPaths::writableLocation(QStandardPaths::CacheLocation) + "/unsaved";
}

void XAutosave::Release(tagHeld& held)
{
    if (held.lock >= 0) ::close(std::exchange(held.lock, -1));
}

// The folder goes when it holds no copy any more, the lock last of all.
bool XAutosave::RemoveEmpty(tagHeld& held)
{
    QDir folder(held.folder);
    if (held.lock < 0 || !folder.entryList({"*.xvc"}, QDir::Files).isEmpty()) return false;
    folder.removeRecursively();
    Release(held);
    return true;
}

// Locked before it has the name that others look for.
bool XAutosave::MakeRun(QString& message)
{
    if (m_run.lock >= 0) return true;
    const QString name = QUuid::createUuid().toString(QUuid::WithoutBraces);
    const QDir folder(m_folder);
    const auto mine = QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner;
    message = QString("No copy of unsaved edits could be kept in %1.").arg(m_folder);
    if (!QDir().mkpath(m_folder) || !QDir(m_folder).mkdir(kUnready + name, mine)) return false;
    tagHeld run{folder.filePath(kUnready + name), -1};
    run.lock = Lock(run.folder, O_CREAT);
    if (run.lock < 0 || !QDir().rename(run.folder, folder.filePath(name))) {
        Release(run);
        QDir(run.folder).removeRecursively();
        return false;
    }
    run.folder = folder.filePath(name);
    m_run = run;
    message.clear();
    return true;
}

bool XAutosave::Keep(const std::vector<tagSource>& edited, QString& message)
{
    message.clear();
    std::erase_if(m_kept, [&](const auto& kept) {
        const bool isGone =
            std::none_of(edited.begin(), edited.end(),
                         [&](const tagSource& source) { return source.base == kept.first; });
        if (isGone)
            m_writer.Add(0, [copy = GetCopyPath(m_run.folder, kept.second.number)](QString&) {
                RemoveCopy(copy);
                return true;
            });
        return isGone;
    });
    for (const tagSource& source : edited) {
        if (!MakeRun(message)) return false;
        tagKept& kept = m_kept[source.base];
        if (kept.number == 0) kept.number = m_next++;
        if (!kept.isStale && kept.revision == source.revision && kept.name == source.name &&
            kept.path == source.path)
            continue;
        if (TakeDown(source, GetCopyPath(m_run.folder, kept.number), kept.number, message))
            kept = {kept.number, source.revision, source.name, source.path};
    }
    return message.isEmpty();
}

bool XAutosave::TakeDown(const tagSource& source, const QString& copy, int number, QString& message)
{
    const auto bytes = std::make_shared<XMemFile>();
    XString error;
    if (!XfnExportXVC(*bytes, XfnFromQString(source.name), source.base, error)) {
        message = QString("No copy of the unsaved edits of %1 could be kept. (%2)")
                      .arg(source.name, XfnToQString(error));
        return false;
    }
    m_writer.Add(number, [bytes, copy, name = source.name, path = source.path](QString& failure) {
        XString why;
        // first what it is, then what it holds: a copy is never without a name
        if (WriteNote(copy, name, path) &&
            XfnWriteFileSafely(QFile::encodeName(copy).constData(), bytes->GetBuffer(),
                               static_cast<std::size_t>(bytes->GetLength()), why))
            return true;
        failure = QString("No copy of the unsaved edits of %1 could be kept in %2.")
                      .arg(name, QFileInfo(copy).path());
        if (!why.IsEmpty()) failure += QString(" (%1)").arg(XfnToQString(why));
        return false;
    });
    return true;
}

void XAutosave::Failed(int number, const QString& message)
{
    for (auto& kept : m_kept)
        if (kept.second.number == number) kept.second.isStale = true;
    if (m_failed) m_failed(message);
}

void XAutosave::Wait()
{
    m_writer.Wait();
}

void XAutosave::Clear()
{
    QString message;
    Keep({}, message);
    Wait();
    if (m_run.lock >= 0) RemoveEmpty(m_run);
}

std::vector<XAutosave::tagLost> XAutosave::TakeLost()
{
    std::vector<tagLost> found;
    const QDir all(m_folder);
    for (const QString& name : all.entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        tagHeld held{all.filePath(name), -1};
        const bool isHeld = held.folder == m_run.folder ||
                            std::any_of(m_lost.begin(), m_lost.end(), [&](const tagHeld& other) {
                                return other.folder == held.folder;
                            });
        if (isHeld || name.startsWith(kUnready)) continue;
        held.lock = Lock(held.folder, 0);
        if (held.lock < 0 || RemoveEmpty(held)) continue;
        for (const QString& copy : QDir(held.folder).entryList({"*.xvc"}, QDir::Files))
            found.push_back(ReadNote(QDir(held.folder).filePath(copy)));
        m_lost.push_back(held);
    }
    std::sort(found.begin(), found.end(),
              [](const tagLost& a, const tagLost& b) { return a.saved > b.saved; });
    return found;
}

void XAutosave::Drop(const tagLost& lost)
{
    const QString folder = QFileInfo(lost.copy).path();
    const auto held = std::find_if(m_lost.begin(), m_lost.end(),
                                   [&](const tagHeld& other) { return other.folder == folder; });
    if (held == m_lost.end()) return; // another program's
    RemoveCopy(lost.copy);
    if (RemoveEmpty(*held)) m_lost.erase(held);
}
