#include "host/XRecentFiles.h"

#include <QDir>
#include <QFileInfo>

#include <algorithm>

XRecentFiles::XRecentFiles(int limit) : m_limit(std::max(1, limit)) {}

void XRecentFiles::SetPaths(const QStringList& paths)
{
    m_paths.clear();
    for (const QString& path : paths)
        if (!path.isEmpty() && !m_paths.contains(path) && m_paths.size() < m_limit)
            m_paths.append(path);
}

void XRecentFiles::Add(const QString& path)
{
    if (path.isEmpty()) return;
    m_paths.removeAll(path);
    m_paths.prepend(path);
    while (m_paths.size() > m_limit)
        m_paths.removeLast();
    m_missing.remove(path);
}

void XRecentFiles::MarkMissing(const QString& path)
{
    if (m_paths.contains(path)) m_missing.insert(path);
}

void XRecentFiles::Clear()
{
    m_paths.clear();
    m_missing.clear();
}

QString XRecentFiles::GetMenuText(int index) const
{
    if (index < 0 || index >= m_paths.size()) return QString();
    const QFileInfo info(m_paths[index]);
    QString name = info.fileName() + " - " + QDir::toNativeSeparators(info.path());
    name.replace("&", "&&");
    return index < 9 ? QString("&%1 %2").arg(QString::number(index + 1), name) : name;
}
