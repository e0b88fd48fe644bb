#pragma once

#include <QSet>
#include <QString>
#include <QStringList>

/// The files opened last, newest first.
///
/// The list never looks at the disk: a path on a sleeping server must not hold up a menu. A file
/// counts as missing from the moment an attempt to open it said so until it is opened again.
class XRecentFiles
{
public:
    static constexpr int kDefaultLimit = 10;

    explicit XRecentFiles(int limit = kDefaultLimit); ///< below 1 reads as 1

    void SetPaths(const QStringList& paths); ///< as stored; repeats and empty entries are dropped
    const QStringList& GetPaths() const { return m_paths; }

    void Add(const QString& path); ///< to the front, and no longer missing
    void MarkMissing(const QString& path);
    bool IsMissing(const QString& path) const { return m_missing.contains(path); }
    void Clear();

    /// The entry's text in a menu: a mnemonic number for the first nine, the file's name, its folder;
    /// ampersands of the name are doubled, so that none becomes a mnemonic.
    QString GetMenuText(int index) const;

private:
    int m_limit;
    QStringList m_paths;
    QSet<QString> m_missing;
};
