// What editing costs: a step of a drag of many objects, deleting many and bringing them back, and
// the memory of copies of a large picture.
//
// usage: bench_edit
// Yardsticks of the same run: the view's redraw of the same lines, in an overlay and in the layers,
// and the cloning of the same objects.

#include "bench/BenchScene.h"
#include "edit/XCommandManager.h"
#include "foundation/surface/XDC.h"
#include "foundation/vector/XvcBase.h"
#include "foundation/vector/XvcBitmap.h"
#include "foundation/vector/XvcLayer.h"
#include "foundation/vector/XvcLine.h"
#include "view/XTQSpaceView.h"
#include "view/XViewKeys.h"

#include <QApplication>

#include <malloc.h>

#include <random>

namespace {

void AddLines(XvcLayer& layer, int count)
{
    std::mt19937 random(11);
    const auto pick = [&random](double low, double high) {
        return std::uniform_real_distribution<double>(low, high)(random);
    };
    for (int i = 0; i < count; ++i) {
        const double x = pick(50, kWidth - 50), y = -pick(50, kHeight - 50);
        auto* line = new XvcLine({x, y}, {x + pick(-40, 40), y + pick(-40, 40)});
        line->CalcRange();
        layer.AddTail(line);
    }
}

void SelectAll(XObList& selection, const XvcLayer& layer)
{
    selection.RemoveAll();
    for (__POSITION* pos = layer.GetHeadPosition(); pos;)
        selection.AddTail(layer.GetNext(pos));
}

void Send(XTQSpaceView& view, unsigned message, unsigned flags, int x, int y)
{
    view.PreTranslateMessage(view.GetHWND(), message, flags,
                             static_cast<XLPARAM>(XfnPackPoint(x, y)));
}

void BenchDrag(XRows& rows)
{
    constexpr int kLines = 10000;
    XTQSpaceView view;
    view.resize(kWidth, kHeight);
    view.Create();
    view.SetWorldToCenter(kWidth / 2.0, -kHeight / 2.0);
    view.SetWorldPerPixel(1, 1);
    XvcLayer& layer = *view.GetEditLayer();
    AddLines(layer, kLines);
    QImage picture(kWidth, kHeight, QImage::Format_RGB32);
    XDC dc(&picture);
    view.OnDraw(&dc);

    std::vector<double> layers, overlays, steps, moves;
    for (int i = 0; i < kRuns; ++i) {
        XvcObj::TouchAll();
        layers.push_back(TimeMs([&] {
            view.InvalidateControl(1);
            view.OnDraw(&dc);
        }));
    }
    // as outlines with their marks, nothing moved
    SelectAll(*view.GetSelectedObj(), layer);
    for (int i = 0; i < kRuns; ++i) {
        overlays.push_back(TimeMs([&] {
            view.GetOverlay().Raise({XViewBuffer::TempVertex, XViewBuffer::TempBack});
            view.OnDraw(&dc);
        }));
    }
    view.SetMode(0);
    SelectAll(*view.GetSelectedObj(), layer);
    const auto* first = dynamic_cast<const XvcLine*>(layer.GetHead());
    const tagXVector3 at = first->GetStartVertex();
    int x = static_cast<int>(at.x), y = static_cast<int>(-at.y);
    Send(view, kMsgLButtonDown, kFlagLeft, x, y);
    view.OnDraw(&dc);
    for (int i = 0; i < kRuns; ++i) {
        x += i % 2 ? -3 : 4;
        moves.push_back(TimeMs([&] { Send(view, kMsgMouseMove, kFlagLeft, x, y); }));
        steps.push_back(moves.back() + TimeMs([&] { view.OnDraw(&dc); }));
    }
    rows.Add("drag_step_10000_lines", MedianOf(steps), MedianOf(layers), 3.0);
    rows.Add("drag_step_to_overlay", MedianOf(steps), MedianOf(overlays), 0.0);
    rows.Add("drag_move_alone", MedianOf(moves), MedianOf(layers), 0.0);
    const double end = TimeMs([&] { Send(view, kMsgLButtonUp, 0, x, y); });
    rows.Add("drag_end_with_its_step_of_undo", end, MedianOf(layers), 0.0);
}

void BenchDelete(XRows& rows)
{
    constexpr int kObjects = 100000;
    constexpr int kTurns = 7;
    XTQSpaceView view;
    view.resize(400, 200);
    view.Create();
    XvcLayer& layer = *view.GetEditLayer();
    AddLines(layer, kObjects);
    XCommandManager& commands = *view.GetCommandManager();
    std::vector<double> clones, deletes, undos, shuffled;
    std::mt19937 random(5);
    for (int i = 0; i < kTurns; ++i) {
        std::vector<XvcObj*> copies;
        copies.reserve(kObjects);
        clones.push_back(TimeMs([&] {
            for (__POSITION* pos = layer.GetHeadPosition(); pos;)
                copies.push_back(commands.CloneObject(static_cast<XvcObj*>(layer.GetNext(pos))));
        }));
        for (XvcObj* copy : copies)
            commands.DestroyObject(copy);
        SelectAll(*view.GetSelectedObj(), layer);
        deletes.push_back(TimeMs([&] { view.Delete(); }));
        undos.push_back(TimeMs([&] { view.Undo(); }));
        if (layer.GetCount() != kObjects) std::abort();
        // and in an order that walks the layer back and forth
        std::vector<XObject*> order;
        for (__POSITION* pos = layer.GetHeadPosition(); pos;)
            order.push_back(layer.GetNext(pos));
        std::shuffle(order.begin(), order.end(), random);
        view.GetSelectedObj()->RemoveAll();
        for (XObject* object : order)
            view.GetSelectedObj()->AddTail(object);
        shuffled.push_back(TimeMs([&] { view.Delete(); }));
        shuffled.back() = std::max(shuffled.back(), TimeMs([&] { view.Undo(); }));
        view.ClearUndoRedoStack();
    }
    rows.Add("delete_100000", MedianOf(deletes), MedianOf(clones), 3.0);
    rows.Add("undo_delete_100000", MedianOf(undos), MedianOf(clones), 3.0);
    rows.Add("delete_or_undo_in_any_order", MedianOf(shuffled), MedianOf(clones), 0.0);
}

void BenchPicture(XRows& rows)
{
    constexpr int kSide = 10000, kCopies = 1000;
    XvcBitmap picture;
    tagBITMAPINFO info;
    info.bmiHeader.biWidth = info.bmiHeader.biHeight = kSide;
    info.bmiHeader.biBitCount = 8;
    {
        const std::vector<unsigned char> bits(std::size_t{kSide} * kSide, 77);
        if (!picture.SetDIB(&info, bits.data())) std::abort();
    }
    XCommandManager commands;
    std::vector<XvcObj*> copies(kCopies);
    const auto used = [] {
        const struct mallinfo2 now = mallinfo2();
        return static_cast<double>(now.uordblks + now.hblkhd) / 1024.0;
    };
    const double before = used();
    for (XvcObj*& copy : copies)
        copy = commands.CloneObject(&picture);
    rows.Add("picture_of_100_megapixels_1000_times", used() - before, 1024.0, 1.0, "KiB");
    for (XvcObj* copy : copies)
        commands.DestroyObject(copy);
}

} // namespace

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication app(argc, argv);
    XRows rows;
    BenchDrag(rows);
    BenchDelete(rows);
    BenchPicture(rows);
    return 0;
}
