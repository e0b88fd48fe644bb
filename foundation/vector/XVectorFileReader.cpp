#include "foundation/vector/XVectorFileReader.h"

#include "foundation/base/XArchive.h"
#include "foundation/base/XChecksum.h"
#include "foundation/base/XFileException.h"
#include "foundation/base/XMemFile.h"
#include "foundation/vector/XAttributeTable.h"
#include "foundation/vector/XVectorFileInfo.h"
#include "foundation/vector/XVectorJob.h"
#include "foundation/vector/XvcBase.h"
#include "foundation/vector/XvcFactory.h"
#include "foundation/vector/XvcLayer.h"
#include "foundation/vector/XvcSymbolTable.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <utility>
#include <vector>

namespace {

constexpr std::size_t kHeaderChecked = sizeof(tagXVectorFileHeader) - sizeof(std::uint32_t);
constexpr std::size_t kHeadChecked = sizeof(tagXVectorFileBlockHead) - sizeof(std::uint32_t);
constexpr int kBufferBytes = 16384;

struct Summary
{
    std::uint64_t objects = 0;
    std::uint32_t contents = 0;
    tagXVectorRange range;
};

Summary LoadSummary(XArchive& archive)
{
    Summary summary;
    archive >> summary.objects >> summary.contents;
    tagXVectorRange range;
    archive.ReadExactly(&range, sizeof range);
    summary.objects = std::min<std::uint64_t>(summary.objects, INT64_MAX);
    if (!range.IsEmpty()) {
        summary.range.Add(range.minX, range.minY, range.minZ);
        summary.range.Add(range.maxX, range.maxY, range.maxZ);
    }
    return summary;
}

} // namespace

/// A base, layer or list that is open, and what encloses it.
struct XVectorFileReader::Place
{
    XObList* list = nullptr;
    XvcBase* base = nullptr;   // the list itself when it is one
    XvcLayer* layer = nullptr; // the innermost layer around
    bool isLayer = false;      // the list itself is that layer
    bool isFresh = true;       // nothing came since it was opened
};

bool XVectorFileReader::IsVectorFile(const unsigned char* bytes, std::size_t count)
{
    return count >= sizeof kXVectorFileMagic &&
           std::memcmp(bytes, kXVectorFileMagic, sizeof kXVectorFileMagic) == 0;
}

bool XVectorFileReader::Fail(const char* sentence)
{
    m_error = sentence;
    return false;
}

bool XVectorFileReader::Read(XvcBase& base, XString& error)
{
    if (ReadHeader() && ReadTree(base)) return true;
    error = m_error;
    return false;
}

bool XVectorFileReader::ReadHeader()
{
    tagXVectorFileHeader header;
    const std::uint64_t length = static_cast<std::uint64_t>(m_file.GetLength());
    if (m_file.Read(&header, sizeof header) != sizeof header ||
        !IsVectorFile(header.magic, sizeof header.magic)) {
        return Fail("It is no XVC file.");
    }
    if (header.major != kXVectorFileMajor) {
        return Fail("It was written by a newer version and cannot be read.");
    }
    if (!XfnIsChecksum(header.checksum, &header, kHeaderChecked)) {
        return Fail("Its header is damaged.");
    }
    if (header.fileBytes > length || header.fileBytes < sizeof header) {
        return Fail("It ends early: a part of it is missing.");
    }
    m_at = sizeof header;
    m_end = header.fileBytes;
    return true;
}

bool XVectorFileReader::ReadHead(tagXVectorFileBlockHead& head)
{
    if (m_job.IsStopped()) return Fail("");
    m_job.SetProgress(static_cast<double>(m_at), static_cast<double>(m_end));
    if (m_end - m_at < sizeof head || m_file.Read(&head, sizeof head) != sizeof head) {
        return Fail("It ends early: a part of it is missing.");
    }
    m_at += sizeof head;
    if (!XfnIsChecksum(head.checksum, &head, kHeadChecked))
        return Fail("A block of it is damaged.");
    if (head.bytes > m_end - m_at) return Fail("It ends early: a part of it is missing.");
    return true;
}

bool XVectorFileReader::ReadPayload()
{
    const std::size_t bytes = static_cast<std::size_t>(m_head.bytes);
    if (bytes > m_room) {
        m_payload.reset();
        m_payload.reset(new unsigned char[bytes]);
        m_room = bytes;
    }
    if (m_file.Read(m_payload.get(), bytes) != bytes) {
        return Fail("It ends early: a part of it is missing.");
    }
    m_at += bytes;
    if (!XfnIsChecksum(m_head.payloadChecksum, m_payload.get(), bytes)) {
        return Fail("A block of it is damaged.");
    }
    return true;
}

void XVectorFileReader::SkipPayload()
{
    m_at += m_head.bytes;
    m_file.Seek(static_cast<std::int64_t>(m_at), XFile::kBegin);
}

template <class Use>
bool XVectorFileReader::Parse(const char* what, const Use& use)
{
    if (!ReadPayload()) return false;
    XMemFile file;
    file.Attach(m_payload.get(), static_cast<std::size_t>(m_head.bytes));
    XArchive archive(&file, XArchive::kLoad, kBufferBytes);
    archive.UseUtf8();
    try {
        use(archive);
        return true;
    } catch (XFileException& e) {
        e.Delete();
        return Fail(what);
    }
}

bool XVectorFileReader::ReadTree(XvcBase& root)
{
    if (!ReadHead(m_head)) return false;
    if (m_head.type != kXVectorFileBase) return Fail("It does not begin with a base.");
    if (!ReadBase(root, nullptr)) return false;
    std::vector<Place> open(1);
    open[0].list = open[0].base = &root;
    while (!open.empty()) {
        if (!ReadHead(m_head)) return false;
        Place& place = open.back();
        Place inner = {nullptr, nullptr, place.layer};
        if (m_head.type == kXVectorFileEnd) {
            SkipPayload();
            open.pop_back();
            continue;
        }
        if (m_head.type == kXVectorFileBase) {
            auto made = std::make_unique<XvcBase>();
            if (!ReadBase(*made, nullptr)) return false;
            inner.list = inner.base = made.get();
            inner.layer = nullptr;
            place.list->AddTail(made.release());
        } else if (m_head.type == kXVectorFileLayer) {
            auto made = std::make_unique<XvcLayer>();
            if (!ReadLayer(*made, nullptr)) return false;
            inner.list = inner.layer = made.get();
            inner.isLayer = true;
            if (place.base) {
                place.base->AddTail(made.release());
            } else {
                place.list->AddTail(made.release());
            }
        } else if (m_head.type == kXVectorFileList) {
            SkipPayload();
            auto made = std::make_unique<XObList>();
            inner.list = made.get();
            place.list->AddTail(made.release());
        } else {
            if (!ReadBlock(place)) return false;
            place.isFresh = false;
            continue;
        }
        place.isFresh = false;
        if (open.size() > kXVectorFileMaxDepth) {
            return Fail("Its layers lie too deep in each other.");
        }
        open.push_back(inner);
    }
    return true;
}

bool XVectorFileReader::ReadBlock(Place& place)
{
    switch (m_head.type) {
    case kXVectorFileObjects:
        return ReadObjects(place);
    case kXVectorFileAttributes:
        if (!place.isLayer || !place.isFresh) return Fail("Its attributes lie in no layer.");
        return ReadAttributes(*place.layer);
    case kXVectorFileSymbols:
        if (!place.base || !place.isFresh) return Fail("Its symbols lie in no base.");
        return ReadSymbols(*place.base);
    default:
        if (m_head.flags & tagXVectorFileBlockHead::kRequired) {
            return Fail("It holds something that only a newer version can read.");
        }
        SkipPayload();
        return true;
    }
}

bool XVectorFileReader::ReadBase(XvcBase& base, tagXVectorFileInfo* info)
{
    return Parse("One of its bases cannot be read.", [&](XArchive& archive) {
        XString name, link, wkt;
        int hideFlag = 0, coordType = 0;
        archive >> name >> link >> hideFlag >> coordType >> wkt;
        XSpatialReference reference;
        if (!wkt.IsEmpty() && !reference.importFromWkt(wkt)) {
            m_job.Note("Its coordinate system is not known and was left out.");
        }
        const bool isKnown = !reference.IsEmpty();
        reference.SetCoordType(isKnown ? coordType : coordType == 3 ? 2 : coordType);
        base.SetName(name);
        base.SetLink(link);
        base.SetHideFlag(hideFlag);
        base.SetSR(&reference);
        if (!info) return;
        const Summary summary = LoadSummary(archive);
        info->objects = static_cast<std::int64_t>(summary.objects);
        info->range = summary.range;
        info->reference = reference;
        if (!isKnown && coordType == 0) info->reference.SetCoordType(2);
    });
}

bool XVectorFileReader::ReadLayer(XvcLayer& layer, tagXVectorLayerInfo* info)
{
    return Parse("One of its layers cannot be read.", [&](XArchive& archive) {
        XString name, link;
        int hideFlag = 0, lockFlag = 0, hitTestable = 0, type = 0, fontSizeFlag = 0;
        archive >> name >> link >> hideFlag >> lockFlag >> hitTestable >> type >> fontSizeFlag;
        layer.SetName(name);
        layer.SetLink(link);
        layer.SetHideFlag(hideFlag);
        layer.SetLockFlag(lockFlag);
        layer.SetHitTestable(hitTestable);
        layer.SetVertBufferType(type);
        layer.SetVertBufferFontSizeFlag(fontSizeFlag);
        if (!info) return;
        const Summary summary = LoadSummary(archive);
        info->name = name;
        info->objects = static_cast<std::int64_t>(summary.objects);
        info->range = summary.range;
        info->hasPoints = (summary.contents & kXVectorFileHasPoints) != 0;
        info->hasLines = (summary.contents & kXVectorFileHasLines) != 0;
        info->hasAreas = (summary.contents & kXVectorFileHasAreas) != 0;
        info->hasOthers = (summary.contents & kXVectorFileHasOthers) != 0;
        info->hasHeights = (summary.contents & kXVectorFileHasHeights) != 0;
        info->columns.resize(archive.ReadCount(sizeof(std::uint32_t)));
        for (XString& column : info->columns)
            archive >> column;
    });
}

bool XVectorFileReader::ReadAttributes(XvcLayer& layer)
{
    if (layer.GetAttributes()) return Fail("One of its layers has two tables of attributes.");
    return Parse("The attributes of one of its layers cannot be read.", [&](XArchive& archive) {
        auto table = std::make_shared<XAttributeTable>();
        table->Serialize(archive);
        layer.SetAttributes(std::move(table));
    });
}

template <class Take>
bool XVectorFileReader::ReadRecords(const Take& take)
{
    bool isGoing = true;
    const bool isRead = Parse("A block of its objects cannot be read.", [&](XArchive& archive) {
        std::vector<XString> classes(archive.ReadCount(sizeof(std::uint32_t)));
        for (XString& name : classes)
            archive >> name;
        const std::uint32_t count = archive.ReadCount(sizeof(tagXVectorFileRecordHead));
        std::size_t at = static_cast<std::size_t>(m_head.bytes - archive.GetBytesLeft());
        XMemFile record; // one record after the other, so that none reads beyond its own end
        XArchive own(&record, XArchive::kLoad, kBufferBytes);
        own.UseUtf8();
        for (std::uint32_t i = 0; isGoing && i < count; ++i) {
            tagXVectorFileRecordHead head;
            const std::size_t left = static_cast<std::size_t>(m_head.bytes) - at;
            if (left < sizeof head) throw XFileException(XFileException::kInvalidFile);
            std::memcpy(&head, m_payload.get() + at, sizeof head);
            if (head.bytes > left - sizeof head || head.classIndex >= classes.size()) {
                throw XFileException(XFileException::kInvalidFile);
            }
            own.Flush(); // drops what the last one left
            record.Attach(m_payload.get() + at + sizeof head, head.bytes);
            at += sizeof head + head.bytes;
            const XString& className = classes[head.classIndex];
            auto object = XfnNewVectorObject(className);
            if (object) {
                try {
                    object->Serialize(own);
                } catch (XFileException& e) {
                    e.Delete();
                    object.reset();
                }
            }
            if (object) {
                isGoing = take(std::move(object), head.number);
            } else {
                m_job.Count(XfnFormat("of the class \"%s\" could not be read", className));
            }
        }
    });
    return isRead && (isGoing || Fail(""));
}

bool XVectorFileReader::ReadObjects(const Place& place)
{
    const XAttributeTable* table = place.layer ? place.layer->GetAttributes().get() : nullptr;
    return ReadRecords([&](std::unique_ptr<XvcObj> object, std::uint32_t number) {
        const std::uint32_t rows = table ? static_cast<std::uint32_t>(table->GetNumOfRows()) : 0;
        if (number > 0 && number <= rows) {
            XfnSetRecords(*object, table->GetRecord(static_cast<int>(number - 1)));
        }
        XvcObj& added = *object;
        added.SetParentLayer(place.layer);
        place.list->AddTail(object.release());
        return m_job.Accept(added);
    });
}

bool XVectorFileReader::ReadSymbols(XvcBase& base)
{
    if (base.GetSymbolTable()) return Fail("One of its bases has two tables of symbols.");
    base.SetSymbolTable(&base.GetOwnSymbolTable());
    m_job.SetHasSymbols();
    return ReadRecords([&](std::unique_ptr<XvcObj> object, std::uint32_t number) {
        base.GetOwnSymbolTable().Add(static_cast<std::int32_t>(number), std::move(object));
        return !m_job.IsStopped();
    });
}

bool XVectorFileReader::ReadInfo(tagXVectorFileInfo& info, XString& error)
{
    error.Empty();
    tagXVectorFileInfo made;
    made.format = "XVC";
    bool isRoot = true;
    int depth = 0;
    bool isRead = ReadHeader();
    while (isRead && (isRoot || depth > 0)) {
        isRead = ReadHead(m_head);
        if (!isRead) break;
        const std::uint32_t type = m_head.type;
        if (isRoot && type != kXVectorFileBase) {
            isRead = Fail("It does not begin with a base.");
        } else if (isRoot) {
            XvcBase base;
            isRead = ReadBase(base, &made);
        } else if (type == kXVectorFileLayer) {
            XvcLayer layer;
            tagXVectorLayerInfo layerInfo;
            isRead = ReadLayer(layer, &layerInfo);
            made.layers.push_back(std::move(layerInfo));
        } else {
            SkipPayload();
        }
        isRoot = false;
        if (type >= kXVectorFileBase && type <= kXVectorFileList) ++depth;
        if (type == kXVectorFileEnd) --depth;
    }
    error = m_error;
    if (isRead) info = std::move(made);
    return isRead;
}
