#include "foundation/base/XFile.h"

#include "foundation/base/XMemFile.h"
#include "foundation/base/XPath.h"
#include "foundation/base/XSafeFile.h"
#include "foundation/base/XSystem.h"
#include "tests/support/XFullDisk.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

namespace {

namespace fs = std::filesystem;

/// An empty folder for one test.
class FileTest : public ::testing::Test
{
protected:
    FileTest()
    {
        std::string name = (fs::temp_directory_path() / "tql-XXXXXX").string();
        m_folder = mkdtemp(name.data());
    }
    ~FileTest() override { fs::remove_all(m_folder); }

    XString Path(const char* name) const { return XString((m_folder / name).string()); }
    static std::string Contents(const XString& path)
    {
        std::ifstream in(path.GetString(), std::ios::binary);
        return {std::istreambuf_iterator<char>(in), {}};
    }
    int CountFiles() const
    {
        int count = 0;
        for ([[maybe_unused]] const auto& entry : fs::directory_iterator(m_folder))
            ++count;
        return count;
    }

    fs::path m_folder;
};

XFileException::Cause CauseOf(const std::function<void()>& step)
{
    try {
        step();
    } catch (XFileException& e) {
        const XFileException::Cause cause = e.m_cause;
        e.Delete();
        return cause;
    }
    return XFileException::kNone;
}

/// The same steps have the same results on disk and in memory.
void RunFileSteps(XFile& file)
{
    file.Write("0123456789", 10);
    EXPECT_EQ(file.GetPosition(), 10);
    EXPECT_EQ(file.Seek(-4, XFile::kEnd), 6);
    char text[32] = {};
    EXPECT_EQ(file.Read(text, 2), 2u);
    EXPECT_STREQ(text, "67");
    EXPECT_EQ(file.Seek(1, XFile::kCurrent), 9);
    EXPECT_EQ(file.Read(text, 20), 1u);
    EXPECT_EQ(file.Read(text, 20), 0u);
    EXPECT_EQ(file.ReadAt(3, text, 3), 3u);
    EXPECT_EQ(std::string(text, 3), "345");
    EXPECT_EQ(file.ReadAt(INT64_MAX, text, 3), 0u);
    EXPECT_EQ(file.GetPosition(), 10);
    EXPECT_EQ(CauseOf([&] { file.Seek(-11, XFile::kCurrent); }), XFileException::kBadSeek);
    EXPECT_EQ(CauseOf([&] { file.ReadAt(-1, text, 1); }), XFileException::kBadSeek);

    file.Seek(12, XFile::kBegin); // a gap reads as zeros
    file.Write("x", 1);
    EXPECT_EQ(file.GetLength(), 13);
    file.SeekToBegin();
    EXPECT_EQ(file.Read(text, 32), 13u);
    EXPECT_EQ(std::string(text, 13), std::string("0123456789\0\0x", 13));
    file.SetLength(2);
    EXPECT_EQ(file.GetLength(), 2);
    EXPECT_EQ(file.Read(text, 1), 0u);
    file.Flush();
}

TEST_F(FileTest, ReadsWritesAndSeeks)
{
    XFile file;
    ASSERT_TRUE(file.Open(Path("a.dat"), XFile::kModeReadWrite | XFile::kModeCreate));
    RunFileSteps(file);
    EXPECT_STREQ(file.GetFileName() + "|" + file.GetFileTitle(), "a.dat|a");
    XMemFile memory;
    RunFileSteps(memory);
}

TEST_F(FileTest, OffsetsHave64Bits)
{
    const std::int64_t far = (std::int64_t{5} << 30) + 3;
    XFile file(Path("sparse"), XFile::kModeReadWrite | XFile::kModeCreate);
    file.Seek(far, XFile::kBegin);
    file.Write("end", 3);
    EXPECT_EQ(file.GetLength(), far + 3);
    char text[4] = {};
    EXPECT_EQ(file.ReadAt(far, text, 4), 3u);
    EXPECT_STREQ(text, "end");
}

TEST_F(FileTest, OpenFlags)
{
    const XString path = Path("a");
    XFileException why;
    XFile file;
    EXPECT_FALSE(file.Open(path, XFile::kModeRead, &why));
    EXPECT_EQ(why.m_cause, XFileException::kFileNotFound);
    EXPECT_EQ(why.m_lOsError, ENOENT);
    EXPECT_EQ(CauseOf([&] { XFile(path, XFile::kModeWrite); }), XFileException::kFileNotFound);
    EXPECT_TRUE(file.Open(path, XFile::kModeWrite | XFile::kModeCreate));
    file.Write("abc", 3);
    EXPECT_EQ(CauseOf([&] {
                  char c;
                  file.Read(&c, 1);
              }),
              XFileException::kInvalidFile);
    EXPECT_TRUE(file.Open(path, XFile::kModeWrite | XFile::kModeCreate | XFile::kModeNoTruncate));
    EXPECT_EQ(file.GetLength(), 3);
    EXPECT_FALSE(file.Open(path, XFile::kModeWrite | XFile::kModeCreate | XFile::kModeExclusive));
    EXPECT_FALSE(file.IsOpen());
    EXPECT_EQ(CauseOf([&] { file.GetLength(); }), XFileException::kInvalidFile);
    EXPECT_TRUE(file.Open(path, XFile::kModeRead));
    EXPECT_EQ(CauseOf([&] { file.Write("x", 1); }), XFileException::kInvalidFile);
    file.Close();
    file.Close();
    EXPECT_FALSE(file.Open(m_folder.c_str(), XFile::kModeRead, &why));
    EXPECT_EQ(why.m_cause, XFileException::kAccessDenied);
    EXPECT_FALSE(file.Open(Path("a/b"), XFile::kModeRead, &why));
    EXPECT_EQ(why.m_cause, XFileException::kBadPath);
    EXPECT_FALSE(file.Open(nullptr, XFile::kModeRead));

    ASSERT_EQ(mkfifo(Path("pipe"), 0600), 0);
    EXPECT_TRUE(file.Open(Path("pipe"), XFile::kModeRead)); // would hang without a writer
}

TEST_F(FileTest, Status)
{
    XFile file(Path("a"), XFile::kModeWrite | XFile::kModeCreate);
    file.Write("abc", 3);
    tagXFileStatus status;
    ASSERT_TRUE(XFile::GetStatus(Path("a"), status));
    EXPECT_EQ(status.size, 3);
    EXPECT_FALSE(status.isDirectory);
    EXPECT_LE(std::abs(status.modifyTime.GetTime() - XTime::GetCurrentTime().GetTime()), 5);
    EXPECT_TRUE(XFile::GetStatus(m_folder.c_str(), status) && status.isDirectory);
    EXPECT_FALSE(XFile::GetStatus(Path("none"), status));
    XFile::Rename(Path("a"), Path("b"));
    EXPECT_EQ(CauseOf([&] { XFile::Remove(Path("a")); }), XFileException::kFileNotFound);
    XFile::Remove(Path("b"));
    EXPECT_EQ(CountFiles(), 0);
}

TEST(XMemFile, AViewIsReadOnly)
{
    XMemFile file;
    file.Attach("abcd", 4);
    char text[8] = {};
    EXPECT_EQ(file.Read(text, 8), 4u);
    EXPECT_EQ(CauseOf([&] { file.Write("x", 1); }), XFileException::kAccessDenied);
    EXPECT_EQ(CauseOf([&] { file.SetLength(9); }), XFileException::kAccessDenied);
    file.Close();
    file.Write("x", 1);
    EXPECT_EQ(file.GetBuffer()[0], 'x');
    file.Seek(INT64_MAX - 1, XFile::kBegin);
    EXPECT_EQ(CauseOf([&] { file.Write("xyz", 3); }), XFileException::kDiskFull);
    EXPECT_EQ(CauseOf([&] { file.Seek(INT64_MAX, XFile::kCurrent); }), XFileException::kBadSeek);
    EXPECT_EQ(file.GetLength(), 1);
}

TEST_F(FileTest, ASafeFileReplacesOnlyWhenCommitted)
{
    const XString path = Path("a.txt");
    XString message;
    ASSERT_TRUE(XfnWriteFileSafely(path, "old", 3, message));
    chmod(path, 0640);
    {
        XSafeFile file;
        ASSERT_TRUE(file.Create(path, message));
        file.Write("half a new o", 12);
        EXPECT_EQ(CountFiles(), 2);
    }
    EXPECT_EQ(Contents(path), "old");
    EXPECT_EQ(CountFiles(), 1);

    ASSERT_EQ(symlink("a.txt", Path("link")), 0);
    XSafeFile file;
    ASSERT_TRUE(file.Create(Path("link"), message));
    EXPECT_TRUE(file.Write(XString("new")));
    EXPECT_TRUE(file.Commit(message)) << message;
    EXPECT_EQ(Contents(path), "new");
    EXPECT_TRUE(fs::is_symlink(Path("link").GetString()));
    EXPECT_EQ(fs::status(path.GetString()).permissions(), fs::perms(0640));
    EXPECT_EQ(CountFiles(), 2);
    EXPECT_FALSE(file.Commit(message)); // nothing under way
    EXPECT_FALSE(file.Write("x", 1));
}

TEST_F(FileTest, ASafeFileIsMadeWhereALinkPoints)
{
    fs::create_directory(Path("folder").GetString());
    const struct
    {
        const char* what;
        const char* link;
        std::string target;
        const char* made; // null: refused
    } kCases[] = {
        {"a name beside the link", "near", "new1.txt", "new1.txt"},
        {"a relative path", "folder/up", "../new2.txt", "new2.txt"},
        {"an absolute path", "far", m_folder.string() + "/folder/new3.txt", "folder/new3.txt"},
        {"a link to such a link", "chain", "folder/up2", "new4.txt"},
        {"a folder that is missing", "lost", "none/new5.txt", nullptr},
        {"itself", "ring", "ring", nullptr},
    };
    ASSERT_EQ(symlink("../new4.txt", Path("folder/up2")), 0);
    for (const auto& row : kCases) {
        SCOPED_TRACE(row.what);
        const XString link = Path(row.link);
        ASSERT_EQ(symlink(row.target.c_str(), link), 0);
        XString message;
        EXPECT_EQ(XfnWriteFileSafely(link, "x", 1, message), row.made ? 1 : 0);
        EXPECT_EQ(message.IsEmpty(), row.made != nullptr) << message;
        EXPECT_TRUE(fs::is_symlink(link.GetString())) << "the link itself stays";
        EXPECT_TRUE(!row.made || Contents(Path(row.made)) == "x");
    }
}

TEST_F(FileTest, ASafeFileThatFailsLeavesTheTarget)
{
    XString message;
    EXPECT_FALSE(XfnWriteFileSafely(Path("none/a.txt"), "x", 1, message));
    EXPECT_GE(message.Find("none/a.txt"), 0);
    EXPECT_FALSE(XfnWriteFileSafely(m_folder.c_str(), "x", 1, message));
    EXPECT_FALSE(XfnWriteFileSafely("/dev/null", "x", 1, message));
    EXPECT_FALSE(XfnWriteFileSafely("", "x", 1, message));

    // a disk that fills up in the middle
    const XString path = Path("a.txt");
    ASSERT_TRUE(XfnWriteFileSafely(path, "old", 3, message));
    {
        const XFullDisk disk(4096);
        XSafeFile file;
        const int isWritten =
            file.Create(path, message) && file.Write(std::string(10000, 'x').data(), 10000);
        EXPECT_FALSE(isWritten || file.Commit(message));
    }
    EXPECT_STREQ(message, "The disk is full: " + path + ".");
    EXPECT_EQ(Contents(path), "old");
    EXPECT_EQ(CountFiles(), 1);
}

struct tagPathCase
{
    const char* path;
    const char* folder;
    const char* name;
    const char* title;
    const char* ext;
};

TEST(XPath, Parts)
{
    const tagPathCase kCases[] = {
        {"/data/scene.a/img.tar.TIF", "/data/scene.a", "img.tar.TIF", "img.tar", "TIF"},
        {"/data/no.ext/file", "/data/no.ext", "file", "file", ""},
        {"/file", "/", "file", "file", ""},
        {"file.tif", "", "file.tif", "file", "tif"},
        {"/data/", "/data", "", "", ""},
        {"/a//b.c", "/a", "b.c", "b", "c"},
        {"/a/.hidden", "/a", ".hidden", ".hidden", ""},
        {"/a/name.", "/a", "name.", "name", ""},
        {"/a/..", "/a", "..", "..", ""},
        {"", "", "", "", ""},
        {nullptr, "", "", "", ""},
        // written on another system
        {"D:\\data\\img.tif", "D:\\data", "img.tif", "img", "tif"},
        {"D:\\img.tif", "D:\\", "img.tif", "img", "tif"},
        {"D:/data\\img.tif", "D:/data", "img.tif", "img", "tif"},
        {"D:img.tif", "D:", "img.tif", "img", "tif"},
        {"\\\\host\\share\\img.tif", "\\\\host\\share", "img.tif", "img", "tif"},
        // a backslash is part of a name here
        {"/data/a\\b.tif", "/data", "a\\b.tif", "a\\b", "tif"},
    };
    for (const tagPathCase& c : kCases) {
        const char* path = c.path ? c.path : "(null)";
        EXPECT_STREQ(XfnGetDirName(c.path), c.folder) << path;
        EXPECT_STREQ(XfnGetFileName(c.path), c.name) << path;
        EXPECT_STREQ(XfnGetFileTitle(c.path), c.title) << path;
        EXPECT_STREQ(XfnGetFileExt(c.path), c.ext) << path;
    }
    EXPECT_STREQ(XfnJoinPath("/a", "b") + XfnJoinPath("/", "b") + XfnJoinPath("", "b"), "/a/b/bb");
}

TEST_F(FileTest, SystemQuestions)
{
    EXPECT_TRUE(XfnIsDiskSpaceEnough(Path("not/yet/there.tif"), 1));
    EXPECT_TRUE(XfnIsDiskSpaceEnough("there.tif", 0));
    EXPECT_FALSE(XfnIsDiskSpaceEnough(Path("a"), UINT64_MAX));
    EXPECT_FALSE(XfnIsDiskSpaceEnough("", 0));
    const std::uint64_t memory = XfnGetAvailablePhysicalMemory();
    EXPECT_GT(memory, 1u << 20);
    EXPECT_EQ(memory % 1024, 0u);
    XString name;
    XString text;
    EXPECT_TRUE(XfnGetErrorString(ENOSPC, name, text));
    EXPECT_STREQ(name + ": " + text, "ENOSPC: No space left on device");
    EXPECT_FALSE(XfnGetErrorString(-5, name, text));
    EXPECT_STREQ(name + text, "Unknown error -5");
}

TEST(XTime, CalendarBothWays)
{
    const XTime time(2024, 2, 29, 13, 5, 9);
    EXPECT_STREQ(time.Format("%Y-%m-%d %H:%M:%S"), "2024-02-29 13:05:09");
    EXPECT_STREQ(XfnFormat("%d %d %d %d %d %d %d", time.GetYear(), time.GetMonth(), time.GetDay(),
                           time.GetHour(), time.GetMinute(), time.GetSecond(), time.GetDayOfWeek()),
                 "2024 2 29 13 5 9 5");
    EXPECT_EQ(XTime(2024, 1, 32, 0, 0, 0), XTime(2024, 2, 1, 0, 0, 0));
    EXPECT_STREQ(XTime(0).FormatGmt("%d %b %Y %a"), "01 Jan 1970 Thu"); // in every locale
    EXPECT_STREQ(XTime(0).Format(""), "");
    EXPECT_EQ(XTime(INT64_MAX).GetYear(), 0);
    EXPECT_EQ(XTime(INT64_MAX).GetMonth(), 0);
    EXPECT_LT(XTime(5), XTime(6));
}

} // namespace
