#include "foundation/zip.h"

#include <algorithm>

#include "foundation/files.h"
#include "foundation/messages.h"
#include "foundation/path.h"
#include "foundation/text.h"
#include "foundation/zip_library.h"

namespace kelvash {

namespace {

// A zip that is being written. All work is done when it is closed.
struct Writing {
    const ZipWatcher& watcher;
    std::vector<std::string> names; // in the zip
    std::vector<double> ends;       // bytes up to the end of each
    std::size_t told = 0;
    bool stopped = false;
    PollClock clock = {};
};

// Tells the entries that a share of the bytes has passed.
void TellUpTo(Writing& writing, double share) {
    const double bytes = writing.ends.empty() ? 0 : share * writing.ends.back();
    for (; writing.told < writing.names.size() && writing.ends[writing.told] <= bytes; ++writing.told)
        if (writing.watcher.line && writing.watcher.line("  adding: " + writing.names[writing.told]))
            writing.stopped = true;
}

void OnProgress(zip_t*, double share, void* state) {
    TellUpTo(*static_cast<Writing*>(state), share);
}

int OnCancel(zip_t*, void* state) {
    Writing& writing = *static_cast<Writing*>(state);
    if (!writing.stopped && writing.clock.Due() && writing.watcher.poll && writing.watcher.poll())
        writing.stopped = true;
    return writing.stopped ? 1 : 0;
}

std::string NameInZip(const std::string& file, const std::string& root) {
    std::string name = !root.empty() && StartsWithNoCase(file, root + "\\") ? file.substr(root.size() + 1)
                                                                            : FileNameOf(file);
    std::replace(name.begin(), name.end(), '\\', '/');
    return name;
}

bool AddEntry(zip_t* zip, const std::string& file, const std::string& name) {
    zip_source_t* const source = zip_source_file(zip, NativePath(file).string().c_str(), 0, -1);
    if (source == nullptr) return false;
    if (zip_file_add(zip, name.c_str(), source, ZIP_FL_ENC_UTF_8 | ZIP_FL_OVERWRITE) >= 0) return true;
    zip_source_free(source);
    return false;
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
    ZipHandle zip = OpenZip(ZipFileName, ZIP_CREATE | (UpdatingZip ? 0 : ZIP_TRUNCATE), message_);
    if (!zip) return false;
    Writing writing{watcher, {}, {}};
    double bytes = 0;
    for (const std::string& file : files_) {
        writing.names.push_back(NameInZip(file, RootDirectory));
        writing.ends.push_back(bytes += static_cast<double>(FileSize(file)));
        if (FileExists(file) && AddEntry(zip.get(), file, writing.names.back())) continue;
        message_ = LoadMessage(MessageId::kZipReasonRead, {file});
        return false;
    }
    if (watcher.poll && watcher.poll()) {
        message_ = LoadMessage(MessageId::kZipStopped, {});
        return false;
    }
    constexpr double kPrecision = 0.005;
    zip_register_progress_callback_with_state(zip.get(), kPrecision, OnProgress, nullptr, &writing);
    zip_register_cancel_callback_with_state(zip.get(), OnCancel, nullptr, &writing);
    if (zip_close(zip.get()) != 0) {
        message_ =
            writing.stopped ? LoadMessage(MessageId::kZipStopped, {}) : std::string(zip_strerror(zip.get()));
        return false;
    }
    static_cast<void>(zip.release()); // closing has freed it
    TellUpTo(writing, 1);
    if (!writing.names.empty()) message_ = "  adding: " + writing.names.back();
    return true;
}

} // namespace kelvash
