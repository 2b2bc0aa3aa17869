// Commands on the levels of the open Archive.
#include "cli/commands.h"
#include "cli/messages.h"
#include "cli/terminal.h"
#include "companion/game.h"
#include "core/archive.h"
#include "core/change.h"
#include "core/level_list.h"
#include "core/profile.h"
#include "core/start_up.h"
#include "foundation/files.h"
#include "foundation/messages.h"
#include "foundation/text.h"
#include "swap/backup_messages.h"
#include "swap/install.h"
#include "swap/restore.h"
#include "trle_state/trle_state.h"

namespace kelvash::cli {

namespace {

using core::LevelRecord;

void AppendText(std::string_view name, std::string_view text, std::string& json) {
    AppendJsonName(name, json);
    AppendJsonText(Trim(text), json);
    json += ',';
}

void AppendNumber(std::string_view name, std::int64_t number, std::string& json) {
    AppendJsonName(name, json);
    json += std::to_string(number);
    json += ',';
}

// A list whose items a NUL separates. They are split before they are trimmed; an empty one is no item.
void AppendList(std::string_view name, std::string_view list, std::string& json) {
    AppendJsonName(name, json);
    json += '[';
    for (const std::string& item : Split(list, '\0')) {
        if (Trim(item).empty()) continue;
        if (json.back() != '[') json += ',';
        AppendJsonText(Trim(item), json);
    }
    json += "],";
}

// Written by hand: ten thousand levels through a document in memory take longer than all the rest of the run.
void AppendLevel(const LevelRecord& level, bool installed, std::string& json) {
    json += '{';
    AppendNumber("code", level.Code, json);
    AppendText("name", level.Name, json);
    AppendText("note", level.Note, json);
    AppendText("author", level.Author, json);
    AppendList("emails", level.Emails, json);
    AppendList("sites", level.Sites, json);
    AppendText("authorNote", level.AuthorNote, json);
    AppendNumber("cd", level.CdNumber, json);
    AppendText("moreInfo", level.MoreInfoFile, json);
    AppendNumber("filesSize", level.FilesSize, json);
    AppendNumber("savesSize", level.SavesSize, json);
    AppendJsonName("installed", json);
    json += installed ? "true," : "false,";
    AppendJsonName("folder", json);
    AppendJsonText(core::LevelFolder(level.Code, false), json);
    json += '}';
}

void AppendLine(const LevelRecord& level, bool installed, std::string& lines) {
    constexpr int kCodeDigits = 4;
    lines += ZeroPadded(level.Code, kCodeDigits) + (installed ? " * " : "   ");
    lines += CleanLine(Trim(level.Name));
    if (!Trim(level.Author).empty()) lines.append(", ").append(CleanLine(Trim(level.Author)));
    lines += " (" + FormatSize(level.FilesSize) + " + " + FormatSize(level.SavesSize);
    if (level.CdNumber != 0) lines += LoadMessage(msg::kCliOnCd) + std::to_string(level.CdNumber);
    lines += ")\n";
}

void ListLevels(bool plain, Result& result) {
    constexpr std::size_t kUsualLength = 512; // bytes of a level as JSON
    const std::int32_t current = trle_state::CurrentLevelCode();
    const auto count = static_cast<std::size_t>(core::archive.Header.LevelCount);
    std::string& json = result.large_json;
    json.reserve(plain ? 0 : count * kUsualLength);
    json += '[';
    for (std::size_t i = 0; i < count; ++i) {
        const LevelRecord& level = core::archive.Levels[i];
        if (plain) {
            AppendLine(level, level.Code == current, result.plain);
            continue;
        }
        if (i > 0) json += ',';
        AppendLevel(level, level.Code == current, json);
    }
    json += ']';
}

Result InstalledResult(bool ok) {
    Result result;
    result.ok = ok;
    result.fields = {{"installed", InstalledCode()}};
    return result;
}

bool InstallAndTell(const CliUser& user, std::int32_t code) {
    const core::Change change(msg::kDoingInstallCommand, core::kSwap, code);
    if (!change) return false;
    const bool installed = DoneWithoutFailure(user, [&] { return swap::InstallLevel(code); });
    if (!installed) swap::TellNotInstalled();
    core::RefreshLevelList();
    return installed;
}

// Neither way back needs an Archive.
bool StartUpForRestore(Session& session) {
    if (!TakeHome(session, MissingHome::Refuse)) return false;
    core::StartUp({});
    return !core::session.EndWanted && !Interrupted();
}

// A level that couldn't be taken out is no failure: its files are gone all the same.
bool RestoreAll(const CliUser& user) {
    Bar bar{BarPlace::CallerForm, -1};
    return swap::FullRestore(bar, false) && user.HasTold(msg::kRestoreDone) &&
           !user.HasTold(msg::kErrorRestoringFolder);
}

} // namespace

Result Levels(Session& session) {
    Result result;
    result.large_name = "levels";
    result.ok = OpenQuickly(session);
    if (result.ok && Trim(core::profile.LastArchive).empty()) {
        TellNoArchive();
        result.ok = false;
    }
    ListLevels(session.user.IsPlain(), result);
    result.ok = core::AskSaveArchive() && result.ok;
    return result;
}

Result Install(Session& session) {
    std::int32_t code = -1;
    const bool installed = StartUpWithArchive(session, {}) && TakeCode(session.options.code, code) &&
                           InstallAndTell(session.user, code);
    return InstalledResult(EndSession(session) && installed);
}

Result Play(Session& session) {
    std::int32_t code = -1;
    const bool played = StartUpWithArchive(session, {}) && TakeCode(session.options.code, code) &&
                        DoneWithoutFailure(session.user, [&] { return swap::PlayLevel(code); });
    if (companion::game.WatcherActive)
        companion::WaitForGameEnd(&Interrupted); // a signal leaves it to itself
    return InstalledResult(EndSession(session) && played);
}

Result Restore(Session& session) {
    bool restored = StartUpForRestore(session);
    if (restored)
        restored = session.options.restore_kind == "fast"
                       ? DoneWithoutFailure(session.user, &swap::FastRestore)
                       : RestoreAll(session.user);
    restored = restored && trle_state::CurrentLevelCode() == 0;
    return InstalledResult(EndSession(session) && restored);
}

} // namespace kelvash::cli
