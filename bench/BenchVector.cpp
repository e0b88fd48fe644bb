// How fast vector objects are recorded, drawn and hit, and the memory they take.
//
// usage: bench_vector SCENE_DIR
// The folder holds V1_polys.shp (polygons) and V2_points.shp (points). Pictures are 1920x1080, the
// whole extent or one unit a pixel, moved between runs. The yardstick of pictures is QGIS on the same
// scenes in the same run (peer_vector.py); without it those rows have none. QGIS reads the file each
// time and smooths edges; rows with ".smooth" are ours with smoothed edges, all others without.

#include "bench/BenchScene.h"
#include "bench/BenchVectorKernels.h"
#include "foundation/surface/XVertBuffer.h"
#include "foundation/vector/XvcLayer.h"
#include "foundation/vector/XvcPoint.h"
#include "foundation/vector/XvcPolygon.h"

#include <QGuiApplication>
#include <QImage>

#include <malloc.h>
#include <ogrsf_frmts.h>

#include <map>
#include <random>
#include <thread>

#include <pthread.h>
#include <time.h>

namespace {

constexpr int kDraws = 9;

std::size_t BytesInUse()
{
    const struct mallinfo2 info = mallinfo2();
    return info.uordblks + info.hblkhd;
}

std::unique_ptr<XvcObj> MakeObject(bool isPoint)
{
    if (isPoint) {
        auto point = std::make_unique<XvcPoint>();
        point->SetType(1);
        point->SetThick(-8.0); // 2 mm at 96 dots an inch
        point->SetForeColor(0xFF1E1EC8u);
        point->SetLineColor(0xFF232323u);
        return point;
    }
    auto polygon = std::make_unique<XvcPolygon>();
    polygon->SetForeColor(0x5A00C8FFu);
    polygon->SetLineColor(0xFF232323u);
    return polygon;
}

/// The objects of a shapefile in a layer, and how much memory they took.
struct tagVectorScene
{
    std::string name;
    XvcLayer layer;
    XBackBuffer buffer;
    double coordinateBytes = 0.0; // of one object
    double objectBytes = 0.0;     // with its place in the list

    bool Load(const std::string& path, bool isPoint)
    {
        auto* dataset = static_cast<GDALDataset*>(
            GDALOpenEx(path.c_str(), GDAL_OF_VECTOR, nullptr, nullptr, nullptr));
        if (!dataset) return false;
        std::vector<std::vector<unsigned char>> blobs;
        for (auto& feature : *dataset->GetLayer(0)) {
            const OGRGeometry* geometry = feature->GetGeometryRef();
            blobs.emplace_back(geometry->WkbSize());
            geometry->exportToWkb(wkbNDR, blobs.back().data(), wkbVariantIso);
        }
        GDALClose(dataset);
        const std::size_t before = BytesInUse();
        for (const auto& blob : blobs) {
            auto object = MakeObject(isPoint);
            std::size_t size = blob.size();
            XString error;
            if (!object->ImportFromWkb(blob.data(), size, error)) std::abort();
            layer.AddTail(object.release());
        }
        const double count = layer.GetCount();
        objectBytes = static_cast<double>(BytesInUse() - before) / count;
        if (isPoint) {
            coordinateBytes = 24.0;
        } else {
            for (__POSITION* pos = layer.GetHeadPosition(); pos;) {
                auto* polygon = static_cast<XvcPolygon*>(layer.GetNext(pos));
                coordinateBytes += 16.0 * polygon->GetSize() / count;
            }
        }
        buffer.Resize(nullptr, kWidth, kHeight);
        return true;
    }

    void Touch()
    {
        for (__POSITION* pos = layer.GetHeadPosition(); pos;)
            static_cast<XvcObj*>(layer.GetNext(pos))->Touch();
    }

    void Record(XVertBuffer& recording)
    {
        recording.Start();
        layer.CalcRange();
        layer.CreateVertexBuffer(&recording, nullptr, nullptr);
        recording.End();
    }

    void Place(double perPixel, int step)
    {
        const tagXVectorRange& range = layer.GetRange();
        const double whole = (range.maxY - range.minY) / kHeight;
        const double length = perPixel > 0.0 ? perPixel : whole;
        buffer.SetWorldPerPixel(length, length);
        buffer.SetWorldToCenter((range.minX + range.maxX) / 2 + 7 * step * length,
                                (range.minY + range.maxY) / 2);
        buffer.Clear(0xFFFFFFFFu);
    }
};

/// Median milliseconds of QGIS by the name of the picture; empty without it.
std::map<std::string, double> AskPeer(const std::string& folder)
{
    std::map<std::string, double> figures;
    const std::string command =
        "/usr/bin/python3 '" TQL_BENCH_DIR "/peer_vector.py' '" + folder + "' 2>/dev/null";
    FILE* pipe = popen(command.c_str(), "r");
    if (!pipe) return figures;
    char name[64];
    double ms = 0.0;
    while (std::fscanf(pipe, "%63s %lf", name, &ms) == 2)
        figures[name] = ms;
    pclose(pipe);
    return figures;
}

void BenchDrawing(XRows& rows, tagVectorScene& scene, std::map<std::string, double>& peer,
                  double recordLimit)
{
    const double full = peer[scene.name + ".full"], near = peer[scene.name + ".one_to_one"];
    XVertBuffer recording;
    scene.Record(recording);
    for (const int isSmooth : {0, 1}) {
        const auto name = [&](const char* what) {
            return "vector." + scene.name + what + (isSmooth ? ".smooth" : "");
        };
        recording.SetSmooth(isSmooth);
        std::vector<double> fresh, moved, close;
        for (int run = 0; run < kDraws; ++run) {
            scene.Touch();
            scene.Place(0.0, run);
            fresh.push_back(TimeMs([&] {
                scene.Record(recording);
                recording.Draw(&scene.buffer);
            }));
            scene.Place(0.0, run + 1);
            moved.push_back(TimeMs([&] { recording.Draw(&scene.buffer); }));
            if (run == 0 && std::getenv("TQL_BENCH_PICTURES"))
                scene.buffer.GetImage().save((name("") + ".png").c_str());
            scene.Place(1.0, run);
            close.push_back(TimeMs([&] { recording.Draw(&scene.buffer); }));
        }
        rows.Add(name(".record_and_draw").c_str(), MedianOf(fresh), full, recordLimit);
        rows.Add(name(".redraw_after_pan").c_str(), MedianOf(moved), full, 0.125);
        rows.Add(name(".redraw_1to1").c_str(), MedianOf(close), near, 0.0);
    }
}

void BenchRecording(XRows& rows, tagVectorScene& scene)
{
    XVertBuffer recording;
    std::vector<double> all, one, none;
    std::mt19937 random(3);
    const int count = static_cast<int>(scene.layer.GetCount());
    for (int run = 0; run < kDraws; ++run) {
        scene.Touch();
        all.push_back(TimeMs([&] { scene.Record(recording); }));
        scene.Record(recording);
        auto* object = static_cast<XvcObj*>(scene.layer.GetAt(
            scene.layer.FindIndex(static_cast<int>(random() % static_cast<unsigned>(count)))));
        object->SetLineColor(0xFF000000u + static_cast<unsigned>(run));
        one.push_back(TimeMs([&] { scene.Record(recording); }));
        scene.Record(recording);
        none.push_back(TimeMs([&] { scene.Record(recording); }));
    }
    const std::string name = "vector." + scene.name;
    rows.Add((name + ".record_one_changed").c_str(), MedianOf(one), MedianOf(all), 0.0);
    rows.Add((name + ".record_unchanged").c_str(), MedianOf(none), MedianOf(all), 0.0);
}

void BenchHits(XRows& rows, tagVectorScene& scene)
{
    std::vector<tagXVectorRange> ranges;
    scene.layer.CalcRange();
    for (__POSITION* pos = scene.layer.GetHeadPosition(); pos;)
        ranges.push_back(static_cast<XvcObj*>(scene.layer.GetNext(pos))->GetRange());
    const tagXVectorRange& whole = scene.layer.GetRange();
    std::mt19937 random(11);
    std::uniform_real_distribution<double> share(0.0, 1.0);
    tagXHitFlag flag;
    int hits = 0;
    std::size_t boxes = 0;
    std::vector<double> ours, theirs;
    for (int run = 0; run < 301; ++run) {
        const double x = whole.minX + share(random) * (whole.maxX - whole.minX);
        const double y = whole.minY + share(random) * (whole.maxY - whole.minY);
        theirs.push_back(
            TimeMs([&] { boxes += XfnCountRangesAt(&ranges[0].minX, ranges.size(), 6, x, y); }));
        ours.push_back(TimeMs([&] { hits += scene.layer.HitTest({x, y}, 20.0, flag) != nullptr; }));
    }
    if (hits == 0 || boxes > ranges.size() * ours.size()) std::abort();
    rows.Add(("vector." + scene.name + ".hit").c_str(), MedianOf(ours), MedianOf(theirs), 2.0);
}

double ThreadMs(clockid_t clock)
{
    timespec time{};
    clock_gettime(clock, &time);
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) * 1e-6;
}

/// How long a drawing goes on after the abort word rose, by its own processor time, which a busy
/// machine does not stretch.
void BenchStop(XRows& rows, tagVectorScene& scene)
{
    clockid_t drawing{};
    pthread_getcpuclockid(pthread_self(), &drawing);
    XVertBuffer recording;
    scene.Record(recording);
    scene.Place(0.0, 0);
    const double drawMs = TimeMs([&] { recording.Draw(&scene.buffer); });
    std::mt19937 random(19);
    std::vector<double> waits;
    for (int run = 0; run < 199; ++run) {
        std::atomic<int> abort{0};
        std::atomic<double> asked{};
        const std::chrono::duration<double, std::milli> delay(
            drawMs * 0.9 * (static_cast<double>(random() % 1000u) / 1000.0));
        std::thread stopper([&] {
            std::this_thread::sleep_for(delay);
            asked = ThreadMs(drawing);
            abort = 1;
        });
        const int isWhole = recording.Draw(&scene.buffer, &abort);
        const double end = ThreadMs(drawing);
        stopper.join();
        if (!isWhole) waits.push_back(end - asked.load());
    }
    if (waits.empty()) return; // all were drawn before
    std::sort(waits.begin(), waits.end());
    rows.Add(("vector." + scene.name + ".stop.p99").c_str(),
             std::max(waits[waits.size() * 99 / 100], 0.0), 1.0, 1.0);
}

void BenchScene(XRows& rows, const std::string& folder, const char* name, const char* file,
                bool isPoint, std::map<std::string, double>& peer, double recordLimit)
{
    tagVectorScene scene;
    scene.name = name;
    if (!scene.Load(folder + "/" + file, isPoint)) return;
    const double count = scene.layer.GetCount();
    const std::string prefix = std::string("vector.") + name;
    rows.Add((prefix + ".object_memory").c_str(), scene.objectBytes - scene.coordinateBytes, 200.0,
             1.0, "bytes beyond coordinates");
    const std::size_t before = BytesInUse();
    scene.layer.CalcRange();
    rows.Add((prefix + ".object_memory.with_hit_index").c_str(),
             scene.objectBytes - scene.coordinateBytes +
                 static_cast<double>(BytesInUse() - before) / count,
             200.0, 1.0, "bytes beyond coordinates");
    XVertBuffer recording;
    scene.Record(recording);
    rows.Add((prefix + ".recording_memory").c_str(),
             static_cast<double>(recording.GetRecording()->GetMemoryUse()) / count,
             isPoint ? 16.0 : scene.coordinateBytes, 0.0, "bytes an object");
    BenchDrawing(rows, scene, peer, recordLimit);
    BenchRecording(rows, scene);
    BenchHits(rows, scene);
    BenchStop(rows, scene);
}

} // namespace

int main(int argc, char** argv)
{
    QGuiApplication app(argc, argv);
    GDALAllRegister();
    const std::string folder = argc > 1 ? argv[1] : ".";
    std::map<std::string, double> peer = AskPeer(folder);
    XRows rows;
    BenchScene(rows, folder, "V1", "V1_polys.shp", false, peer, 0.25);
    BenchScene(rows, folder, "V2", "V2_points.shp", true, peer, 0.2);
    return 0;
}
