#include "core/profile.h"

#include <filesystem>

#include "core/change_messages.h"
#include "core/fragments.h"
#include "core/ports.h"
#include "foundation/drives.h"
#include "foundation/files.h"
#include "foundation/guarded_folders.h"
#include "foundation/lock.h"
#include "foundation/messages.h"
#include "foundation/path.h"
#include "foundation/state.h"
#include "foundation/text.h"
#include "foundation/user.h"

namespace kelvash::core {

namespace fs = std::filesystem;

constinit ProfileRecord& profile = State<ProfileRecord>::Get();

namespace {

// The file as this run knows it.
struct FileState {
    std::string seen;     // its bytes when it was read or written last, in the form of this version
    bool current = false; // it was of this version
    bool unreadable = false;
};
constinit FileState& file_state = State<FileState>::Get();

// False too for what can't be looked at.
bool IsMissing(const std::string& path) {
    std::error_code error;
    return fs::symlink_status(NativePath(path), error).type() == fs::file_type::not_found;
}

// Nothing for a file that can't be read.
std::optional<std::string> ReadProfileFile() {
    // One byte more than the record tells a longer file without reading it whole.
    return ReadFileStart(ProfilePath(), kProfileSize + 1);
}

// The fields that this run has changed, over what the file holds now.
std::string MergedBytes(const std::optional<std::string>& old) {
    const std::string own = EncodeProfile(profile);
    if (!old || old->empty() || file_state.seen.empty()) return own; // an empty one holds nothing to keep
    ProfileRecord other;
    DecodeProfile(*old, other);
    std::string merged = EncodeProfile(other);
    for (const auto& field : kProfileFields)
        if (own.compare(field.offset, field.width, file_state.seen, field.offset, field.width) != 0)
            merged.replace(field.offset, field.width, own, field.offset, field.width);
    return merged;
}

void TakeKindOfBackup() {
    profile.FullBackup = BackupIsFull().value_or(profile.FullBackup);
}

std::vector<GuardedFolder> GuardedTrle() {
    return {{TrleFolder(), Guard::AllButFiles}};
}
[[maybe_unused]] const bool trle_is_guarded = AddGuardedFolders(&GuardedTrle);

} // namespace

bool DecodeProfile(std::string_view bytes, ProfileRecord& record) {
    const bool current = bytes.size() == kProfileSize;
    DecodeRecord(kProfileFields, current ? bytes : bytes.substr(0, kUpgradeOffset), record);
    return current;
}

std::string EncodeProfile(const ProfileRecord& record) {
    ByteWriter bytes;
    EncodeRecord(kProfileFields, record, bytes);
    return bytes.Take();
}

std::string TrleFolder() {
    return std::string(Trim(profile.TrleFolder));
}

std::string ProfilePath() {
    return AppFolder() + LoadFragment(fragment::kProfileName);
}

ProfileState LoadProfile() {
    profile = ProfileRecord();
    file_state = FileState();
    file_state.seen = EncodeProfile(profile);
    if (IsMissing(ProfilePath())) {
        TakeKindOfBackup();
        return ProfileState::FirstRun;
    }
    const std::optional<std::string> bytes = ReadProfileFile();
    if (bytes && bytes->empty()) return ProfileState::FirstRun; // it only says that this is the folder
    file_state.unreadable = !bytes.has_value();
    if (!bytes) return ProfileState::Unreadable;
    file_state.current = DecodeProfile(*bytes, profile);
    file_state.seen = EncodeProfile(profile);
    TakeKindOfBackup(); // a run that crashed after the backup was made has kept nothing else
    return file_state.current ? ProfileState::Current : ProfileState::Upgraded;
}

bool OpenProfile(ProfileState& state) {
    state = LoadProfile();
    if (state != ProfileState::Unreadable) return true;
    TellCritical(LoadMessage(msg::kProfileUnreadable, {kLineBreak, ProfilePath()}));
    return false;
}

bool WriteProfile() {
    // Who has changed nothing needs no lock.
    if (file_state.current && file_state.seen == EncodeProfile(profile) && FileExists(ProfilePath()))
        return true;
    constexpr double kPatience = 5; // seconds; it is held for an instant
    FolderLock lock;
    LockHolder holder;
    if (file_state.unreadable ||
        lock.Await(AppFolder(), LockKind::Profile, {}, kPatience, holder) != LockResult::Taken)
        return false;
    const bool there = !IsMissing(ProfilePath());
    const std::optional<std::string> old = there ? ReadProfileFile() : std::nullopt;
    if (there && !old) return false;
    const std::string bytes = MergedBytes(old);
    if (old != bytes && !ReplaceFileBytes(ProfilePath(), bytes, Flush::Yes)) return false;
    DecodeProfile(bytes, profile);
    file_state.seen = bytes;
    file_state.current = true;
    return true;
}

bool ProfileStands() {
    return file_state.unreadable || WriteProfile();
}

} // namespace kelvash::core
