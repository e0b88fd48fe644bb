#include "edit/XCommandManager.h"

#include "edit/XLayerIndex.h"
#include "foundation/vector/XvcPolypoint.h"
#include "foundation/vector/XvcTextBox.h"
#include "tests/edit/XCommandScript.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <memory>
#include <numeric>
#include <stdexcept>

namespace {

/// Runs every operation on the manager and on the plain model and compares what both have.
class XCommandRun
{
public:
    explicit XCommandRun(unsigned seed) : m_random(seed)
    {
        tagBITMAPINFO info{};
        info.bmiHeader.biSize = sizeof(info.bmiHeader);
        info.bmiHeader.biWidth = info.bmiHeader.biHeight = 2;
        info.bmiHeader.biPlanes = 1;
        info.bmiHeader.biBitCount = 24;
        const unsigned char bits[16] = {};
        for (int i = 0; i < 2; ++i) {
            EXPECT_TRUE(m_pictures[i].SetDIB(&info, bits));
            EXPECT_TRUE(m_patches[i].SetData(bits, 2, 2, 1, 1));
        }
    }

    unsigned Random(unsigned count) { return m_random() % count; }

    void Insert()
    {
        const char kind = "ppbr"[Random(4)];
        const int picture = static_cast<int>(Random(2));
        const std::size_t layer = Random(2);
        XvcObj* object = nullptr;
        if (kind == 'p') {
            object = new XvcPoint;
        } else if (kind == 'b') {
            auto* bitmap = new XvcBitmap;
            bitmap->CloneWithoutBits(m_pictures[picture]);
            object = bitmap;
        } else {
            auto* raster = new XvcRaster;
            raster->CloneWithoutData(m_patches[picture]);
            object = raster;
        }
        object->SetName(std::to_string(++m_names).c_str());
        object->SetReserved(0,
                            XString(std::string{kind, static_cast<char>('0' + picture)}.c_str()));
        m_layers[layer].AddTail(object);
        object->CalcRange();
        m_manager.PushCommandSetInsert(&m_layers[layer], object);
        m_plain.Insert(kind, picture, m_names, layer);
    }

    void Select()
    {
        m_selection.RemoveAll();
        m_plain.selection.clear();
        std::vector<XPlainCommands::Place> places;
        for (std::size_t layer = 0; layer < 2; ++layer) {
            for (std::size_t i = 0; i < m_plain.layers[layer].size(); ++i) {
                if (Random(3) == 0) places.push_back({layer, i});
            }
        }
        if (Random(2) == 0) std::shuffle(places.begin(), places.end(), m_random);
        for (const auto& place : places) {
            m_plain.selection.push_back(m_plain.layers[place.layer][place.index].id);
            m_selection.AddTail(
                XCommandManager::GetAtList(&m_layers[place.layer], static_cast<int>(place.index)));
        }
    }

    void Move(bool commit)
    {
        const int dx = 1 + static_cast<int>(Random(9));
        m_manager.StartModify();
        for (__POSITION* at = m_selection.GetHeadPosition(); at;) {
            XvcObj* const object = static_cast<XvcObj*>(m_selection.GetNext(at));
            EXPECT_TRUE(m_manager.RegisterObjBeforeModify(object));
            if (commit) object->MoveObject(dx, 0.0, 0.0);
            object->CalcRange();
            EXPECT_TRUE(m_manager.RegisterObjAfterModify(object));
        }
        if (commit) {
            m_manager.EndModify();
        } else {
            m_manager.CancelModify();
        }
        m_plain.Move(commit, dx);
    }

    void Step()
    {
        switch (Random(15)) {
        case 0:
        case 1:
            Insert();
            break;
        case 2:
            Move(true);
            break;
        case 3:
            Move(false);
            break;
        case 4:
            m_manager.Delete(&m_selection), m_plain.Delete();
            break;
        case 5:
            m_manager.Copy(&m_selection), m_plain.Copy();
            break;
        case 6:
            m_manager.Cut(&m_selection), m_plain.Copy(), m_plain.Delete();
            break;
        case 7:
            if (Random(2) == 0) m_manager.ClearClipboard(), m_plain.ClearClipboard();
            if (m_plain.clipboard.size() > 9) break;
            m_manager.Paste(3.0, 2.0, &m_selection, &m_layers[1]);
            m_plain.Paste(3, 2, 1);
            break;
        case 8:
            m_manager.MoveToFront(&m_selection), m_plain.Order(0);
            break;
        case 9:
            m_manager.MoveToRear(&m_selection), m_plain.Order(1);
            break;
        case 10:
            m_manager.MoveToFrontmost(&m_selection), m_plain.Order(2);
            break;
        case 11:
            m_manager.MoveToRearmost(&m_selection), m_plain.Order(3);
            break;
        case 12:
            Undo();
            break;
        case 13:
            Redo();
            break;
        default:
            Select();
            break;
        }
    }
    void Undo() { m_manager.Undo(&m_selection), m_plain.Undo(); }
    void Redo() { m_manager.Redo(&m_selection), m_plain.Redo(); }

    static std::string Tell(const XvcObj& object)
    {
        double minX, minY, minZ, maxX, maxY, maxZ;
        object.GetRange(minX, minY, minZ, maxX, maxY, maxZ);
        return std::string(object.GetReserved(0)) + std::string(object.GetName()) + "@" +
               std::to_string(std::lround((minX + maxX) / 2)) + "," +
               std::to_string(std::lround((minY + maxY) / 2));
    }
    static std::string Tell(const XPlainCommands::Value& value)
    {
        return std::string{value.kind, static_cast<char>('0' + value.picture)} +
               std::to_string(value.name) + "@" + std::to_string(value.x) + "," +
               std::to_string(value.y);
    }
    static std::string Tell(const XObList& list)
    {
        std::string text;
        for (__POSITION* at = list.GetHeadPosition(); at;)
            text += Tell(static_cast<const XvcObj&>(*list.GetNext(at))) + " ";
        return text;
    }
    static std::string Tell(const std::vector<XPlainCommands::Value>& values)
    {
        std::string text;
        for (const auto& value : values)
            text += Tell(value) + " ";
        return text;
    }
    static std::string Tell(XPtrArray& stack)
    {
        std::string text;
        for (void* element : stack) {
            const auto* set = static_cast<const tagCommandSet*>(element);
            text += std::to_string(set->type) + "x" + std::to_string(set->count) + ":";
            for (const int index : set->indices)
                text += std::to_string(index) + " ";
        }
        return text;
    }
    static std::string Tell(const std::deque<XPlainCommands::Set>& stack)
    {
        std::string text;
        for (const auto& set : stack) {
            text += std::to_string(set.type) + "x" + std::to_string(set.count) + ":";
            for (const auto& entry : set.entries)
                text += std::to_string(entry.index) + " ";
        }
        return text;
    }
    static std::string Tell(const XPixelWarehouse& store)
    {
        std::vector<int> counts;
        for (int i = 0; i < store.GetSize(); ++i)
            counts.push_back(store.GetAt(i).count);
        std::sort(counts.begin(), counts.end());
        return testing::PrintToString(counts);
    }
    static std::string Tell(const std::map<int, int>& store)
    {
        std::vector<int> counts;
        for (const auto& record : store)
            counts.push_back(record.second);
        std::sort(counts.begin(), counts.end());
        return testing::PrintToString(counts);
    }

    std::string TellPlain() const
    {
        std::string selected;
        for (const int id : m_plain.selection) {
            const auto at = m_plain.Find(id);
            selected += Tell(m_plain.layers[at.layer][at.index]) + " ";
        }
        return Tell(m_plain.layers[0]) + "|" + Tell(m_plain.layers[1]) + "|" + selected + "|" +
               Tell(m_plain.clipboard) + "|" + Tell(m_plain.undo) + "|" + Tell(m_plain.redo) + "|" +
               Tell(m_plain.counts[0]) + Tell(m_plain.counts[1]);
    }
    std::string TellLive()
    {
        for (XvcLayer& layer : m_layers) {
            for (__POSITION* at = layer.GetHeadPosition(); at;)
                EXPECT_EQ(static_cast<XvcObj*>(layer.GetNext(at))->GetParentLayer(), &layer);
        }
        return Tell(m_layers[0]) + "|" + Tell(m_layers[1]) + "|" + Tell(m_selection) + "|" +
               Tell(*m_manager.GetClipboard()) + "|" + Tell(*m_manager.GetUndoStack()) + "|" +
               Tell(*m_manager.GetRedoStack()) + "|" + Tell(m_manager.GetBitmapWarehouse()) +
               Tell(m_manager.GetRasterWarehouse());
    }
    std::string TellLayers() const { return Tell(m_layers[0]) + "|" + Tell(m_layers[1]); }

    XPlainCommands m_plain;
    XvcBitmap m_pictures[2];
    XvcRaster m_patches[2];
    XvcLayer m_layers[2];
    XObList m_selection;
    XCommandManager m_manager;

private:
    std::mt19937 m_random;
    int m_names = 0;
};

TEST(XCommandManager, RandomScriptsDoWhatPlainListsDo)
{
    int exactRuns = 0;
    for (unsigned seed = 1; seed <= 3000; ++seed) {
        XCommandRun run(seed);
        for (int step = 0; step < 40; ++step) {
            run.Step();
            ASSERT_EQ(run.TellLive(), run.TellPlain()) << "seed " << seed << " step " << step;
        }
        const std::string last = run.TellLayers();
        const int redone = run.m_manager.GetRedoStack()->GetSize();
        while (!run.m_plain.undo.empty())
            run.Undo();
        ASSERT_EQ(run.TellLive(), run.TellPlain()) << "seed " << seed;
        if (run.m_plain.exact) {
            ASSERT_EQ(run.TellLayers(), "|") << "seed " << seed;
        }
        while (run.m_manager.GetRedoStack()->GetSize() > redone)
            run.Redo();
        ASSERT_EQ(run.TellLive(), run.TellPlain()) << "seed " << seed;
        for (int i = run.m_manager.GetRedoStack()->GetSize(); i < redone; ++i)
            run.Undo();
        if (!run.m_plain.exact) continue;
        ++exactRuns;
        ASSERT_EQ(run.TellLayers(), last) << "seed " << seed;
    }
    EXPECT_GT(exactRuns, 300);
}

TEST(XCommandManager, QuirksThatHostsKnow)
{
    XCommandRun run(1);
    XCommandManager& manager = run.m_manager;
    XvcPoint loose;
    EXPECT_FALSE(manager.RegisterObjBeforeModify(nullptr));
    manager.StartModify();
    EXPECT_FALSE(manager.RegisterObjAfterModify(&loose)) << "it lies in no layer";
    manager.EndModify();
    ASSERT_EQ(manager.GetUndoStack()->GetSize(), 1) << "an empty modification is a step";
    EXPECT_EQ(manager.GetUndoCommandAt(0), nullptr);
    run.m_selection.AddTail(&loose);
    manager.Undo(&run.m_selection);
    EXPECT_TRUE(run.m_selection.IsEmpty());
    manager.MoveToFrontmost(&run.m_selection);
    EXPECT_EQ(manager.GetUndoStack()->GetSize(), 1) << "an empty order is a step";
    manager.StartModify();
    manager.StartModify();
    manager.CancelModify();
    manager.EndModify();
    manager.DeleteLastCommand();
    EXPECT_EQ(manager.GetUndoStack()->GetSize(), 0);

    auto* torn = new tagCommandSet;
    torn->count = 1;
    manager.PushUndoStack(torn);
    EXPECT_THROW(manager.Undo(&run.m_selection), std::invalid_argument);
}

TEST(XCommandManager, WhatHasNoCloneIsNotLostByItsOrder)
{
    XvcLayer layer;
    XCommandManager manager;
    XObList selection;
    auto* marks = new XvcPolypoint;
    layer.AddTail(marks);
    layer.AddTail(new XvcPoint);
    EXPECT_EQ(manager.CloneObject(marks), nullptr);
    selection.AddTail(marks);
    manager.MoveToFront(&selection);
    EXPECT_EQ(layer.GetTail(), marks);
    manager.Undo(&selection);
    EXPECT_EQ(layer.GetHead(), marks);
    EXPECT_EQ(selection.GetHead(), marks);
    manager.Redo(&selection);
    EXPECT_EQ(layer.GetTail(), marks);
}

TEST(XCommandManager, RasterPatchesWithoutARecordStayAlive)
{
    XCommandManager manager;
    const unsigned char samples[4] = {1, 2, 3, 4};
    XvcRaster counted;
    ASSERT_TRUE(counted.SetData(samples, 2, 2, 1, 1));
    manager.AddRasterToWarehouse(&counted);
    auto* unknown = new XvcRaster;
    ASSERT_TRUE(unknown->SetData(samples, 2, 2, 1, 1));
    manager.DestroyObject(unknown);
    EXPECT_EQ(manager.GetKeptRasterCount(), 1);
    EXPECT_EQ(manager.GetRasterWarehouse().GetAt(0).count, 1);
}

TEST(XCommandManager, ARepeatedDeletionSparesWhatNeverCameBack)
{
    XvcLayer layer;
    XCommandManager manager;
    XObList selection;
    auto* kept = new XvcPoint;
    for (XvcObj* object : std::initializer_list<XvcObj*>{new XvcPolypoint, new XvcPoint, kept}) {
        layer.AddTail(object);
        if (object != kept) selection.AddTail(object);
    }
    manager.Delete(&selection);
    manager.Undo(&selection);
    manager.Redo(&selection);
    ASSERT_EQ(layer.GetCount(), 1);
    EXPECT_EQ(layer.GetHead(), kept);
}

TEST(XCommandManager, ClearingAndReplacingDestroyByTheirRules)
{
    XCommandRun run(1);
    XCommandManager& manager = run.m_manager;
    XvcLayer& layer = run.m_layers[0];
    auto* bitmap = new XvcBitmap(run.m_pictures[0]);
    auto* raster = new XvcRaster(run.m_patches[0]);
    for (XvcObj* object : std::initializer_list<XvcObj*>{bitmap, raster}) {
        layer.AddTail(object);
        manager.PushCommandSetInsert(&layer, object);
        run.m_selection.AddTail(object);
    }
    manager.Copy(&run.m_selection);
    manager.DeleteLastCommand();
    EXPECT_EQ(manager.GetRasterWarehouse().GetAt(0).count, 1) << "the clipboard's is left";
    EXPECT_EQ(manager.GetBitmapWarehouse().GetAt(0).count, 2);
    manager.SetAtList(&layer, 0, new XvcPoint);
    EXPECT_EQ(manager.GetBitmapWarehouse().GetAt(0).count, 1) << "what stood there is destroyed";
    manager.SetAtList(&layer, 9, nullptr);
    manager.Undo(&run.m_selection);
    manager.ClearUndoRedoStack();
    EXPECT_TRUE(manager.GetUndoStack()->IsEmpty() && manager.GetRedoStack()->IsEmpty());
    EXPECT_TRUE(manager.GetClipboard()->IsEmpty());
    EXPECT_TRUE(manager.GetBitmapWarehouse().IsEmpty());
}

TEST(XCommandManager, AStepBesideAnOpenModificationHoldsItsObject)
{
    XvcLayer layer;
    XCommandManager manager;
    auto* point = new XvcPoint(1, 1);
    layer.AddTail(point);
    manager.PushCommandSetInsert(&layer, point);
    point->SetName("renewed");
    EXPECT_TRUE(manager.RenewCommandSetInsert(point));
    manager.StartModify();
    XvcObj* before = manager.CloneObject(point);
    point->SetName("changed");
    ASSERT_TRUE(manager.PushCommandSetModify(point, before));
    EXPECT_TRUE(manager.IsModifying());
    manager.CancelModify();
    EXPECT_FALSE(manager.RenewCommandSetInsert(point)) << "no longer the newest step";
    XvcPoint loose;
    EXPECT_FALSE(manager.PushCommandSetModify(&loose, manager.CloneObject(&loose)));
    XObList selection;
    const auto name = [&] {
        return layer.IsEmpty() ? XString("none") : static_cast<XvcObj*>(layer.GetHead())->GetName();
    };
    manager.Undo(&selection);
    EXPECT_EQ(name(), "renewed");
    manager.Undo(&selection);
    EXPECT_EQ(name(), "none");
    manager.Redo(&selection);
    EXPECT_EQ(name(), "renewed");
    manager.Redo(&selection);
    EXPECT_EQ(name(), "changed");
}

TEST(XCommandManager, WhatWasTypedSinceStaysInABoxThatMoves)
{
    XvcLayer layer;
    XCommandManager manager;
    auto* box = new XvcTextBox(0);
    layer.AddTail(box);
    layer.AddTail(new XvcPoint);
    manager.StartModify();
    manager.RegisterObjBeforeModify(box);
    box->MoveObject(1.0, 0.0, 0.0);
    manager.RegisterObjAfterModify(box);
    manager.EndModify();
    XObList selection;
    selection.AddTail(box);
    manager.MoveToFront(&selection);
    box->SetText("typed");
    using Step = void (XCommandManager::*)(XObList*);
    for (const Step step : {Step(&XCommandManager::Undo), Step(&XCommandManager::Undo),
                            Step(&XCommandManager::Redo), Step(&XCommandManager::Redo)}) {
        (manager.*step)(&selection);
        ASSERT_EQ(selection.GetCount(), 1);
        EXPECT_STREQ(static_cast<const XvcTextBox*>(selection.GetHead())->GetText(), "typed");
    }
}

TEST(XCommandManager, ListsBelowAListAreSearched)
{
    XvcLayer layer;
    XObList outer;
    XObList inner;
    XvcPoint point;
    XvcPoint stranger;
    outer.AddTail(&inner);
    inner.AddTail(&layer);
    layer.SetAttachFlag(0);
    layer.AddTail(&point);
    EXPECT_EQ(XCommandManager::GetParentList(&outer, &point), &layer);
    EXPECT_EQ(XCommandManager::GetParentList(&outer, &layer), &inner);
    EXPECT_EQ(XCommandManager::GetParentList(&outer, &stranger), nullptr);
    EXPECT_EQ(XCommandManager::GetIndexOfList(nullptr, &point), -1);
    XCommandManager::InsertAtList(&layer, 2, &stranger);
    EXPECT_EQ(layer.GetCount(), 1) << "an index above the count adds nothing";
}

TEST(XLayerIndex, AgreesWithAPlainVectorInAnyOrder)
{
    std::vector<std::unique_ptr<XvcPoint>> owned(6000);
    XvcLayer layer;
    layer.SetAttachFlag(0);
    std::vector<XvcObj*> plain;
    for (auto& point : owned) {
        point = std::make_unique<XvcPoint>();
        if (plain.size() >= 4000) continue;
        plain.push_back(point.get());
        layer.AddTail(point.get());
    }
    std::vector<XvcObj*> spare;
    for (std::size_t i = 4000; i < owned.size(); ++i)
        spare.push_back(owned[i].get());
    std::mt19937 random(7);
    XLayerIndex index(layer);
    for (int round = 0; round < 20000; ++round) {
        const std::size_t at = random() % plain.size();
        int found = -1;
        switch (random() % 4) {
        case 0:
            ASSERT_TRUE(index.Find(plain[at], found));
            ASSERT_EQ(found, static_cast<int>(at));
            break;
        case 1:
            if (spare.empty()) break;
            index.InsertAt(static_cast<int>(at), spare.back());
            plain.insert(plain.begin() + static_cast<std::ptrdiff_t>(at), spare.back());
            spare.pop_back();
            break;
        case 2:
            if (plain.size() < 2) break;
            index.RemoveAt(static_cast<int>(at));
            spare.insert(spare.begin(), plain[at]);
            plain.erase(plain.begin() + static_cast<std::ptrdiff_t>(at));
            break;
        default:
            if (spare.empty()) break;
            index.SetAt(static_cast<int>(at), spare.back());
            std::swap(plain[at], spare.back());
            break;
        }
        ASSERT_EQ(layer.GetCount(), static_cast<int>(plain.size()));
    }
    std::vector<XvcObj*> walked;
    for (__POSITION* place = layer.GetHeadPosition(); place;)
        walked.push_back(static_cast<XvcObj*>(layer.GetNext(place)));
    EXPECT_EQ(walked, plain);
}

} // namespace
