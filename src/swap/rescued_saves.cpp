#include "swap/rescued_saves.h"

#include <algorithm>

#include "foundation/drives.h"
#include "foundation/files.h"
#include "foundation/messages.h"
#include "foundation/path.h"
#include "foundation/text.h"
#include "foundation/user.h"
#include "swap/fragments.h"
#include "swap/messages.h"

namespace kelvash::swap {

namespace {

std::string Base() {
    return AppFolder() + LoadFragment(fragment::kRescueFolder);
}

std::string NewFolder() {
    int number = 1;
    while (FolderExists(Base() + std::to_string(number)))
        ++number;
    return Base() + std::to_string(number);
}

std::string NotePath(const std::string& folder) {
    return folder + LoadFragment(fragment::kRescueNote);
}

bool WriteNote(const std::string& folder, const std::string& from, bool told) {
    const std::string text = LoadFragment(fragment::kRescueNoteFrom) + from + kLineBreak +
                             (told ? LoadFragment(fragment::kRescueNoteTold) + kLineBreak : std::string());
    return ReplaceFileBytes(NotePath(folder), text, Flush::No);
}

// A name that is free in the folder: two of one name may come from two folders.
std::string FreeName(const std::string& folder, const std::string& file) {
    std::string target = folder + "\\" + FileNameOf(file);
    for (int n = 2; FileExists(target); ++n)
        target = folder + "\\" + BaseNameOf(file) + "_" + std::to_string(n) + ExtensionOf(FileNameOf(file));
    return target;
}

// A file that can't leave its place leaves no copy.
bool MoveInto(const std::string& folder, const std::string& file) {
    const std::string target = FreeName(folder, file);
    if (CopyFileWhole(file, target) && FlushFile(target) && DeleteFile(file)) return true;
    if (FileExists(file)) DeleteFile(target);
    return false;
}

} // namespace

bool RescueFiles(const std::vector<std::string>& files, const std::string& from, MessageId told) {
    if (files.empty()) return true;
    const std::string folder = NewFolder();
    if (!CreateFolder(folder) || !WriteNote(folder, from, false)) return false;
    if (!std::all_of(files.begin(), files.end(),
                     [&](const std::string& file) { return MoveInto(folder, file); })) {
        if (ListFiles(folder, "*").size() == 1) RemoveFolder(folder); // the note alone
        return false;
    }
    ShowMessage(MessageStyle::Exclamation, LoadMessage(told) + folder);
    return true;
}

std::vector<RescuedSaves> ListRescuedSaves() {
    std::vector<RescuedSaves> found;
    for (const std::string& folder : ListFolders(AppFolder())) {
        if (!StartsWithNoCase(folder, Base())) continue;
        RescuedSaves rescued{folder, {}, ListFiles(folder, "*")};
        std::erase_if(rescued.Files,
                      [&](const std::string& file) { return EqualNoCase(file, NotePath(folder)); });
        const std::string note = ReadWholeFile(NotePath(folder));
        const std::string tag = LoadFragment(fragment::kRescueNoteFrom);
        if (note.starts_with(tag)) {
            std::size_t at = tag.size();
            rescued.From = NextLineIn(note, at);
        }
        if (!rescued.Files.empty()) found.push_back(std::move(rescued));
    }
    return found;
}

void TellRescuedSaves() {
    std::string folders;
    for (const RescuedSaves& rescued : ListRescuedSaves()) {
        const std::string note = ReadWholeFile(NotePath(rescued.Folder));
        if (note.find(LoadFragment(fragment::kRescueNoteTold)) != std::string::npos) continue;
        if (WriteNote(rescued.Folder, rescued.From, true)) folders += kLineBreak + rescued.Folder;
    }
    if (!folders.empty()) ShowMessage(MessageStyle::Exclamation, LoadMessage(msg::kSavesWait) + folders);
}

} // namespace kelvash::swap
