#include "dialogs/XFileDialog.h"
#include "dialogs/CPreviewDlg.h"
#include "dialogs/XThreadDlgOpen.h"
#include "foundation/platform/XQtText.h"
#include "foundation/platform/XThread.h"
#include "foundation/raster/XRSFile.h"
#include "tests/support/XGdalSample.h"
#include "tests/support/XScriptedPrompts.h"

#include <QDir>
#include <QLineEdit>
#include <QListView>
#include <QPlainTextEdit>
#include <QSettings>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#include <cpl_vsi.h>
#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <functional>
#include <thread>

namespace {

class XShownDialog : public XFileDialog
{
public:
    using XFileDialog::accept;
    using XFileDialog::XFileDialog;

    void Type(const QString& names) { findChild<QLineEdit*>("fileNameEdit")->setText(names); }
    QString Report() { return findChild<QPlainTextEdit*>("preview.report")->toPlainText(); }
};

class XFileDialogTest : public ::testing::Test
{
protected:
    XFileDialogTest()
    {
        settings = QSettings::defaultFormat();
        QSettings::setDefaultFormat(QSettings::IniFormat);
        QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, dir.filePath("settings"));
        const auto value = [](int x, int, int) { return x; };
        real =
            XfnWriteGdalSample(dir.filePath("a.tif"), {.width = 12, .height = 5, .value = value});
        waves = XfnWriteGdalSample(dir.filePath("b.tif"),
                                   {.type = GDT_CInt16, .width = 7, .height = 3, .value = value});
    }
    ~XFileDialogTest() override { QSettings::setDefaultFormat(settings); }

    /// Runs the dialog; `act` once it is shown. One that stays open is cancelled.
    int Run(XShownDialog& dialog, std::function<void()> act)
    {
        dialog.SetFolder(XfnFromQString(dir.path()));
        QTimer::singleShot(0, &dialog, act);
        QTimer::singleShot(5000, &dialog, [&] { dialog.reject(); });
        return dialog.DoModal();
    }

    QTemporaryDir dir;
    QSettings::Format settings;
    XString real, waves;
    XScriptedPrompts prompts;
};

TEST_F(XFileDialogTest, TheFileUnderTheCursorIsReportedAndOpened)
{
    XShownDialog dialog;
    const int result = Run(dialog, [&] {
        EXPECT_EQ(dialog.nameFilters().size(), 8);
        dialog.OnFileNameChange(real);
        EXPECT_TRUE(QTest::qWaitFor([&] { return dialog.Report().contains("12 x 5"); }));
        dialog.OnFileNameChange(XfnFromQString(dir.path()));
        EXPECT_EQ(dialog.Report(), "");
        dialog.Type("a.tif");
        dialog.accept();
    });
    ASSERT_EQ(result, XFileDialog::kOk);
    EXPECT_STREQ(dialog.GetFirstFileName(), "a.tif");
    EXPECT_STREQ(dialog.GetFileExtEx(), "TIF");
    const std::unique_ptr<XRSFile> file(dialog.GetXRSFile());
    ASSERT_NE(file, nullptr) << dialog.GetError();
    EXPECT_EQ(file->GetBandAt(0)->GetXSize(), 12);
    QFile::remove(XfnToQString(real));
    EXPECT_EQ(dialog.GetXRSFile(), nullptr);
    EXPECT_FALSE(dialog.GetError().IsEmpty());
}

TEST_F(XFileDialogTest, ComplexFilesAreRefusedUnlessTheyAreWanted)
{
    XShownDialog refusing(nullptr, 1, 1);
    const int result = Run(refusing, [&] {
        refusing.Type("\"a.tif\" \"b.tif\""); // neither was previewed
        refusing.accept();
        EXPECT_TRUE(QTest::qWaitFor([&] { return !prompts.GetMessages().empty(); }));
        EXPECT_TRUE(refusing.isVisible());
        QFile::rename(dir.filePath("b.tif"), dir.filePath("kept"));
        QFile::copy(dir.filePath("a.tif"), dir.filePath("b.tif")); // it is another file now
        refusing.accept();
    });
    QFile::remove(dir.filePath("b.tif"));
    QFile::rename(dir.filePath("kept"), dir.filePath("b.tif"));
    EXPECT_EQ(result, XFileDialog::kOk);
    EXPECT_EQ(prompts.GetLastMessage(), "Data Type is complex.!!!");
    EXPECT_EQ(prompts.GetMessages().size(), 1u);
    EXPECT_EQ(refusing.GetXRSFile(), nullptr) << "multiple choice";

    for (const int hasPreview : {0, 1}) {
        XShownDialog taking(nullptr, 0, 1, hasPreview);
        taking.SetComplexAllowed(hasPreview);
        EXPECT_EQ(Run(taking,
                      [&] {
                          taking.Type("\"a.tif\" \"b.tif\"");
                          taking.accept();
                      }),
                  XFileDialog::kOk);
        XPtrArray files;
        EXPECT_EQ(taking.GetXRSFiles(files), 2) << taking.GetError();
        for (int i = 0; i < files.GetSize(); ++i)
            delete static_cast<XRSFile*>(files.GetAt(i));
    }
}

TEST_F(XFileDialogTest, AFolderAmongChosenFilesIsLeftOut)
{
    ASSERT_TRUE(QDir(dir.path()).mkdir("sub"));
    XShownDialog dialog(nullptr, 1, 1);
    dialog.SetComplexAllowed(1);
    EXPECT_EQ(Run(dialog,
                  [&] {
                      auto* list = dialog.findChild<QListView*>("listView");
                      const auto rows = [&] { return list->model()->rowCount(list->rootIndex()); };
                      ASSERT_TRUE(QTest::qWaitFor([&] { return rows() > 2; }));
                      list->selectAll();
                      dialog.accept();
                  }),
              XFileDialog::kOk);
    EXPECT_EQ(dialog.GetFilePaths().size(), 2u);
}

TEST_F(XFileDialogTest, TheLayoutIsRemembered)
{
    for (const QSize expected : {QSize(1060, 640), QSize(1210, 640)}) {
        XShownDialog dialog;
        EXPECT_EQ(dialog.size(), expected);
        Run(dialog, [&] {
            dialog.resize(1210, 640);
            dialog.reject();
        });
    }
}

class XStoppedOpen : public XThreadDlgOpen
{
    int ThreadProcess(void* owner, XString& error, XThread* thread) override
    {
        const int result = XThreadDlgOpen::ThreadProcess(owner, error, thread);
        thread->Terminate(); // at the moment of success
        return result;
    }
};

TEST_F(XFileDialogTest, AnOpenThatWasStoppedAsItSucceededGivesNothing)
{
    XThreadDlgOpen plain;
    EXPECT_NE(plain.Open(real), nullptr);
    EXPECT_EQ(plain.windowTitle(), "Opening Data...");
    EXPECT_EQ(plain.Open("/no such file.tif"), nullptr);
    EXPECT_NE(plain.GetError().Find("no such file"), -1);
    XStoppedOpen stopped;
    EXPECT_EQ(stopped.Open(real), nullptr);
    EXPECT_STREQ(stopped.GetError(), "");
}

TEST_F(XFileDialogTest, ACancelDoesNotWaitForAReaderThatHangs)
{
    static std::atomic<bool> isReading{false}, isFreed{false}, isTooLate{false};
    VSIFilesystemPluginCallbacksStruct* hanging = VSIAllocFilesystemPluginCallbacksStruct();
    hanging->open = [](void*, const char*, const char*) -> void* {
        isReading = true;
        for (int i = 0; i < 3000 && !isFreed; ++i)
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        isTooLate = !isFreed;
        return nullptr;
    };
    ASSERT_EQ(VSIInstallPluginHandler("/vsihanging/", hanging), 0);
    XThreadDlgOpen dialog;
    QTimer poll;
    QObject::connect(&poll, &QTimer::timeout, &dialog, [&] {
        if (isReading) dialog.close();
    });
    poll.start(1);
    EXPECT_EQ(dialog.Open("/vsihanging/a.tif"), nullptr);
    EXPECT_STREQ(dialog.GetError(), "");
    EXPECT_TRUE(isReading);
    EXPECT_FALSE(isTooLate);
    isFreed = true; // the end of the program waits for the reader
    VSIFreeFilesystemPluginCallbacksStruct(hanging);
}

} // namespace
