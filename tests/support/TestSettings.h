#pragma once

#include <QCoreApplication>
#include <QSettings>
#include <QTemporaryDir>

/// Sends every QSettings of the process, and what it keeps in the user's cache, to a folder that
/// vanishes with this object.
class XTestSettings
{
public:
    XTestSettings()
    {
        QCoreApplication::setOrganizationName("tql");
        QCoreApplication::setApplicationName("tql_test");
        qputenv("XDG_CACHE_HOME", m_dir.filePath("cache").toUtf8());
        QSettings::setDefaultFormat(QSettings::IniFormat);
        QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, m_dir.path());
        QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, m_dir.path());
    }

private:
    QTemporaryDir m_dir;
};
