#include "foundation/base/XCodePage.h"
#include "foundation/base/XFile.h"
#include "foundation/base/XSentinels.h"
#include "foundation/platform/XThread.h"
#include "foundation/vector/XAttributeTable.h"
#include "foundation/vector/XVectorFileInfo.h"
#include "foundation/vector/XVectorIO.h"
#include "foundation/vector/XvcBase.h"
#include "foundation/vector/XvcFactory.h"
#include "foundation/vector/XvcGroup.h"
#include "foundation/vector/XvcLayer.h"
#include "foundation/vector/XvcMSymbol.h"
#include "foundation/vector/XvcSymbolDef.h"
#include "foundation/vector/XvcSymbolTable.h"
#include "tests/support/XFileBytes.h"
#include "tests/support/XFullDisk.h"
#include "tests/support/XVectorClassSamples.h"
#include "tests/support/XVectorSamples.h"

#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTemporaryDir>

#include <set>

namespace {

/// The outlines of the symbols in a tree, in their order.
void AddLooks(const XObject* element, std::vector<XString>& looks)
{
    if (const auto* symbol = dynamic_cast<const XvcSymbol*>(element)) {
        const XvcSymbolDef* definition = symbol->GetDefinition();
        looks.push_back(definition ? definition->GetOutline().GetText() : "none");
    } else if (const auto* symbols = dynamic_cast<const XvcMSymbol*>(element)) {
        for (int i = 0; i < symbols->GetNumOfSymbols(); ++i)
            AddLooks(symbols->GetSymbolObjAt(i), looks);
    } else if (const auto* group = dynamic_cast<const XvcGroup*>(element)) {
        for (int i = 0; i < group->GetNumOfObjs(); ++i)
            AddLooks(group->GetObjAt(i), looks);
    } else if (const auto* list = dynamic_cast<const XObList*>(element)) {
        for (__POSITION* pos = list->GetHeadPosition(); pos;)
            AddLooks(list->GetNext(pos), looks);
    }
}

std::vector<XString> GetLooks(const XObject& element)
{
    std::vector<XString> looks;
    AddLooks(&element, looks);
    return looks;
}

void Define(XvcSymbolTable& table, int id, const char* outline)
{
    auto definition = std::make_unique<XvcSymbolDef>();
    XString error;
    ASSERT_TRUE(definition->SetOutline(outline, error));
    table.Add(id, std::move(definition));
}

std::unique_ptr<XvcSymbol> MakeSymbol(int id, const XvcSymbolTable* table)
{
    auto symbol = std::make_unique<XvcSymbol>(id);
    symbol->SetSymbolTable(table);
    return symbol;
}

class VectorFile : public testing::Test
{
protected:
    QString Path(const char* name) const { return m_folder.filePath(name); }
    XString Name(const char* name) const { return Path(name).toUtf8().constData(); }

    /// A tree with every class, symbols, attributes and lists.
    void FillTree(XvcBase& base)
    {
        XSpatialReference utm;
        utm.importFromEPSG(32652);
        base.SetSR(&utm);
        base.SetName("tree");
        base.SetLink("somewhere");
        auto* layer = new XvcLayer;
        base.AddTail(layer);
        layer->SetName("all classes");
        layer->SetLockFlag(1);
        layer->SetHitTestable(0);
        layer->SetVertBufferType(2);
        auto table = std::make_shared<XAttributeTable>();
        const int whole = table->AddColumn("whole", XAttributeTable::kInteger);
        const int real = table->AddColumn("real", XAttributeTable::kReal);
        const int text = table->AddColumn("text", XAttributeTable::kText);
        for (auto& sample : MakeVectorSamples()) {
            const int row = table->AddRow();
            table->SetInteger(whole, row * 1000);
            if (row % 2) table->SetReal(real, row + 0.1);
            if (row % 3) table->SetText(text, row % 2 ? "odd" : "even", row % 2 ? 3 : 4);
            layer->AddTail(sample.object.release());
        }
        table->Seal();
        int row = 0;
        for (__POSITION* pos = layer->GetHeadPosition(); pos;)
            static_cast<XvcObj*>(layer->GetNext(pos))->SetRecord(table->GetRecord(row++));
        layer->SetAttributes(table);
        auto* list = new XObList;
        static_cast<XObList&>(base).AddTail(list);
        list->AddTail(new XvcPoint(1, kXNotSet));
        auto* inner = new XvcBase;
        inner->SetName("inner");
        inner->SetHideFlag(1);
        list->AddTail(inner);
        inner->AddTail(new XvcLayer);
        base.SetSymbolTable(&base.GetOwnSymbolTable());
        Define(base.GetOwnSymbolTable(), 900, "sL -45 0 45 0");
        base.CalcRange();
    }

    QTemporaryDir m_folder;
    XString m_error;
};

TEST_F(VectorFile, EverythingComesBack)
{
    XvcBase base;
    FillTree(base);
    ASSERT_TRUE(XfnExportXVC(Name("a.xvc"), &base, m_error)) << m_error.GetString();
    int calls = 0;
    XvcBase read;
    std::vector<XString> notes;
    const auto count = [](void* context, XvcObj* object) {
        ++*static_cast<int*>(context);
        return object ? 1 : 0;
    };
    ASSERT_TRUE(XfnImportXVC(Name("a.xvc"), &read, m_error, nullptr, &calls, count, &notes))
        << m_error.GetString();
    EXPECT_TRUE(notes.empty()) << notes[0].GetString();
    ASSERT_TRUE(XfnExportXVC(Name("b.xvc"), &read, m_error));
    EXPECT_EQ(XfnReadBytes(Path("a.xvc")), XfnReadBytes(Path("b.xvc")));

    std::set<std::string> classes;
    const auto samples = MakeVectorSamples();
    EXPECT_EQ(calls, static_cast<int>(samples.size()) + 1);
    EXPECT_TRUE(read.GetSR()->IsSame(base.GetSR()));
    EXPECT_EQ(read.GetSR()->GetCoordType(), 3);
    ASSERT_TRUE(read.GetSymbolTable() && read.GetSymbolTable()->Find(900));
    auto& layer = static_cast<XvcLayer&>(*read.GetHead());
    ASSERT_EQ(layer.GetCount(), static_cast<int>(samples.size()));
    EXPECT_EQ(layer.GetParentBase(), &read);
    __POSITION* pos = layer.GetHeadPosition();
    for (int i = 0; pos; ++i) {
        auto* object = static_cast<XvcObj*>(layer.GetNext(pos));
        XvcObj& sample = *samples[static_cast<std::size_t>(i)].object;
        const char* name = object->GetRuntimeClass()->m_lpszClassName;
        SCOPED_TRACE(name);
        classes.insert(name);
        EXPECT_TRUE(XfnIsExactly(&sample, name));
        EXPECT_EQ(object->GetParentLayer(), &layer);
        EXPECT_EQ(StoreObject(*object), StoreObject(sample));
        // a sample that is as a new object would prove nothing
        auto fresh = XfnNewVectorObject(name);
        *static_cast<XvcObj*>(fresh.get()) = sample;
        EXPECT_NE(StoreObject(*fresh), StoreObject(sample));
        int row = -1;
        const XAttributeTable* table = XfnGetAttributes(object, row);
        ASSERT_TRUE(table);
        EXPECT_EQ(row, i);
        EXPECT_EQ(table->GetInteger(row, 0), i * 1000);
        EXPECT_EQ(table->GetReal(row, 1), i % 2 ? i + 0.1 : kXNotSet);
        EXPECT_EQ(table->GetText(row, 2), i % 3 ? i % 2 ? "odd" : "even" : "");
    }
    for (const char* name : XfnGetVectorClassNames())
        EXPECT_TRUE(classes.count(name)) << name << " has no sample";

    tagXVectorFileInfo info;
    ASSERT_TRUE(XfnGetXVCInfo(Name("a.xvc"), info, m_error)) << m_error.GetString();
    ASSERT_EQ(info.layers.size(), 2u);
    EXPECT_EQ(info.objects, calls);
    EXPECT_EQ(info.layers[0].name, "all classes");
    EXPECT_EQ(info.layers[0].columns.size(), 3u);
    EXPECT_TRUE(info.layers[0].hasPoints && info.layers[0].hasOthers && info.layers[0].hasHeights);
    EXPECT_EQ(info.range.maxX, base.GetRange().maxX);
    EXPECT_TRUE(info.reference.IsSame(base.GetSR()));
}

TEST_F(VectorFile, ASecondReaderAgrees)
{
    const QString python = QString::fromUtf8(TQL_PYTHON3);
    if (python.isEmpty()) GTEST_SKIP() << "there is no python3";
    XvcBase base;
    FillTree(base);
    ASSERT_TRUE(XfnExportXVC(Name("a.xvc"), &base, m_error)) << m_error.GetString();
    QProcess script;
    script.start(python,
                 {QString::fromUtf8(TQL_SOURCE_DIR "/tests/formats/xvc_reader.py"), Path("a.xvc")});
    ASSERT_TRUE(script.waitForFinished(60000));
    ASSERT_EQ(script.exitCode(), 0) << script.readAllStandardError().constData();
    const QJsonObject root =
        QJsonDocument::fromJson(script.readAllStandardOutput()).object()[u"root"].toObject();
    EXPECT_EQ(root[u"name"].toString(), u"tree");
    EXPECT_EQ(root[u"symbols"].toArray()[0].toObject()[u"number"].toInt(), 900);
    ASSERT_EQ(root[u"children"].toArray().size(), 2);
    const QJsonObject layer = root[u"children"].toArray()[0].toObject();
    EXPECT_EQ(layer[u"locked"].toInt(), 1);
    EXPECT_EQ(layer[u"hit"].toInt(), 0);
    EXPECT_EQ(layer[u"bufferType"].toInt(), 2);
    const QJsonArray columns = layer[u"attributes"].toObject()[u"columns"].toArray();
    ASSERT_EQ(columns.size(), 3);
    const auto cell = [&](int column, int row) -> QJsonValue {
        return columns[column].toObject()[u"values"].toArray()[row];
    };
    EXPECT_EQ(cell(0, 20).toInt(), 20000);
    EXPECT_EQ(cell(1, 7).toDouble(), 7.1);
    EXPECT_TRUE(cell(1, 8).isNull() && cell(2, 9).isNull());
    EXPECT_EQ(cell(2, 7).toString(), u"odd");

    const QJsonArray objects = layer[u"children"].toArray();
    const auto samples = MakeVectorSamples();
    ASSERT_EQ(objects.size(), static_cast<int>(samples.size()));
    for (int i = 0; i < objects.size(); ++i) {
        XvcObj& sample = *samples[static_cast<std::size_t>(i)].object;
        const QJsonObject object = objects[i].toObject();
        SCOPED_TRACE(sample.GetRuntimeClass()->m_lpszClassName);
        EXPECT_EQ(object[u"class"].toString().toStdString(),
                  sample.GetRuntimeClass()->m_lpszClassName);
        EXPECT_EQ(object[u"number"].toInt(), i + 1);
        const QJsonObject common = object[u"common"].toObject();
        EXPECT_EQ(common[u"name"].toString().toUtf8(), sample.GetName().GetString());
        EXPECT_EQ(common[u"foreColor"].toDouble(), sample.GetForeColor());
        EXPECT_EQ(common[u"lineColor"].toDouble(), sample.GetLineColor());
        EXPECT_EQ(common[u"backColor"].toDouble(), sample.GetBackColor());
        EXPECT_EQ(common[u"link"].toString(), u"link");
        const tagXLineStyle& line = sample.GetLineStyle();
        EXPECT_EQ(common[u"line"].toArray(),
                  (QJsonArray{line.pattern, line.style, static_cast<double>(line.words[0]),
                              static_cast<double>(line.words[1])}));
        EXPECT_EQ(common[u"hidden"].toInt(), sample.GetHideFlag());
        EXPECT_EQ(common[u"thick"].toDouble(), -1.5);
        EXPECT_EQ(common[u"fill"].toInt(), sample.GetFillStyle().style);
        EXPECT_EQ(common[u"pattern"].isNull(), sample.GetFillStyle().style != 1024);
        EXPECT_EQ(common[u"value"].toDouble(), 2.5);
        EXPECT_EQ(common[u"texts"].toArray()[3].toString(), u"third");
        const auto& range = sample.GetRange();
        if (!range.IsEmpty()) {
            EXPECT_EQ(common[u"range"].toArray(), (QJsonArray{range.minX, range.minY, range.minZ,
                                                              range.maxX, range.maxY, range.maxZ}));
        }
        const QJsonObject own = object[u"own"].toObject();
        const QJsonObject wanted =
            QJsonDocument::fromJson(samples[static_cast<std::size_t>(i)].own.c_str()).object();
        EXPECT_TRUE(!wanted.isEmpty() || own.contains(u"parts"));
        for (const QString& key : wanted.keys())
            EXPECT_EQ(own[key], wanted[key]) << key.toUtf8().constData();
    }
}

TEST_F(VectorFile, DamageIsToldAndChangesNothing)
{
    XvcBase base;
    FillTree(base);
    ASSERT_TRUE(XfnExportXVC(Name("a.xvc"), &base, m_error));
    const QByteArray whole = XfnReadBytes(Path("a.xvc"));
    XvcBase target;
    target.AddTail(new XvcLayer);
    const auto tryBytes = [&](const QByteArray& bytes) {
        XfnWriteBytes(Path("bad.xvc"), bytes);
        tagXVectorFileInfo info;
        XfnGetXVCInfo(Name("bad.xvc"), info, m_error);
        const int isRead = XfnImportXVC(Name("bad.xvc"), &target, m_error);
        EXPECT_TRUE(isRead || m_error.Find("bad.xvc") >= 0) << m_error.GetString();
        EXPECT_TRUE(isRead || target.GetCount() == 1);
        return isRead;
    };
    for (int length = 1; length < whole.size(); length += length < 200 ? 1 : 97)
        ASSERT_FALSE(tryBytes(whole.left(length))) << length;
    for (int at = 0; at < whole.size(); at += at < 200 ? 1 : 101) {
        QByteArray bytes = whole;
        bytes[at] = static_cast<char>(bytes[at] ^ 0x10);
        ASSERT_FALSE(tryBytes(bytes)) << at;
    }
    EXPECT_TRUE(tryBytes(whole + "more"));

    // a full disk leaves the old file
    {
        const XFullDisk disk(static_cast<rlim_t>(whole.size() / 2));
        EXPECT_FALSE(XfnExportXVC(Name("a.xvc"), &base, m_error));
    }
    EXPECT_GE(m_error.Find("a.xvc"), 0) << m_error.GetString();
    EXPECT_FALSE(XfnExportXVC(Name("no/such/folder.xvc"), &base, m_error));
    EXPECT_EQ(XfnReadBytes(Path("a.xvc")), whole);
    XThread stopped;
    stopped.Terminate();
    EXPECT_FALSE(XfnExportXVC(Name("a.xvc"), &base, m_error, &stopped));
    EXPECT_TRUE(m_error.IsEmpty());
    EXPECT_FALSE(XfnImportXVC(Name("a.xvc"), &target, m_error, &stopped));
    EXPECT_EQ(XfnReadBytes(Path("a.xvc")), whole);
    EXPECT_EQ(QDir(m_folder.path()).entryList(QDir::Files | QDir::Hidden).size(), 2);
}

/// A class that only a newer version has.
class XvcNewer : public XvcPoint
{
    X_DECLARE_CLASS(XvcNewer)
};
X_IMPLEMENT_CLASS(XvcNewer, XvcPoint)

TEST_F(VectorFile, UnknownClassesArePassedOver)
{
    XvcBase base;
    auto* layer = new XvcLayer;
    base.AddTail(layer);
    layer->AddTail(new XvcPoint(1, 2));
    layer->AddTail(new XvcNewer);
    ASSERT_TRUE(layer->GetTail()->IsKindOf(XvcNewer::GetRuntimeClassStatic()));
    layer->AddTail(new XvcPoint(3, 4));
    ASSERT_TRUE(XfnExportXVC(Name("a.xvc"), &base, m_error));
    XvcBase read;
    std::vector<XString> notes;
    ASSERT_TRUE(XfnImportVector(Name("a.xvc"), &read, m_error, nullptr, nullptr, nullptr, &notes));
    EXPECT_EQ(static_cast<XvcLayer*>(read.GetHead())->GetCount(), 2);
    ASSERT_EQ(notes.size(), 1u);
    EXPECT_GE(notes[0].Find("XvcNewer"), 0);
    EXPECT_EQ(read.GetRange().maxX, 3.0);
}

TEST_F(VectorFile, SymbolsKeepTheirOutlines)
{
    // 7 is one of the library's own, 15 is none
    XvcSymbolTable other;
    Define(other, 7, "sL -45 0 45 0");
    Define(other, 15, "sL 0 -45 0 45");
    XvcBase base;
    base.SetSymbolTable(&base.GetOwnSymbolTable());
    Define(*base.GetSymbolTable(), 15, "sL -45 -45 45 45");
    auto* layer = new XvcLayer;
    auto group = std::make_unique<XvcGroup>();
    auto several = std::make_unique<XvcMSymbol>();
    auto* inner = new XvcBase;
    static_cast<XObList&>(base).AddTail(inner);
    base.AddTail(layer);
    const XvcSymbolTable* const tables[] = {&other, nullptr, base.GetSymbolTable()};
    for (const XvcSymbolTable* table : tables) {
        for (const int id : {7, 15, 1001}) {
            layer->AddTail(MakeSymbol(id, table).release());
            group->AddObj(MakeSymbol(id, table));
            several->AddSymbol(MakeSymbol(id, table));
        }
    }
    group->AddObj(std::move(several));
    layer->AddTail(group.release());
    inner->SetSymbolTable(&inner->GetOwnSymbolTable());
    Define(*inner->GetSymbolTable(), 15, "sL -45 45 45 -45");
    auto* innerLayer = new XvcLayer;
    inner->AddTail(innerLayer);
    Define(*base.GetSymbolTable(), 16, "sL -20 45 45 -45");
    innerLayer->AddTail(MakeSymbol(15, inner->GetSymbolTable()).release());
    innerLayer->AddTail(MakeSymbol(15, base.GetSymbolTable()).release());
    innerLayer->AddTail(MakeSymbol(16, base.GetSymbolTable()).release()); // that of the outer base
    base.SetName("base");
    base.CalcRange();
    const std::vector<XString> looks = GetLooks(base);
    ASSERT_TRUE(XfnExportXVC(Name("a.xvc"), &base, m_error)) << m_error.GetString();
    EXPECT_EQ(GetLooks(base), looks);

    auto read = std::make_unique<XvcBase>();
    ASSERT_TRUE(XfnImportXVC(Name("a.xvc"), read.get(), m_error)) << m_error.GetString();
    EXPECT_EQ(GetLooks(*read), looks);
    ASSERT_TRUE(XfnExportXVC(Name("b.xvc"), read.get(), m_error));
    EXPECT_EQ(XfnReadBytes(Path("a.xvc")), XfnReadBytes(Path("b.xvc")));
    // a base that has other meanings, twice
    XvcBase target;
    target.SetSymbolTable(&target.GetOwnSymbolTable());
    Define(*target.GetSymbolTable(), 15, "sC 0 0 20");
    target.AddTail(new XvcLayer);
    auto& first = static_cast<XvcLayer&>(*target.GetHead());
    for (const int id : {7, 15})
        first.AddTail(MakeSymbol(id, target.GetSymbolTable()).release());
    std::vector<XString> expected = GetLooks(target);
    for (int i = 0, definitions = 0; i < 2; ++i) {
        expected.insert(expected.end(), looks.begin(), looks.end());
        ASSERT_TRUE(XfnImportXVC(Name("a.xvc"), &target, m_error)) << m_error.GetString();
        EXPECT_EQ(GetLooks(target), expected);
        EXPECT_TRUE(i == 0 || target.GetSymbolTable()->GetCount() == definitions);
        definitions = target.GetSymbolTable()->GetCount();
    }

    // copies outlive the base that they were read with
    XvcLayer copies;
    auto& source = static_cast<XvcLayer&>(*read->GetTail());
    for (__POSITION* pos = source.GetHeadPosition(); pos;) {
        const auto* object = static_cast<const XvcObj*>(source.GetNext(pos));
        copies.AddTail(XfnCloneVectorObject(object).release());
    }
    const std::vector<XString> copied = GetLooks(copies);
    read.reset();
    EXPECT_EQ(GetLooks(copies), copied);
    RecordObject(copies);
    EXPECT_EQ(static_cast<const XvcSymbol*>(copies.GetHead())->GetSymbolTable(), nullptr);
}

TEST_F(VectorFile, AttributesAreTheSameInEveryCodePage)
{
    const char utf8[] = "\xEC\x84\x9C\xEC\x9A\xB8 caf\xC3\xA9";
    const auto write = [&](const char* name) {
        XvcBase base;
        auto* layer = new XvcLayer;
        base.AddTail(layer);
        auto table = std::make_shared<XAttributeTable>();
        table->AddColumn("text", XAttributeTable::kText);
        table->AddRow();
        table->SetText(0, utf8, sizeof utf8 - 1);
        table->Seal();
        layer->SetAttributes(table);
        EXPECT_TRUE(XfnExportXVC(Name(name), &base, m_error));
        return table->GetText(0, 0);
    };
    EXPECT_EQ(write("utf8.xvc"), utf8);
    XfnSetCodePage(kXCodePageKorean);
    const XString korean = write("korean.xvc");
    XvcBase read;
    EXPECT_TRUE(XfnImportXVC(Name("utf8.xvc"), &read, m_error));
    const auto& table = *static_cast<XvcLayer&>(*read.GetHead()).GetAttributes();
    EXPECT_EQ(table.GetText(0, 0), korean);
    XfnSetCodePage(kXCodePageUtf8);
    EXPECT_EQ(korean, "\xBC\xAD\xBF\xEF caf?");
    EXPECT_EQ(XfnReadBytes(Path("utf8.xvc")), XfnReadBytes(Path("korean.xvc")));
    EXPECT_EQ(table.GetText(0, 0), utf8);
}

TEST(AttributeTable, KeepsItsPromises)
{
    XAttributeTable table;
    const int whole = table.AddColumn("Whole", XAttributeTable::kInteger);
    const int text = table.AddColumn("text", XAttributeTable::kText);
    const std::int64_t values[] = {0, -128, 127, INT64_MIN, INT64_MAX};
    for (const std::int64_t value : values) {
        table.AddRow();
        table.SetInteger(whole, value);
        table.SetReal(text, 0.1);
    }
    table.AddRow();
    table.SetText(whole, "12 apples", 9);
    table.AddRow();
    table.SetReal(whole, 1.5); // no whole number
    EXPECT_EQ(table.GetRecord(0), 0u);
    table.Seal();
    for (int row = 0; row < 5; ++row) {
        EXPECT_EQ(table.GetInteger(row, whole), values[row]);
        EXPECT_EQ(table.GetRowOf(table.GetRecord(row)), row);
    }
    EXPECT_EQ(table.GetText(5, whole), "12");
    EXPECT_FALSE(table.IsSet(6, whole) || table.IsSet(7, whole) || table.IsSet(0, 2));
    EXPECT_EQ(table.GetText(4, text), "0.1");
    EXPECT_EQ(table.FindColumn("WHOLE"), whole);
    XAttributeTable other;
    other.AddColumn("x", XAttributeTable::kReal);
    other.AddRow();
    other.Seal();
    EXPECT_EQ(other.GetRowOf(table.GetRecord(3)), -1);

    // many rows of few texts
    XAttributeTable large;
    large.AddColumn("kind", XAttributeTable::kText);
    large.AddColumn("number", XAttributeTable::kInteger);
    for (int row = 0; row < 100000; ++row) {
        large.AddRow();
        large.SetText(0, row % 2 ? "forest and meadow" : "water", row % 2 ? 17 : 5);
        large.SetInteger(1, row);
    }
    large.Seal();
    EXPECT_LT(large.GetMemoryUse(), 100000u * 6);
    EXPECT_EQ(large.GetText(99999, 0), "forest and meadow");
}

} // namespace
