#pragma once

#include "foundation/base/XString.h"

#include <QString>
#include <QStringList>

#include <vector>

/// One entry of a file filter.
struct tagXFileFilterEntry
{
    XString label;                 ///< as written, patterns in brackets included
    std::vector<XString> patterns; ///< "*.tif"; without blanks, empty ones and repetitions
};

/// A file filter in the form "Label|pattern;pattern|Label|pattern||".
///
/// Blanks around labels and patterns, empty patterns ("*.xdm;|") and a missing end are accepted;
/// a label without patterns takes every file. Matching ignores the case of letters A to Z.
/// Threads: a plain value.
class XAPI XFileFilter
{
public:
    XFileFilter() = default;
    explicit XFileFilter(const XString& text);

    int GetCount() const { return static_cast<int>(m_entries.size()); }
    const tagXFileFilterEntry& GetAt(int index) const { return m_entries[index]; }

    /// The extension of an entry's first pattern, as written and without the point; empty where the
    /// pattern is "*.*" or has no plain extension, and for an index out of range.
    XString GetExtension(int index) const;
    /// The first entry that takes the file name (or path), -1 for none.
    int FindEntry(const XString& name) const;

    int FindLabel(const XString& label) const; ///< the first entry of this label, -1 for none

    /// One entry as Qt's file dialogs want it: "Label (*.tif *.tiff)".
    QString GetNameFilter(int index) const;
    QStringList GetNameFilters() const;
    /// The entry that a name filter was made of, -1 for none.
    int FindNameFilter(const QString& nameFilter) const;

private:
    std::vector<tagXFileFilterEntry> m_entries;
};
