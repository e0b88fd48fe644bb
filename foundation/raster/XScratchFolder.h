#pragma once

#include "foundation/base/XString.h"

#include <filesystem>

/// For the sources of this folder only: a folder of its own beside a file that is to be made, gone
/// with everything in it in the end.
///
/// What stands in it has the final names, so that drivers which write several files find theirs, and
/// becomes visible by renaming when all of it is complete and on the disk.
class XScratchFolder
{
public:
    XScratchFolder() = default;
    XScratchFolder(const XScratchFolder&) = delete;
    XScratchFolder& operator=(const XScratchFolder&) = delete;
    ~XScratchFolder();

    /// @return 0 with a sentence in `error` when nothing can be made there
    int Create(const std::filesystem::path& target, XString& error);

    /// Puts the files that stand in the folder beside it. What they replace, and what lies beside
    /// the target under names that readers would take for parts of the new file, is kept in the
    /// folder until all is in place, and goes back when something fails. When that fails too the
    /// folder stays, and `error` names it.
    int Publish(const std::filesystem::path& target, XString& error);
    const std::filesystem::path& GetPath() const { return m_path; }

private:
    std::filesystem::path m_path;
};
