#include "foundation/base/XFile.h"
#include "foundation/base/XMemFile.h"
#include "foundation/platform/XFileMap.h"

#include <gtest/gtest.h>

#include <sys/mman.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <thread>
#include <vector>

namespace {

const std::size_t kPage = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));

/// A file of so many pages, all of the byte 0x5A.
struct tagPages
{
    explicit tagPages(std::size_t pages)
    {
        std::string name = (std::filesystem::temp_directory_path() / "map-XXXXXX").string();
        close(mkstemp(name.data()));
        path = name;
        file.Open(path.c_str(), XFile::kModeReadWrite);
        const std::vector<char> bytes(pages * kPage, 0x5A);
        file.Write(bytes.data(), bytes.size());
    }
    ~tagPages() { std::filesystem::remove(path); }
    std::filesystem::path path;
    XFile file;
};

unsigned char ByteAt(const XFileMap& map, std::size_t at)
{
    return *const_cast<const volatile unsigned char*>(map.GetData() + at);
}

TEST(FileMap, AFileThatIsCutGivesZerosAndRaisesTheFlag)
{
    tagPages pages(8);
    const auto map = XFileMap::Map(pages.file, 8 * kPage - 100);
    const auto other = XFileMap::Map(pages.file, kPage);
    ASSERT_TRUE(map && other);
    pages.file.SetLength(static_cast<std::int64_t>(3 * kPage));
    map->Prefetch(2 * kPage, 4 * kPage); // what is gone is no fault of the hint
    EXPECT_EQ(ByteAt(*map, 3 * kPage - 1), 0x5A);
    EXPECT_FALSE(map->IsLost()) << "nothing that is gone was read";
    EXPECT_EQ(ByteAt(*map, 5 * kPage + 7), 0);
    EXPECT_TRUE(map->IsLost());
    EXPECT_EQ(ByteAt(*map, 3 * kPage), 0) << "a fault before the first one";
    EXPECT_EQ(ByteAt(*map, 8 * kPage - 101), 0);
    EXPECT_EQ(ByteAt(*map, 0), 0x5A) << "the rest stays";
    EXPECT_FALSE(other->IsLost()) << "another map of the same file";
    const auto later = XFileMap::Map(pages.file, 3 * kPage);
    ASSERT_TRUE(later);
    EXPECT_FALSE(later->IsLost());
}

TEST(FileMap, WhatCannotBeMappedIsNull)
{
    tagPages pages(2);
    EXPECT_FALSE(XFileMap::Map(pages.file, 0));
    EXPECT_FALSE(XFileMap::Map(pages.file, 2 * kPage + 1)) << "beyond the end";
    EXPECT_FALSE(XFileMap::Map(XMemFile(), 1));
    EXPECT_FALSE(XFileMap::Map(XFile(), 1)) << "closed";
    EXPECT_FALSE(XFileMap::Map(XFile("/dev/zero", XFile::kModeRead), 1));
    const auto map = XFileMap::Map(pages.file, 2 * kPage);
    pages.file.Close();
    ASSERT_TRUE(map);
    EXPECT_EQ(ByteAt(*map, kPage), 0x5A) << "stands after the file is closed";
}

TEST(FileMap, SlotsAreUsedAgain)
{
    tagPages pages(2);
    for (int round = 0; round < 2; ++round) {
        std::vector<std::shared_ptr<const XFileMap>> maps;
        while (const auto map = XFileMap::Map(pages.file, 2 * kPage))
            maps.push_back(map);
        EXPECT_EQ(maps.size(), static_cast<std::size_t>(XFileMap::kMaxMaps));
    }
    pages.file.SetLength(0);
    tagPages whole(2);
    const auto map = XFileMap::Map(whole.file, 2 * kPage);
    ASSERT_TRUE(map);
    EXPECT_EQ(ByteAt(*map, kPage), 0x5A);
    EXPECT_FALSE(map->IsLost());
}

TEST(FileMap, ThreadsMapReadAndLoseAtTheSameTime)
{
    std::vector<std::jthread> threads;
    std::atomic<int> faults{0};
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([&faults, i] {
            for (int round = 0; round < 50; ++round) {
                tagPages pages(3);
                const auto kept = XFileMap::Map(pages.file, 3 * kPage);
                const auto lost = XFileMap::Map(pages.file, 3 * kPage);
                if (!kept || !lost || ByteAt(*kept, 2 * kPage) != 0x5A) ++faults;
                pages.file.SetLength(static_cast<std::int64_t>(kPage));
                std::thread second([&] {
                    if (ByteAt(*lost, 2 * kPage) != 0) ++faults;
                });
                if (ByteAt(*lost, (i % 2 + 1) * kPage) != 0) ++faults;
                second.join();
                if (!lost->IsLost() || kept->IsLost()) ++faults;
            }
        });
    }
    threads.clear(); // joins
    EXPECT_EQ(faults, 0);
}

void LeaveBySignal(int)
{
    _exit(7);
}
void LeaveByFault(int, siginfo_t* info, void*)
{
    _exit(info->si_addr ? 8 : 9);
}

/// A fault outside of our maps, while one of ours is there.
void FaultElsewhere(const struct sigaction& former, bool isSent)
{
    sigaction(SIGBUS, &former, nullptr);
    tagPages pages(2);
    const auto ours = XFileMap::Map(pages.file, 2 * kPage);
    tagPages lost(2);
    const auto* theirs = static_cast<const volatile unsigned char*>(
        mmap(nullptr, 2 * kPage, PROT_READ, MAP_SHARED, lost.file.GetDescriptor(), 0));
    lost.file.SetLength(0);
    std::filesystem::remove(lost.path); // the process ends before the objects do
    std::filesystem::remove(pages.path);
    if (isSent)
        raise(SIGBUS);
    else if (theirs[kPage] == 0)
        _exit(1); // our pages where they do not belong
    _exit(ours ? 0 : 2);
}

TEST(FileMapDeathTest, OtherFaultsReachTheFormerHandler)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe"); // a process in which no handler stands yet
    struct sigaction plain
    {
    }, full{}, none{}, ignore{};
    plain.sa_handler = LeaveBySignal;
    full.sa_sigaction = LeaveByFault;
    full.sa_flags = SA_SIGINFO;
    none.sa_handler = SIG_DFL;
    ignore.sa_handler = SIG_IGN;
    EXPECT_EXIT(FaultElsewhere(plain, false), testing::ExitedWithCode(7), "");
    EXPECT_EXIT(FaultElsewhere(full, false), testing::ExitedWithCode(8), "");
    EXPECT_EXIT(FaultElsewhere(none, false), testing::KilledBySignal(SIGBUS), "");
    EXPECT_EXIT(FaultElsewhere(ignore, false), testing::KilledBySignal(SIGBUS), "");
    EXPECT_EXIT(FaultElsewhere(plain, true), testing::ExitedWithCode(7), "");
    EXPECT_EXIT(FaultElsewhere(none, true), testing::KilledBySignal(SIGBUS), "");
    EXPECT_EXIT(FaultElsewhere(ignore, true), testing::ExitedWithCode(0), "");
}

} // namespace
