#include "foundation/vector/XvcBase.h"
#include "tests/view/XProgressiveFixture.h"
#include "tests/view/XToolGesture.h"

#include <random>
#include <set>

namespace {

/// Draws, edits, undoes and takes layers away, in any order and in the middle of anything.
class XEditFuzzTest : public XViewFixture
{
protected:
    XEditFuzzTest()
    {
        view.SetWorldToCenter(200, -100);
        view.SetWorldPerPixel(1, 1);
        dialogs.onModal = [this] { Meddle(); };
        onReport = [this](unsigned code) {
            if (code >= 41061 && code <= 41076 && code != 41063) return; // of input and painting
            seen.insert(code);
            Meddle();
        };
        AddLent();
    }
    ~XEditFuzzTest() override
    {
        onReport = nullptr;
        dialogs.onModal = nullptr;
        DropLent();
    }

    int Pick(int low, int high) { return std::uniform_int_distribution<int>(low, high)(random); }

    // What a host does within a report or while a dialog is open.
    void Meddle()
    {
        if (depth > 2 || Pick(0, 40) != 0) return;
        ++depth;
        Edit();
        --depth;
    }

    void AddLent()
    {
        lent = std::make_unique<XvcBase>();
        auto* layer = new XvcLayer;
        lent->AddTail(layer);
        XfnDraw(*layer,
                "Line 20,20 60,20; Point 100,50; Polypoint 90,90 120,90; TextBox 200,20 260,60;"
                "Bitmap 300,20 360,90; Rectangle 20,100 90,160");
        view.GetExtBaseList()->AddTail(lent.get());
    }
    void DropLent()
    {
        if (!lent) return;
        view.ForgetLayers(*lent);
        view.GetExtBaseList()->RemoveAll();
        lent.reset();
    }

    void Edit()
    {
        switch (Pick(0, 13)) {
        case 0:
            return view.Delete();
        case 1:
            return view.Copy();
        case 2:
            return view.Cut();
        case 3:
            if (view.GetEditLayer()->GetCount() < 300) view.Paste();
            return;
        case 4:
        case 5:
        case 6:
            return view.Undo();
        case 7:
            return view.Redo();
        case 8:
            DropLent();
            AddLent();
            return;
        case 9:
            if (lent) view.SetEditLayer(dynamic_cast<XvcLayer*>(lent->GetHead()));
            return;
        case 10:
            return view.SetMode(kModes[Pick(0, 13)]);
        case 11:
            return view.SetPostMode(kModes[Pick(0, 13)]);
        case 12:
            if (Pick(0, 20) == 0) view.ClearUndoRedoStack();
            return;
        default:
            view.SetModeLimit(Pick(0, 3) == 0 ? static_cast<unsigned short>(Pick(0, 15)) : 0);
        }
    }

    // Places where two hits are likely.
    QPoint Place() { return {Pick(0, 12) * 30 + 10, Pick(0, 6) * 20 + 20}; }

    void Event()
    {
        static constexpr int kKeys[] = {Qt::Key_C, Qt::Key_V,      Qt::Key_X,     Qt::Key_Z,
                                        Qt::Key_Y, Qt::Key_Delete, Qt::Key_Escape};
        dialogs.result = Pick(0, 3) != 0;
        dialogs.text = Pick(0, 3) ? "A" : "";
        const QPoint at = Place();
        const auto keys = Pick(0, 3) ? Qt::NoModifier : Qt::ControlModifier;
        const auto left = Qt::LeftButton;
        switch (Pick(0, 9)) {
        case 0:
        case 1:
            return Mouse(QEvent::MouseButtonPress, at.x(), at.y(), left, left, keys);
        case 2:
        case 3:
            return Mouse(QEvent::MouseMove, at.x(), at.y(), Qt::NoButton,
                         Pick(0, 3) ? Qt::MouseButtons(left) : Qt::MouseButtons(), keys);
        case 4:
            return Mouse(QEvent::MouseButtonRelease, at.x(), at.y(), left, Qt::NoButton, keys);
        case 5:
            return Mouse(QEvent::MouseButtonDblClick, at.x(), at.y(), left, left, keys);
        case 6:
            Mouse(Pick(0, 3) ? QEvent::MouseButtonPress : QEvent::MouseButtonDblClick, at.x(),
                  at.y(), Qt::RightButton, Qt::RightButton);
            return Mouse(QEvent::MouseButtonRelease, at.x(), at.y(), Qt::RightButton, Qt::NoButton);
        case 7: {
            const int key = kKeys[Pick(0, 6)];
            Key(QEvent::KeyPress, key, Pick(0, 4) ? Qt::ControlModifier : Qt::NoModifier);
            return Key(QEvent::KeyRelease, key);
        }
        case 8:
            return Drag(left, at, Place());
        default:
            Edit();
        }
    }

    // A selection names objects of the view's layers only, each once.
    void CheckSelection()
    {
        std::vector<const XObject*> seen;
        for (__POSITION* pos = view.GetSelectedObj()->GetHeadPosition(); pos;)
            seen.push_back(view.GetSelectedObj()->GetNext(pos));
        std::ranges::sort(seen);
        ASSERT_EQ(std::ranges::adjacent_find(seen), seen.end());
        for (const XObject* object : seen) {
            XObList* const in = XCommandManager::GetParentList(view.GetInnBaseList(), object);
            ASSERT_TRUE(in || XCommandManager::GetParentList(view.GetExtBaseList(), object));
        }
    }

    static constexpr short kModes[] = {-1,  0,   0,   0,   101, 102, 103,
                                       104, 105, 106, 107, 108, 113, 115};
    std::mt19937 random{20241};
    XFakeObjectDialogs dialogs;
    std::unique_ptr<XvcBase> lent;
    std::set<unsigned> seen; // reports of edits
    int depth = 0;
};

TEST_F(XEditFuzzTest, NothingThatAUserDoesBreaksTheEditor)
{
    view.SetMode(0);
    for (int i = 0; i < XfnCountRuns(100000); ++i) {
        ASSERT_NO_FATAL_FAILURE(CheckSelection()) << "event " << i;
        Event();
        if (view.GetEditLayer()->GetCount() > 400) view.ForgetLayers(*view.GetInnBaseList());
        if (Pick(0, 99) == 0) view.ClearUndoRedoStack();
        if (Pick(0, 19) == 0) QCoreApplication::processEvents();
    }
    EXPECT_EQ(seen.size(), 25u) << "all edits, the tools of all modes, Escape";
    EXPECT_FALSE(view.GetCommandManager()->IsModifying());
    while (!view.GetUnDoStack()->IsEmpty())
        view.GetCommandManager()->Undo(view.GetSelectedObj());
    while (!view.GetReDoStack()->IsEmpty())
        view.GetCommandManager()->Redo(view.GetSelectedObj());
    CheckSelection();
}

} // namespace
