#pragma once

#include "foundation/base/XString.h"
#include "foundation/platform/XWindowMessages.h"

#include <cstdint>
#include <vector>

/// What a file prompt shows at first.
struct tagXFilePrompt
{
    XString title{};    ///< empty: the prompt's own
    XString filter{};   ///< "A (*.a;*.b)|*.a;*.b|All (*.*)|*.*||", see XFileFilter
    XString folder{};   ///< empty: where the last prompt of this kind ended
    XString fileName{}; ///< proposed name; for saving
    /// For opening: a preview of the raster under the cursor stands beside the list.
    bool hasRasterPreview = false;
    int filterIndex = 0; ///< in: the entry chosen at first; out: the entry chosen at the end
};

/// Everything the library asks the user outside its own dialogs, as one replaceable service.
///
/// Texts and paths are narrow strings in the library's code page. A parent is the handle of the
/// asking window, 0 for none. Every operation blocks until the user answered.
/// Threads: UI thread only.
class XAPI XPrompts
{
public:
    enum class XIcon { None, Information, Warning, Error, Question };
    enum class XAnswer { Yes, No, Cancel };

    virtual ~XPrompts();

    /// @param title  empty: the application's name
    virtual void Message(XHWND parent, const XString& text, XIcon icon, const XString& title) = 0;
    void Message(XHWND parent, const XString& text, XIcon icon = XIcon::Warning);

    /// Non-zero for yes.
    virtual int AskYesNo(XHWND parent, const XString& text) = 0;
    virtual XAnswer AskYesNoCancel(XHWND parent, const XString& text) = 0;

    /// @param paths  receives the files chosen, one unless `isMulti`
    /// @return 0 when the user cancelled; `paths` is then empty
    virtual int OpenFiles(XHWND parent, tagXFilePrompt& prompt, bool isMulti,
                          std::vector<XString>& paths) = 0;
    /// Asks before a file is overwritten. The path comes as typed, without an added extension.
    virtual int SaveFile(XHWND parent, tagXFilePrompt& prompt, XString& path) = 0;
    /// @param path  in: the folder shown first; out: the folder chosen
    virtual int ChooseFolder(XHWND parent, const XString& title, XString& path) = 0;
    /// @param colour  0xAABBGGRR, red lowest; the top byte is kept
    virtual int ChooseColor(XHWND parent, std::uint32_t& colour) = 0;

    /// One file to open; OpenFiles without multiple choice.
    int OpenFile(XHWND parent, tagXFilePrompt& prompt, XString& path);

    /// The service in force. Never null: where none was set, nothing is shown and every question
    /// is answered by no or cancel.
    static XPrompts* Get();
    /// Puts a service in force; null removes it. Not owned.
    /// @return the service set before, null for none
    static XPrompts* Set(XPrompts* prompts);
};
