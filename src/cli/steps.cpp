#include "cli/steps.h"

#include <optional>

#include "cli/messages.h"
#include "cli/terminal.h"
#include "core/archive.h"
#include "core/level_list.h"
#include "core/profile.h"
#include "foundation/drive_options.h"
#include "foundation/drives.h"
#include "foundation/files.h"
#include "foundation/messages.h"
#include "foundation/text.h"
#include "program/end.h"
#include "program/start_up.h"

namespace kelvash::cli {

bool OpenQuickly(Session& session) {
    if (!TakeHome(session, MissingHome::Refuse)) return false;
    core::ProfileState state{};
    if (!core::OpenProfile(state)) return false;
    const std::string path(Trim(core::profile.LastArchive));
    return path.empty() || program::LoadLastArchive(path);
}

bool StartUpWithArchive(Session& session, const std::string& command_line) {
    if (!TakeHome(session, MissingHome::Refuse)) return false;
    program::StartUp(command_line);
    if (Interrupted()) return false;
    if (core::ArchiveIsOpen()) return true;
    if (!session.user.HasTold()) TellNoArchive();
    return false;
}

bool EndSession(const Session& session) {
    if (!session.home_taken) return true;
    if (program::SaveProfile()) return !core::archive.ArchiveChanged;
    TellProfileNotSaved();
    return false;
}

void TellNoArchive() {
    TellCritical(LoadMessage(msg::kCliNoArchive));
}

void TellProfileNotSaved() {
    TellCritical(LoadMessage(msg::kCliCannotSaveProfile) + core::ProfilePath());
}

bool TakeCode(const std::string& typed, std::int32_t& code) {
    const std::optional<std::int32_t> number = WholeNumber(typed);
    code = number.value_or(-1);
    if (number && core::LevelIndex(code) >= 0) return true;
    TellCritical(LoadMessage(msg::kCliNoLevel) + typed);
    return false;
}

bool SelectCode(const std::string& typed, std::int32_t& code) {
    if (!TakeCode(typed, code)) return false;
    core::RefreshLevelList();
    core::SelectLevel(code);
    return true;
}

namespace {

bool TakenOrTold(const std::string& typed, const std::string& path) {
    if (!path.empty()) return true;
    TellCritical(LoadMessage(msg::kCliNotOnDrive) + typed);
    return false;
}

} // namespace

bool TakePath(const std::string& typed, std::string& path) {
    path = PathFromUser(typed);
    return TakenOrTold(typed, path);
}

bool TakePathWithoutHome(const Session& session, const std::string& typed, std::string& path) {
    path = PathWithoutHome(session.options.drives, typed);
    return TakenOrTold(typed, path);
}

bool MayWrite(const std::string& path, bool force) {
    if (force || !FileExists(path)) return true;
    TellCritical(LoadMessage(msg::kCliTargetExists) + path);
    return false;
}

} // namespace kelvash::cli
