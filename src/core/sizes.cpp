#include "core/sizes.h"

#include <algorithm>
#include <limits>
#include <string>
#include <vector>

#include "core/archive.h"
#include "core/change.h"
#include "core/change_messages.h"
#include "core/level_messages.h"
#include "core/profile.h"
#include "foundation/files.h"
#include "foundation/messages.h"
#include "foundation/parallel.h"
#include "foundation/path.h"
#include "foundation/pumping.h"
#include "foundation/text.h"
#include "foundation/user.h"

namespace kelvash::core {

namespace {

// A level's folders are counted in some 0.1 ms if the system has them in memory.
constexpr std::size_t kLevelsWorthThreads = 50;
constexpr std::size_t kLevelsAhead = 16;

void TellSizes() {
    const ArchiveHeader& header = archive.Header;
    const auto size = [](double bytes) { return FormatSize(static_cast<std::int64_t>(bytes)); };
    ShowMessage(MessageStyle::Plain,
                LoadMessage(msg::kPrimarySize) + size(header.MainFolderSize) + kLineBreak +
                    LoadMessage(msg::kSecondarySize) + size(header.SecondaryFolderSize) + kLineBreak +
                    LoadMessage(msg::kTotalSize) + size(header.MainFolderSize + header.SecondaryFolderSize));
}

// A level's sub-folders as the disk spells them, found with one look instead of one for each.
struct SubFolders {
    explicit SubFolders(std::string_view level_folder) : folders(ListFolders(level_folder)) {}
    std::int64_t BytesOf(const std::string& folder) const {
        const auto is_exact = [&](const std::string& other) { return other == folder; };
        const auto is_same = [&](const std::string& other) { return EqualNoCase(other, folder); };
        auto found = std::find_if(folders.begin(), folders.end(), is_exact);
        if (found == folders.end()) found = std::find_if(folders.begin(), folders.end(), is_same);
        return found == folders.end() ? 0 : TreeSize(*found, "*");
    }
    std::int64_t SavesOf(std::string_view level_folder) const {
        return BytesOf(SavegamesFolder(level_folder)) + BytesOf(StashFolder(level_folder)) +
               BytesOf(ScreenshotsFolder(level_folder));
    }

    std::vector<std::string> folders;
};

struct LevelBytes {
    std::int64_t Files = 0;
    std::int64_t Saves = 0;
};

LevelBytes CountLevel(const std::string& folder) {
    const SubFolders inside(folder);
    return {inside.BytesOf(FilesFolder(folder)), inside.SavesOf(folder)};
}

} // namespace

std::int64_t FilesBytes(std::string_view level_folder) {
    return TreeSize(FilesFolder(level_folder), "*");
}

std::int64_t SavesBytes(std::string_view level_folder) {
    return SubFolders(level_folder).SavesOf(level_folder);
}

std::int32_t FieldSize(double bytes) {
    using Limits = std::numeric_limits<std::int32_t>;
    return static_cast<std::int32_t>(
        std::clamp(bytes, static_cast<double>(Limits::min()), static_cast<double>(Limits::max())));
}

void ComputeArchiveSize(Report report) {
    const Change change(msg::kDoingSizes, kArchiveFolder);
    if (!change) return;
    ProgressDialog progress(BarPlace::StoppableDialog,
                            LoadMessage(msg::kComputingSize, {FileNameOf(profile.LastArchive)}));
    const ArchiveContents old = archive;
    ArchiveHeader& header = archive.Header;
    header.MainFolderSize = 0;
    header.SecondaryFolderSize = 0;
    std::vector<std::string> folders;
    folders.reserve(static_cast<std::size_t>(archive.Table.Size()));
    for (std::int32_t i = 0; i < archive.Table.Size(); ++i) {
        folders.push_back(PlaceAt(i).Folder);
        PumpNowAndThen();
    }
    const auto count = [&folders](std::size_t i) { return CountLevel(folders[i]); };
    const auto note = [&](std::size_t i, const std::optional<LevelBytes>& counted) {
        const LevelEdit level = archive.Table.Edit(static_cast<std::int32_t>(i));
        progress.Label(LoadMessage(msg::kScanningFolder) + folders[i]);
        const LevelBytes bytes = counted ? *counted : CountLevel(folders[i]);
        if (level->CdNumber == 0) level->FilesSize = FieldSize(static_cast<double>(bytes.Files));
        level->SavesSize = FieldSize(static_cast<double>(bytes.Saves));
        header.MainFolderSize += level->FilesSize;
        header.SecondaryFolderSize += level->SavesSize;
        ProgressPercent(progress.bar, static_cast<double>(i + 1), archive.Table.Size());
        return true;
    };
    const Effort effort = folders.size() < kLevelsWorthThreads ? Effort::Little : Effort::Heavy;
    if (ParallelMap({folders.size(), kLevelsAhead, effort}, count, note) != ParallelEnd::Done) {
        static_cast<ArchiveContents&>(archive) = old; // no half-counted sums
        return;
    }
    ArchiveTouched();
    if (report == Report::Shown) TellSizes();
    progress.Label(LoadMessage(msg::kSizeComputed));
}

void CountLevelSize(const LevelPlace& level) {
    const std::int32_t files = FieldSize(static_cast<double>(FilesBytes(level.Folder)));
    const std::int32_t saves = FieldSize(static_cast<double>(SavesBytes(level.Folder)));
    {
        const LevelEdit record = archive.Table.Edit(level.Index);
        archive.Header.MainFolderSize += static_cast<double>(files) - record->FilesSize;
        archive.Header.SecondaryFolderSize += static_cast<double>(saves) - record->SavesSize;
        record->FilesSize = files;
        record->SavesSize = saves;
    }
    ArchiveTouched();
}

} // namespace kelvash::core
