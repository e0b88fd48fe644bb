// What a change of the stretch costs, against plain passes over the counters of its histograms and
// against a warm drawing of the same view.
//
// usage: bench_enhance [SCENE_DIR]
// A folder holds S1_rgb8.tif and S2_ms16.tif; those that are missing are left out. Without an
// argument the program writes small scenes of its own. Rows are medians.

#include "bench/BenchEnhanceKernels.h"
#include "bench/BenchScene.h"
#include "enhance/XStretchModel.h"
#include "enhance/XStretchNames.h"
#include "foundation/raster/XDMBandMemory.h"
#include "foundation/raster/XDMCompManager.h"
#include "foundation/raster/XRasterTypes.h"
#include "foundation/raster/XStretchPreset.h"

#include <QGuiApplication>
#include <QTemporaryDir>

#include <array>
#include <filesystem>
#include <string>

namespace {

constexpr int kPassRepeats = 2000;
constexpr int kChainRepeats =
    50; // as long as the passes: a longer run meets other programs more often
constexpr int kChannels = 3;
constexpr double kPasses = 20.0; // over the counters of a channel

/// The time of one plain pass over 256 counters.
double TimePass()
{
    alignas(64) static long long from[256], to[256];
    for (int i = 0; i < 256; ++i)
        from[i] = i;
    const double ms = TimeMs([] {
        for (int i = 0; i < kPassRepeats; ++i)
            XfnPlainCounterPass(from, to);
    });
    if (to[255] < 255) std::abort(); // the sums are used
    return ms / kPassRepeats;
}

/// Slider movements of all three channels: the cut changes each time, the chain is redone.
void BenchEngine(XRows& rows)
{
    XDMBandMemory band;
    if (!band.Create(kXUInt16, 512, 512)) std::abort();
    auto* pixels = static_cast<std::uint16_t*>(band.GetData());
    std::mt19937 random(1);
    std::normal_distribution<double> values(2000.0, 400.0);
    for (int i = 0; i < 512 * 512; ++i)
        pixels[i] = static_cast<std::uint16_t>(std::clamp(values(random), 0.0, 4095.0));
    band.Changed();
    XDMComposite composite(1);
    for (int ch = 0; ch < kChannels; ++ch)
        composite.SetBand(&band, ch);
    XStretchModel model;
    model.SetCurXDMComposite(&composite);
    for (const tagXStretchName& type : XfnGetStretchTypeNames()) {
        model.SetStretchType(type.value);
        std::vector<double> ours, passes;
        for (int run = 0; run < 9 * kRuns; ++run) {
            passes.push_back(TimePass());
            model.ApplyCutType(1 + run % 3);
            ours.push_back(TimeMs([&] {
                               for (int i = 0; i < kChainRepeats; ++i)
                                   model.CalculateHistogram();
                           }) /
                           kChainRepeats / kChannels);
        }
        std::string name = std::string("enhance.chain.") + type.label;
        std::ranges::replace(name, ' ', '_');
        rows.Add(name.c_str(), MedianOf(ours) * 1e3, MedianOf(passes) * 1e3, kPasses, "us/channel");
    }
}

/// Each preset of a region, with the drawing that follows, in a view that stands still.
void BenchPresets(XRows& rows, const std::string& name, const std::string& path)
{
    const auto scene = OpenScene(path, 1);
    if (!scene) return;
    XDMCompManager manager;
    manager.SetCompositeDeleteFlag(0);
    manager.AddXDMComposite(&scene->composite);
    std::vector<double> warm, whole, visible, firstVisible;
    const auto preset = [&](const tagXStretchPreset& row) {
        return TimeMs([&] {
            XfnEnhanceEx(manager, row.coverage, row.cutType, row.stretchType);
            Draw(*scene);
        });
    };
    const auto presets = XfnGetStretchPresets();
    for (int run = 0; run < kRuns; ++run) {
        const auto at = static_cast<std::size_t>(run) % 9;
        XfnEnhanceEx(manager, 0, 1, 1);
        Place(*scene, 1.0, 2 * run);
        Draw(*scene);
        Place(*scene, 1.0, 2 * run + 1);
        warm.push_back(TimeMs([&] { Draw(*scene); }));
        whole.push_back(preset(presets[at]));
        firstVisible.push_back(preset(presets[9 + at]));
        visible.push_back(preset(presets[9 + (at + 1) % 9]));
    }
    const double yardstick = MedianOf(warm) + kPasses * kChannels * TimePass();
    rows.Add((name + ".whole").c_str(), MedianOf(whole), yardstick, 1.1);
    rows.Add((name + ".visible").c_str(), MedianOf(visible), yardstick, 1.1);
    rows.Add((name + ".visible.after_move").c_str(), MedianOf(firstVisible), yardstick, 0.0);
    manager.RemoveXDMComposite(&scene->composite);
}

} // namespace

int main(int argc, char** argv)
{
    QGuiApplication app(argc, argv);
    GDALAllRegister();
    namespace fs = std::filesystem;
    const QTemporaryDir own;
    const fs::path folder = argc > 1 ? fs::path(argv[1]) : fs::path(own.path().toStdString());
    const fs::path bytes = folder / "S1_rgb8.tif", words = folder / "S2_ms16.tif";
    if (argc < 2) {
        WriteScene<std::uint8_t>(bytes.string(), GDT_Byte, 3, 1.0);
        WriteScene<std::uint16_t>(words.string(), GDT_UInt16, 3, 16.0);
    }
    XRows rows;
    BenchEngine(rows);
    if (fs::exists(bytes)) BenchPresets(rows, "enhance.preset.rgb8", bytes.string());
    if (fs::exists(words)) BenchPresets(rows, "enhance.preset.rgb16", words.string());
    return 0;
}
