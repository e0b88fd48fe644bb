#include "foundation/base/XMapIntToPtr.h"
#include "foundation/base/XMapPtrToInt.h"
#include "foundation/base/XMapPtrToPtr.h"
#include "foundation/base/XMapPtrToWord.h"
#include "foundation/base/XMapStringToOb.h"
#include "foundation/base/XMapStringToPtr.h"
#include "foundation/base/XMapStringToString.h"
#include "foundation/base/XMapWordToOb.h"
#include "foundation/base/XMapWordToPtr.h"
#include "foundation/base/XObArray.h"
#include "foundation/base/XObList.h"
#include "foundation/base/XPtrList.h"
#include "foundation/base/XStringArray.h"
#include "foundation/base/XUIntArray.h"
#include "foundation/base/XVector3.h"
#include "tests/foundation/base/AllocationCounter.h"

#include <gtest/gtest.h>

#include <climits>
#include <list>
#include <map>
#include <random>
#include <string>
#include <vector>

namespace {

XString ToText(const XList<int>& list)
{
    XString forward;
    for (__POSITION* pos = list.GetHeadPosition(); pos;)
        forward += XfnFormat("%d ", list.GetNext(pos));
    XString backward;
    for (__POSITION* pos = list.GetTailPosition(); pos;) {
        backward = XfnFormat("%d ", list.GetPrev(pos)) + backward;
    }
    EXPECT_EQ(forward, backward);
    return forward.TrimRight();
}

TEST(XList, KeepsOrderAndPositions)
{
    XList<int> list;
    __POSITION* two = list.AddTail(2);
    __POSITION* four = list.AddTail(4);
    list.AddHead(1);
    list.InsertAfter(two, 3);
    list.InsertBefore(nullptr, 0);
    list.InsertAfter(nullptr, 5);
    EXPECT_EQ(ToText(list), "0 1 2 3 4 5");
    list.RemoveAt(two);
    list.InsertBefore(four, 9);
    EXPECT_EQ(ToText(list), "0 1 3 9 4 5");
    EXPECT_EQ(list.GetAt(four), 4);
    EXPECT_EQ(list.m_pNodeHead, list.GetHeadPosition());
    EXPECT_EQ(list.m_pNodeTail, list.GetTailPosition());
    EXPECT_EQ(list.m_nCount, 6);
    for (int i = -1; i <= 6; ++i) {
        __POSITION* pos = list.FindIndex(i);
        ASSERT_EQ(pos != nullptr, i >= 0 && i < 6) << i;
        if (pos) {
            EXPECT_EQ(list.GetAt(pos), (std::vector{0, 1, 3, 9, 4, 5}[i]));
        }
    }
    list.AddTail(3);
    __POSITION* first = list.Find(3);
    EXPECT_EQ(list.Find(3, first), list.GetTailPosition());
    EXPECT_EQ(list.Find(3, list.GetTailPosition()), nullptr);
    EXPECT_EQ(list.RemoveHead() * 10 + list.RemoveTail(), 3);
    list.RemoveAll();
    EXPECT_TRUE(list.IsEmpty() && !list.m_pNodeHead && !list.m_pNodeTail);
    EXPECT_THROW(list.GetHead(), XIndexException);
    EXPECT_THROW(list.RemoveAt(nullptr), XIndexException);
    __POSITION* none = nullptr;
    EXPECT_THROW(list.GetNext(none), XIndexException);
}

TEST(XList, InsertionAllocatesNoElement)
{
    XObList list(10);
    XObject element;
    AllocationCounter counter;
    for (int i = 0; i < 10000; ++i)
        list.AddTail(&element);
    EXPECT_LT(counter.GetCount(), 40); // blocks that double, and the list of blocks

    AllocationCounter again;
    for (int i = 0; i < 5000; ++i)
        list.RemoveAt(list.GetHeadPosition());
    for (int i = 0; i < 5000; ++i)
        list.AddHead(&element);
    EXPECT_EQ(again.GetCount(), 0); // nodes given back are used again
    list.RemoveAll();
    AllocationCounter refill;
    for (int i = 0; i < 100; ++i)
        list.AddTail(&element);
    EXPECT_EQ(refill.GetCount(), 0);
}

// random steps against the standard list; sanitizers watch the node blocks
TEST(XList, AgreesWithTheStandardList)
{
    std::mt19937 random(1);
    XList<XString> list;
    std::list<std::string> model;
    for (int step = 0; step < 4000; ++step) {
        const int at = model.empty() ? 0 : static_cast<int>(random() % model.size());
        const std::string text = "a text longer than a pointer " + std::to_string(step);
        if (random() % 5 < 3) {
            list.InsertAfter(list.FindIndex(at), text.c_str());
            model.insert(model.empty() ? model.end() : std::next(model.begin(), at + 1), text);
        } else if (!model.empty()) {
            list.RemoveAt(list.FindIndex(at));
            model.erase(std::next(model.begin(), at));
        }
        if (step % 1000 == 999) {
            list.RemoveAll();
            model.clear();
        }
    }
    ASSERT_EQ(list.GetCount(), static_cast<int>(model.size()));
    __POSITION* pos = list.GetHeadPosition();
    for (const std::string& text : model)
        ASSERT_STREQ(list.GetNext(pos), text.c_str());
}

TEST(XArray, GrowsInsertsAndRemoves)
{
    XUIntArray array;
    array.SetAtGrow(3, 7u); // the gap holds zeros
    EXPECT_EQ(std::vector<unsigned>(array.begin(), array.end()),
              (std::vector<unsigned>{0, 0, 0, 7}));
    array.InsertAt(1, 5u, 2);
    array.InsertAt(8, 9u);
    EXPECT_EQ(std::vector<unsigned>(array.begin(), array.end()),
              (std::vector<unsigned>{0, 5, 5, 0, 0, 7, 0, 0, 9}));
    array.RemoveAt(1, 4);
    EXPECT_EQ(std::vector<unsigned>(array.begin(), array.end()),
              (std::vector<unsigned>{0, 7, 0, 0, 9}));
    array.SetSize(2);
    array.FreeExtra();
    EXPECT_EQ(array.m_nMaxSize, 2);
    array.SetSize(3, 100);
    array.Add(1u);
    EXPECT_EQ(array.m_nMaxSize, 102);
    EXPECT_EQ(array.GetData(), array.m_pData);
    array.SetSize(0);
    EXPECT_EQ(array.m_pData, nullptr);
}

TEST(XArray, RefusesWhatIsOutOfRange)
{
    XUIntArray array;
    array.Add(1u);
    EXPECT_THROW(array.InsertAt(-1, 1u), XIndexException);
    EXPECT_THROW(array.InsertAt(0, 1u, -1), XIndexException);
    EXPECT_THROW(array.InsertAt(0, 1u, INT_MAX), std::bad_alloc);
    EXPECT_THROW(array.RemoveAt(0, 2), XIndexException);
    EXPECT_THROW(array.RemoveAt(1, INT_MAX), XIndexException);
    EXPECT_THROW(array.SetSize(-1), XIndexException);
    EXPECT_THROW(array.SetAtGrow(-1, 1u), XIndexException);
    EXPECT_THROW(array.SetAtGrow(INT_MAX, 1u), XIndexException);
    EXPECT_THROW(array[1], XIndexException);
    EXPECT_THROW(array.GetAt(-1), XIndexException);
    EXPECT_THROW(array.SetAt(1, 1u), XIndexException);
    ASSERT_EQ(array.GetSize(), 1);
    EXPECT_EQ(array[0], 1u);
}

// elements with a block of their own, taken from the array that moves under them
TEST(XArray, HoldsElementsOfItsOwn)
{
    XStringArray array;
    for (int i = 0; i < 50; ++i)
        array.Add(XfnFormat("a string that needs a block: %d", i));
    for (int i = 0; i < 50; ++i)
        array.Add(array[0]);
    array.InsertAt(0, array[49], 3);
    EXPECT_STREQ(array[2], "a string that needs a block: 49");
    EXPECT_STREQ(array[102], "a string that needs a block: 0");
    XStringArray copy(array);
    array.RemoveAt(0, 100);
    array.FreeExtra();
    EXPECT_EQ(array.GetSize(), 3);
    EXPECT_EQ(copy.Append(copy), 103);
    EXPECT_STREQ(copy[205], copy[102]);
    XStringArray moved(std::move(copy));
    EXPECT_EQ(moved.GetSize(), 206);
    AllocationCounter counter;
    XArray<tagXVector3> vectors;
    for (int i = 0; i < 100000; ++i)
        vectors.Add({1.0, 2.0, 3.0 * i});
    EXPECT_LT(counter.GetCount(), 40);
    EXPECT_EQ(vectors[99999].z, 299997.0);
}

TEST(XMap, AddsLooksUpAndRemoves)
{
    XMapStringToString map;
    map["a"] = "1";
    map.SetAt("b", "2");
    map["a"] = "3";
    XString value("kept");
    EXPECT_EQ(map.Lookup("c", value), 0);
    EXPECT_STREQ(value, "kept");
    EXPECT_EQ(map.Lookup("a", value), 1);
    EXPECT_STREQ(value, "3");
    EXPECT_STREQ(map.GetValueAt("c"), "");
    EXPECT_EQ(map.GetCount(), 2); // asking adds nothing
    EXPECT_STREQ(map["new"], "");
    map[nullptr] = "no key is the empty key";
    EXPECT_EQ(map.Lookup("", value), 1);
    EXPECT_EQ(map.RemoveKey("a"), 1);
    EXPECT_EQ(map.RemoveKey("a"), 0);
    XString order;
    XString key;
    for (__POSITION* pos = map.GetStartPosition(); pos;) {
        map.GetNextAssoc(pos, key, value);
        order += key + ";";
        map.RemoveKey(key); // the pair just returned may go
    }
    EXPECT_STREQ(order, "b;new;;");
    EXPECT_TRUE(map.IsEmpty() && !map.GetStartPosition());
    __POSITION* none = nullptr;
    EXPECT_THROW(map.GetNextAssoc(none, key, value), XIndexException);
}

TEST(XMap, AgreesWithTheStandardMap)
{
    std::mt19937 random(3);
    XMapIntToPtr map;
    std::map<int, void*> model;
    for (int step = 0; step < 20000; ++step) {
        // keys that differ in high bits only must not share a bucket's fate
        const int key = static_cast<int>(random() % 1500) << (step % 2 ? 16 : 0);
        if (random() % 3) {
            map[key] = model[key] = &model;
        } else {
            ASSERT_EQ(map.RemoveKey(key), static_cast<int>(model.erase(key)));
        }
    }
    ASSERT_EQ(map.GetCount(), static_cast<int>(model.size()));
    for (const auto& [key, value] : model)
        ASSERT_EQ(map.GetValueAt(key), value);
    map.RemoveAll();
    AllocationCounter counter;
    for (int i = 0; i < 1000; ++i)
        map[i] = nullptr;
    EXPECT_LT(counter.GetCount(), 20);
}

TEST(XMap, NamedMapsKeepTheirTypes)
{
    XObject object;
    int word = 0;
    XMapPtrToPtr ptrToPtr;
    ptrToPtr[&object] = &word;
    EXPECT_EQ(ptrToPtr.GetValueAt(&object), &word);
    EXPECT_EQ(ptrToPtr.GetValueAt(&word), nullptr);
    XMapPtrToInt ptrToInt;
    ptrToInt[&object] = -70000;
    EXPECT_EQ(ptrToInt.GetValueAt(&object), -70000);
    XMapPtrToWord ptrToWord;
    ptrToWord[nullptr] = 65535;
    EXPECT_EQ(ptrToWord.GetValueAt(nullptr), 65535);
    XMapStringToPtr stringToPtr;
    stringToPtr["k"] = &word;
    EXPECT_EQ(stringToPtr.GetValueAt(XString("k")), &word);
    XMapStringToOb stringToOb;
    stringToOb["k"] = &object;
    EXPECT_EQ(stringToOb.GetValueAt("k"), &object);
    XMapWordToPtr wordToPtr;
    wordToPtr[65535] = &word;
    EXPECT_EQ(wordToPtr.GetValueAt(65535), &word);
    XMapWordToOb wordToOb;
    wordToOb[0] = &object;
    EXPECT_EQ(wordToOb.GetValueAt(0), &object);
    EXPECT_TRUE(XfnIsExactly(&wordToOb, "XMapWordToOb"));
}

} // namespace
