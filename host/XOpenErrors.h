#pragma once

#include <QString>

#include <vector>

/// The failures of one opening, said in one box however many there are.
class XOpenErrors
{
public:
    static constexpr int kMaxListed = 12; ///< more files than this are counted, not listed

    /// @param reason  a sentence that does not repeat the path
    void Add(const QString& path, const QString& reason);
    bool IsEmpty() const { return m_failures.empty(); }
    int GetCount() const { return static_cast<int>(m_failures.size()); }

    /// One failure: file and reason. More: a headline, then a line a file. Empty without failures.
    QString GetText() const;

private:
    struct tagXFailure
    {
        QString path;
        QString reason;
    };
    std::vector<tagXFailure> m_failures;
};
