#pragma once

#include "foundation/base/XString.h"
#include "foundation/vector/XVectorFileLayout.h"

#include <cstddef>
#include <cstdint>
#include <memory>

class XArchive;
class XFile;
class XObList;
class XVectorJob;
class XvcBase;
class XvcLayer;
class XvcObj;
struct tagXVectorFileInfo;
struct tagXVectorLayerInfo;

/// For the sources of this folder only: reads a native vector file, block by block.
///
/// Every size is checked against the file before memory is taken, every block against its checksum
/// before it is used. Records that this version cannot read are counted in the job and passed over.
/// Throws XFileException as the file does, std::bad_alloc when memory ends.
class XVectorFileReader
{
public:
    XVectorFileReader(XFile& file, XVectorJob& job) : m_file(file), m_job(job) {}

    static bool IsVectorFile(const unsigned char* bytes, std::size_t count);

    /// Fills an empty base. @return false after a stop, or with a sentence in `error`
    bool Read(XvcBase& base, XString& error);
    /// Reads the heads of bases and layers alone.
    bool ReadInfo(tagXVectorFileInfo& info, XString& error);

private:
    struct Place;

    bool ReadHeader();
    bool ReadHead(tagXVectorFileBlockHead& head);
    bool ReadPayload();
    void SkipPayload();
    /// Hands the payload to `use` as an archive; false when it ends early or holds what cannot be.
    template <class Use>
    bool Parse(const char* what, const Use& use);

    bool ReadTree(XvcBase& root);
    bool ReadBlock(Place& place);
    bool ReadBase(XvcBase& base, tagXVectorFileInfo* info);
    bool ReadLayer(XvcLayer& layer, tagXVectorLayerInfo* info);
    bool ReadAttributes(XvcLayer& layer);
    bool ReadObjects(const Place& place);
    bool ReadSymbols(XvcBase& base);
    /// Hands each object that can be read, with its number, to `take` until that answers false.
    template <class Take>
    bool ReadRecords(const Take& take);
    bool Fail(const char* sentence);

    XFile& m_file;
    XVectorJob& m_job;
    XString m_error;
    std::uint64_t m_at = 0; // the next byte of the file
    std::uint64_t m_end = 0;
    tagXVectorFileBlockHead m_head;
    std::unique_ptr<unsigned char[]> m_payload;
    std::size_t m_room = 0;
};
