// The long operations of files.h: whole trees with their bars and questions.
#include <algorithm>

#include "foundation/date_text.h"
#include "foundation/drives.h"
#include "foundation/files.h"
#include "foundation/fragments.h"
#include "foundation/guarded_folders.h"
#include "foundation/messages.h"
#include "foundation/path.h"
#include "foundation/platform/platform.h"
#include "foundation/pumping.h"
#include "foundation/text.h"
#include "foundation/texts.h"

namespace kelvash {

namespace {

namespace fs = std::filesystem;

// Makes every folder of a path relative to `base`; the one that fails is put into `failed`.
bool MakeFolders(const std::string& base, const std::string& relative, std::string& failed) {
    std::string folder = base;
    for (const std::string& name : Split(relative, '\\')) {
        if (name.empty()) continue;
        folder += "\\" + name;
        if (!CreateFolder(folder)) {
            failed = folder;
            return false;
        }
    }
    return true;
}

void TellFolderFailure(const std::string& folder) {
    TellCritical(LoadMessage(msg::kCannotCreateFolder, {folder}));
}

bool IsLeftOut(const std::string& path, FilesFolders skip) {
    return skip == FilesFolders::Skip &&
           FindNoCase(path, LoadFragment(fragment::kInsideFilesFolder)) != std::string::npos;
}

bool CopyTreeWith(std::string_view source, std::string_view destination, Bar* bar, Existing existing,
                  FilesFolders skip, MessageId failure) {
    const std::string target_root(destination);
    if (!CreateFolder(target_root)) {
        TellFolderFailure(target_root);
        return false;
    }
    const Tree tree = ScanTree(source);
    std::int64_t total = 0;
    for (const std::string& file : tree.files) {
        total += FileSize(file);
        PumpNowAndThen();
    }
    std::int64_t done = 0;
    for (const std::string& file : tree.files) {
        done += FileSize(file);
        const std::string relative = file.substr(source.size());
        if (IsLeftOut(relative, skip)) continue;
        std::string failed;
        if (!MakeFolders(target_root, FolderOf(relative), failed)) {
            TellFolderFailure(failed);
            return false;
        }
        const std::string target = target_root + relative;
        if (existing == Existing::Ask && FileExists(target) && !AskReplaceFile(file, target)) continue;
        if (StopWantedByNow()) return false;
        if (!CopyFileStoppable(file, target)) {
            if (TheUser().StopRequested()) return false;
            TellCritical(LoadMessage(failure, {file}) + target + "'");
            return false;
        }
        if (bar != nullptr)
            ProgressPercent(*bar, static_cast<double>(done), static_cast<double>(total), Counted::Bytes);
    }
    return true;
}

FileFacts FactsOf(std::string_view path) {
    return {std::string(path), FileSize(path), FileTime(path).value_or(0)};
}

// The lines of AskReplaceFile that describe one file.
std::string Described(const FileFacts& file, MessageId size_label, MessageId date_label) {
    return file.Name + kLineBreak + LoadMessage(size_label) + FormatSize(file.Size) + kLineBreak +
           LoadMessage(date_label) + FormatDate(LoadFragment(fragment::kReplaceDatePattern), file.Time) +
           kLineBreak;
}

// Tenths of a unit as digits with one decimal.
std::string OneDecimal(std::int64_t bytes, std::int64_t unit) {
    const std::int64_t tenths = bytes / unit * 10 + (bytes % unit * 10 + unit / 2) / unit;
    return std::to_string(tenths / 10) + "." + std::to_string(tenths % 10);
}

} // namespace

bool CopyTree(std::string_view source, std::string_view destination, bool show, Existing existing,
              FilesFolders skip) {
    if (!show) return CopyTreeWith(source, destination, nullptr, existing, skip, msg::kErrorCopyingFileTo);
    ProgressDialog progress(BarPlace::ProgressDialog, LoadMessage(msg::kCopyTreeCaption));
    return CopyTreeWith(source, destination, &progress.bar, existing, skip, msg::kErrorCopyingFileTo);
}

bool CopyTreeShown(std::string_view source, std::string_view destination, Bar& bar, Existing existing,
                   FilesFolders skip) {
    return CopyTreeWith(source, destination, &bar, existing, skip, msg::kErrorCopyingFileFromTo);
}

bool RemoveFolderTree(std::string_view root, Bar& bar) {
    if (!MayDeleteTree(root)) return false;
    if (!FolderExists(root)) return true;
    Tree tree = ScanTree(root);
    bool removed = true;
    double done = 0;
    for (const std::string& file : tree.files) {
        removed = DeleteFile(file) && removed;
        ProgressPercent(bar, ++done, static_cast<double>(tree.files.size()));
    }
    tree.folders.insert(tree.folders.begin(), std::string(root));
    std::stable_sort(tree.folders.begin(), tree.folders.end(),
                     [](const std::string& a, const std::string& b) {
                         return std::count(a.begin(), a.end(), '\\') > std::count(b.begin(), b.end(), '\\');
                     });
    for (const std::string& folder : tree.folders) {
        removed = RemoveEmptyFolder(folder) && removed;
        PumpNowAndThen();
    }
    return removed;
}

std::string FormatSize(std::int64_t bytes) {
    constexpr std::int64_t kKilobyte = 1024;
    constexpr std::int64_t kMegabyte = 1048576;
    constexpr std::int64_t kGigabyte = 1073741824;
    if (bytes >= kGigabyte) return OneDecimal(bytes, kGigabyte) + LoadMessage(msg::kGigabytes);
    if (bytes >= kMegabyte) return OneDecimal(bytes, kMegabyte) + LoadMessage(msg::kMegabytes);
    if (bytes >= kKilobyte) return std::to_string(bytes / kKilobyte) + LoadMessage(msg::kKilobytes);
    return std::to_string(bytes);
}

bool AskReplaceFile(std::string_view new_path, std::string_view old_path) {
    return AskReplaceFile(FactsOf(new_path), old_path);
}

bool AskReplaceFile(const FileFacts& new_file, std::string_view old_path) {
    const MessageText text = LoadMessage(msg::kReplaceFile) + kLineBreak +
                             Described(FactsOf(old_path), msg::kReplaceOldSize, msg::kReplaceOldDate) +
                             LoadMessage(msg::kReplaceWith) + kLineBreak +
                             Described(new_file, msg::kReplaceNewSize, msg::kReplaceNewDate) + kLineBreak +
                             LoadMessage(msg::kReplaceQuestion);
    return AskYesNo(MessageStyle::Question, text);
}

} // namespace kelvash
