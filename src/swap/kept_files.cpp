#include "swap/kept_files.h"

#include <algorithm>
#include <chrono>

#include "core/profile.h"
#include "foundation/date_text.h"
#include "foundation/drives.h"
#include "foundation/files.h"
#include "foundation/messages.h"
#include "foundation/path.h"
#include "foundation/text.h"
#include "foundation/user.h"
#include "swap/backup.h"
#include "swap/fragments.h"
#include "swap/messages.h"
#include "trle_state/fragments.h"

namespace kelvash::swap {

using trle_state::HoldSameBytes;
using trle_state::IsStill;
using trle_state::StampOf;

namespace {

std::string KeptRoot() {
    return AppFolder() + LoadFragment(fragment::kKeptFolder);
}

std::string WaveFolder() {
    return KeptRoot() + LoadFragment(fragment::kKeptAudioFolder);
}

bool IsWave(const std::string& target) {
    return EqualNoCase(FolderOf(target), LoadFragment(fragment::kKeptAudioFolder));
}

bool IsRewrittenByGame(const std::string& target) {
    const std::vector<std::string> names = Split(LoadFragment(fragment::kRootFileNames), '|');
    return FolderOf(target).empty() && std::any_of(names.begin(), names.end(), [&](const std::string& name) {
               return EqualNoCase(name, FileNameOf(target));
           });
}

// A folder for this operation; a second one within the same second gets a number.
std::string DatedFolder() {
    const auto now = std::chrono::floor<std::chrono::seconds>(std::chrono::system_clock::now());
    const std::string folder =
        KeptRoot() + "\\" +
        FormatDate(LoadFragment(fragment::kKeptDatePattern), now.time_since_epoch().count());
    std::string free = folder;
    for (int n = 2; FolderExists(free); ++n)
        free = folder + "_" + std::to_string(n);
    return free;
}

bool MakeFolders(const std::string& folder) {
    return FolderExists(folder) || (MakeFolders(FolderOf(folder)) && CreateFolder(folder));
}

// Where a file goes; a wave that is kept already in another version goes with the others.
std::string PlaceFor(const std::string& target, KeptFiles& kept) {
    const std::string wave = KeptRoot() + target;
    if (IsWave(target) && (!FileExists(wave) || HoldSameBytes(wave, core::TrleFolder() + target)))
        return wave;
    if (kept.Folder.empty() || kept.Folder == WaveFolder()) kept.Folder = DatedFolder();
    return kept.Folder + target;
}

// Moves a file, to another drive too; the bytes are on the disk before the source goes.
bool MoveAside(const std::string& from, const std::string& to) {
    if (!MakeFolders(FolderOf(to))) return false;
    if (RenameFile(from, to)) return true;
    return CopyFileWhole(from, to) && FlushFile(to) && DeleteFile(from);
}

} // namespace

bool IsHeldElsewhere(const std::string& target) {
    return IsRewrittenByGame(target) || EqualNoCase(target, LoadFragment(fragment::kMarkerName)) ||
           IsStill(core::TrleFolder() + target, StampOf(BackupFolder() + target)) ||
           HoldSameBytes(BackupFolder() + target, core::TrleFolder() + target);
}

bool KeepFile(const std::string& target, KeptFiles& kept, std::string& place) {
    place.clear();
    const std::string file = core::TrleFolder() + target;
    if (!FileExists(file) || IsHeldElsewhere(target)) return true;
    const std::string to = PlaceFor(target, kept);
    if (!MoveAside(file, to)) {
        if (std::find(kept.Failed.begin(), kept.Failed.end(), file) == kept.Failed.end())
            kept.Failed.push_back(file);
        return false;
    }
    if (kept.Folder.empty()) kept.Folder = WaveFolder();
    ++kept.Count;
    place = to;
    return true;
}

bool KeepFile(const std::string& target, KeptFiles& kept) {
    std::string place;
    return KeepFile(target, kept, place);
}

void PutBack(const std::string& target, KeptFiles& kept, std::string& place) {
    const std::string file = core::TrleFolder() + target;
    if (place.empty() || FileExists(file) || !MoveAside(place, file)) return;
    place.clear();
    --kept.Count;
}

void TellKept(const KeptFiles& kept) {
    if (!kept.Failed.empty())
        TellCritical(LoadMessage(msg::kCannotKeepFile) + kLineBreak + Join(kept.Failed, kLineBreak));
    if (kept.Count > 0)
        ShowMessage(MessageStyle::Exclamation,
                    LoadMessage(msg::kFilesKept, {std::to_string(kept.Count), kLineBreak}) + kept.Folder);
}

std::vector<std::string> MissingKeptWaves() {
    std::vector<std::string> missing;
    const std::string audio = core::TrleFolder() + LoadFragment(fragment::kKeptAudioFolder);
    for (const std::string& wave : ListFiles(WaveFolder(), LoadFragment(fragment::kKeptWaveMask)))
        if (!FileExists(audio + "\\" + FileNameOf(wave))) missing.push_back(FileNameOf(wave));
    return missing;
}

bool OfferKeptWaves() {
    const std::string audio = core::TrleFolder() + LoadFragment(fragment::kKeptAudioFolder);
    const std::vector<std::string> missing = MissingKeptWaves();
    if (missing.empty() || !FolderExists(core::TrleFolder())) return false;
    if (!AskYesNo(MessageStyle::Question, LoadMessage(msg::kBringWavesBack, {std::to_string(missing.size()),
                                                                             WaveFolder(), kLineBreak})))
        return false;
    CreateFolder(audio);
    bool any = false;
    for (const std::string& name : missing) {
        if (MoveAside(WaveFolder() + "\\" + name, audio + "\\" + name))
            any = true;
        else
            TellCritical(LoadMessage(msg::kCannotBringWaveBack) + name);
    }
    return any;
}

} // namespace kelvash::swap
