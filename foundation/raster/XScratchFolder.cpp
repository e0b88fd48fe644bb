#include "foundation/raster/XScratchFolder.h"

#include "foundation/base/XSystem.h"

#include <fcntl.h>
#include <unistd.h>

#include <cctype>
#include <cerrno>
#include <cstdlib>
#include <set>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

namespace fs = std::filesystem;

namespace {

/// A rename may reach the disk before the bytes of the file do. Throws fs::filesystem_error.
void Flush(const fs::path& path)
{
    const int file = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    const int result = file < 0 ? -1 : ::fsync(file);
    const int code = errno;
    if (file >= 0) ::close(file);
    // some file systems have no such operation, and nothing better either
    if (result != 0 && code != EINVAL && code != ENOTSUP)
        throw fs::filesystem_error("flush", path, std::error_code(code, std::generic_category()));
}

/// Names beside a target that readers would take for parts of it: GDAL's own, and the world files,
/// whose extension is made of the first and last letter of the image's, or all of it, and a w.
std::set<std::string> ListCompanions(const fs::path& target)
{
    std::set<std::string> names;
    for (const char* tail : {".aux.xml", ".ovr", ".msk"})
        names.insert(target.filename().string() + tail);
    std::vector<std::string> worlds;
    std::string extension = target.extension().string(); // with its point
    if (extension.size() > 2)
        worlds = {extension + "w", {'.', extension[1], extension.back(), 'w'}};
    std::error_code ignored;
    if (fs::exists(target, ignored)) worlds.push_back(".wld"); // else it is another image's
    for (std::string& world : worlds) {
        for (int (*convert)(int) : {::tolower, ::toupper}) {
            for (char& c : world)
                c = static_cast<char>(convert(static_cast<unsigned char>(c)));
            names.insert(target.stem().string() + world);
        }
    }
    return names;
}

} // namespace

XScratchFolder::~XScratchFolder()
{
    std::error_code ignored;
    if (!m_path.empty()) fs::remove_all(m_path, ignored);
}

int XScratchFolder::Create(const fs::path& target, XString& error)
{
    std::string name = (target.parent_path() / ".tql-XXXXXX").string();
    if (!mkdtemp(name.data())) {
        const int code = errno;
        XString id, text;
        XfnGetErrorString(code, id, text);
        error = XfnFormat("\"%s\" cannot be written: %s.", target.c_str(), text);
        return 0;
    }
    m_path = name;
    return 1;
}

int XScratchFolder::Publish(const fs::path& target, XString& error)
{
    const fs::path folder = target.parent_path();
    const fs::path kept = m_path / "kept";
    std::vector<std::pair<fs::path, fs::path>> moves; // done so far, from and to
    try {
        std::set<std::string> names;
        for (const auto& entry : fs::directory_iterator(m_path)) {
            Flush(entry.path());
            names.insert(entry.path().filename().string());
        }
        std::set<std::string> old = ListCompanions(target);
        old.insert(names.begin(), names.end());
        fs::create_directory(kept);
        const auto move = [&](const fs::path& from, const fs::path& to) {
            moves.emplace_back(from, to); // first, since it may fail
            std::error_code code;
            fs::rename(from, to, code);
            if (!code) return;
            moves.pop_back();
            throw fs::filesystem_error("rename", from, code);
        };
        for (const std::string& name : old)
            if (fs::is_regular_file(folder / name)) move(folder / name, kept / name);
        const std::string last = target.filename().string();
        for (const std::string& name : names)
            if (name != last) move(m_path / name, folder / name);
        move(m_path / last, folder / last);
        Flush(folder);
        return 1;
    } catch (const std::exception& e) {
        int isBack = 1;
        for (auto place = moves.rbegin(); place != moves.rend(); ++place) {
            std::error_code code;
            fs::rename(place->second, place->first, code);
            isBack &= !code;
        }
        if (!isBack) m_path.clear(); // it stays
        const auto* system = dynamic_cast<const fs::filesystem_error*>(&e);
        error = XfnFormat("\"%s\" cannot be written: %s.", target.c_str(),
                          system ? system->code().message().c_str() : "there is not enough memory");
        if (!isBack) error += XfnFormat(" What stood there is in \"%s\".", kept.c_str());
        return 0;
    }
}
