#pragma once

#include "foundation/base/XString.h"

#include <QByteArray>
#include <QFile>
#include <QString>

/// All bytes of a file; none where there is no file.
inline QByteArray XfnReadBytes(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// Makes a file of these bytes. @return its path; empty when it could not be made
inline XString XfnWriteBytes(const QString& path, const QByteArray& bytes,
                             QIODevice::OpenMode mode = QIODevice::WriteOnly)
{
    QFile file(path);
    const bool isWritten = file.open(mode) && file.write(bytes) == bytes.size();
    return isWritten ? XString(path.toUtf8().constData()) : XString();
}
