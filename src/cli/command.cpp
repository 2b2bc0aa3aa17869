#include "cli/command.h"

#include <utility>

#include "cli/messages.h"
#include "core/archive.h"
#include "core/profile.h"
#include "foundation/text.h"
#include "trle_state/trle_state.h"

namespace kelvash::cli {

Result RunCommand(const Command& command, Session& session) {
    Result result;
    result.ok = command.run(session);
    for (const ResultField& field : command.fields) {
        if (field.json) {
            if (!session.user.IsPlain())
                result.fields.push_back({field.name, field.heading, {}, field.json()});
            continue;
        }
        nlohmann::ordered_json value = field.value();
        if (!value.is_discarded()) result.fields.push_back({field.name, field.heading, std::move(value), {}});
    }
    if (command.plain && session.user.IsPlain()) result.plain = command.plain();
    return result;
}

Argument CodeArgument(std::string& code) {
    return {
        .name = "CODE", .value = &code, .about = "The level's code, as 'levels' shows it", .required = true};
}

Argument PathArgument(const std::string& name, std::string& path) {
    return {.name = name, .value = &path, .required = true};
}

Argument ForceArgument(bool& force) {
    return {.name = "--force", .value = &force, .about = "Replaces a file that is there already"};
}

ResultField TrleField(FieldValue value) {
    return {.name = "trle", .heading = msg::kCliTrle, .value = std::move(value)};
}

ResultField ArchiveField() {
    return {.name = "archive", .heading = msg::kCliArchive, .value = [] {
                return std::string(Trim(core::profile.LastArchive));
            }};
}

ResultField LevelCountField() {
    return {.name = "levels", .heading = msg::kCliLevels, .value = [] { return core::archive.Table.Size(); }};
}

ResultField InstalledField() {
    return {.name = "installed", .heading = msg::kCliInstalled, .value = []() -> nlohmann::ordered_json {
                const std::int32_t code = trle_state::CurrentLevelCode();
                if (code == trle_state::kNoLevel) return nullptr;
                return code;
            }};
}

ResultField CodeField(FieldValue value) {
    return {.name = "code", .heading = msg::kCliCode, .value = std::move(value)};
}

ResultField FileField(FieldValue value) {
    return {.name = "file", .heading = msg::kCliFile, .value = std::move(value)};
}

} // namespace kelvash::cli
