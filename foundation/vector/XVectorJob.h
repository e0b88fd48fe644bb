#pragma once

#include "foundation/base/XString.h"
#include "foundation/vector/XVectorIO.h"

#include <cstdint>
#include <map>
#include <vector>

/// For the sources of this folder only: what the reading or writing of a vector file reports to and
/// is stopped by.
class XVectorJob
{
public:
    explicit XVectorJob(const XString& path, XThread* thread = nullptr, void* context = nullptr,
                        XVectorImportCallback callback = nullptr,
                        std::vector<XString>* notes = nullptr)
        : m_path(path), m_thread(thread), m_context(context), m_callback(callback), m_notes(notes)
    {}

    const XString& GetPath() const { return m_path; }
    bool IsStopped() const;
    /// Hands an object that lies in its layer to the callback. @return false to stop
    bool Accept(XvcObj& object);
    /// Posts a percentage when it is another than the last one.
    void SetProgress(double done, double whole);
    void Note(const XString& sentence); ///< the path is put before it
    /// Things of one kind that were left out, told as one note by TellCounts: "3 objects ...".
    void Count(const XString& what) { ++m_counts[what]; }
    void TellCounts();
    /// Some base of what is read has a table of symbols, so that symbols must be linked to it.
    void SetHasSymbols() { m_hasSymbols = true; }
    bool HasSymbols() const { return m_hasSymbols; }
    /// "\"path\": sentence"
    XString Describe(const XString& sentence) const;

private:
    const XString m_path;
    XThread* m_thread;
    void* m_context;
    XVectorImportCallback m_callback;
    std::vector<XString>* m_notes;
    std::map<XString, std::uint64_t> m_counts;
    int m_percent = -1;
    bool m_isRefused = false;
    bool m_hasSymbols = false;
};

/// Moves what was imported from `loaded` to the tail of `base`, symbols and coordinate system too.
void XfnAdoptImport(XvcBase& loaded, XvcBase& base, XVectorJob& job);

/// Gives an object and the members of groups their record numbers.
void XfnSetRecords(XvcObj& object, std::uint32_t record);
