// The list of the levels.

#include "cli/command.h"
#include "cli/messages.h"
#include "cli/steps.h"
#include "core/archive.h"
#include "core/profile.h"
#include "foundation/files.h"
#include "foundation/messages.h"
#include "foundation/text.h"
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

std::string LevelsAsJson() {
    constexpr std::size_t kUsualLength = 512; // bytes of a level as JSON
    const std::int32_t current = trle_state::CurrentLevelCode();
    std::string json;
    json.reserve(static_cast<std::size_t>(core::archive.Table.Size()) * kUsualLength);
    json += '[';
    for (const LevelRecord& level : core::archive.Table) {
        if (json.size() > 1) json += ',';
        AppendLevel(level, level.Code == current, json);
    }
    json += ']';
    return json;
}

std::string LevelsAsLines() {
    const std::int32_t current = trle_state::CurrentLevelCode();
    std::string lines;
    for (const LevelRecord& level : core::archive.Table)
        AppendLine(level, level.Code == current, lines);
    return lines;
}

bool OpenLevels(Session& session) {
    bool opened = OpenQuickly(session);
    if (opened && Trim(core::profile.LastArchive).empty()) {
        TellNoArchive();
        opened = false;
    }
    return core::AskSaveArchive() && opened;
}

} // namespace

Command LevelsCommand() {
    return {.name = "levels",
            .about = "Lists the levels of the Archive",
            .run = &OpenLevels,
            .fields = {{.name = "levels", .json = &LevelsAsJson}},
            .plain = &LevelsAsLines};
}

} // namespace kelvash::cli
