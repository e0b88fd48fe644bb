#include "foundation/platform/XFileFilter.h"

#include "foundation/platform/XQtText.h"

#include <algorithm>

namespace {

std::vector<XString> SplitAt(const XString& text, char separator)
{
    std::vector<XString> parts;
    int start = 0;
    for (int end; (end = text.Find(separator, start)) >= 0; start = end + 1) {
        parts.push_back(text.Mid(start, end - start).Trim());
    }
    parts.push_back(text.Mid(start).Trim());
    return parts;
}

std::vector<XString> ReadPatterns(const XString& text)
{
    std::vector<XString> patterns;
    for (const XString& pattern : SplitAt(text, ';')) {
        const auto isSame = [&](const XString& other) { return other.CompareNoCase(pattern) == 0; };
        if (!pattern.IsEmpty() && std::none_of(patterns.begin(), patterns.end(), isSame)) {
            patterns.push_back(pattern);
        }
    }
    return patterns;
}

bool IsEveryFile(const XString& pattern)
{
    return pattern == "*" || pattern == "*.*";
}

char Lower(char ch)
{
    return ch >= 'A' && ch <= 'Z' ? static_cast<char>(ch - 'A' + 'a') : ch;
}

// "*" and "?" only. Going back to the last star is enough, so the time is bounded by the product of
// the lengths.
bool Matches(const char* pattern, const char* name)
{
    const char* star = nullptr;
    const char* resume = nullptr;
    while (*name) {
        if (*pattern == '*') {
            star = ++pattern;
            resume = name;
        } else if (*pattern && (*pattern == '?' || Lower(*pattern) == Lower(*name))) {
            ++pattern;
            ++name;
        } else if (star) {
            pattern = star;
            name = ++resume;
        } else {
            return false;
        }
    }
    while (*pattern == '*')
        ++pattern;
    return *pattern == 0;
}

} // namespace

XFileFilter::XFileFilter(const XString& text)
{
    const std::vector<XString> parts = SplitAt(text, '|');
    for (std::size_t i = 0; i < parts.size(); i += 2) {
        const XString patterns = i + 1 < parts.size() ? parts[i + 1] : XString();
        if (parts[i].IsEmpty() && patterns.IsEmpty()) break;
        tagXFileFilterEntry entry{parts[i], ReadPatterns(patterns)};
        if (entry.patterns.empty()) entry.patterns.push_back("*.*");
        m_entries.push_back(std::move(entry));
    }
}

XString XFileFilter::GetExtension(int index) const
{
    if (index < 0 || index >= GetCount()) return XString();
    const XString& pattern = m_entries[index].patterns.front();
    if (!(pattern.Left(2) == "*.")) return XString();
    const XString extension = pattern.Mid(2);
    return extension.Find('*') < 0 && extension.Find('?') < 0 ? extension : XString();
}

int XFileFilter::FindEntry(const XString& name) const
{
    const XString fileName = name.Mid(name.ReverseFind('/') + 1);
    const auto takesName = [&](const XString& pattern) {
        return IsEveryFile(pattern) || Matches(pattern, fileName);
    };
    for (int i = 0; i < GetCount(); ++i) {
        const auto& patterns = m_entries[i].patterns;
        if (std::any_of(patterns.begin(), patterns.end(), takesName)) return i;
    }
    return -1;
}

int XFileFilter::FindLabel(const XString& label) const
{
    for (int i = 0; i < GetCount(); ++i)
        if (m_entries[i].label == label) return i;
    return -1;
}

QString XFileFilter::GetNameFilter(int index) const
{
    if (index < 0 || index >= GetCount()) return QString();
    const tagXFileFilterEntry& entry = m_entries[index];
    QStringList patterns;
    for (const XString& pattern : entry.patterns) {
        patterns += IsEveryFile(pattern) ? QStringLiteral("*") : XfnToQString(pattern);
    }
    // Qt reads the patterns from the last pair of brackets, so the label's own pair goes
    QString label = XfnToQString(entry.label);
    const qsizetype bracket = label.lastIndexOf(QLatin1Char('('));
    if (bracket > 0 && label.endsWith(QLatin1Char(')')) && label.indexOf(u'*', bracket) >= 0) {
        label = label.left(bracket).trimmed();
    }
    return label + QStringLiteral(" (") + patterns.join(QLatin1Char(' ')) + QLatin1Char(')');
}

QStringList XFileFilter::GetNameFilters() const
{
    QStringList filters;
    for (int i = 0; i < GetCount(); ++i)
        filters += GetNameFilter(i);
    return filters;
}

int XFileFilter::FindNameFilter(const QString& nameFilter) const
{
    return static_cast<int>(GetNameFilters().indexOf(nameFilter));
}
