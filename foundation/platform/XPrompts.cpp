#include "foundation/platform/XPrompts.h"

namespace {

// Stands in while no service is set: a library without a user interface asks nobody.
class XSilentPrompts final : public XPrompts
{
public:
    void Message(XHWND, const XString&, XIcon, const XString&) override {}
    int AskYesNo(XHWND, const XString&) override { return 0; }
    XAnswer AskYesNoCancel(XHWND, const XString&) override { return XAnswer::Cancel; }
    int OpenFiles(XHWND, tagXFilePrompt&, bool, std::vector<XString>& paths) override
    {
        paths.clear();
        return 0;
    }
    int SaveFile(XHWND, tagXFilePrompt&, XString&) override { return 0; }
    int ChooseFolder(XHWND, const XString&, XString&) override { return 0; }
    int ChooseColor(XHWND, std::uint32_t&) override { return 0; }
};

XPrompts* currentPrompts = nullptr;

} // namespace

XPrompts::~XPrompts()
{
    if (currentPrompts == this) currentPrompts = nullptr;
}

void XPrompts::Message(XHWND parent, const XString& text, XIcon icon)
{
    Message(parent, text, icon, XString());
}

int XPrompts::OpenFile(XHWND parent, tagXFilePrompt& prompt, XString& path)
{
    std::vector<XString> paths;
    if (!OpenFiles(parent, prompt, false, paths) || paths.empty()) return 0;
    path = paths.front();
    return 1;
}

XPrompts* XPrompts::Get()
{
    static XSilentPrompts* const silent = new XSilentPrompts;
    return currentPrompts ? currentPrompts : silent;
}

XPrompts* XPrompts::Set(XPrompts* prompts)
{
    XPrompts* const previous = currentPrompts;
    currentPrompts = prompts;
    return previous;
}
