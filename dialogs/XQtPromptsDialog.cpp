#include "dialogs/XQtPromptsDialog.h"

#include "dialogs/XFileDialog.h"
#include "dialogs/XOwnerWidget.h"
#include "foundation/platform/XFileFilter.h"
#include "foundation/platform/XQtText.h"

#include <QColorDialog>
#include <QFileDialog>
#include <QFileInfo>
#include <QGuiApplication>
#include <QMessageBox>

namespace {

QMessageBox::Icon IconOf(XPrompts::XIcon icon)
{
    switch (icon) {
    case XPrompts::XIcon::Information:
        return QMessageBox::Information;
    case XPrompts::XIcon::Warning:
        return QMessageBox::Warning;
    case XPrompts::XIcon::Error:
        return QMessageBox::Critical;
    case XPrompts::XIcon::Question:
        return QMessageBox::Question;
    case XPrompts::XIcon::None:
        break;
    }
    return QMessageBox::NoIcon;
}

QString ProgramName()
{
    return QGuiApplication::applicationDisplayName();
}

int RunBox(XHWND parent, const QString& text, QMessageBox::Icon icon, const QString& title,
           QMessageBox::StandardButtons buttons, QMessageBox::StandardButton escape)
{
    QMessageBox box(icon, title, text, buttons, XfnFindOwnerWidget(parent));
    box.setObjectName("prompt.message");
    box.setTextFormat(Qt::PlainText); // a file may be named like a piece of markup
    box.setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    box.setEscapeButton(escape);
    return box.exec();
}

} // namespace

XQtPromptsDialog::~XQtPromptsDialog()
{
    XPrompts* inForce = Set(nullptr);
    if (inForce != this) Set(inForce);
}

void XQtPromptsDialog::Message(XHWND parent, const XString& text, XIcon icon, const XString& title)
{
    RunBox(parent, XfnToQString(text), IconOf(icon),
           title.IsEmpty() ? ProgramName() : XfnToQString(title), QMessageBox::Ok, QMessageBox::Ok);
}

int XQtPromptsDialog::AskYesNo(XHWND parent, const XString& text)
{
    return RunBox(parent, XfnToQString(text), QMessageBox::Question, ProgramName(),
                  QMessageBox::Yes | QMessageBox::No, QMessageBox::No) == QMessageBox::Yes;
}

XPrompts::XAnswer XQtPromptsDialog::AskYesNoCancel(XHWND parent, const XString& text)
{
    const int answer =
        RunBox(parent, XfnToQString(text), QMessageBox::Question, ProgramName(),
               QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel, QMessageBox::Cancel);
    if (answer == QMessageBox::Yes) return XAnswer::Yes;
    return answer == QMessageBox::No ? XAnswer::No : XAnswer::Cancel;
}

int XQtPromptsDialog::OpenFiles(XHWND parent, tagXFilePrompt& prompt, bool isMulti,
                                std::vector<XString>& paths)
{
    return prompt.hasRasterPreview ? RunRasterDialog(parent, prompt, isMulti, paths)
                                   : RunFileDialog(parent, prompt, false, isMulti, paths);
}

int XQtPromptsDialog::SaveFile(XHWND parent, tagXFilePrompt& prompt, XString& path)
{
    std::vector<XString> paths;
    if (!RunFileDialog(parent, prompt, true, false, paths)) return 0;
    path = paths.front();
    return 1;
}

int XQtPromptsDialog::RunFileDialog(XHWND parent, tagXFilePrompt& prompt, bool isSaving,
                                    bool isMulti, std::vector<XString>& paths)
{
    paths.clear();
    const XFileFilter filter(prompt.filter);
    const QString kind = XfnToQString(prompt.filter);
    QFileDialog dialog(XfnFindOwnerWidget(parent));
    dialog.setObjectName("prompt.file");
    dialog.setOption(QFileDialog::DontUseNativeDialog, !m_isNative);
    dialog.setAcceptMode(isSaving ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
    dialog.setFileMode(isSaving  ? QFileDialog::AnyFile
                       : isMulti ? QFileDialog::ExistingFiles
                                 : QFileDialog::ExistingFile);
    if (!prompt.title.IsEmpty()) dialog.setWindowTitle(XfnToQString(prompt.title));
    dialog.setNameFilters(filter.GetNameFilters());
    if (prompt.filterIndex >= 0 && prompt.filterIndex < filter.GetCount())
        dialog.selectNameFilter(filter.GetNameFilter(prompt.filterIndex));
    const QString folder =
        prompt.folder.IsEmpty() ? m_folders.value(kind) : XfnToQString(prompt.folder);
    if (!folder.isEmpty()) dialog.setDirectory(folder);
    if (!prompt.fileName.IsEmpty()) dialog.selectFile(XfnToQString(prompt.fileName));
    if (dialog.exec() != QDialog::Accepted) return 0;
    const QStringList chosen = dialog.selectedFiles();
    if (chosen.isEmpty()) return 0;
    for (const QString& path : chosen)
        paths.push_back(XfnFromQString(path));
    m_folders.insert(kind, QFileInfo(chosen.front()).path());
    prompt.filterIndex = filter.FindNameFilter(dialog.selectedNameFilter());
    return 1;
}

int XQtPromptsDialog::RunRasterDialog(XHWND parent, tagXFilePrompt& prompt, bool isMulti,
                                      std::vector<XString>& paths)
{
    paths.clear();
    XFileDialog dialog(XfnFindOwnerWidget(parent), 1, isMulti);
    if (!prompt.title.IsEmpty()) dialog.setWindowTitle(XfnToQString(prompt.title));
    if (!prompt.filter.IsEmpty()) dialog.SetFilter(prompt.filter);
    dialog.SetFilterIndex(prompt.filterIndex);
    dialog.SetFolder(prompt.folder);
    dialog.SetComplexAllowed(1); // who asks for paths knows what to do with them
    if (dialog.DoModal() != XFileDialog::kOk) return 0;
    paths = dialog.GetFilePaths();
    prompt.filterIndex = dialog.GetFilterIndex();
    return !paths.empty();
}

int XQtPromptsDialog::ChooseFolder(XHWND parent, const XString& title, XString& path)
{
    QFileDialog dialog(XfnFindOwnerWidget(parent));
    dialog.setObjectName("prompt.folder");
    dialog.setOption(QFileDialog::DontUseNativeDialog, !m_isNative);
    dialog.setOption(QFileDialog::ShowDirsOnly);
    dialog.setFileMode(QFileDialog::Directory);
    if (!title.IsEmpty()) dialog.setWindowTitle(XfnToQString(title));
    if (!path.IsEmpty()) dialog.setDirectory(XfnToQString(path));
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) return 0;
    path = XfnFromQString(dialog.selectedFiles().front());
    return 1;
}

int XQtPromptsDialog::ChooseColor(XHWND parent, std::uint32_t& colour)
{
    const QColor first(static_cast<int>(colour & 0xFF), static_cast<int>(colour >> 8 & 0xFF),
                       static_cast<int>(colour >> 16 & 0xFF));
    QColorDialog dialog(first, XfnFindOwnerWidget(parent));
    dialog.setObjectName("prompt.colour");
    dialog.setOption(QColorDialog::DontUseNativeDialog, !m_isNative);
    if (dialog.exec() != QDialog::Accepted) return 0;
    const QColor chosen = dialog.currentColor();
    colour = (colour & 0xFF000000u) | static_cast<std::uint32_t>(chosen.blue()) << 16 |
             static_cast<std::uint32_t>(chosen.green()) << 8 |
             static_cast<std::uint32_t>(chosen.red());
    return 1;
}
