// How soon a progressive view answers: first coarse picture, stop, waits of the user interface,
// moves.
//
// usage: bench_view [SCENE_DIR]
// A folder holds S1_rgb8.tif, a deflated tiled image with overviews; without it, or where it is
// missing, nothing is measured. Yardsticks are read and computed in the same run.

#include "bench/BenchDrawKernels.h"
#include "bench/BenchScene.h"
#include "foundation/platform/XEvent.h"
#include "foundation/raster/XDMCompManager.h"
#include "view/XTQSpaceView.h"

#include <QApplication>
#include <QMouseEvent>
#include <QWheelEvent>

#include <dlfcn.h>
#include <pthread.h>
#include <time.h>

#include <array>
#include <atomic>
#include <cstring>
#include <filesystem>
#include <random>
#include <thread>

namespace {

using Clock = std::chrono::steady_clock;

double MsBetween(Clock::time_point from, Clock::time_point to)
{
    return std::chrono::duration<double, std::milli>(to - from).count();
}

double CpuMs(clockid_t clock)
{
    timespec now{};
    clock_gettime(clock, &now);
    return static_cast<double>(now.tv_sec) * 1e3 + static_cast<double>(now.tv_nsec) * 1e-6;
}

double ThreadCpuMs()
{
    return CpuMs(CLOCK_THREAD_CPUTIME_ID);
}

// Time that this thread spent blocked in mutexes and conditions.
thread_local double t_waitMs = 0.0;
thread_local bool t_isWatched = false;

class WaitClock
{
public:
    WaitClock() : m_begin(Clock::now()) {}
    ~WaitClock() { t_waitMs += MsBetween(m_begin, Clock::now()); }

private:
    Clock::time_point m_begin;
};

template <class Function>
Function Next(const char* name)
{
    return reinterpret_cast<Function>(dlsym(RTLD_NEXT, name));
}

} // namespace

// All locks and waits of our code come by here.
extern "C" __attribute__((visibility("default"))) int
pthread_mutex_lock(pthread_mutex_t* mutex) noexcept
{
    static const auto real = Next<int (*)(pthread_mutex_t*)>("pthread_mutex_lock");
    if (!t_isWatched || pthread_mutex_trylock(mutex) == 0) return t_isWatched ? 0 : real(mutex);
    const WaitClock clock;
    return real(mutex);
}

extern "C" __attribute__((visibility("default"))) int pthread_cond_wait(pthread_cond_t* condition,
                                                                        pthread_mutex_t* mutex)
{
    static const auto real = Next<int (*)(pthread_cond_t*, pthread_mutex_t*)>("pthread_cond_wait");
    const WaitClock clock;
    return real(condition, mutex);
}

namespace {

/// Notes when passes begin and end.
class XBenchView : public XTQSpaceView
{
public:
    ~XBenchView() override { OnDestroy(); }
    void OnPreDraw() override
    {
        clockid_t clock{};
        pthread_getcpuclockid(pthread_self(), &clock);
        workerClock = clock;
        begun.fetch_add(1);
        XTQSpaceView::OnPreDraw();
        ends[static_cast<std::size_t>(ended) % ends.size()] = {Clock::now(), ThreadCpuMs()};
        ended.fetch_add(1);
        passEnd.Set();
    }

    struct tagEnd
    {
        Clock::time_point at;
        double cpuMs; // of the worker's thread
    };
    /// Of pass `index`, which has ended. Later passes may have ended by the time that one looks.
    const tagEnd& GetEnd(int index) const
    {
        return ends[static_cast<std::size_t>(index) % ends.size()];
    }

    std::atomic<int> begun{0}, ended{0};
    std::array<tagEnd, 256> ends{};
    std::atomic<clockid_t> workerClock{};
    XEvent passEnd;
};

struct tagLive
{
    XRSFile file;
    XBenchView view;
    XDMComposite* composite = nullptr;

    ~tagLive()
    {
        view.QueCancel();
        view.GetXDMCompManager()->RemoveXDMCompositeAll();
    }
    void Settle()
    {
        while (view.IsBusy())
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        QCoreApplication::processEvents();
    }
    /// Puts the middle of the image into the middle of the view.
    void Place(double perPixel, double dx = 0.0)
    {
        const XDMBand* band = file.GetBandAt(0);
        double x = band->GetXSize() / 2.0 + dx, y = band->GetYSize() / 2.0;
        band->ConvPixelToWorldCoord(x, y);
        view.SetWorldToCenter(x, y);
        view.SetWorldPerPixel(perPixel * band->GetXPixelSize(), perPixel * band->GetYPixelSize());
    }
};

std::unique_ptr<tagLive> OpenLive(const std::string& path)
{
    auto live = std::make_unique<tagLive>();
    XString error;
    if (!XRSFileIO::Open(path.c_str(), &live->file, error)) {
        std::fprintf(stderr, "%s\n", static_cast<const char*>(error));
        return nullptr;
    }
    live->view.SetProgressiveView(1);
    live->view.SetAlwaysRefine(1);
    live->view.resize(kWidth, kHeight);
    live->view.show();
    live->Settle();
    live->composite = live->view.GetXDMCompManager()->NewXDMComposite(1);
    for (int ch = 0; ch < 3; ++ch)
        live->composite->SetBand(live->file.GetBandAt(2 - ch), ch);
    for (int ch = 0; ch < 3; ++ch)
        live->composite->SetCutRange(0, 255, ch); // samples are shown as they are
    live->view.GetXDMCompManager()->AddXDMComposite(live->composite);
    live->view.ZoomFit();
    live->Settle();
    return live;
}

/// A level of an image, decoded by GDAL alone.
class XPlainLevel
{
public:
    XPlainLevel(const std::string& path, int overview)
        : m_dataset(GDALDataset::Open(path.c_str(), GDAL_OF_RASTER))
    {
        if (!m_dataset || m_dataset->GetRasterCount() < 3) std::abort();
        GDALRasterBand* first = m_dataset->GetRasterBand(1);
        m_overview = overview < 0 ? first->GetOverviewCount() - 1 : overview;
        width = first->GetOverview(m_overview)->GetXSize();
        height = first->GetOverview(m_overview)->GetYSize();
    }
    ~XPlainLevel() { GDALClose(m_dataset); }
    XPlainLevel(const XPlainLevel&) = delete;
    XPlainLevel& operator=(const XPlainLevel&) = delete;

    void Read(int x, int y, int across, int down)
    {
        m_pixels.resize(3 * static_cast<std::size_t>(across) * down);
        for (int band = 0; band < 3; ++band)
            if (m_dataset->GetRasterBand(band + 1)
                    ->GetOverview(m_overview)
                    ->RasterIO(GF_Read, x, y, across, down,
                               m_pixels.data() + static_cast<std::size_t>(band) * across * down,
                               across, down, GDT_Byte, 0, 0, nullptr))
                std::abort();
    }
    void ReadAll() { Read(0, 0, width, height); }
    std::uint8_t At(int band, int x, int y) const
    {
        return m_pixels[(static_cast<std::size_t>(band) * height + y) * width + x];
    }

    int width = 0, height = 0;

private:
    GDALDataset* m_dataset;
    int m_overview = 0;
    std::vector<std::uint8_t> m_pixels;
};

struct tagYardsticks
{
    double table = 0; ///< table loop over a frame, ms
    double copy = 0;  ///< copy of a frame, ms
};

/// Copies frames among as many as a view holds: a copy within the cache would be no yardstick.
class XFrameCopy
{
public:
    double Measure()
    {
        const double begin = ThreadCpuMs();
        std::memcpy(m_frames[(m_run + 3) % 6].data(), m_frames[m_run % 6].data(), kPixels * 4);
        ++m_run;
        return ThreadCpuMs() - begin;
    }
    std::uint32_t* GetFrame() { return m_frames[m_run % 6].data(); }

private:
    std::vector<std::vector<std::uint32_t>> m_frames{6, std::vector<std::uint32_t>(kPixels, 5)};
    std::size_t m_run = 0;
};

tagYardsticks MeasureYardsticks()
{
    const tagTables tables;
    std::vector<std::uint8_t> planes(3 * kPixels, 77);
    const std::uint8_t* const rows[3] = {planes.data(), planes.data() + kPixels,
                                         planes.data() + 2 * kPixels};
    XFrameCopy frames;
    std::vector<double> table, copy;
    for (int run = 0; run < kRuns; ++run) {
        const double begin = ThreadCpuMs();
        XfnPlainRgb8(rows, tables.rows, kPixels, frames.GetFrame());
        table.push_back(ThreadCpuMs() - begin);
        copy.push_back(frames.Measure());
    }
    return {MedianOf(table), MedianOf(copy)};
}

/// Screen pixels of a picture that differ from a level decoded independently.
int CountDifferences(tagLive& live, const QImage& shown, XPlainLevel& level)
{
    level.ReadAll();
    const XDMBand* band = live.file.GetBandAt(0);
    int count = 0;
    for (int y = 0; y < kHeight; ++y) {
        for (int x = 0; x < kWidth; ++x) {
            double bandX = x + 0.5, bandY = y + 0.5;
            live.view.GetBackBuffer()->ConvPixelToWorldCoord(bandX, bandY);
            live.composite->ConvWorldToPixelCoord(bandX, bandY, 0);
            bandX += 0.5;
            bandY += 0.5;
            QRgb expected = 0xFF000000u;
            if (bandX >= 0 && bandY >= 0 && bandX < band->GetXSize() && bandY < band->GetYSize()) {
                const int px = static_cast<int>(bandX * level.width / band->GetXSize());
                const int py = static_cast<int>(bandY * level.height / band->GetYSize());
                expected = qRgb(level.At(0, px, py), level.At(1, px, py), level.At(2, px, py));
            }
            count += shown.pixel(x, y) != expected;
        }
    }
    return count;
}

void BenchFirst(XRows& rows, const std::string& path, tagLive& live, const tagYardsticks& yard)
{
    XPlainLevel coarsest(path, -1);
    std::vector<double> drawn, shown, full, decode;
    int differences = 0, compared = 0;
    for (int run = 0; run < kRuns; ++run) {
        live.view.QueCancel();
        EmptyCaches();
        decode.push_back(TimeMs([&] { coarsest.ReadAll(); }));
        EmptyCaches();
        live.Place(20.0, run);
        live.view.begun = live.view.ended = 0;
        live.view.passEnd.Reset();
        const auto before = live.view.GetBackBuffer()->GetImage().cacheKey();
        const auto begin = Clock::now();
        live.view.InvalidateControl(1);
        live.view.passEnd.Wait();
        drawn.push_back(MsBetween(begin, live.view.GetEnd(0).at));
        while (live.view.GetBackBuffer()->GetImage().cacheKey() == before)
            QCoreApplication::processEvents();
        live.view.repaint();
        shown.push_back(MsBetween(begin, Clock::now()));
        const bool isCoarse = live.view.ended == 1; // the second pass is not done yet
        live.view.QueCancel();
        if (isCoarse && ++compared <= 5)
            differences += CountDifferences(
                live, live.view.grab().toImage().convertToFormat(QImage::Format_RGB32), coarsest);

        EmptyCaches();
        live.view.SetProgressiveView(0);
        live.Place(20.0, run + 0.5);
        live.view.InvalidateControl(1);
        full.push_back(TimeMs([&] { live.view.OnDraw(nullptr); }));
        live.view.SetProgressiveView(1);
    }
    const double limit = MedianOf(decode) + 3 * yard.table + yard.copy;
    rows.Add("live.coarse.first", MedianOf(drawn), limit, 1.0);
    rows.Add("live.coarse.first.shown", MedianOf(shown), limit, 0.0);
    rows.Add("live.coarse.to.full", MedianOf(drawn), MedianOf(full), 1.0 / 3);
    rows.Add("live.coarse.differences", differences, std::min(compared, 5), 0.0, "pixels");
    live.Settle();
}

double PercentileOf(std::vector<double> values, double part)
{
    std::sort(values.begin(), values.end());
    return values[static_cast<std::size_t>(part * static_cast<double>(values.size() - 1))];
}

void BenchStop(XRows& rows, const std::string& path, tagLive& live)
{
    constexpr int kStops = 400;
    XPlainLevel level(path, 0);
    std::mt19937 random(8);
    std::vector<double> tile, stop, stopCpu;
    for (int run = 0; run < kStops; ++run) {
        EmptyCaches();
        const int column = static_cast<int>(random() % 16) * 256;
        tile.push_back(TimeMs([&] { level.Read(column, 512, 256, 256); }));
        live.view.QueCancel();
        EmptyCaches();
        live.Place(2.0, run * 16.0);
        live.view.begun = live.view.ended = 0;
        live.view.InvalidateControl(1);
        while (live.view.ended < 2) // beyond the coarse pass
            live.view.passEnd.Wait();
        std::this_thread::sleep_for(std::chrono::microseconds(random() % 8000));
        const int ended = live.view.ended;
        if (live.view.begun == ended) continue; // between two passes
        const auto begin = Clock::now();
        const double cpuBegin = CpuMs(live.view.workerClock);
        live.view.InvalidateControl(1);
        while (live.view.ended == ended)
            live.view.passEnd.Wait(1);
        const XBenchView::tagEnd& end = live.view.GetEnd(ended);
        stopCpu.push_back(std::max(0.0, end.cpuMs - cpuBegin));
        stop.push_back(std::max(0.0, MsBetween(begin, end.at)));
    }
    rows.Add("live.stop.p99", PercentileOf(stop, 0.99), 2 * MedianOf(tile), 1.0);
    rows.Add("live.stop.cpu.p99", PercentileOf(stopCpu, 0.99), 2 * MedianOf(tile), 0.0);
    rows.Add("live.stop.median", MedianOf(stop), 2 * MedianOf(tile), 0.0);
    rows.Add("live.stop.count", static_cast<double>(stop.size()), kStops, 0.0, "stops");
    live.Settle();
}

void SendWheel(XTQSpaceView& view, int angle)
{
    const QPointF at(kWidth / 2, kHeight / 2);
    QWheelEvent event(at, view.mapToGlobal(at), QPoint(), QPoint(0, angle), Qt::NoButton,
                      Qt::NoModifier, Qt::NoScrollPhase, false);
    QApplication::sendEvent(&view, &event);
}

void SendMouse(XTQSpaceView& view, QEvent::Type type, int x, Qt::MouseButton button,
               Qt::MouseButtons buttons)
{
    const QPointF at(x, 500);
    QMouseEvent event(type, at, view.mapToGlobal(at), button, buttons, Qt::NoModifier);
    QApplication::sendEvent(&view, &event);
}

void BenchWaits(XRows& rows, tagLive& live, const tagYardsticks& yard)
{
    constexpr int kEvents = 4000;
    std::mt19937 random(3);
    std::vector<double> waits;
    live.Place(2.0);
    for (int run = 0; run < kEvents; ++run) {
        if (run % 100 == 0) {
            EmptyCaches();
            live.Place(2.0, run);
        }
        const double before = t_waitMs;
        t_isWatched = true;
        switch (random() % 6) {
        case 0:
            SendWheel(live.view, run % 2 ? 120 : -120);
            break;
        case 1:
            QCoreApplication::processEvents();
            break;
        case 2:
            live.view.repaint();
            break;
        case 3: // the middle button pans while passes run
            SendMouse(live.view, QEvent::MouseButtonPress, 500, Qt::MiddleButton, Qt::MiddleButton);
            SendMouse(live.view, QEvent::MouseMove, 510, Qt::NoButton, Qt::MiddleButton);
            SendMouse(live.view, QEvent::MouseButtonRelease, 510, Qt::MiddleButton, Qt::NoButton);
            break;
        default:
            SendMouse(live.view, QEvent::MouseMove, run % kWidth, Qt::NoButton, Qt::NoButton);
        }
        t_isWatched = false;
        waits.push_back(t_waitMs - before);
        std::this_thread::sleep_for(std::chrono::microseconds(random() % 1500));
    }
    rows.Add("live.wait.p999", PercentileOf(waits, 0.999), 0.1 * yard.table, 1.0);
    live.Settle();
    std::vector<double> presses;
    for (int run = 0; run < 200; ++run) {
        EmptyCaches();
        live.Place(2.0, run * 8.0);
        live.view.InvalidateControl(1);
        std::this_thread::sleep_for(std::chrono::microseconds(random() % 9000));
        presses.push_back(TimeMs([&] {
            SendMouse(live.view, QEvent::MouseButtonPress, 500, Qt::RightButton, Qt::RightButton);
        }));
        SendMouse(live.view, QEvent::MouseButtonRelease, 500, Qt::RightButton, Qt::NoButton);
    }
    rows.Add("live.press.p99", PercentileOf(presses, 0.99), yard.table, 0.0);
    live.Settle();
}

// The worker draws meanwhile, and shares the memory with the moves and with the yardstick.
void BenchMoves(XRows& rows, tagLive& live)
{
    live.Place(2.0);
    live.view.InvalidateControl(1);
    live.Settle();
    XFrameCopy frames;
    std::vector<double> pan, wheel, copy, busyCopy;
    SendMouse(live.view, QEvent::MouseButtonPress, 500, Qt::RightButton, Qt::RightButton);
    for (int run = 0; run < kRuns; ++run) {
        const double begin = ThreadCpuMs();
        SendMouse(live.view, QEvent::MouseMove, 500 + 7 * (run % 5), Qt::NoButton, Qt::RightButton);
        live.view.repaint();
        pan.push_back(ThreadCpuMs() - begin);
        copy.push_back(frames.Measure());
    }
    SendMouse(live.view, QEvent::MouseButtonRelease, 500, Qt::RightButton, Qt::NoButton);
    live.Settle();
    for (int run = 0; run < kRuns; ++run) {
        const double begin = ThreadCpuMs();
        SendWheel(live.view, run % 2 ? 120 : -120);
        live.view.repaint();
        wheel.push_back(ThreadCpuMs() - begin);
        busyCopy.push_back(frames.Measure());
        live.Settle();
    }
    rows.Add("live.pan.shown", MedianOf(pan), MedianOf(copy), 3.0);
    rows.Add("live.wheel.shown", MedianOf(wheel), MedianOf(busyCopy), 3.0);
}

} // namespace

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    const std::string path = std::string(argc > 1 ? argv[1] : ".") + "/S1_rgb8.tif";
    XRows rows;
    if (!std::filesystem::exists(path)) return 0;
    const auto live = OpenLive(path);
    if (!live) return 1;
    const tagYardsticks yard = MeasureYardsticks();
    rows.Add("live.yard.table", yard.table, yard.copy, 0.0);
    BenchFirst(rows, path, *live, yard);
    BenchStop(rows, path, *live);
    BenchWaits(rows, *live, yard);
    BenchMoves(rows, *live);
    return 0;
}
