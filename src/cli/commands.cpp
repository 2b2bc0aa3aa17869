#include "cli/commands.h"

#include <array>
#include <string_view>
#include <utility>

#include "cli/messages.h"
#include "cli/terminal.h"
#include "core/archive.h"
#include "core/level_list.h"
#include "core/level_view.h"
#include "core/profile.h"
#include "core/start_up.h"
#include "foundation/drives.h"
#include "foundation/files.h"
#include "foundation/messages.h"
#include "foundation/text.h"
#include "trle_state/trle_state.h"

namespace kelvash::cli {

namespace {

using CommandFunction = Result (*)(Session&);

constexpr std::array<std::pair<std::string_view, CommandFunction>, 24> kCommands = {{
    {"init", Init},       {"status", Status},  {"profile", Profile}, {"new", New},
    {"load", Load},       {"save", Save},      {"save-as", SaveAs},  {"levels", Levels},
    {"install", Install}, {"play", Play},      {"restore", Restore}, {"demo", Demo},
    {"add", Add},         {"level", LevelSet}, {"export", Export},   {"config", Config},
    {"remove", Remove},   {"sizes", Sizes},    {"equal", Equal},     {"recover", Recover},
    {"move", Move},       {"prefs", Prefs},    {"saves", Saves},     {"kept", Kept},
}};

} // namespace

Result RunCommand(Session& session) {
    for (const auto& [name, function] : kCommands)
        if (name == session.options.command) return function(session);
    return {};
}

bool OpenQuickly(Session& session) {
    if (!TakeHome(session, MissingHome::Refuse)) return false;
    core::ProfileState state{};
    if (!core::OpenProfile(state)) return false;
    const std::string path(Trim(core::profile.LastArchive));
    return path.empty() || core::LoadLastArchive(path);
}

bool StartUpWithArchive(Session& session, const std::string& command_line) {
    if (!TakeHome(session, MissingHome::Refuse)) return false;
    core::StartUp(command_line);
    if (Interrupted()) return false;
    if (core::ArchiveIsOpen()) return true;
    if (!session.user.HasTold()) TellNoArchive();
    return false;
}

bool EndSession(const Session& session) {
    if (!session.home_taken) return true;
    if (core::SaveProfile()) return !core::archive.ArchiveChanged;
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
    core::TellUnknownLevel(typed);
    return false;
}

bool SelectCode(const std::string& typed, std::int32_t& code) {
    if (!TakeCode(typed, code)) return false;
    core::RefreshLevelList();
    core::SelectLevel(code);
    return true;
}

nlohmann::ordered_json InstalledCode() {
    const std::int32_t code = trle_state::CurrentLevelCode();
    return code == trle_state::kNoLevel ? nlohmann::ordered_json(nullptr) : nlohmann::ordered_json(code);
}

bool TakePath(const std::string& typed, std::string& path) {
    path = PathFromUser(typed);
    if (!path.empty()) return true;
    TellCritical(LoadMessage(msg::kCliNotOnDrive) + typed);
    return false;
}

bool TakeTarget(const Options& options, std::string& path) {
    if (!TakePath(options.path, path)) return false;
    if (options.force || !FileExists(path)) return true;
    TellCritical(LoadMessage(msg::kCliTargetExists) + path);
    return false;
}

} // namespace kelvash::cli
