#include "swap/take_out.h"

#include <algorithm>
#include <unordered_map>

#include "core/profile.h"
#include "foundation/files.h"
#include "foundation/messages.h"
#include "foundation/path.h"
#include "foundation/text.h"
#include "foundation/user.h"
#include "swap/backup.h"
#include "swap/fragments.h"
#include "swap/messages.h"

namespace kelvash::swap {

using trle_state::IsStill;
using trle_state::RecordedFile;
using trle_state::StampOf;
using trle_state::SwapRecord;

namespace {

using core::TrleFolder;

bool IsAudio(const std::string& target) {
    return StartsWithNoCase(target, LoadFragment(fragment::kAudioPrefix));
}

std::vector<RecordedFile> Joined(const std::vector<RecordedFile>& first,
                                 const std::vector<RecordedFile>& behind) {
    std::vector<RecordedFile> all = first;
    all.insert(all.end(), behind.begin(), behind.end());
    return all;
}

// The first of a name is the original: saves come before files, and what an earlier level left comes last.
// What came with the saves stays where there is no original to come back.
std::vector<RecordedFile> OriginalsIn(const SwapRecord& record) {
    std::vector<RecordedFile> under_saves = record.OverwrittenBySaves;
    std::erase_if(under_saves,
                  [](const RecordedFile& file) { return !FileExists(BackupFolder() + file.Target); });
    return Joined(Joined(under_saves, record.Overwritten), record.LeftOverwritten);
}

// The originals of a record by folded target. Of a name that stands twice the first is the original.
using Originals = std::unordered_map<std::string, const RecordedFile*>;
Originals OriginalsOf(const std::vector<RecordedFile>& overwritten) {
    Originals originals;
    for (const RecordedFile& file : overwritten)
        originals.emplace(FoldCase(file.Target), &file);
    return originals;
}

// True if TRLE's own file stands there: it hasn't been overwritten yet, or is back already.
bool IsOriginal(const std::string& target, const Originals& originals) {
    const std::string file = TrleFolder() + target;
    const auto original = originals.find(FoldCase(target));
    return (original != originals.end() && IsStill(file, original->second->Stamp)) ||
           IsStill(file, StampOf(BackupFolder() + target));
}

// False after a message.
bool DeleteOne(const RecordedFile& copied, const Originals& originals, KeptFiles& kept) {
    const std::string file = TrleFolder() + copied.Target;
    const bool stands = FileExists(file);
    const bool is_ours = stands && IsStill(file, copied.Stamp);
    if (stands && !is_ours && IsOriginal(copied.Target, originals)) return true;
    if ((!stands || is_ours || KeepFile(copied.Target, kept)) && DeleteFile(file)) return true;
    TellCannotDelete(file);
    return false;
}

// False if the original is still to come back.
bool RestoreOne(const RecordedFile& original, bool is_ours, bool from_kept, KeptFiles& kept) {
    const std::string file = TrleFolder() + original.Target;
    std::string source = BackupFolder() + original.Target;
    if (!is_ours && IsStill(file, original.Stamp)) return true;
    if (!is_ours && !KeepFile(original.Target, kept)) return false;
    if (from_kept && !FileExists(source)) source = original.Kept;
    if (!FileExists(source)) {
        DeleteFile(file);
        return true;
    }
    const bool copied = CopyFileWhole(source, file);
    ClearReadOnly(file);
    return copied;
}

} // namespace

void TellCannotDelete(const std::string& file) {
    TellCritical(LoadMessage(msg::kCannotDeleteFile) + file);
}

bool DeleteCopied(const SwapRecord& record, KeptFiles& kept) {
    const std::vector<RecordedFile> copied = Joined(record.Copied, record.LeftCopied);
    if (copied.empty()) return true;
    const std::vector<RecordedFile> overwritten = OriginalsIn(record);
    const Originals originals = OriginalsOf(overwritten);
    ProgressDialog progress(BarPlace::ProgressDialog, LoadMessage(msg::kRemovingFiles));
    double done = 0;
    for (const RecordedFile& file : copied) {
        const bool stays = !core::profile.FullBackup && IsAudio(file.Target);
        if (!stays && StaysInside(file.Target) && !DeleteOne(file, originals, kept)) return false;
        ProgressPercent(progress.bar, ++done, static_cast<double>(copied.size()));
    }
    return true;
}

std::vector<RecordedFile> RestoreOverwritten(const SwapRecord& record, bool from_kept, KeptFiles& kept) {
    std::vector<RecordedFile> missing;
    const std::vector<RecordedFile> overwritten = OriginalsIn(record);
    if (overwritten.empty()) return missing;
    const std::vector<RecordedFile> copied = Joined(record.Copied, record.LeftCopied);
    std::unordered_map<std::string, std::vector<const RecordedFile*>> ours;
    for (const RecordedFile& file : copied)
        ours[FoldCase(file.Target)].push_back(&file);
    ProgressDialog progress(BarPlace::ProgressDialog, LoadMessage(msg::kRestoringFiles));
    double done = 0;
    for (const RecordedFile& original : overwritten) {
        if (StaysInside(original.Target)) {
            const auto twins = ours.find(FoldCase(original.Target));
            const bool is_ours =
                twins != ours.end() &&
                std::any_of(twins->second.begin(), twins->second.end(), [](const RecordedFile* file) {
                    return IsStill(TrleFolder() + file->Target, file->Stamp);
                });
            if (!RestoreOne(original, is_ours, from_kept, kept)) missing.push_back(original);
        }
        ProgressPercent(progress.bar, ++done, static_cast<double>(overwritten.size()));
    }
    return missing;
}

bool CanRestoreAll(const SwapRecord& record, bool stamped) {
    const std::vector<RecordedFile> overwritten = OriginalsIn(record);
    return std::all_of(overwritten.begin(), overwritten.end(), [=](const RecordedFile& original) {
        // Of a name that is listed twice the second was no original.
        return (stamped && original.Stamp.Size < 0) || FileExists(BackupFolder() + original.Target) ||
               (!original.Kept.empty() && FileExists(original.Kept)) ||
               IsStill(TrleFolder() + original.Target, original.Stamp);
    });
}

} // namespace kelvash::swap
