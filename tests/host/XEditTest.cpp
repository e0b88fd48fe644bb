#include "edit/XCommandManager.h"
#include "edit/XCommandSet.h"
#include "foundation/vector/XVectorIO.h"
#include "foundation/vector/XvcFactory.h"
#include "foundation/vector/XvcLine.h"
#include "host/XAutosaveActions.h"
#include "host/XEditNames.h"
#include "host/XEndSignals.h"
#include "host/XLayerTree.h"
#include "host/XObjectPicker.h"
#include "tests/host/XEditFixture.h"

#include <QMenu>
#include <QPushButton>
#include <QTreeView>

#include <csignal>
#include <utility>

#include <sys/wait.h>
#include <unistd.h>

namespace {

TEST(XEditNamesTest, AStepSaysWhatItDidToWhat)
{
    const struct
    {
        int type;
        std::vector<const char*> classes; // of the entries
        const char* text;
    } rows[] = {
        {tagCommandSet::kInsert, {"XvcLine"}, "Add Line"},
        {tagCommandSet::kDelete, {"XvcPolygon", "XvcMPolygon"}, "Delete 2 Objects"},
        {tagCommandSet::kDelete, {"XvcMPolygon", "XvcMPolygon"}, "Delete 2 Polygons"},
        {tagCommandSet::kModify, {"XvcTextBox", "XvcTextBox"}, "Change Text Box"},
        {tagCommandSet::kOrder,
         {"XvcTextBox", "XvcTextBox", "XvcTextBox", "XvcTextBox"},
         "Reorder 2 Text Boxes"},
        {tagCommandSet::kDelete, {"XvcMPoint", "XvcMPoint", "XvcMPoint"}, "Delete 3 Points"},
    };
    for (const auto& row : rows) {
        tagCommandSet step;
        step.type = row.type;
        std::vector<std::unique_ptr<XvcObj>> objects;
        for (const char* name : row.classes) {
            objects.push_back(XfnNewVectorObject(name));
            step.objects.Add(objects.back().get());
        }
        EXPECT_EQ(XfnStepText(step), row.text);
    }
}

std::unique_ptr<XvcBase> MakeBase(int lines)
{
    auto base = std::make_unique<XvcBase>();
    auto* layer = new XvcLayer;
    base->AddTail(layer);
    for (int i = 0; i < lines; ++i)
        layer->AddTail(new XvcLine({0, 0, 0}, {10.0 + i, 5, 0}));
    base->CalcRange();
    return base;
}

TEST(XAutosaveTest, ACopyOutlivesAKilledProgramAndBelongsToOneOther)
{
    const QTemporaryDir dir;
    const QString folder = dir.filePath("unsaved");
    const auto base = MakeBase(3);
    const std::vector<XAutosave::tagSource> edited = {{base.get(), 7, "plan", "/data/plan.xvc"}};
    const pid_t child = fork();
    if (child == 0) {
        XAutosave killed(folder);
        QString message;
        if (killed.Keep(edited, message)) {
            killed.Wait();
            ::kill(getpid(), SIGKILL);
        }
        _exit(1);
    }
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    ASSERT_TRUE(WIFSIGNALED(status)) << "it could not write";

    XAutosave running(folder);
    QString message;
    ASSERT_TRUE(running.Keep(edited, message)) << message.toStdString();
    XAutosave next(folder);
    const auto lost = next.TakeLost();
    ASSERT_EQ(lost.size(), 1u) << "of the one that was killed, not of the one that runs";
    EXPECT_EQ(lost[0].name, "plan");
    EXPECT_EQ(lost[0].path, "/data/plan.xvc");
    XvcBase read;
    XString error;
    ASSERT_TRUE(XfnImportXVC(lost[0].copy.toUtf8().constData(), &read, error)) << error.GetString();
    EXPECT_EQ(static_cast<XvcLayer*>(read.GetHead())->GetCount(), 3);
    EXPECT_TRUE(running.TakeLost().empty()) << "taken by another";
    running.Drop(lost[0]);
    EXPECT_TRUE(QFile::exists(lost[0].copy)) << "only who holds it may drop it";
    next.Drop(lost[0]);
    running.Clear();
    EXPECT_TRUE(QDir(folder).isEmpty());
}

TEST(XAutosaveTest, OnlyWhatChangedIsWrittenAndWhatIsSavedGoes)
{
    const QTemporaryDir dir;
    XAutosave autosave(dir.path());
    const auto base = MakeBase(1);
    QString message;
    const auto copies = [&] {
        autosave.Wait();
        const QStringList runs = QDir(dir.path()).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
        return runs.isEmpty() ? QFileInfoList()
                              : QDir(dir.filePath(runs.first())).entryInfoList({"*.xvc"});
    };
    ASSERT_TRUE(autosave.Keep({{base.get(), 1, "a", ""}}, message));
    ASSERT_EQ(copies().size(), 1);
    const QString path = copies().first().filePath();
    ASSERT_TRUE(QFile(path).resize(3)); // to see a writing
    ASSERT_TRUE(autosave.Keep({{base.get(), 1, "a", ""}}, message));
    EXPECT_EQ(QFileInfo(path).size(), 3);
    ASSERT_TRUE(autosave.Keep({{base.get(), 2, "a", ""}}, message));
    autosave.Wait();
    EXPECT_GT(QFileInfo(path).size(), 3);
    ASSERT_TRUE(autosave.Keep({}, message));
    EXPECT_TRUE(copies().isEmpty());
}

TEST(XAutosaveTest, WhatTheDiskRefusesIsToldAndTriedAgain)
{
    const QTemporaryDir dir;
    XAutosave autosave(dir.path());
    const auto base = MakeBase(1);
    QString message;
    QStringList failures;
    autosave.SetFailed([&](const QString& failure) { failures.append(failure); });
    ASSERT_TRUE(autosave.Keep({{base.get(), 1, "plan", ""}}, message));
    autosave.Wait();
    const QString run = dir.filePath(QDir(dir.path()).entryList(QDir::Dirs).last());
    ASSERT_TRUE(QFile::remove(run + "/1.xvc") && QDir().mkdir(run + "/1.xvc"));
    ASSERT_TRUE(autosave.Keep({{base.get(), 2, "plan", ""}}, message));
    autosave.Wait();
    ASSERT_EQ(failures.size(), 1);
    EXPECT_TRUE(failures[0].contains("plan")) << failures[0].toStdString();
    ASSERT_TRUE(QDir().rmdir(run + "/1.xvc"));
    ASSERT_TRUE(autosave.Keep({{base.get(), 2, "plan", ""}}, message));
    autosave.Wait();
    EXPECT_TRUE(QFileInfo(run + "/1.xvc").isFile()) << "the same revision, since it failed";
}

class XEditTest : public XEditFixture
{};

TEST_F(XEditTest, DrawingUndoingAndTheMarksOfWhatIsNotSaved)
{
    ASSERT_EQ(Open({MakeRaster("a.dat", 200, 100, 1)}), 1);
    const tagXLook look = Look();
    EXPECT_FALSE(Action("edit.undo")->isEnabled());
    DrawLine({100, 100}, {300, 200});
    ASSERT_EQ(CountObjects(), 1);
    EXPECT_EQ(Look(), look) << "a drawing that is listed moves nothing";
    EXPECT_EQ(window->GetVectors().GetName({0, -1}), "Drawing");
    EXPECT_EQ(window->GetView().GetMode(), 0) << "the tool gives way";
    EXPECT_EQ(CountSelected(), 1);
    EXPECT_EQ(Undo(), "&Undo Add Line");
    EXPECT_TRUE(window->isWindowModified());
    EXPECT_EQ(Find<QTreeView>("layers.list")->model()->index(0, 0).data(), "Drawing *");

    prompts.AnswerPath(Path("kept").toUtf8().constData());
    QTest::keyClick(window.get(), Qt::Key_S, Qt::ControlModifier);
    EXPECT_FALSE(window->isWindowModified());
    EXPECT_EQ(window->GetVectors().GetAt(0)->path, Path("kept.xvc"));

    Drag({200, 150}, {240, 190});
    EXPECT_EQ(Undo(), "&Undo Change Line");
    EXPECT_TRUE(window->isWindowModified());
    Key(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_FALSE(window->isWindowModified()) << "as it was saved";
    EXPECT_EQ(Action("edit.redo")->text(), "&Redo Change Line");
    Key(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(CountObjects(), 0);
    EXPECT_TRUE(window->isWindowModified()) << "the file has a line more";
    Key(Qt::Key_Y, Qt::ControlModifier);
    EXPECT_FALSE(window->isWindowModified());
    EXPECT_EQ(CountObjects(), 1);
}

TEST_F(XEditTest, EditsApplyWhereTheyCanAndEscapeLeadsBack)
{
    DrawLine({100, 100}, {300, 200}); // into an empty view
    Key(Qt::Key_R);
    Drag({350, 100}, {450, 180});
    ASSERT_EQ(CountObjects(), 2);
    double box[4] = {0, 0, 0, 0};
    ASSERT_TRUE(window->GetVectors().GetExtent({0, -1}, box));
    EXPECT_GT(box[2] - box[0], 340 * Look().perX) << "of both";
    EXPECT_FALSE(Action("edit.front")->isEnabled()) << "it is in front";
    EXPECT_TRUE(Action("edit.back")->isEnabled());
    Run("edit.back");
    EXPECT_EQ(Undo(), "&Undo Reorder Rectangle");
    EXPECT_FALSE(Action("edit.back")->isEnabled());
    Key(Qt::Key_A, Qt::ControlModifier);
    EXPECT_EQ(CountSelected(), 2);
    Key(Qt::Key_C, Qt::ControlModifier);
    Key(Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(CountObjects(), 4);
    EXPECT_EQ(Undo(), "&Undo Add 2 Objects");
    Key(Qt::Key_X, Qt::ControlModifier);
    EXPECT_EQ(CountObjects(), 2);
    Key(Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(CountObjects(), 4) << "what was copied before is not pasted again";
    Key(Qt::Key_Delete);
    EXPECT_EQ(Undo(), "&Undo Delete 2 Objects");

    Action("draw.keep")->setChecked(true);
    Key(Qt::Key_L);
    Drag({100, 300}, {200, 320});
    EXPECT_EQ(window->GetView().GetMode(), 102) << "kept";
    Key(Qt::Key_O);
    Click({100, 400});
    Key(Qt::Key_Escape);
    EXPECT_EQ(window->GetView().GetObjectManager().m_currentObject, nullptr);
    EXPECT_EQ(window->GetView().GetMode(), 103);
    for (const int mode : {0, -1}) {
        Key(Qt::Key_Escape);
        EXPECT_EQ(window->GetView().GetMode(), mode);
    }
    EXPECT_TRUE(Action("edit.undo")->isEnabled());
    EXPECT_FALSE(Action("edit.delete")->isEnabled()) << "looking takes nothing away";

    // what is locked is neither hit nor drawn into
    const int count = CountObjects();
    Key(Qt::Key_V);
    Run("layer.lock");
    Drag({20, 20}, {600, 500});
    EXPECT_EQ(CountSelected(), 0);
    DrawLine({100, 450}, {200, 480});
    EXPECT_EQ(window->GetVectors().GetCount(), 2) << "a drawing of its own";
    EXPECT_EQ(window->GetVectors().GetAt(1)->layers.front().layer->GetCount(), count);

    Key(Qt::Key_V);
    Drag({150, 465}, {150, 465}, Qt::RightButton);
    EXPECT_EQ(CountSelected(), 1);
    EXPECT_TRUE(Find<QMenu>("view.menu")->isVisible());
    Find<QMenu>("view.menu")->close();
}

TEST_F(XEditTest, NothingUnsavedGoesWithoutAQuestion)
{
    DrawLine({100, 100}, {300, 200});
    prompts.AnswerCancel();
    Run("file.close");
    EXPECT_EQ(CountObjects(), 1);
    prompts.AnswerCancel();
    EXPECT_FALSE(window->close());
    prompts.AnswerYes();
    prompts.AnswerPath(Path("kept.xvc").toUtf8().constData());
    Run("file.closeAll");
    EXPECT_EQ(window->GetVectors().GetCount(), 0);
    EXPECT_FALSE(Action("edit.undo")->isEnabled()) << "its steps went with it";
    ASSERT_EQ(Open({Path("kept.xvc")}), 1);
    EXPECT_EQ(CountObjects(), 1);
    Key(Qt::Key_V);
    Key(Qt::Key_A, Qt::ControlModifier);
    Key(Qt::Key_Delete);
    EXPECT_EQ(CountObjects(), 0);
    Run("view.redraw");
    EXPECT_EQ(CountObjects(), 0) << "reading again would have lost the edit";
    prompts.AnswerNo();
    EXPECT_TRUE(window->close());
    EXPECT_EQ(prompts.GetQuestions().size(), 5u);
}

TEST_F(XEditTest, ACrashLosesNothing)
{
    DrawLine({100, 100}, {300, 200});
    window->setGeometry(40, 30, 900, 650);
    window->KeepSession(); // as on a signal
    EXPECT_EQ(XSessionSettings().GetWindowRect(), window->geometry());
    Restart(); // without an end of its own
    auto* bar = Find<QWidget>("recovery");
    ASSERT_TRUE(bar->isVisible());
    Find<QPushButton>("recovery.restore")->click();
    Settle();
    ASSERT_EQ(CountObjects(), 1);
    EXPECT_EQ(window->GetVectors().GetName({0, -1}), "Drawing");
    EXPECT_TRUE(window->isWindowModified());
    Restart(); // once more, before anything was saved
    ASSERT_TRUE(Find<QWidget>("recovery")->isVisible());
    Find<QPushButton>("recovery.discard")->click();
    Restart();
    EXPECT_FALSE(Find<QWidget>("recovery")->isVisible());
}

TEST(XEndSignalsTest, ASignalRunsInTheEventLoopAndASecondOneEndsTheProgram)
{
    int calls = 0;
    {
        const XEndSignals signals([&calls] { ++calls; });
        for (const int number : {SIGTERM, SIGHUP}) {
            ASSERT_EQ(::raise(number), 0);
            EXPECT_TRUE(QTest::qWaitFor([&] { return calls > 0; }));
            EXPECT_EQ(std::exchange(calls, 0), 1);
            EXPECT_EQ(std::signal(number, SIG_DFL), SIG_DFL) << "the next one is not caught";
        }
    }
    EXPECT_EQ(std::signal(SIGINT, SIG_DFL), SIG_DFL);
}

} // namespace
