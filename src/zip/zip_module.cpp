#include "zip/zip_module.h"

#include <algorithm>

#include "foundation/drives.h"
#include "foundation/files.h"
#include "foundation/messages.h"
#include "foundation/path.h"
#include "foundation/process.h"
#include "foundation/pumping.h"
#include "foundation/text.h"
#include "foundation/tool.h"
#include "zip/fragments.h"
#include "zip/messages.h"
#include "zip/zip.h"
#include "zip/zip_library.h"
#include "zip/zip_names.h"
#include "zip/zip_progress.h"

namespace kelvash::zip {

namespace {

// Zips that unpack to so many times their size are asked about.
constexpr double kSuspiciousFactor = 100;
// Names in one message.
constexpr std::size_t kNamesTold = 20;

using Manage = void (*)(LineProgress&, const std::string&, bool, bool&);

// A watcher that shows lines through one of the progress procedures.
ZipWatcher Watcher(LineProgress& progress, Manage manage) {
    return {[&progress, manage](const std::string& line) {
                bool stop = false;
                manage(progress, line, false, stop);
                return stop;
            },
            &StopWantedByNow,
            [&progress](double done) { ProgressPercent(progress.bar, done, 1, Counted::Nothing); }};
}

// Lines of names, as many as one message can show.
std::string Lines(const std::vector<std::string>& names) {
    std::string list;
    for (std::size_t i = 0; i < std::min(names.size(), kNamesTold); ++i)
        list += kLineBreak + names[i];
    if (names.size() > kNamesTold)
        list += kLineBreak + LoadMessage(msg::kZipMore, {std::to_string(names.size() - kNamesTold)});
    return list;
}

void TellLeftOut(const UnzipClass& unzip) {
    const std::string zip = FileNameOf(unzip.ZipFileName);
    if (!unzip.Refused.empty())
        ShowMessage(MessageStyle::Exclamation,
                    LoadMessageOfOthers(msg::kZipEntryRefused, {zip, Lines(unzip.Refused)}));
    if (!unzip.Twice.empty())
        ShowMessage(MessageStyle::Exclamation,
                    LoadMessageOfOthers(msg::kZipEntryTwice, {zip, Lines(unzip.Twice)}));
    if (!unzip.TooLong.empty())
        ShowMessage(MessageStyle::Exclamation,
                    LoadMessageOfOthers(msg::kZipEntryTooLong, {zip, Lines(unzip.TooLong)}));
}

std::string FailedEntries(const UnzipClass& unzip) {
    std::vector<std::string> failed;
    for (const auto& [name, reason] : unzip.Failed)
        failed.push_back(name + ": " + reason);
    return LoadMessageOfOthers(msg::kZipEntryFailed, {FileNameOf(unzip.ZipFileName), Lines(failed)});
}

double SumOf(const std::vector<ZipEntry>& entries) {
    double bytes = 0;
    for (const ZipEntry& entry : entries)
        bytes += static_cast<double>(entry.Size);
    return bytes;
}

// Bytes as a text; more than a number can hold are shown as what it can.
std::string SizeText(double bytes) {
    constexpr double kMost = 9223372036854774784.0; // the largest double below 2 to the power of 63
    return FormatSize(static_cast<std::int64_t>(std::min(bytes, kMost)));
}

// Leaves the entries that an extraction by these masks takes.
void KeepWanted(const std::vector<std::string>& masks, std::vector<ZipEntry>& entries) {
    if (masks.empty()) return;
    std::erase_if(entries, [&](const ZipEntry& entry) {
        return std::none_of(masks.begin(), masks.end(),
                            [&](const std::string& mask) { return MatchesMask(entry.Name, mask); });
    });
}

// Deletes the files of a folder but for the zip that is to be extracted.
void WipeFolder(std::string_view folder, std::string_view archive) {
    for (const std::string& file : ListFiles(folder, "*"))
        if (!EqualNoCase(file, archive)) DeleteFile(file);
}

// Asks before more is written than there is room for, or than such zips can be meant to hold. What was agreed
// to holds until twice as much is to be written.
bool MayFill(const Unzipping& job, double bytes, ZipBudget& budget) {
    const std::string name = FileNameOf(job.Archive);
    const std::int64_t room = FreeSpace(job.Destination);
    if (room >= 0 && bytes > static_cast<double>(room))
        return AskYesNo(
            MessageStyle::Exclamation,
            LoadMessageOfOthers(msg::kZipNoRoom, {name, SizeText(bytes), job.Destination.substr(0, 2),
                                                  FormatSize(room), kLineBreak}));
    const double total = budget.Unpacked + bytes;
    const double factor = total / std::max(1.0, budget.Packed);
    if (total <= budget.Unasked || factor <= kSuspiciousFactor || total <= 2 * budget.Agreed) return true;
    const MessageId question = budget.Unpacked > 0 ? msg::kZipAllTooLarge : msg::kZipTooLarge;
    const std::string times = std::to_string(static_cast<std::int64_t>(factor));
    if (!AskYesNo(MessageStyle::Exclamation,
                  LoadMessageOfOthers(question, {name, SizeText(total), times, kLineBreak})))
        return false;
    budget.Agreed = total;
    return true;
}

} // namespace

std::optional<std::vector<ZipEntry>> ListZip(std::string_view archive, std::string& message) {
    const ZipHandle zip = OpenZip(archive, ZIP_RDONLY, message);
    if (!zip) return std::nullopt;
    const auto count = static_cast<zip_uint64_t>(zip_get_num_entries(zip.get(), 0));
    std::vector<ZipEntry> entries;
    entries.reserve(count);
    for (zip_uint64_t i = 0; i < count; ++i) {
        const char* const raw = zip_get_name(zip.get(), i, ZIP_FL_ENC_RAW);
        if (raw == nullptr) continue;
        std::string name = ZipNameText(raw);
        if (name.empty() || name.ends_with('/') || name.ends_with('\\')) continue;
        std::replace(name.begin(), name.end(), '/', '\\');
        zip_stat_t stat = {};
        const bool known = zip_stat_index(zip.get(), i, 0, &stat) == 0;
        constexpr zip_uint64_t kMost = INT64_MAX;
        entries.push_back(
            {std::move(name), static_cast<std::int64_t>(known ? std::min(stat.size, kMost) : 0)});
    }
    return entries;
}

bool ZipFolder(std::string_view folder, std::string_view archive, std::vector<std::string>& entries,
               Recurse recurse, Bar& bar, std::string& message) {
    const std::string root(folder);
    entries = recurse == Recurse::Yes ? ScanTree(root).files : ListFiles(root, "*.*");
    std::erase_if(entries, [archive](const std::string& file) { return EqualNoCase(file, archive); });
    ZipClass zip;
    zip.ZipFileName = archive;
    zip.RootDirectory = root;
    for (const std::string& file : entries)
        zip.AddFile(file);
    LineProgress progress{bar, static_cast<double>(entries.size()), 0, true};
    const bool made = zip.MakeZipFile(Watcher(progress, GestioneZip));
    bar = progress.bar;
    if (!made) message = zip.GetLastMessage();
    return made && FileExists(archive);
}

void UnzipSettings(std::string_view archive, std::string_view destination, ZipFolders folders,
                   UnzipClass& unzip) {
    unzip = {};
    unzip.ZipFileName = archive;
    unzip.ExtractDir = destination;
    unzip.HonorDirectories = folders == ZipFolders::Kept;
}

Unzipped UnzipToFolder(const Unzipping& job, Bar& bar) {
    std::string reason;
    std::optional<std::vector<ZipEntry>> listed = ListZip(job.Archive, reason);
    if (!listed)
        return {UnzipEnd::Failed,
                LoadMessageOfOthers(msg::kZipCannotOpen, {FileNameOf(job.Archive), reason})};
    KeepWanted(job.Entries, *listed);
    ZipBudget own;
    own.Packed = static_cast<double>(FileSize(job.Archive));
    ZipBudget& budget = job.Budget == nullptr ? own : *job.Budget;
    const double bytes = SumOf(*listed);
    if (!MayFill(job, bytes, budget)) return {UnzipEnd::Stopped, LoadMessage(msg::kZipFillStopped)};
    budget.Unpacked += bytes;
    if (job.Wiping == Wipe::Yes) WipeFolder(job.Destination, job.Archive);
    UnzipClass unzip;
    UnzipSettings(job.Archive, job.Destination, job.Folders, unzip);
    unzip.ExtractList = job.Entries;
    LineProgress lines{bar, static_cast<double>(listed->size()), 0, true};
    ZipWatcher watcher = Watcher(lines, GestioneUnzip);
    if (job.Progress == ZipProgress::Silent) {
        watcher.line = nullptr;
        watcher.share = nullptr;
    }
    const bool done = unzip.UnZip(watcher);
    bar = lines.bar;
    TellLeftOut(unzip);
    const UnzipEnd end = done ? UnzipEnd::Whole : unzip.Stopped ? UnzipEnd::Stopped : UnzipEnd::Failed;
    return {end, unzip.Failed.empty() || unzip.Stopped ? unzip.GetLastMessage() : FailedEntries(unzip),
            std::move(unzip.Written), unzip.NoPassword};
}

bool UnzipWithTool(std::string_view archive, std::string_view destination, Bar& bar) {
    const std::string tool = AppFolder() + "\\" + LoadFragment(fragment::kUnzipTool);
    if (!FileExists(tool)) {
        TellCritical(LoadMessage(msg::kUnzipToolMissing) + kLineBreak + LoadMessage(msg::kUnzipToolNeeded) +
                     AppFolder());
        return false;
    }
    std::string ignored;
    const std::optional<std::vector<ZipEntry>> listed = ListZip(archive, ignored);
    LineProgress progress{bar, static_cast<double>(listed ? listed->size() : 0)};
    const auto reader = [&](const std::string& line, bool start) {
        bool stop = false;
        GestioneUnzip(progress, line, start, stop);
        return stop;
    };
    const Captured run = CaptureOutput(tool, {"-o", PathFor(tool, archive), "-d", PathFor(tool, destination)},
                                       reader, LineMode::WholeLines);
    bar = progress.bar;
    if (!run.ok) TellCritical(LoadMessage(msg::kUnzipToolFailed) + run.error);
    return run.ok;
}

} // namespace kelvash::zip
