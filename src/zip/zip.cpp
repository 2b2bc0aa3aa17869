#include "zip/zip.h"

#include <algorithm>
#include <filesystem>
#include <map>

#include "foundation/files.h"
#include "foundation/messages.h"
#include "foundation/native_text.h"
#include "foundation/path.h"
#include "foundation/text.h"
#include "zip/messages.h"
#include "zip/zip_library.h"
#include "zip/zip_names.h"

namespace kelvash::zip {

namespace fs = std::filesystem;

namespace {

// A zip that is being written. All work is done when it is closed.
struct Writing {
    const ZipWatcher& watcher;
    std::vector<std::string> names; // of the entries by index; empty for those that stay as they are
    std::vector<double> starts;     // bytes before each entry; one more at the end
    std::size_t told = 0;
    bool stopped = false;
};

// Tells the entries up to an index.
void TellBefore(Writing& writing, std::size_t end) {
    for (; writing.told < end; ++writing.told)
        if (!writing.names[writing.told].empty() && writing.watcher.line &&
            writing.watcher.line("  adding: " + writing.names[writing.told]))
            writing.stopped = true;
}

// The library's progress goes by entries: each has the same share, whatever its size.
void OnProgress(zip_t*, double share, void* state) {
    Writing& writing = *static_cast<Writing*>(state);
    const double place = share * static_cast<double>(writing.names.size());
    const std::size_t index = std::min(static_cast<std::size_t>(place), writing.names.size() - 1);
    TellBefore(writing, index + 1);
    const double start = writing.starts[index];
    const double bytes = start + (place - static_cast<double>(index)) * (writing.starts[index + 1] - start);
    if (writing.watcher.share && writing.starts.back() > 0)
        writing.watcher.share(bytes / writing.starts.back());
}

int OnCancel(zip_t*, void* state) {
    Writing& writing = *static_cast<Writing*>(state);
    if (!writing.stopped && writing.watcher.poll && writing.watcher.poll()) writing.stopped = true;
    return writing.stopped ? 1 : 0;
}

std::string NameInZip(const std::string& file, const std::string& root) {
    std::string name = !root.empty() && StartsWithNoCase(file, root + "\\") ? file.substr(root.size() + 1)
                                                                            : FileNameOf(file);
    std::replace(name.begin(), name.end(), '\\', '/');
    return ZipNameText(name); // a zip's names are UTF-8, a disk's needn't be
}

// The library replaces what it is told, so that a link is followed first.
fs::path RealFile(const std::string& path) {
    std::error_code error;
    const fs::path native = NativePath(path);
    return fs::is_symlink(native, error) ? fs::weakly_canonical(native, error) : native;
}

bool IsReadOnly(const fs::path& file) {
    std::error_code error;
    const fs::file_status status = fs::status(file, error);
    return fs::exists(status) && (status.permissions() & fs::perms::owner_write) == fs::perms::none;
}

// Sizes and names of all entries once everything is added.
void MeasureEntries(zip_t* zip, const std::map<zip_uint64_t, std::string>& added, Writing& writing) {
    const auto count = static_cast<zip_uint64_t>(zip_get_num_entries(zip, 0));
    double bytes = 0;
    writing.starts.push_back(0);
    for (zip_uint64_t i = 0; i < count; ++i) {
        zip_stat_t stat;
        // An empty file counts too, as one byte.
        bytes += 1;
        if (zip_stat_index(zip, i, 0, &stat) == 0 && (stat.valid & ZIP_STAT_SIZE) != 0)
            bytes += static_cast<double>(stat.size);
        writing.starts.push_back(bytes);
        const auto name = added.find(i);
        writing.names.push_back(name == added.end() ? std::string() : name->second);
    }
}

// The index of the entry; -1 for a file that can't be added.
zip_int64_t AddEntry(zip_t* zip, const std::string& file, const std::string& name) {
    if (!FileExists(file)) return -1;
    zip_source_t* const source = zip_source_file(zip, TextOfNative(NativePath(file)).c_str(), 0, -1);
    if (source == nullptr) return -1;
    const zip_int64_t index = zip_file_add(zip, name.c_str(), source, ZIP_FL_ENC_UTF_8 | ZIP_FL_OVERWRITE);
    if (index < 0) zip_source_free(source);
    return index;
}

ZipHandle OpenTarget(const std::string& path, bool updating, std::string& message) {
    const fs::path target = RealFile(path);
    int code = ZIP_ER_RDONLY;
    ZipHandle zip;
    if (!IsReadOnly(target))
        zip.reset(zip_open(TextOfNative(target).c_str(), ZIP_CREATE | (updating ? 0 : ZIP_TRUNCATE), &code));
    if (!zip) message = ZipErrorText(code);
    return zip;
}

// Writes everything; the message is the last line, or why it failed.
bool Write(ZipHandle& zip, Writing& writing, std::string& message) {
    if (writing.watcher.poll && writing.watcher.poll()) {
        message = LoadMessage(msg::kZipWriteStopped);
        return false;
    }
    constexpr double kPrecision = 0.005;
    zip_register_progress_callback_with_state(zip.get(), kPrecision, OnProgress, nullptr, &writing);
    zip_register_cancel_callback_with_state(zip.get(), OnCancel, nullptr, &writing);
    if (zip_close(zip.get()) != 0) {
        message = writing.stopped ? LoadMessage(msg::kZipWriteStopped) : std::string(zip_strerror(zip.get()));
        return false;
    }
    static_cast<void>(zip.release()); // closing has freed it
    TellBefore(writing, writing.names.size());
    if (writing.watcher.share) writing.watcher.share(1);
    for (const std::string& name : writing.names)
        if (!name.empty()) message = "  adding: " + name;
    return true;
}

} // namespace

void ZipClass::AddFile(const std::string& path) {
    if (!FolderExists(path)) {
        files_.push_back(path);
        return;
    }
    const std::vector<std::string> files = RecurseFolders ? ScanTree(path).files : ListFiles(path, "*.*");
    files_.insert(files_.end(), files.begin(), files.end());
}

void ZipClass::RemoveFile(const std::string& path) {
    std::erase_if(files_, [&](const std::string& file) { return EqualNoCase(file, path); });
}

bool ZipClass::MakeZipFile(const ZipWatcher& watcher) {
    message_.clear();
    ZipHandle zip = OpenTarget(ZipFileName, UpdatingZip, message_);
    if (!zip) return false;
    std::map<zip_uint64_t, std::string> added; // the names by index
    for (const std::string& file : files_) {
        if (EqualNoCase(file, ZipFileName)) continue;
        const std::string name = NameInZip(file, RootDirectory);
        const zip_int64_t index = AddEntry(zip.get(), file, name);
        if (index < 0) {
            message_ = LoadMessage(msg::kZipReasonRead, {file});
            return false;
        }
        added[static_cast<zip_uint64_t>(index)] = name;
    }
    // The library would delete a zip without entries.
    if (added.empty()) {
        message_ = ZipErrorText(ZIP_ER_NOENT);
        return false;
    }
    Writing writing{watcher, {}, {}};
    MeasureEntries(zip.get(), added, writing);
    return Write(zip, writing, message_);
}

} // namespace kelvash::zip
