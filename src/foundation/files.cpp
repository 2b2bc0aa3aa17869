#include "foundation/files.h"

#include <algorithm>
#include <chrono>
#include <fstream>
#include <memory>
#include <tuple>

#include "foundation/drives.h"
#include "foundation/guarded_folders.h"
#include "foundation/known_names.h"
#include "foundation/native_text.h"
#include "foundation/parallel.h"
#include "foundation/path.h"
#include "foundation/platform/platform.h"
#include "foundation/pumping.h"
#include "foundation/text.h"

namespace kelvash {

namespace fs = std::filesystem;

namespace {

constexpr std::size_t kReadBlock = std::size_t{1} << 16;
constexpr std::size_t kWriteBlock = std::size_t{1} << 21; // some 10 ms of a busy machine

fs::file_status StatusOf(std::string_view path) {
    std::error_code error;
    return Trim(path).empty() ? fs::file_status() : fs::status(NativePath(path), error);
}

// The name of an entry; empty for one that no path text can hold.
std::string SpeakableName(const fs::directory_entry& entry) {
    try {
        std::string name = TextOfNative(entry.path().filename());
        return name.find('\\') == std::string::npos ? name : std::string();
    } catch (const fs::filesystem_error&) { // half a character of UTF-16
        return {};
    }
}

template <class Wanted>
std::vector<std::string> ListEntries(std::string_view folder, Wanted wanted) {
    std::vector<std::pair<std::string, std::string>> names; // folded, as it is
    std::error_code error;
    for (fs::directory_iterator at(NativePath(folder), error), end; !error && at != end;
         at.increment(error)) {
        PumpNowAndThen();
        std::string name = SpeakableName(*at);
        if (!name.empty() && wanted(*at, name)) names.emplace_back(FoldCase(name), std::move(name));
    }
    std::sort(names.begin(), names.end());
    std::vector<std::string> paths;
    paths.reserve(names.size());
    for (const auto& [folded, name] : names)
        paths.push_back(std::string(folder) + "\\" + name);
    return paths;
}

bool IsFile(const fs::directory_entry& entry) {
    std::error_code error;
    return entry.is_regular_file(error);
}

// A folder is read once for both kinds, and found by its native path: a level may have hundreds.
void ScanFolder(const std::string& folder, const fs::path& native, Tree& tree) {
    struct Named {
        std::string folded, name;
        fs::path native; // of a folder to go on in
        bool operator<(const Named& other) const {
            return std::tie(folded, name) < std::tie(other.folded, other.name);
        }
    };
    std::vector<Named> files, folders;
    std::error_code error;
    for (fs::directory_iterator at(native, error), end; !error && at != end; at.increment(error)) {
        PumpNowAndThen();
        std::string name = SpeakableName(*at);
        std::error_code unknown;
        if (name.empty()) continue;
        if (at->is_directory(unknown))
            folders.push_back({FoldCase(name), name, at->is_symlink(unknown) ? fs::path() : at->path()});
        else if (IsFile(*at))
            files.push_back({FoldCase(name), std::move(name), {}});
    }
    std::sort(files.begin(), files.end());
    std::sort(folders.begin(), folders.end());
    for (const Named& file : files)
        tree.files.push_back(folder + "\\" + file.name);
    for (const Named& sub_folder : folders)
        tree.folders.push_back(folder + "\\" + sub_folder.name);
    for (const Named& sub_folder : folders)
        if (!sub_folder.native.empty()) ScanFolder(folder + "\\" + sub_folder.name, sub_folder.native, tree);
}

// The system takes what a disk can't at once only after a while.
bool WriteInBlocks(int descriptor, std::string_view bytes) {
    while (bytes.size() > kWriteBlock) {
        if (!platform::WriteBytes(descriptor, bytes.substr(0, kWriteBlock))) return false;
        bytes.remove_prefix(kWriteBlock);
        PumpNowAndThen();
    }
    return platform::WriteBytes(descriptor, bytes);
}

bool CopyAsked(std::string_view source, std::string_view destination, const platform::GoOn& go_on) {
    const fs::path from = NativePath(source);
    const fs::path to = NativePath(destination);
    std::error_code error;
    if (fs::equivalent(from, to, error)) return true; // deleting the destination first would lose both
    DeleteFile(destination);
    return platform::CopyContent(from, to, go_on);
}

} // namespace

bool FileExists(std::string_view path) {
    return fs::is_regular_file(StatusOf(path));
}

bool FolderExists(std::string_view path) {
    return fs::is_directory(StatusOf(path));
}

bool AnyFile(std::string_view folder, std::string_view mask) {
    std::error_code error;
    for (fs::directory_iterator at(NativePath(folder), error), end; !error && at != end;
         at.increment(error)) {
        PumpNowAndThen();
        if (const std::string name = SpeakableName(*at);
            !name.empty() && IsFile(*at) && MatchesMask(name, mask))
            return true;
    }
    return false;
}

bool CreateFolder(std::string_view path) {
    std::error_code error;
    const fs::path native = NativePath(path);
    return fs::create_directory(native, error) || fs::is_directory(native, error);
}

bool DeleteFile(std::string_view path) {
    const fs::path native = NativePath(path);
    std::error_code error;
    const fs::file_type type = fs::symlink_status(native, error).type();
    if (type == fs::file_type::not_found) return true;
    if (type == fs::file_type::directory || type == fs::file_type::none) return false;
    if (type == fs::file_type::regular) platform::ClearReadOnly(native);
    return platform::Unlink(native);
}

bool CopyFile(std::string_view source, std::string_view destination) {
    return CopyAsked(source, destination, [] {
        PumpNowAndThen();
        return true;
    });
}

bool CopyFileStoppable(std::string_view source, std::string_view destination) {
    return CopyAsked(source, destination, [] { return !StopWantedByNow(); });
}

bool LinkOrCopyFile(std::string_view source, std::string_view destination) {
    return (FileExists(source) && platform::LinkFile(NativePath(source), NativePath(destination))) ||
           CopyFile(source, destination);
}

bool RemoveName(std::string_view path) {
    return platform::Unlink(NativePath(path));
}

bool ExchangeFolders(std::string_view a, std::string_view b) {
    return platform::Exchange(NativePath(a), NativePath(b));
}

bool RenameFile(std::string_view old_path, std::string_view new_path) {
    return platform::RenameOver(NativePath(old_path), NativePath(new_path), false);
}

bool CopyFileWhole(std::string_view source, std::string_view destination) {
    const std::string partial = FolderOf(destination) + "\\" + std::string(kPartialFile);
    // A killed run may have left it as a second name of another file, whose attributes are to stay.
    static_cast<void>(platform::Unlink(NativePath(partial)));
    if (!CopyFile(source, partial)) return false;
    ClearReadOnly(destination);
    // As whole as a rename; but of a file that takes another one's place by a rename some file systems begin
    // to write out every byte at once, which is a tenth of the time of a swap.
    if (FileExists(destination) && platform::Exchange(NativePath(partial), NativePath(destination))) {
        DeleteFile(partial);
        return true;
    }
    if (RenameFile(partial, destination)) return true;
    DeleteFile(partial);
    return false;
}

std::string ReadWholeFile(std::string_view path) {
    return ReadFileBytes(path).value_or(std::string());
}

std::optional<std::string> ReadFileBytes(std::string_view path) {
    return ReadFileStart(path, std::string::npos);
}

std::optional<std::string> ReadFileStart(std::string_view path, std::size_t limit) {
    if (!FileExists(path)) return std::nullopt;
    std::ifstream file(NativePath(path), std::ios::binary);
    if (!file) return std::nullopt;
    std::string bytes;
    while (bytes.size() < limit) {
        const std::size_t start = bytes.size();
        bytes.resize(start + std::min(kReadBlock, limit - start));
        file.read(bytes.data() + start, static_cast<std::streamsize>(bytes.size() - start));
        bytes.resize(start + static_cast<std::size_t>(file.gcount()));
        if (file.bad()) return std::nullopt;
        if (!file) break;
        PumpNowAndThen();
    }
    return bytes;
}

bool WriteTextFile(std::string_view path, std::string_view text) {
    return ReplaceFileBytes(path, std::string(text) + "\r\n", Flush::No);
}

bool ReplaceFileBytes(std::string_view path, std::string_view bytes, Flush flush) {
    return ReplaceFileBytes(
        path, [&](const WritePiece& write) { return write(bytes); }, flush);
}

bool ReplaceFileBytes(std::string_view path, const std::function<bool(const WritePiece&)>& produce,
                      Flush flush) {
    std::error_code error;
    fs::path target = NativePath(path);
    if (fs::is_symlink(target, error)) target = fs::weakly_canonical(target, error); // keep the user's link
    if (!fs::is_regular_file(target, error) && fs::exists(target, error)) return false;
    fs::path sibling = target;
    sibling += ".new";
    const int descriptor = platform::OpenForWriting(sibling);
    if (descriptor < 0) return false;
    const bool written =
        produce([descriptor](std::string_view piece) { return WriteInBlocks(descriptor, piece); });
    const bool closed = platform::CloseWritten(descriptor, flush == Flush::Yes);
    if (written && closed && platform::RenameOver(sibling, target, flush == Flush::Yes)) return true;
    platform::Unlink(sibling);
    return false;
}

bool FlushDrive(std::string_view folder) {
    bool flushed = false;
    return Beside([&] { flushed = platform::FlushDrive(NativePath(folder)); }) && flushed;
}

bool FlushFile(std::string_view path) {
    bool flushed = false;
    return Beside([&] { flushed = platform::FlushFile(NativePath(path)); }) && flushed;
}

std::int64_t FileSize(std::string_view path) {
    std::error_code error;
    const std::uintmax_t size = fs::file_size(NativePath(path), error);
    return error ? 0 : static_cast<std::int64_t>(size);
}

std::optional<std::int64_t> FileTime(std::string_view path) {
    std::error_code error;
    const fs::file_time_type time = fs::last_write_time(NativePath(path), error);
    if (error) return std::nullopt;
    const auto system_time = std::chrono::file_clock::to_sys(time).time_since_epoch();
    return std::chrono::floor<std::chrono::seconds>(system_time).count();
}

bool SetFileDate(std::string_view path, std::int64_t seconds) {
    return FileExists(path) && platform::SetFileTime(NativePath(path), seconds);
}

bool ClearReadOnly(std::string_view path) {
    return FileExists(path) && platform::ClearReadOnly(NativePath(path));
}

std::string ShortPath(std::string_view path) {
    constexpr std::size_t kShortPathLimit = 255;
    const std::string text = platform::ShortPath(path);
    return text.empty() || text.size() > kShortPathLimit ? std::string(path) : text;
}

std::vector<std::string> ListFiles(std::string_view folder, std::string_view mask) {
    return ListEntries(folder, [mask](const fs::directory_entry& entry, const std::string& name) {
        return MatchesMask(name, mask) && IsFile(entry);
    });
}

std::vector<std::string> ListFolders(std::string_view folder) {
    return ListEntries(folder, [](const fs::directory_entry& entry, const std::string&) {
        std::error_code error;
        return entry.is_directory(error);
    });
}

bool DeleteFiles(std::string_view folder, std::string_view mask) {
    if (mask.empty() || !MayDeleteFilesIn(folder)) return false;
    for (const std::string& file : ListFiles(folder, mask)) {
        if (!DeleteFile(file)) return false;
        PumpNowAndThen();
    }
    return true;
}

bool CopyFiles(std::string_view source, std::string_view destination, Existing existing,
               std::string_view mask) {
    const KnownNames names(destination);
    for (const std::string& file : ListFiles(source, mask)) {
        const std::string target = std::string(destination) + "\\" + FileNameOf(file);
        if (existing == Existing::Ask && FileExists(target) && !AskReplaceFile(file, target)) continue;
        if (!CopyFile(file, target)) return false;
    }
    return true;
}

bool RemoveFolder(std::string_view path) {
    if (!MayDeleteTree(path)) return false;
    DeleteFiles(path, "*");
    return FolderExists(path) && RemoveEmptyFolder(path);
}

bool RemoveEmptyFolder(std::string_view path) {
    return platform::RemoveEmptyFolder(NativePath(path));
}

Tree ScanTree(std::string_view root) {
    Tree tree;
    ScanFolder(std::string(root), NativePath(root), tree);
    return tree;
}

std::int64_t TreeSize(std::string_view root, std::string_view mask) {
    return platform::TreeBytes(NativePath(root), [mask](std::string_view name) {
        PumpNowAndThen();
        return MatchesMask(name, mask);
    });
}

} // namespace kelvash
