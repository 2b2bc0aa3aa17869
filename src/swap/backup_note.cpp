#include "swap/backup_note.h"

#include <zlib.h>

#include <array>
#include <chrono>
#include <cstdio>

#include "core/profile.h"
#include "foundation/date_text.h"
#include "foundation/drives.h"
#include "foundation/files.h"
#include "foundation/messages.h"
#include "foundation/path.h"
#include "foundation/text.h"
#include "swap/backup.h"
#include "swap/backup_messages.h"
#include "trle_state/fragments.h"

namespace kelvash::swap {

namespace {

constexpr std::string_view kComment =
    ": Don't remove this file! It tells which folder the backup beside it is of.";
constexpr std::string_view kFolderTag = "#TRLE_FOLDER=";
constexpr std::string_view kGameTag = "#TOMB4=";
constexpr std::string_view kKindTag = "#KIND=";
constexpr std::string_view kDateTag = "#DATE=";
constexpr std::string_view kFormerTag = "#FORMER=";
constexpr std::string_view kFull = "full";
constexpr std::string_view kCompact = "compact";
constexpr std::string_view kKept = "kept";
constexpr std::string_view kRemoved = "removed";
constexpr std::string_view kNoteExtension = ".txt";

std::string FormerFolder() {
    return BackupFolder() + "_old";
}

std::string NoteOf(const std::string& folder) {
    return folder + std::string(kNoteExtension);
}

std::int64_t Now() {
    const auto now = std::chrono::system_clock::now().time_since_epoch();
    return std::chrono::floor<std::chrono::seconds>(now).count();
}

std::string Line(std::string_view tag, std::string_view value) {
    return std::string(tag) + std::string(value) + kLineBreak;
}

std::optional<BackupNote> ReadNote(const std::string& path) {
    constexpr std::size_t kMostBytes = 65536;
    const std::optional<std::string> text = ReadFileStart(path, kMostBytes);
    return text ? DecodeBackupNote(*text) : std::nullopt;
}

bool WriteNote(const std::string& path, const BackupNote& note) {
    if (ReplaceFileBytes(path, EncodeBackupNote(note), Flush::Yes)) return true;
    TellCritical(LoadMessage(msg::kBackupNoteFailed) + path);
    return false;
}

// A folder beside the backup that isn't there yet.
std::string FreeKeptFolder() {
    const std::string base = BackupFolder() + FormatDate("_yyyy-mm-dd_hhnnss", Now());
    std::string folder = base;
    for (int n = 2; FolderExists(folder) || FileExists(NoteOf(folder)); ++n)
        folder = base + "_" + std::to_string(n);
    return folder;
}

// Puts a backup of another folder aside, with its note. False after a message.
bool KeepFormer() {
    const std::string kept = FreeKeptFolder();
    if (!RenameFile(BackupFolder(), kept)) {
        TellCritical(LoadMessage(msg::kBackupCannotKeep) + BackupFolder());
        return false;
    }
    // Without its note it is still known by its game program.
    if (FileExists(NoteOf(BackupFolder()))) RenameFile(NoteOf(BackupFolder()), NoteOf(kept));
    ShowMessage(MessageStyle::Exclamation, LoadMessage(msg::kBackupKept) + kept);
    return true;
}

bool RemoveTree(const std::string& folder, Bar& bar) {
    return !FolderExists(folder) || RemoveFolderTree(folder, bar);
}

// Makes the backup's place free.
bool MoveFormer(const BackupNote& note) {
    if (!FolderExists(BackupFolder())) return true;
    if (note.KeepsFormer) return KeepFormer();
    Bar bar{BarPlace::CallerForm, -1};
    if (RemoveTree(FormerFolder(), bar) && RenameFile(BackupFolder(), FormerFolder())) return true;
    TellCritical(LoadMessage(msg::kBackupCannotKeep) + BackupFolder());
    return false;
}

// The renames that make the new backup the one in use. Its note stands until the last of them.
bool Exchange(const BackupNote& note) {
    const std::string fresh = NewBackupFolder();
    if (FolderExists(fresh)) {
        if (!MoveFormer(note)) return false;
        if (!RenameFile(fresh, BackupFolder())) {
            TellCritical(LoadMessage(msg::kBackupNoteNotWhole) + fresh);
            return false;
        }
    }
    core::profile.FullBackup = note.Full;
    if (RenameFile(NoteOf(fresh), NoteOf(BackupFolder())) && FlushDrive(AppFolder())) return true;
    TellCritical(LoadMessage(msg::kBackupNoteFailed) + NoteOf(BackupFolder()));
    return false;
}

} // namespace

std::string EncodeBackupNote(const BackupNote& note) {
    return Line(kComment, {}) + Line(kFolderTag, note.TrleFolder) + Line(kGameTag, note.GameHash) +
           Line(kKindTag, note.Full ? kFull : kCompact) + Line(kDateTag, note.Date) +
           Line(kFormerTag, note.KeepsFormer ? kKept : kRemoved);
}

std::optional<BackupNote> DecodeBackupNote(std::string_view text) {
    BackupNote note;
    std::string kind;
    for (std::size_t position = 0; position < text.size();) {
        const std::string line = NextLineIn(text, position);
        const auto take = [&](std::string_view tag, std::string& value) {
            if (StartsWithNoCase(line, tag)) value = Trim(std::string_view(line).substr(tag.size()));
        };
        std::string former;
        take(kFolderTag, note.TrleFolder);
        take(kGameTag, note.GameHash);
        take(kKindTag, kind);
        take(kDateTag, note.Date);
        take(kFormerTag, former);
        note.KeepsFormer = note.KeepsFormer || EqualNoCase(former, kKept);
    }
    note.Full = EqualNoCase(kind, kFull);
    if (note.TrleFolder.empty() || (!note.Full && !EqualNoCase(kind, kCompact))) return std::nullopt;
    return note;
}

std::optional<BackupNote> ReadBackupNote() {
    return ReadNote(NoteOf(BackupFolder()));
}

bool WriteBackupNote(const BackupNote& note) {
    return WriteNote(NoteOf(BackupFolder()), note);
}

BackupNote MakeBackupNote(const std::string& trle, bool full) {
    return {trle, GameHash(trle), full, FormatDate("yyyy-mm-dd hh:nn:ss", Now()), false};
}

std::string GameHash(std::string_view folder) {
    constexpr std::size_t kMostBytes = std::size_t{1} << 25;
    const std::string path = std::string(folder) + LoadFragment(fragment::kGameProgram);
    const std::optional<std::string> bytes = ReadFileStart(path, kMostBytes);
    if (!bytes) return {};
    const uLong sum = crc32_z(0, reinterpret_cast<const Bytef*>(bytes->data()), bytes->size());
    std::array<char, 16> digits{};
    std::snprintf(digits.data(), digits.size(), "%08lX ", sum);
    return digits.data() + std::to_string(FileSize(path));
}

std::string NewBackupFolder() {
    return BackupFolder() + "_new";
}

bool RemoveHalfBackup() {
    Bar bar{BarPlace::CallerForm, -1};
    return DeleteFile(NoteOf(NewBackupFolder())) && RemoveTree(NewBackupFolder(), bar);
}

bool PlaceBackup(const BackupNote& note) {
    if (!FlushDrive(NewBackupFolder())) {
        TellCritical(LoadMessage(msg::kBackupNoteNotWhole) + NewBackupFolder());
        return false;
    }
    return WriteNote(NoteOf(NewBackupFolder()), note) && Exchange(note);
}

bool RemoveFormerBackup(Bar& bar) {
    if (RemoveTree(FormerFolder(), bar)) return true;
    TellCritical(LoadMessage(msg::kErrorRemovingBackup) + FormerFolder());
    return false;
}

void FinishBackup() {
    if (const std::optional<BackupNote> note = ReadNote(NoteOf(NewBackupFolder()))) {
        if (!Exchange(*note)) return;
    } else if (!FolderExists(BackupFolder()) && FolderExists(FormerFolder())) {
        RenameFile(FormerFolder(),
                   BackupFolder()); // the place stays empty otherwise, which is told when needed
        return;
    }
    Bar bar{BarPlace::CallerForm, -1};
    RemoveFormerBackup(bar);
}

} // namespace kelvash::swap
