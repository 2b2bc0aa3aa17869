#include "core/profile.h"

#include "core/archive.h"
#include "core/start_up.h"
#include "foundation/desktop.h"
#include "foundation/drives.h"
#include "foundation/files.h"
#include "foundation/guarded_folders.h"
#include "foundation/messages.h"
#include "foundation/text.h"
#include "swap/backup.h"

namespace kelvash::core {

ProfileRecord profile;

namespace {

ProfileState ReadProfile() {
    if (!FileExists(ProfilePath())) return ProfileState::FirstRun;
    // One byte more than the record tells a longer file without reading it whole.
    const std::optional<std::string> bytes = ReadFileStart(ProfilePath(), kProfileSize + 1);
    if (!bytes) return ProfileState::Current;
    return DecodeProfile(*bytes, profile) ? ProfileState::Current : ProfileState::Upgraded;
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
    std::string bytes(kProfileSize, '\0');
    EncodeRecord(kProfileFields, record, std::span<char>(bytes));
    return bytes;
}

std::string TrleFolder() {
    return std::string(Trim(profile.TrleFolder));
}

std::string ProfilePath() {
    return AppFolder() + LoadMessage(MessageId::kProfileName, {});
}

ProfileState LoadProfile() {
    profile = ProfileRecord();
    const ProfileState state = ReadProfile();
    swap::TakeKindOfBackup(); // a run that crashed after the backup was made has kept nothing else
    return state;
}

bool WriteProfile() {
    const std::string bytes = EncodeProfile(profile);
    return ReadFileStart(ProfilePath(), kProfileSize + 1) == bytes ||
           ReplaceFileBytes(ProfilePath(), bytes, Flush::Yes);
}

bool SaveProfile() {
    AskSaveArchive();
    const bool stands = WriteProfile();
    if (session.Started) TheDesktop().SetWindowAnimation(session.WindowAnimation);
    return stands;
}

} // namespace kelvash::core
