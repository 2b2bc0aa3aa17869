// The files of the open dialog: listing, adding, removing.
#include <algorithm>
#include <optional>
#include <set>

#include "core/path_field.h"
#include "core/profile.h"
#include "core/records.h"
#include "foundation/drives.h"
#include "foundation/files.h"
#include "foundation/messages.h"
#include "foundation/path.h"
#include "foundation/plain_name.h"
#include "foundation/strangers_files.h"
#include "foundation/text.h"
#include "foundation/user.h"
#include "foundation/zip_module.h"
#include "intake/apply_config.h"
#include "intake/new_level.h"
#include "intake/work_folder.h"
#include "swap/compression.h"

namespace kelvash::intake {

namespace {

MessageText Text(MessageId id) {
    return LoadMessage(id, {});
}

bool IsZip(std::string_view path) {
    return EndsWithNoCase(path, Text(MessageId::kZipNameExtension));
}

// Zips in zips are unpacked this deep; a zip may hold itself.
constexpr int kDeepestZip = 8;

bool Unpack(const std::string& zip, const std::string& folder, ZipFolders folders, Bar& bar,
            std::vector<std::string>& entries) {
    std::string message;
    return UnzipToFolder(zip, folder, entries, Wipe::No, folders, ZipProgress::Shown, bar, message);
}

// A zip that has an entry of its own name is left alone after that: it has been replaced.
bool UnpackAndDelete(const std::string& zip, const std::string& folder) {
    std::vector<std::string> entries;
    ProgressDialog progress(BarPlace::StoppableDialog,
                            LoadMessage(MessageId::kRefreshUnzipping, {FileNameOf(zip)}));
    if (!Unpack(zip, folder, ZipFolders::Flat, progress.bar, entries)) return false;
    return !ContainsNoCase(entries, zip) && DeleteFile(zip);
}

// Unpacks every zip of the work folder, and those that come out of them. A zip that can't be unpacked stays.
void UnpackZips(const std::string& folder) {
    std::set<std::string> left;
    for (int depth = 0; depth < kDeepestZip; ++depth)
        for (const std::string& zip : ListFiles(folder, Text(MessageId::kIntakeZipMask)))
            if (!left.contains(zip) && !UnpackAndDelete(zip, folder)) {
                left.insert(zip);
                TellCritical(Text(MessageId::kRefreshUnzipError) + FileNameOf(zip));
            }
}

// The list of names for the document, with the one that was selected still selected.
void FillMoreInfo(NewLevel& level) {
    const std::string selected = MoreInfoName(level);
    level.MoreInfoChoices = {Text(MessageId::kMoreInfoChoiceNone)};
    for (const std::string& file : level.FileList)
        level.MoreInfoChoices.push_back(FileNameOf(file));
    SelectMoreInfo(level, selected);
}

// How a job has ended; to be asked while its dialog is open.
Arrival ArrivalOf(bool whole) {
    if (whole) return Arrival::Whole;
    return TheUser().StopRequested() ? Arrival::Stopped : Arrival::Failed;
}

Arrival Unzip(const std::string& zip, const std::string& folder, ZipFolders folders) {
    std::vector<std::string> entries;
    ProgressDialog progress(BarPlace::StoppableDialog,
                            LoadMessage(MessageId::kAddUnzipping, {FileNameOf(zip)}));
    return ArrivalOf(Unpack(zip, folder, folders, progress.bar, entries));
}

// A stop by the user is no error.
void TellArrival(Arrival arrival, const MessageText& error) {
    if (arrival == Arrival::Stopped)
        ShowMessage(MessageStyle::Exclamation, Text(MessageId::kAddStopped));
    else if (arrival == Arrival::Failed)
        TellCritical(error);
}

// Of two files of one name in a tree, the first that came stays unless the user wants the other.
bool MayTake(const std::string& file, const std::string& target, std::set<std::string>& taken) {
    if (taken.insert(FoldCase(FileNameOf(target))).second) return true;
    return ReadFileBytes(file) != ReadFileBytes(target) && AskReplaceFile(file, target);
}

// A file of a name that not every system can hold stays behind; the others are taken.
void TellRefused(const std::vector<std::string>& refused) {
    if (!refused.empty())
        ShowMessage(MessageStyle::Exclamation,
                    LoadMessage(MessageId::kAddNamesRefused, {CleanLines(refused)}));
}

// Copies files flat into a folder. Ends, after a message, at the first that can't be copied, and when the
// user stops it.
Arrival CopyFlat(const std::vector<std::string>& files, const std::string& folder) {
    ProgressDialog progress(BarPlace::StoppableDialog, Text(MessageId::kAddFolderCopying));
    std::set<std::string> taken;
    std::vector<std::string> refused;
    double done = 0;
    for (const std::string& file : files) {
        const std::optional<PlainName> name = PlainName::From(FileNameOf(file));
        if (!name) {
            refused.push_back(file);
            continue;
        }
        const std::string target = PathIn(folder, *name);
        progress.Label(name->Text());
        TheUser().PumpEvents();
        const Arrival arrival = TheUser().StopRequested() ? Arrival::Stopped
                                                          : ArrivalOf(!MayTake(file, target, taken) ||
                                                                      CopyFileStoppable(file, target));
        if (arrival != Arrival::Whole) {
            TellArrival(arrival, LoadMessage(MessageId::kAddFolderError, {file}) + folder + "]");
            return arrival;
        }
        ProgressPercent(progress.bar, ++done, static_cast<double>(files.size()));
    }
    TellRefused(refused);
    return Arrival::Whole;
}

// The files of a folder; those of its tree as well if the user wants them.
std::vector<std::string> FilesToTake(const std::string& folder) {
    const bool tree =
        !ListFolders(folder).empty() &&
        AskYesNo(MessageStyle::Question, LoadMessage(MessageId::kAddSubFolders, {folder, kLineBreak}));
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

Arrival AddFileOrZip(const std::string& source, const std::string& target, Through through) {
    if (!IsZip(source)) {
        const std::optional<PlainName> name = PlainName::From(FileNameOf(source));
        if (!name) {
            TellRefused({source});
            return Arrival::Failed;
        }
        ProgressDialog progress(BarPlace::StoppableDialog, Text(MessageId::kAddCopying));
        return ArrivalOf(CopyFileStoppable(source, PathIn(target, *name)));
    }
    if (through == Through::Direct) return Unzip(source, target, ZipFolders::Flat);
    const std::string temp = AppFolder() + Text(MessageId::kAddTempZip);
    Bar bar{BarPlace::CallerForm, -1};
    if ((FolderExists(temp) && !RemoveFolderTree(temp, bar)) || !CreateFolder(temp)) return Arrival::Failed;
    Arrival arrival = Unzip(source, temp, ZipFolders::Kept);
    if (arrival == Arrival::Whole) arrival = CopyFlat(ScanTree(temp).files, target);
    static_cast<void>(RemoveFolderTree(temp, bar)); // what is left goes at the next use
    return arrival;
}

void RefreshFileList(NewLevel& level) {
    if (!ConfigApplied && !level.OnCd) UnpackZips(level.WorkFolder);
    level.FileList = ListFiles(level.WorkFolder, "*.*");
    std::int64_t bytes = 0;
    for (const std::string& file : level.FileList)
        bytes += FileSize(file);
    FillMoreInfo(level);
    level.SizeText = std::to_string(level.FileList.size()) + Text(MessageId::kNewLevelFiles) +
                     FormatSize(bytes) + Text(MessageId::kNewLevelFilesEnd);
}

void Refresh(NewLevel& level) {
    RefreshFileList(level);
    if (level.IsNewLevel) ApplyLevelConfig(level);
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
    for (const std::string& word : Split(Text(MessageId::kMoreInfoWords), '|'))
        for (const std::string& name : names)
            if (FindNoCase(name, word) != std::string::npos) {
                SelectMoreInfo(level, name);
                return;
            }
}

bool AddSource(NewLevel& level, const std::string& path) {
    Arrival arrival = Arrival::Failed;
    if (FolderExists(path)) {
        arrival = CopyFlat(FilesToTake(path), level.WorkFolder);
    } else if (FileExists(path)) {
        if (IsZip(path)) level.LastZip = path;
        arrival = AddFileOrZip(path, level.WorkFolder, Through::Direct);
        TellArrival(arrival, Text(MessageId::kAddFileError) + FileNameOf(path));
    } else {
        TellCritical(Text(MessageId::kNotALevelSource) + path);
    }
    level.Stopped = arrival == Arrival::Stopped;
    Refresh(level);
    PickMoreInfoFile(level); // nothing to do where a package file has said it
    return arrival == Arrival::Whole;
}

void AddFile(NewLevel& level) {
    const std::optional<std::string> file = TheUser().OpenFile(
        {Text(MessageId::kAddFileTitle), Text(MessageId::kAddFileFilter), StartFolder(), {}});
    if (!file) return;
    RememberFolder(FolderOf(*file));
    AddSource(level, *file);
}

void AddFolder(NewLevel& level) {
    const std::optional<std::string> folder =
        TheUser().ChooseFolder(Text(MessageId::kAddFolderTitle), StartFolder());
    if (!folder) return;
    RememberFolder(*folder);
    AddSource(level, *folder);
}

void RemoveFile(NewLevel& level, std::int32_t item) {
    if (item < 0 || item >= static_cast<std::int32_t>(level.FileList.size())) {
        ShowMessage(MessageStyle::Exclamation, Text(MessageId::kNoFileSelected));
        return;
    }
    const std::string file = level.FileList[static_cast<std::size_t>(item)];
    if (AskYesNo(MessageStyle::Question, Text(MessageId::kRemoveFileQuestion) + FileNameOf(file)))
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
    if (EndsWithNoCase(file, Text(MessageId::kIntakeZlExtension))) file = swap::DecompressOneFile(file, true);
    if (!file.empty() && OpenStrangersFile(file) == Opening::Failed)
        TellCritical(Text(MessageId::kOpenFileFailed) + file);
}

} // namespace kelvash::intake
