#include "foundation/vector/XVectorFileWriter.h"

#include "foundation/base/XArchive.h"
#include "foundation/base/XChecksum.h"
#include "foundation/vector/XAttributeTable.h"
#include "foundation/vector/XVectorJob.h"
#include "foundation/vector/XvcBase.h"
#include "foundation/vector/XvcLayer.h"

#include <algorithm>
#include <map>

namespace {

constexpr std::int64_t kBlockBytes = std::int64_t(1) << 20;

/// What a base, layer or list says of its contents, so that they need not be read to know it.
struct Summary
{
    std::uint64_t objects = 0;
    std::uint32_t contents = 0;
    tagXVectorRange range;
};

std::uint32_t GetContents(const XvcObj& object)
{
    static const std::map<std::string, std::uint32_t> kinds = {
        {"XvcPoint", kXVectorFileHasPoints},     {"XvcMPoint", kXVectorFileHasPoints},
        {"XvcPolypoint", kXVectorFileHasPoints}, {"XvcLine", kXVectorFileHasLines},
        {"XvcMLine", kXVectorFileHasLines},      {"XvcPolyline", kXVectorFileHasLines},
        {"XvcMPolyline", kXVectorFileHasLines},  {"XvcBspline", kXVectorFileHasLines},
        {"XvcArc", kXVectorFileHasLines},        {"XvcPolygon", kXVectorFileHasAreas},
        {"XvcMPolygon", kXVectorFileHasAreas},   {"XvcRectangle", kXVectorFileHasAreas},
        {"XvcEllipse", kXVectorFileHasAreas},    {"XvcArcClosed", kXVectorFileHasAreas}};
    const auto found = kinds.find(object.GetRuntimeClass()->m_lpszClassName);
    const tagXVectorRange& range = object.GetRange();
    const bool hasHeights = !range.IsEmpty() && (range.minZ != 0.0 || range.maxZ != 0.0);
    return (found == kinds.end() ? kXVectorFileHasOthers : found->second) |
           (hasHeights ? kXVectorFileHasHeights : 0u);
}

Summary Summarize(const XObList& list)
{
    Summary summary;
    for (__POSITION* pos = list.GetHeadPosition(); pos;) {
        const XObject* element = list.GetNext(pos);
        if (const auto* object = dynamic_cast<const XvcObj*>(element)) {
            ++summary.objects;
            summary.contents |= GetContents(*object);
            summary.range.Add(object->GetRange());
        } else if (const auto* inner = dynamic_cast<const XObList*>(element)) {
            const Summary more = Summarize(*inner);
            summary.objects += more.objects;
            summary.contents |= more.contents;
            summary.range.Add(more.range);
        }
    }
    return summary;
}

void Store(XArchive& archive, const Summary& summary)
{
    archive << summary.objects << summary.contents;
    archive.Write(&summary.range, sizeof summary.range);
}

} // namespace

bool XVectorFileWriter::Fail(const char* sentence)
{
    m_error = sentence;
    return false;
}

bool XVectorFileWriter::Write(const XvcBase& base, XString& error)
{
    m_whole = static_cast<double>(Summarize(base).objects);
    tagXVectorFileHeader header;
    std::copy(std::begin(kXVectorFileMagic), std::end(kXVectorFileMagic), header.magic);
    m_file.Write(&header, sizeof header);
    if (!WriteBase(base, 0)) {
        error = m_error;
        return false;
    }
    header.fileBytes = static_cast<std::uint64_t>(m_file.GetPosition());
    header.checksum = XfnGetChecksum(&header, sizeof header - sizeof header.checksum);
    m_file.SeekToBegin();
    m_file.Write(&header, sizeof header);
    return true;
}

template <class Fill>
void XVectorFileWriter::WriteFilled(std::uint32_t type, const Fill& fill)
{
    XMemFile payload;
    XArchive archive(&payload, XArchive::kStore);
    archive.UseUtf8();
    fill(archive);
    archive.Close();
    WriteBlock(type, payload);
}

void XVectorFileWriter::WriteBlock(std::uint32_t type, const XMemFile& payload)
{
    const std::size_t count = static_cast<std::size_t>(payload.GetLength());
    tagXVectorFileBlockHead head;
    head.type = type;
    head.flags = tagXVectorFileBlockHead::kRequired;
    head.bytes = count;
    head.payloadChecksum = XfnGetChecksum(payload.GetBuffer(), count);
    head.checksum = XfnGetChecksum(&head, sizeof head - sizeof head.checksum);
    m_file.Write(&head, sizeof head);
    m_file.Write(payload.GetBuffer(), count);
}

bool XVectorFileWriter::WriteBase(const XvcBase& base, int depth)
{
    WriteFilled(kXVectorFileBase, [&](XArchive& archive) {
        XString wkt;
        base.GetSR()->exportToWkt(wkt);
        archive << base.GetName() << base.GetLink() << base.GetHideFlag()
                << base.GetSR()->GetCoordType() << wkt;
        Store(archive, Summarize(base));
    });
    m_numbers.OpenBase(base);
    if (!WriteSymbols() || !WriteChildren(base, nullptr, depth)) return false;
    m_numbers.CloseBase();
    WriteBlock(kXVectorFileEnd, XMemFile());
    return true;
}

bool XVectorFileWriter::WriteLayer(const XvcLayer& layer, int depth)
{
    const XAttributeTable* table = layer.GetAttributes().get();
    WriteFilled(kXVectorFileLayer, [&](XArchive& archive) {
        archive << layer.GetName() << layer.GetLink() << layer.GetHideFlag() << layer.IsLocked()
                << layer.IsHitTestable() << layer.GetVertBufferType()
                << layer.GetVertBufferFontSizeFlag();
        Store(archive, Summarize(layer));
        const int columns = table ? table->GetNumOfColumns() : 0;
        archive << columns;
        for (int i = 0; i < columns; ++i)
            archive << table->GetColumnName(i);
    });
    if (table && table->GetNumOfRows() > 0) {
        WriteFilled(kXVectorFileAttributes, [&](XArchive& archive) {
            const_cast<XAttributeTable*>(table)->Serialize(archive); // storing changes nothing
        });
    }
    if (!WriteChildren(layer, table, depth)) return false;
    WriteBlock(kXVectorFileEnd, XMemFile());
    return true;
}

bool XVectorFileWriter::WriteChildren(const XObList& list, const XAttributeTable* table, int depth)
{
    if (depth >= kXVectorFileMaxDepth) return Fail("Its layers lie too deep in each other.");
    for (__POSITION* pos = list.GetHeadPosition(); pos;) {
        const XObject* element = list.GetNext(pos);
        if (const auto* object = dynamic_cast<const XvcObj*>(element)) {
            const int row = table ? table->GetRowOf(object->GetRecord()) : -1;
            const std::unique_ptr<XvcObj> numbered = m_numbers.MakeNumbered(*object);
            if (!AddRecord(numbered ? *numbered : *object, static_cast<std::uint32_t>(row + 1))) {
                return false;
            }
            if (m_records.GetLength() >= kBlockBytes) FlushRecords(kXVectorFileObjects);
            m_job.SetProgress(++m_done, m_whole);
            continue;
        }
        FlushRecords(kXVectorFileObjects);
        if (XfnIsExactly(element, "XvcLayer")) {
            if (!WriteLayer(static_cast<const XvcLayer&>(*element), depth + 1)) return false;
        } else if (XfnIsExactly(element, "XvcBase")) {
            if (!WriteBase(static_cast<const XvcBase&>(*element), depth + 1)) return false;
        } else if (XfnIsExactly(element, "XObList")) {
            WriteBlock(kXVectorFileList, XMemFile());
            if (!WriteChildren(static_cast<const XObList&>(*element), table, depth + 1)) {
                return false;
            }
            WriteBlock(kXVectorFileEnd, XMemFile());
        }
    }
    FlushRecords(kXVectorFileObjects);
    return true;
}

bool XVectorFileWriter::WriteSymbols()
{
    for (const auto& [id, definition] : m_numbers.GetDefinitions())
        if (!AddRecord(*definition, static_cast<std::uint32_t>(id))) return false;
    FlushRecords(kXVectorFileSymbols);
    return true;
}

bool XVectorFileWriter::AddRecord(const XvcObj& object, std::uint32_t number)
{
    if (m_job.IsStopped()) return Fail("");
    const char* className = object.GetRuntimeClass()->m_lpszClassName;
    auto found = std::find(m_classes.begin(), m_classes.end(), className);
    if (found == m_classes.end()) found = m_classes.insert(found, className);
    tagXVectorFileRecordHead head;
    head.classIndex = static_cast<std::uint16_t>(found - m_classes.begin());
    head.number = number;
    const std::int64_t begin = m_records.SeekToEnd();
    m_records.Write(&head, sizeof head);
    XArchive archive(&m_records, XArchive::kStore, 1024);
    archive.UseUtf8();
    const_cast<XvcObj&>(object).Serialize(archive); // storing changes nothing
    archive.Close();
    const std::int64_t bytes = m_records.GetLength() - begin - std::int64_t(sizeof head);
    if (bytes > UINT32_MAX) return Fail("One of its objects is larger than 4 GiB.");
    head.bytes = static_cast<std::uint32_t>(bytes);
    m_records.Seek(begin, XFile::kBegin);
    m_records.Write(&head, sizeof head);
    ++m_recordCount;
    return true;
}

void XVectorFileWriter::FlushRecords(std::uint32_t type)
{
    if (m_recordCount == 0) return;
    WriteFilled(type, [&](XArchive& archive) {
        archive << static_cast<std::uint32_t>(m_classes.size());
        for (const std::string& name : m_classes)
            archive << name.c_str();
        archive << m_recordCount;
        archive.Write(m_records.GetBuffer(), static_cast<std::size_t>(m_records.GetLength()));
    });
    m_records.SetLength(0);
    m_recordCount = 0;
    m_classes.clear();
}
