#include "foundation/base/XMemFile.h"
#include "foundation/vector/XVectorFileInfo.h"
#include "foundation/vector/XVectorFileReader.h"
#include "foundation/vector/XVectorFileWriter.h"
#include "foundation/vector/XVectorJob.h"
#include "foundation/vector/XvcBase.h"

#include <QGuiApplication>

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string_view>

namespace {

void Require(bool holds)
{
    if (!holds) std::abort();
}

/// Texts are measured when ranges are calculated, which needs fonts.
void StartFonts()
{
    static int count = 3;
    static char name[] = "fuzz", option[] = "-platform", value[] = "offscreen";
    static char* arguments[] = {name, option, value, nullptr};
    static auto* application = new QGuiApplication(count, arguments);
    Require(application != nullptr);
}

/// As what is drawn and edited is: measured.
void Write(XvcBase& base, XMemFile& file)
{
    base.CalcRange();
    XVectorJob job("fuzz.xvc");
    XString error;
    Require(XVectorFileWriter(file, job).Write(base, error));
}

void Rewrite(XMemFile& from, XMemFile& to)
{
    XVectorJob job("fuzz.xvc");
    XString error;
    XvcBase base;
    from.SeekToBegin();
    Require(XVectorFileReader(from, job).Read(base, error));
    Write(base, to);
}

} // namespace

/// What the system's fonts keep for the life of the process is not ours to free.
extern "C" const char* __lsan_default_suppressions()
{
    return "leak:libfontconfig\n";
}

/// Reads any bytes as a native file. What was read can be written, and read again as the same.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    StartFonts();
    XMemFile file;
    file.Attach(data, size);
    XVectorJob job("fuzz.xvc");
    XString error;
    tagXVectorFileInfo info;
    XVectorFileReader(file, job).ReadInfo(info, error);
    file.SeekToBegin();
    XvcBase base;
    if (!XVectorFileReader(file, job).Read(base, error)) {
        Require(!error.IsEmpty());
        return 0;
    }
    // the first round puts damaged rich texts in order
    XMemFile first, second, third;
    Write(base, first);
    Rewrite(first, second);
    Rewrite(second, third);
    // the numbers of a coordinate system may drift whenever its text is written anew
    const std::string_view text(reinterpret_cast<const char*>(second.GetBuffer()),
                                static_cast<std::size_t>(second.GetLength()));
    const bool hasReference = text.find("CS[") != text.npos || text.find("CRS[") != text.npos;
    Require(hasReference || (third.GetLength() == second.GetLength() &&
                             std::memcmp(third.GetBuffer(), second.GetBuffer(), text.size()) == 0));
    return 0;
}
