#include <dirent.h>
#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <climits>
#include <memory>
#include <system_error>

#include "foundation/drives.h"
#include "foundation/platform/platform.h"
#include "foundation/platform/posix_common.h"
#include "foundation/text.h"

namespace kelvash::platform {

namespace fs = std::filesystem;

namespace {

// The kernel keeps that much of a program's name.
constexpr std::size_t kNameLength = 15;

bool IsNumber(std::string_view name) {
    return !name.empty() &&
           std::all_of(name.begin(), name.end(), [](char letter) { return letter >= '0' && letter <= '9'; });
}

bool IsSame(const fs::path& a, const fs::path& b) {
    std::error_code error;
    return !a.empty() && fs::equivalent(a, b, error);
}

std::string_view NameIn(std::string_view word) {
    return word.substr(word.find_last_of("/\\") + 1); // npos + 1 is the whole word
}

// Where a word of a command line leads: native, a path text of a drive, or below the working folder.
fs::path PlaceOf(const std::string& word, const fs::path& working) {
    return word.size() >= 2 && word[1] == ':' ? NativePath(word) : working / word;
}

// A process of the program's own name runs it if it is that file, or the file that its command line names, or
// if it works beside it. While Wine starts it goes by Wine's name.
bool Runs(const std::string& id, const NativeFile& program) {
    const fs::path process = fs::path("/proc") / id;
    const std::string wanted = program.filename().string();
    const std::string line = BytesOfProcess(id, "comm");
    const std::string name = line.substr(0, line.find('\n'));
    const bool has_name = EqualNoCase(name, std::string_view(wanted).substr(0, kNameLength));
    if (!has_name && !StartsWithNoCase(name, "wine")) return false;
    std::error_code error;
    const fs::path working = fs::read_symlink(process / "cwd", error);
    if (error) return false; // another user's, or one that has ended
    const bool beside = IsSame(working, program.parent_path());
    if (has_name && (beside || IsSame(fs::read_symlink(process / "exe", error), program))) return true;
    const std::vector<std::string> words = Split(BytesOfProcess(id, "cmdline"), '\0');
    return std::any_of(words.begin(), words.end(), [&](const std::string& word) {
        return EqualNoCase(NameIn(word), wanted) && (beside || IsSame(PlaceOf(word, working), program));
    });
}

} // namespace

std::vector<std::string> ProcessIds() {
    std::vector<std::string> ids;
    const std::unique_ptr<DIR, int (*)(DIR*)> entries(::opendir("/proc"), ::closedir);
    if (entries == nullptr) return ids;
    while (const dirent* entry = ::readdir(entries.get()))
        if (IsNumber(entry->d_name)) ids.emplace_back(entry->d_name);
    return ids;
}

std::string BytesOfProcess(const std::string& id, const char* file) {
    const std::string path = "/proc/" + id + "/" + file;
    const int descriptor = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (descriptor < 0) return {};
    std::string bytes;
    char block[4096];
    // A process that ends meanwhile is an error here, and the end of what can be read.
    for (ssize_t got = 0; (got = ::read(descriptor, block, sizeof block)) > 0;)
        bytes.append(block, static_cast<std::size_t>(got));
    ::close(descriptor);
    return bytes;
}

std::int64_t FindProcessOf(const NativeFile& program) {
    for (const std::string& id : ProcessIds())
        if (Runs(id, program)) return std::stoll(id);
    return 0;
}

bool HoldsOpen(std::int64_t process_id, const std::vector<std::string>& files) {
    const std::string folder = "/proc/" + std::to_string(process_id) + "/fd";
    const std::unique_ptr<DIR, int (*)(DIR*)> entries(::opendir(folder.c_str()), ::closedir);
    if (files.empty() || entries == nullptr) return false;
    while (const dirent* entry = ::readdir(entries.get())) {
        char link[PATH_MAX];
        const ssize_t length = ::readlinkat(::dirfd(entries.get()), entry->d_name, link, sizeof link);
        if (length <= 0 || link[0] != '/') continue; // pipes, sockets
        const std::string open(link, static_cast<std::size_t>(length));
        const std::string_view name = NameIn(open);
        if (std::any_of(files.begin(), files.end(), [&](const std::string& file) {
                return EqualNoCase(NameIn(file), name) && IsSame(NativePath(file), open);
            }))
            return true;
    }
    return false;
}

} // namespace kelvash::platform
