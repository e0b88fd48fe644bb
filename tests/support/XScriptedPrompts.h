#pragma once

#include "foundation/platform/XPrompts.h"

#include <gtest/gtest.h>

#include <deque>
#include <string>
#include <utility>
#include <vector>

/// Answers prompts from a script and records what was asked; in force while it lives.
///
/// Answers are given in the order of the questions, whatever their kind. A question without an
/// answer left fails the test and is refused; so does an answer that nobody asked for.
class XScriptedPrompts final : public XPrompts
{
public:
    struct tagShown
    {
        XHWND parent = 0;
        std::string text; ///< of a message or question; the title of a file prompt
        XIcon icon = XIcon::None;
        std::string filter;
        std::string fileName;
    };

    XScriptedPrompts() : m_previous(XPrompts::Set(this)) {}
    ~XScriptedPrompts() override
    {
        XPrompts::Set(m_previous);
        EXPECT_TRUE(m_answers.empty()) << m_answers.size() << " scripted answers were not used";
    }

    void AnswerYes() { m_answers.push_back({.isAccepted = true}); }
    void AnswerNo() { m_answers.push_back({}); }
    void AnswerCancel() { m_answers.push_back({.isCancelled = true}); }
    /// For OpenFiles, SaveFile and ChooseFolder.
    void AnswerPath(const char* path) { AnswerPaths({path}); }
    void AnswerPaths(std::vector<XString> paths, int filterIndex = 0)
    {
        m_answers.push_back(
            {.isAccepted = true, .paths = std::move(paths), .filterIndex = filterIndex});
    }
    void AnswerColor(std::uint32_t colour)
    {
        m_answers.push_back({.isAccepted = true, .colour = colour});
    }

    const std::vector<tagShown>& GetMessages() const { return m_messages; }
    const std::vector<tagShown>& GetQuestions() const { return m_questions; }
    /// The text of the last message, empty when there was none.
    std::string GetLastMessage() const
    {
        return m_messages.empty() ? std::string() : m_messages.back().text;
    }

    using XPrompts::Message;
    void Message(XHWND parent, const XString& text, XIcon icon, const XString&) override
    {
        m_messages.push_back({parent, text.GetString(), icon, {}, {}});
    }
    int AskYesNo(XHWND parent, const XString& text) override
    {
        return Take({parent, text.GetString(), XIcon::Question, {}, {}}).isAccepted;
    }
    XAnswer AskYesNoCancel(XHWND parent, const XString& text) override
    {
        const tagAnswer answer = Take({parent, text.GetString(), XIcon::Question, {}, {}});
        return answer.isCancelled  ? XAnswer::Cancel
               : answer.isAccepted ? XAnswer::Yes
                                   : XAnswer::No;
    }
    int OpenFiles(XHWND parent, tagXFilePrompt& prompt, bool isMulti,
                  std::vector<XString>& paths) override
    {
        const tagAnswer answer = TakeFile(parent, prompt);
        paths = answer.paths;
        EXPECT_TRUE(isMulti || paths.size() <= 1) << "several files for a prompt that takes one";
        return answer.isAccepted;
    }
    int SaveFile(XHWND parent, tagXFilePrompt& prompt, XString& path) override
    {
        const tagAnswer answer = TakeFile(parent, prompt);
        if (answer.paths.empty()) return 0;
        path = answer.paths.front();
        return 1;
    }
    int ChooseFolder(XHWND parent, const XString& title, XString& path) override
    {
        const tagAnswer answer = Take({parent, title.GetString(), XIcon::None, {}, {}});
        if (answer.paths.empty()) return 0;
        path = answer.paths.front();
        return 1;
    }
    int ChooseColor(XHWND parent, std::uint32_t& colour) override
    {
        const tagAnswer answer = Take({parent, {}, XIcon::None, {}, {}});
        if (answer.isAccepted) colour = (colour & 0xFF000000u) | (answer.colour & 0x00FFFFFFu);
        return answer.isAccepted;
    }

private:
    struct tagAnswer
    {
        bool isAccepted = false;
        bool isCancelled = false;
        std::vector<XString> paths{};
        int filterIndex = 0;
        std::uint32_t colour = 0;
    };

    tagAnswer Take(tagShown question)
    {
        m_questions.push_back(std::move(question));
        if (m_answers.empty()) {
            ADD_FAILURE() << "no answer for: " << m_questions.back().text;
            return {};
        }
        tagAnswer answer = std::move(m_answers.front());
        m_answers.pop_front();
        return answer;
    }
    tagAnswer TakeFile(XHWND parent, tagXFilePrompt& prompt)
    {
        tagAnswer answer = Take({parent, prompt.title.GetString(), XIcon::None,
                                 prompt.filter.GetString(), prompt.fileName.GetString()});
        if (answer.isAccepted) prompt.filterIndex = answer.filterIndex;
        return answer;
    }

    XPrompts* m_previous;
    std::deque<tagAnswer> m_answers;
    std::vector<tagShown> m_messages;
    std::vector<tagShown> m_questions;
};
