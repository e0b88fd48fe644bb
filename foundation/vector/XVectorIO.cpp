#include "foundation/vector/XVectorIO.h"

#include "foundation/base/XFile.h"
#include "foundation/base/XFileException.h"
#include "foundation/base/XInputFile.h"
#include "foundation/base/XSafeFile.h"
#include "foundation/vector/XOgrImport.h"
#include "foundation/vector/XVectorFileInfo.h"
#include "foundation/vector/XVectorFileReader.h"
#include "foundation/vector/XVectorFileWriter.h"
#include "foundation/vector/XVectorJob.h"
#include "foundation/vector/XvcBase.h"

#include <exception>
#include <new>

namespace {

const char* const kAnyDriver[] = {nullptr};
const char* const kShapeDrivers[] = {"ESRI Shapefile", nullptr};
const char* const kDxfDrivers[] = {"DXF", nullptr};
const char* const kDgnDrivers[] = {"DGN", nullptr};

/// Runs `work` so that no exception leaves and an error begins with the path.
template <class Work>
int Run(XVectorJob& job, XString& error, const Work& work)
{
    error.Empty();
    XString sentence;
    try {
        if (work(sentence)) return 1;
    } catch (XFileException& e) {
        sentence = e.GetErrorMessage();
        e.Delete();
    } catch (const std::bad_alloc&) {
        sentence = "There is not enough memory for it.";
    } catch (const std::exception&) {
        sentence = "It cannot be read.";
    }
    const bool isWhole = sentence.IsEmpty() || sentence.Find(job.GetPath()) >= 0;
    if (!job.IsStopped()) error = isWhole ? sentence : job.Describe(sentence);
    return 0;
}

int Check(const XString& path, const XvcBase* base, XString& error)
{
    if (base) return XfnCheckInputFile(path, error);
    error = "There is no base to load into.";
    return 0;
}

int ImportOgr(XVectorJob& job, const char* const* drivers, XvcBase* base, XString& error)
{
    if (!Check(job.GetPath(), base, error)) return 0;
    return Run(job, error, [&](XString& sentence) {
        XvcBase loaded;
        if (!XfnImportOgr(job, drivers, loaded, sentence)) return false;
        XfnAdoptImport(loaded, *base, job);
        return true;
    });
}

int GetOgrInfo(const XString& path, XThread* thread, const char* const* drivers,
               tagXVectorFileInfo& info, XString& error)
{
    if (!XfnCheckInputFile(path, error)) return 0;
    XVectorJob job(path, thread);
    return Run(job, error, [&](XString& sentence) {
        tagXVectorFileInfo made;
        if (!XfnGetOgrInfo(job, drivers, made, sentence)) return false;
        info = std::move(made);
        return true;
    });
}

bool IsNative(const XString& path)
{
    unsigned char bytes[16];
    try {
        XFile file;
        return file.Open(path, XFile::kModeRead) &&
               XVectorFileReader::IsVectorFile(bytes, file.Read(bytes, sizeof bytes));
    } catch (XFileException& e) {
        e.Delete();
        return false;
    }
}

} // namespace

int XfnImportXVC(const XString& path, XvcBase* base, XString& error, XThread* thread, void* context,
                 XVectorImportCallback callback, std::vector<XString>* notes)
{
    if (!Check(path, base, error)) return 0;
    XVectorJob job(path, thread, context, callback, notes);
    return Run(job, error, [&](XString& sentence) {
        XFile file(path, XFile::kModeRead);
        XvcBase loaded;
        if (!XVectorFileReader(file, job).Read(loaded, sentence)) return false;
        XfnAdoptImport(loaded, *base, job);
        return true;
    });
}

int XfnImportSHP(const XString& path, XvcBase* base, XString& error, XThread* thread, void* context,
                 XVectorImportCallback callback, std::vector<XString>* notes)
{
    XVectorJob job(path, thread, context, callback, notes);
    return ImportOgr(job, kShapeDrivers, base, error);
}

int XfnImportDXF(const XString& path, XvcBase* base, XString& error, XThread* thread, void* context,
                 XVectorImportCallback callback, std::vector<XString>* notes)
{
    XVectorJob job(path, thread, context, callback, notes);
    return ImportOgr(job, kDxfDrivers, base, error);
}

int XfnImportDGN(const XString& path, XvcBase* base, XString& error, XThread* thread, void* context,
                 XVectorImportCallback callback, std::vector<XString>* notes)
{
    XVectorJob job(path, thread, context, callback, notes);
    return ImportOgr(job, kDgnDrivers, base, error);
}

int XfnImportVector(const XString& path, XvcBase* base, XString& error, XThread* thread,
                    void* context, XVectorImportCallback callback, std::vector<XString>* notes)
{
    if (!Check(path, base, error)) return 0;
    if (IsNative(path)) return XfnImportXVC(path, base, error, thread, context, callback, notes);
    XVectorJob job(path, thread, context, callback, notes);
    return ImportOgr(job, kAnyDriver, base, error);
}

namespace {

template <class Write>
int Export(const XString& name, const XvcBase* base, XString& error, XThread* thread,
           const Write& write)
{
    error.Empty();
    if (!base) {
        error = "There is no base to write.";
        return 0;
    }
    XVectorJob job(name, thread);
    return Run(job, error, [&](XString& sentence) {
        try {
            return write(job, sentence);
        } catch (XFileException& e) {
            e.m_strFileName = name; // not the temporary one
            sentence = e.GetErrorMessage();
            e.Delete();
            return false;
        }
    });
}

} // namespace

int XfnExportXVC(const XString& path, const XvcBase* base, XString& error, XThread* thread)
{
    return Export(path, base, error, thread, [&](XVectorJob& job, XString& sentence) {
        XSafeFile file;
        return file.Create(path, sentence) &&
               XVectorFileWriter(file.GetFile(), job).Write(*base, sentence) &&
               file.Commit(sentence);
    });
}

int XfnExportXVC(XFile& file, const XString& name, const XvcBase* base, XString& error,
                 XThread* thread)
{
    return Export(name, base, error, thread, [&](XVectorJob& job, XString& sentence) {
        return XVectorFileWriter(file, job).Write(*base, sentence);
    });
}

int XfnGetXVCInfo(const XString& path, tagXVectorFileInfo& info, XString& error, XThread* thread)
{
    if (!XfnCheckInputFile(path, error)) return 0;
    XVectorJob job(path, thread);
    return Run(job, error, [&](XString& sentence) {
        XFile file(path, XFile::kModeRead);
        return XVectorFileReader(file, job).ReadInfo(info, sentence);
    });
}

int XfnGetSHPInfo(const XString& path, tagXVectorFileInfo& info, XString& error, XThread* thread)
{
    return GetOgrInfo(path, thread, kShapeDrivers, info, error);
}

int XfnGetDXFInfo(const XString& path, tagXVectorFileInfo& info, XString& error, XThread* thread)
{
    return GetOgrInfo(path, thread, kDxfDrivers, info, error);
}

int XfnGetDGNInfo(const XString& path, tagXVectorFileInfo& info, XString& error, XThread* thread)
{
    return GetOgrInfo(path, thread, kDgnDrivers, info, error);
}

int XfnGetVectorInfo(const XString& path, tagXVectorFileInfo& info, XString& error, XThread* thread)
{
    if (IsNative(path)) return XfnGetXVCInfo(path, info, error, thread);
    return GetOgrInfo(path, thread, kAnyDriver, info, error);
}

int XfnIsVectorFile(const XString& path)
{
    XString ignored;
    if (!XfnCheckInputFile(path, ignored)) return 0;
    return IsNative(path) || XfnIsOgrFile(path);
}

std::vector<XString> XfnGetVectorExtensions()
{
    std::vector<XString> extensions = {"xvc"};
    for (const XString& extension : XfnGetOgrExtensions())
        extensions.push_back(extension);
    return extensions;
}
