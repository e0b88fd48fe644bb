#pragma once

#include "foundation/base/XMemFile.h"
#include "foundation/vector/XVectorFileLayout.h"
#include "foundation/vector/XVectorFileNumbers.h"

#include <string>
#include <vector>

class XArchive;
class XObList;
class XVectorJob;
class XvcBase;
class XvcLayer;
class XvcObj;
class XAttributeTable;

/// For the sources of this folder only: writes a tree as a native vector file.
///
/// Objects are gathered in blocks of about a mebibyte, so memory stays small however large the tree
/// is. Throws XFileException as the file does.
class XVectorFileWriter
{
public:
    /// @param file  open for writing, at its begin
    XVectorFileWriter(XFile& file, XVectorJob& job) : m_file(file), m_job(job) {}

    /// @return false after a stop, or with a sentence in `error`
    bool Write(const XvcBase& base, XString& error);

private:
    bool WriteBase(const XvcBase& base, int depth);
    bool WriteLayer(const XvcLayer& layer, int depth);
    bool WriteChildren(const XObList& list, const XAttributeTable* table, int depth);
    bool WriteSymbols();
    bool AddRecord(const XvcObj& object, std::uint32_t number);
    void FlushRecords(std::uint32_t type);
    template <class Fill>
    void WriteFilled(std::uint32_t type, const Fill& fill);
    void WriteBlock(std::uint32_t type, const XMemFile& payload);
    bool Fail(const char* sentence);

    XFile& m_file;
    XVectorJob& m_job;
    XVectorFileNumbers m_numbers;
    XString m_error;
    double m_done = 0.0; // objects
    double m_whole = 0.0;

    // the objects that wait for their block
    XMemFile m_records;
    std::uint32_t m_recordCount = 0;
    std::vector<std::string> m_classes;
};
