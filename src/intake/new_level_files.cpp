// The files of the open dialog: listing, adding, removing.
#include <algorithm>
#include <optional>

#include "core/path_field.h"
#include "core/profile.h"
#include "core/records.h"
#include "foundation/files.h"
#include "foundation/messages.h"
#include "foundation/path.h"
#include "foundation/plain_name.h"
#include "foundation/strangers_files.h"
#include "foundation/text.h"
#include "foundation/user.h"
#include "intake/apply_config.h"
#include "intake/fragments.h"
#include "intake/messages.h"
#include "intake/new_level.h"
#include "intake/work_folder.h"
#include "swap/compression.h"

namespace kelvash::intake {

namespace {

// The list of names for the document, with the one that was selected still selected.
void FillMoreInfo(NewLevel& level) {
    const std::string selected = MoreInfoName(level);
    level.MoreInfoChoices = {LoadMessage(msg::kMoreInfoChoiceNone)};
    for (const std::string& file : level.FileList)
        level.MoreInfoChoices.push_back(FileNameOf(file));
    SelectMoreInfo(level, selected);
}

// The files of a folder; those of its tree as well if the user wants them.
std::vector<std::string> FilesToTake(const std::string& folder) {
    const bool tree =
        !ListFolders(folder).empty() &&
        AskYesNo(MessageStyle::Question, LoadMessageOfOthers(msg::kAddSubFolders, {folder, kLineBreak}));
    return tree ? ScanTree(folder).files : ListFiles(folder, "*");
}

// The folder that the next file dialog starts in, where it fits its field.
void RememberFolder(const std::string& folder) {
    if (core::CanKeepPath(folder)) core::profile.DownloadFolder = folder;
}

std::string StartFolder() {
    return std::string(Trim(core::profile.DownloadFolder));
}

} // namespace

bool ContainsNoCase(const std::vector<std::string>& texts, std::string_view text) {
    return std::any_of(texts.begin(), texts.end(),
                       [&](const std::string& other) { return EqualNoCase(other, text); });
}

std::string MoreInfoName(const NewLevel& level) {
    if (level.MoreInfo <= 0 || level.MoreInfo >= static_cast<std::int32_t>(level.MoreInfoChoices.size()))
        return {};
    return level.MoreInfoChoices[static_cast<std::size_t>(level.MoreInfo)];
}

void SelectMoreInfo(NewLevel& level, std::string_view name) {
    level.MoreInfo = 0;
    if (name.empty()) return;
    for (std::size_t i = 1; i < level.MoreInfoChoices.size(); ++i)
        if (EqualNoCase(level.MoreInfoChoices[i], name)) {
            level.MoreInfo = static_cast<std::int32_t>(i);
            return;
        }
}

void ShowInfo(const std::string& text) {
    TheUser().SetLabel(BarPlace::CallerForm, text);
    TheUser().PumpEvents();
}

void RefreshFileList(NewLevel& level) {
    static_cast<void>(TakeOutsideFiles(level)); // OK tries again
    if (!ConfigApplied && !level.OnCd) UnpackZips(level);
    level.FileList = ListFiles(level.WorkFolder, "*.*");
    std::int64_t bytes = 0;
    for (const std::string& file : level.FileList)
        bytes += FileSize(file);
    FillMoreInfo(level);
    level.SizeText = std::to_string(level.FileList.size()) + LoadMessage(msg::kNewLevelFiles) +
                     FormatSize(bytes) + LoadMessage(msg::kNewLevelFilesEnd);
}

void TakeWhatArrived(NewLevel& level) {
    RefreshFileList(level);
    if (level.IsNewLevel) ApplyLevelConfig(level);
}

void Refresh(NewLevel& level) {
    level.Zips.Left.clear(); // the user may have mended one
    TakeWhatArrived(level);
}

void PickMoreInfoFile(NewLevel& level) {
    if (ConfigApplied) return;
    if (Trim(level.Name).empty() && !level.LastZip.empty()) level.Name = BaseNameOf(level.LastZip);
    if (level.MoreInfo > 0) return;
    std::vector<std::string> names;
    for (const std::string& file : level.FileList)
        if (EndsWithNoCase(file, ".txt")) names.push_back(FileNameOf(file));
    if (names.empty())
        for (const std::string& file : level.FileList)
            names.push_back(FileNameOf(file));
    for (const std::string& word : Split(LoadFragment(fragment::kMoreInfoWords), '|'))
        for (const std::string& name : names)
            if (FindNoCase(name, word) != std::string::npos) {
                SelectMoreInfo(level, name);
                return;
            }
}

bool AddSource(NewLevel& level, const std::string& path) {
    Arrived arrived;
    if (FolderExists(path)) {
        arrived = CopyFlat(FilesToTake(path), level.WorkFolder);
    } else if (FileExists(path)) {
        arrived = AddFileOrZip(level, path, level.WorkFolder, Through::Direct);
        if (arrived.How == Arrival::Failed)
            TellCritical(LoadMessage(msg::kAddFileError) + FileNameOf(path) + ReasonLine(arrived.Reason));
    } else {
        TellCritical(LoadMessage(msg::kNotALevelSource) + path);
    }
    TellStop(arrived);
    const bool whole = arrived.How == Arrival::Whole;
    if (whole && IsZip(path)) level.LastZip = path;
    level.Stopped = arrived.How == Arrival::Stopped;
    TakeWhatArrived(level);
    PickMoreInfoFile(level); // nothing to do where a package file has said it
    return whole && !level.Zips.Stopped;
}

void AddFile(NewLevel& level) {
    const std::optional<std::string> file = TheUser().OpenFile(
        {LoadMessage(msg::kAddFileTitle), LoadMessage(msg::kAddFileFilter), StartFolder(), {}});
    if (!file) return;
    RememberFolder(FolderOf(*file));
    AddSource(level, *file);
}

void AddFolder(NewLevel& level) {
    const std::optional<std::string> folder =
        TheUser().ChooseFolder(LoadMessage(msg::kAddFolderTitle), StartFolder());
    if (!folder) return;
    RememberFolder(*folder);
    AddSource(level, *folder);
}

void RemoveFile(NewLevel& level, std::int32_t item) {
    if (item < 0 || item >= static_cast<std::int32_t>(level.FileList.size())) {
        ShowMessage(MessageStyle::Exclamation, LoadMessage(msg::kNoFileSelected));
        return;
    }
    const std::string file = level.FileList[static_cast<std::size_t>(item)];
    if (AskYesNo(MessageStyle::Question, LoadMessage(msg::kRemoveFileQuestion) + FileNameOf(file)))
        DeleteFile(file);
    RefreshFileList(level);
}

void RemoveAllFiles(NewLevel& level) {
    DeleteFiles(level.WorkFolder, "*");
    RefreshFileList(level);
}

void OpenLevelFile(const NewLevel& level, std::int32_t item) {
    if (item < 0 || item >= static_cast<std::int32_t>(level.FileList.size())) return;
    std::string file = level.FileList[static_cast<std::size_t>(item)];
    const bool is_stored = EndsWithNoCase(file, LoadFragment(fragment::kIntakeZlExtension));
    if (is_stored) file = swap::DecompressOneFile(file, true);
    if (file.empty()) return;
    if ((!is_stored && !PartFromLevel(level, file)) || OpenStrangersFile(file) == Opening::Failed)
        TellCritical(LoadMessage(msg::kOpenFileFailed) + file);
}

} // namespace kelvash::intake
