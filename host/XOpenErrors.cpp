#include "host/XOpenErrors.h"

#include <QFileInfo>

void XOpenErrors::Add(const QString& path, const QString& reason)
{
    m_failures.push_back({path, reason.trimmed()});
}

QString XOpenErrors::GetText() const
{
    if (m_failures.empty()) return QString();
    if (m_failures.size() == 1) {
        const tagXFailure& only = m_failures.front();
        return QString("\"%1\" was not opened.\n\n%2").arg(only.path, only.reason);
    }
    QString text = QString("%1 files were not opened:\n").arg(GetCount());
    const int listed = std::min(GetCount(), kMaxListed);
    for (int i = 0; i < listed; ++i) {
        const tagXFailure& failure = m_failures[static_cast<std::size_t>(i)];
        text += QString("\n%1: %2").arg(QFileInfo(failure.path).fileName(), failure.reason);
    }
    if (GetCount() > listed) text += QString("\nand %1 more.").arg(GetCount() - listed);
    return text;
}
