#pragma once

#include "foundation/platform/XPrompts.h"

#include <QHash>
#include <QString>

/// The prompts of the library as Qt message boxes, file, folder and colour dialogs.
///
/// A host makes one, hands it to XPrompts::Set and keeps it as long as any window lives:
///
///     XQtPromptsDialog prompts;
///     XPrompts::Set(&prompts);
///
/// File prompts are native where the desktop has native ones, but for those with a preview. They
/// remember, for each filter, the folder where the last one ended. Long messages keep their line
/// breaks and can be selected with the mouse. The parent is found by its handle; a handle of no
/// widget gives a box without parent.
/// Threads: UI thread.
class XAPI XQtPromptsDialog : public XPrompts
{
public:
    XQtPromptsDialog() = default;
    ~XQtPromptsDialog() override; ///< withdraws itself if it is still in force

    using XPrompts::Message;
    void Message(XHWND parent, const XString& text, XIcon icon, const XString& title) override;
    int AskYesNo(XHWND parent, const XString& text) override;
    XAnswer AskYesNoCancel(XHWND parent, const XString& text) override;
    int OpenFiles(XHWND parent, tagXFilePrompt& prompt, bool isMulti,
                  std::vector<XString>& paths) override;
    int SaveFile(XHWND parent, tagXFilePrompt& prompt, XString& path) override;
    int ChooseFolder(XHWND parent, const XString& title, XString& path) override;
    int ChooseColor(XHWND parent, std::uint32_t& colour) override;

    /// Whether the desktop's own dialogs are used; on at first. Tests switch it off, since they
    /// cannot see into a native dialog.
    void SetNative(bool isNative) { m_isNative = isNative; }

private:
    int RunFileDialog(XHWND parent, tagXFilePrompt& prompt, bool isSaving, bool isMulti,
                      std::vector<XString>& paths);

    int RunRasterDialog(XHWND parent, tagXFilePrompt& prompt, bool isMulti,
                        std::vector<XString>& paths);

    bool m_isNative = true;
    QHash<QString, QString> m_folders; // last folder of each filter
};
