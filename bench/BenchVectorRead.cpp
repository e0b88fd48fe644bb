// How fast vector files come in and go out, and what a loaded object takes in memory.
//
// usage: bench_vectorread FILE.shp|SCENE_DIR [MORE]
// Yardsticks, in the same run: of reading, a plain walk of GDAL over all features that touches each
// geometry's points and each attribute; of the native format, writing and reading as many bytes with
// plain calls. Memory: private memory of the process after loading beyond that before, less the
// coordinates, for each object; the yardstick is 200 bytes.

#include "bench/BenchScene.h"
#include "foundation/base/XFile.h"
#include "foundation/base/XPath.h"
#include "foundation/vector/XAttributeTable.h"
#include "foundation/vector/XVectorIO.h"
#include "foundation/vector/XvcBase.h"
#include "foundation/vector/XvcLayer.h"
#include "foundation/vector/XvcPoint.h"
#include "foundation/vector/XvcVertexObj.h"

#include <ogrsf_frmts.h>

#include <malloc.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <sstream>

namespace {

constexpr int kTimes = 5;
constexpr double kBytesAnObject = 200.0;

double ReadPrivateBytes()
{
    std::ifstream status("/proc/self/status");
    std::string word;
    while (status >> word) {
        double kilobytes = 0.0;
        if (word == "RssAnon:" && status >> kilobytes) return kilobytes * 1024.0;
    }
    return 0.0;
}

/// What any reader of the file has to do.
double WalkWithGdal(const char* path)
{
    double sum = 0.0;
    GDALDataset* set = GDALDataset::Open(path, GDAL_OF_VECTOR);
    if (!set) std::abort();
    OGRLayer* layer = set->GetLayer(0);
    while (OGRFeature* feature = layer->GetNextFeature()) {
        OGREnvelope box;
        feature->GetGeometryRef()->getEnvelope(&box);
        sum += box.MaxX;
        for (int i = 0; i < layer->GetLayerDefn()->GetFieldCount(); ++i)
            sum += feature->GetFieldAsDouble(i);
        OGRFeature::DestroyFeature(feature);
    }
    GDALClose(set);
    return sum;
}

std::unique_ptr<XvcBase> Load(const XString& path)
{
    auto base = std::make_unique<XvcBase>();
    XString error;
    if (!XfnImportVector(path, base.get(), error)) {
        std::fprintf(stderr, "%s\n", error.GetString());
        std::exit(1);
    }
    return base;
}

void AddRow(XRows& rows, const XString& name, const std::function<void()>& ours,
            const std::function<void()>& plain, double limit)
{
    std::vector<double> times, yardsticks;
    for (int i = 0; i < kTimes; ++i) {
        yardsticks.push_back(TimeMs(plain));
        times.push_back(TimeMs(ours));
    }
    rows.Add(name, MedianOf(times), MedianOf(yardsticks), limit);
}

void BenchMemory(XRows& rows, const XString& scene, const XString& path)
{
    Load(path); // what GDAL and PROJ keep for the process is no object's
    malloc_trim(0);
    const double before = ReadPrivateBytes();
    const auto base = Load(path);
    malloc_trim(0);
    double coordinates = 0.0, objects = 0.0, attributes = 0.0;
    for (__POSITION* pos = base->GetHeadPosition(); pos;) {
        auto& layer = static_cast<XvcLayer&>(*base->GetNext(pos));
        if (layer.GetAttributes())
            attributes += static_cast<double>(layer.GetAttributes()->GetMemoryUse());
        for (__POSITION* at = layer.GetHeadPosition(); at;) {
            const XObject* element = layer.GetNext(at);
            const auto* object = dynamic_cast<const XvcVertexObj*>(element);
            ++objects;
            if (dynamic_cast<const XvcPoint*>(element)) coordinates += sizeof(tagXVector3);
            if (object) coordinates += static_cast<double>(object->GetVertexArray().GetMemoryUse());
        }
    }
    const double used = ReadPrivateBytes() - before - coordinates;
    rows.Add(scene + ".memory", used / objects, kBytesAnObject, 1.0, "bytes");
    rows.Add(scene + ".memory.attributes", attributes / objects, 0.0, 0.0, "bytes");
}

void BenchFile(XRows& rows, const XString& path)
{
    const XString scene = XfnGetFileTitle(path);
    BenchMemory(rows, scene, path);
    AddRow(
        rows, scene + ".read", [&] { Load(path); }, [&] { WalkWithGdal(path); }, 2.0);

    const auto base = Load(path);
    char folder[] = "/tmp/bench-vector-XXXXXX";
    if (!mkdtemp(folder)) std::abort();
    const XString native = XfnJoinPath(folder, "a.xvc"), plain = XfnJoinPath(folder, "plain");
    XString error;
    if (!XfnExportXVC(native, base.get(), error)) std::abort();
    std::vector<unsigned char> bytes;
    const auto readPlain = [&] {
        XFile file(native, XFile::kModeRead);
        bytes.resize(static_cast<std::size_t>(file.GetLength()));
        file.Read(bytes.data(), bytes.size());
    };
    const auto writePlain = [&] {
        XFile file(plain, XFile::kModeWrite | XFile::kModeCreate);
        file.Write(bytes.data(), bytes.size());
        file.Flush();
    };
    readPlain();
    AddRow(
        rows, scene + ".native.read", [&] { Load(native); }, readPlain, 0.0);
    AddRow(
        rows, scene + ".native.write", [&] { XfnExportXVC(native, base.get(), error); }, writePlain,
        0.0);
    AddRow(
        rows, scene + ".native.to_gdal", [&] { Load(native); }, [&] { WalkWithGdal(path); }, 1.0);
    rows.Add(scene + ".native.bytes", static_cast<double>(bytes.size()), 0.0, 0.0, "bytes");
    unlink(native);
    unlink(plain);
    rmdir(folder);
}

} // namespace

int main(int argc, char** argv)
{
    GDALAllRegister();
    XRows rows;
    for (int i = 1; i < argc; ++i) {
        const std::filesystem::path path = argv[i];
        if (!std::filesystem::is_directory(path)) {
            BenchFile(rows, argv[i]);
            continue;
        }
        for (const char* scene : {"V1_polys.shp", "V2_points.shp"})
            BenchFile(rows, (path / scene).c_str());
    }
    return 0;
}
