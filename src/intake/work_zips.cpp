// What arrives in the work folder of the open dialog: zips, zips in zips, copies.
#include <algorithm>
#include <set>

#include "foundation/drives.h"
#include "foundation/files.h"
#include "foundation/known_names.h"
#include "foundation/messages.h"
#include "foundation/path.h"
#include "foundation/plain_name.h"
#include "foundation/text.h"
#include "foundation/user.h"
#include "intake/fragments.h"
#include "intake/messages.h"
#include "intake/work_folder.h"
#include "zip/zip_module.h"

namespace kelvash::intake {

namespace {

// Zips in zips are unpacked this deep, and so many in one dialog; a zip may hold itself.
constexpr int kDeepestZip = 8;
constexpr int kMostInnerZips = 1000;

std::string KeyOf(const std::string& path) {
    return FoldCase(FileNameOf(path));
}

FileStamp StampOf(const std::string& path) {
    return {FileNameOf(path), FileTime(path).value_or(0), FileSize(path)};
}

int DepthOf(const NewLevel& level, const std::string& zip) {
    const auto depth = level.Zips.Depths.find(KeyOf(zip));
    return depth == level.Zips.Depths.end() ? 0 : depth->second;
}

void NoteInnerZips(NewLevel& level, const std::vector<std::string>& written, int depth) {
    for (const std::string& file : written)
        if (IsZip(file)) level.Zips.Depths[KeyOf(file)] = depth;
}

bool IsLeft(const NewLevel& level, const std::string& zip) {
    const auto left = level.Zips.Left.find(KeyOf(zip));
    return left != level.Zips.Left.end() && left->second.Size == FileSize(zip) &&
           left->second.Time == FileTime(zip).value_or(0);
}

void Leave(NewLevel& level, const std::string& zip) {
    level.Zips.Left[KeyOf(zip)] = StampOf(zip);
}

std::vector<std::string> ZipsIn(const std::string& folder) {
    return ListFiles(folder, LoadFragment(fragment::kIntakeZipMask));
}

bool IsTooDeep(NewLevel& level, const std::string& zip) {
    const int depth = DepthOf(level, zip);
    return depth > kDeepestZip || (depth > 0 && ++level.Zips.Inner > kMostInnerZips);
}

// A zip that has an entry of its own name is left alone after that: it has been replaced.
zip::UnzipEnd UnpackAndDelete(NewLevel& level, const std::string& zip) {
    const int depth = DepthOf(level, zip);
    if (depth == 0) level.Zips.Budget.Packed += static_cast<double>(FileSize(zip));
    ProgressDialog progress(BarPlace::StoppableDialog,
                            LoadMessage(msg::kRefreshUnzipping, {FileNameOf(zip)}));
    zip::Unzipping job{zip, level.WorkFolder};
    job.Budget = &level.Zips.Budget;
    const zip::Unzipped unzipped = zip::UnzipToFolder(job, progress.bar);
    NoteInnerZips(level, unzipped.Written, depth + 1);
    const bool whole = unzipped.End == zip::UnzipEnd::Whole;
    if (whole && !ContainsNoCase(unzipped.Written, zip) && DeleteFile(zip)) return zip::UnzipEnd::Whole;
    Leave(level, zip);
    if (unzipped.End == zip::UnzipEnd::Stopped) {
        if (unzipped.NoPassword) TellStop({Arrival::Declined, unzipped.Message});
        return zip::UnzipEnd::Stopped;
    }
    TellCritical(LoadMessage(msg::kRefreshUnzipError) + FileNameOf(zip) +
                 ReasonLine(whole ? std::string() : unzipped.Message));
    return zip::UnzipEnd::Failed;
}

// A file of a name that not every system can hold stays behind; the others are taken.
void TellRefused(const std::vector<std::string>& refused) {
    if (!refused.empty())
        ShowMessage(MessageStyle::Exclamation, LoadMessage(msg::kAddNamesRefused, {CleanLines(refused)}));
}

// Of two files of one name in a tree, the first that came stays unless the user wants the other.
bool MayTake(const std::string& file, const std::string& target, std::set<std::string>& taken) {
    if (taken.insert(FoldCase(FileNameOf(target))).second) return true;
    return ReadFileBytes(file) != ReadFileBytes(target) && AskReplaceFile(file, target);
}

Arrived Unzip(NewLevel& level, const std::string& zip, const std::string& folder, zip::ZipFolders folders) {
    level.Zips.Budget.Packed += static_cast<double>(FileSize(zip));
    ProgressDialog progress(BarPlace::StoppableDialog, LoadMessage(msg::kAddUnzipping, {FileNameOf(zip)}));
    zip::Unzipping job{zip, folder};
    job.Folders = folders;
    job.Budget = &level.Zips.Budget;
    zip::Unzipped unzipped = zip::UnzipToFolder(job, progress.bar);
    NoteInnerZips(level, unzipped.Written, 1);
    if (unzipped.End == zip::UnzipEnd::Whole) return {Arrival::Whole};
    if (unzipped.End == zip::UnzipEnd::Failed) return {Arrival::Failed, std::move(unzipped.Message)};
    if (TheUser().StopRequested()) return {Arrival::Stopped};
    return {Arrival::Declined, unzipped.NoPassword ? std::move(unzipped.Message) : std::string()};
}

} // namespace

void TellStop(const Arrived& arrived) {
    if (arrived.How == Arrival::Stopped || arrived.How == Arrival::Declined)
        ShowMessage(MessageStyle::Exclamation, LoadMessage(msg::kAddStopped) + ReasonLine(arrived.Reason));
}

std::string ReasonLine(const std::string& reason) {
    return reason.empty() ? reason : kLineBreak + reason;
}

bool IsZip(std::string_view path) {
    return EndsWithNoCase(path, LoadFragment(fragment::kZipNameExtension));
}

Arrived ArrivedWith(bool whole) {
    if (whole) return {Arrival::Whole};
    return {TheUser().StopRequested() ? Arrival::Stopped : Arrival::Failed};
}

void UnpackZips(NewLevel& level) {
    level.Zips.Stopped = false;
    std::string deep;
    for (bool more = true; more && !level.Zips.Stopped;) {
        more = false;
        for (const std::string& zip : ZipsIn(level.WorkFolder)) {
            if (IsLeft(level, zip) || level.Zips.Stopped) continue;
            if (IsTooDeep(level, zip)) {
                Leave(level, zip);
                deep += kLineBreak + FileNameOf(zip);
                continue;
            }
            level.Zips.Stopped = UnpackAndDelete(level, zip) == zip::UnzipEnd::Stopped;
            more = true;
        }
    }
    // Those behind the one that the user didn't want aren't asked about one by one.
    if (level.Zips.Stopped)
        for (const std::string& zip : ZipsIn(level.WorkFolder))
            Leave(level, zip);
    if (!deep.empty()) ShowMessage(MessageStyle::Exclamation, LoadMessage(msg::kZipsTooDeep, {deep}));
}

Arrived CopyFlat(const std::vector<std::string>& files, const std::string& folder) {
    ProgressDialog progress(BarPlace::StoppableDialog, LoadMessage(msg::kAddFolderCopying));
    const KnownNames names(folder);
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
        if (TheUser().StopRequested()) return {Arrival::Stopped};
        const Arrived arrived = ArrivedWith(!MayTake(file, target, taken) || CopyFileStoppable(file, target));
        if (arrived.How == Arrival::Failed) TellCritical(LoadMessage(msg::kAddFolderError, {file}) + folder);
        if (arrived.How != Arrival::Whole) return arrived;
        ProgressPercent(progress.bar, ++done, static_cast<double>(files.size()));
    }
    TellRefused(refused);
    return {Arrival::Whole};
}

Arrived AddFileOrZip(NewLevel& level, const std::string& source, const std::string& target, Through through) {
    if (!IsZip(source)) {
        const std::optional<PlainName> name = PlainName::From(FileNameOf(source));
        if (!name) {
            TellRefused({source});
            return {Arrival::Refused};
        }
        ProgressDialog progress(BarPlace::StoppableDialog, LoadMessage(msg::kAddCopying));
        return ArrivedWith(CopyFileStoppable(source, PathIn(target, *name)));
    }
    if (through == Through::Direct) return Unzip(level, source, target, zip::ZipFolders::Flat);
    const std::string temp = AppFolder() + LoadFragment(fragment::kAddTempZip);
    Bar bar{BarPlace::CallerForm, -1};
    if ((FolderExists(temp) && !RemoveFolderTree(temp, bar)) || !CreateFolder(temp)) return {Arrival::Failed};
    Arrived arrived = Unzip(level, source, temp, zip::ZipFolders::Kept);
    if (arrived.How == Arrival::Whole) arrived = CopyFlat(ScanTree(temp).files, target);
    static_cast<void>(RemoveFolderTree(temp, bar)); // what is left goes at the next use
    return arrived;
}

} // namespace kelvash::intake
