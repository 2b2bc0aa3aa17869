// Commands by which levels come into the Archive and leave it as packages.
#include <algorithm>

#include "cli/commands.h"
#include "cli/messages.h"
#include "core/archive.h"
#include "core/level_list.h"
#include "core/level_messages.h"
#include "foundation/messages.h"
#include "foundation/text.h"
#include "foundation/user.h"
#include "intake/export_level.h"
#include "intake/level_config.h"
#include "intake/new_level.h"

namespace kelvash::cli {

namespace {

using intake::FormState;
using intake::LevelConfig;
using intake::NewLevel;

Result CodeResult(bool ok, std::int32_t code) {
    Result result;
    result.ok = ok;
    result.fields = {{"code", code}};
    return result;
}

// The sources as path texts; false after a message.
bool TakeSources(const Session& session, std::vector<std::string>& sources) {
    for (const std::string& typed : session.options.sources) {
        std::string path;
        if (!TakePath(typed, path)) return false;
        sources.push_back(std::move(path));
    }
    return true;
}

// False after a message for a document that the level doesn't have.
bool SelectDocument(NewLevel& level, const std::string& name) {
    level.MoreInfo = 0;
    if (Trim(name).empty()) return true;
    for (std::size_t i = 1; i < level.MoreInfoChoices.size(); ++i)
        if (EqualNoCase(level.MoreInfoChoices[i], name)) level.MoreInfo = static_cast<std::int32_t>(i);
    if (level.MoreInfo != 0) return true;
    TellCritical(LoadMessage(msg::kCliUnknownDocument) + name);
    return false;
}

// The work of the form when the options are typed into it and OK is pressed.
void SetProperties(NewLevel& level, const Options& options) {
    if (options.name) level.Name = *options.name;
    if (options.note) level.Note = *options.note;
    if (!options.more_info || SelectDocument(level, *options.more_info)) StoreLevel(level);
    if (level.State == FormState::Open) CancelLevel(level);
}

using Groups = nlohmann::ordered_json;

// The groups of a NUL list; single items stand by themselves.
Groups GroupsOf(const std::string& list, std::size_t size) {
    Groups groups = Groups::array();
    const std::vector<std::string> items = intake::ConfigItems(list, size);
    for (std::size_t i = 0; i + size <= items.size(); i += size) {
        if (size == 1) {
            groups.push_back(items[i]);
            continue;
        }
        Groups group = Groups::array();
        for (std::size_t k = 0; k < size; ++k)
            group.push_back(items[i + k]);
        groups.push_back(std::move(group));
    }
    return groups;
}

nlohmann::ordered_json ConfigFields() {
    nlohmann::ordered_json files = nlohmann::ordered_json::array();
    for (std::size_t i = 0; i < std::min(LevelConfig.FileNames.size(), LevelConfig.FileSizes.size()); ++i)
        files.push_back({{"name", LevelConfig.FileNames[i]}, {"size", LevelConfig.FileSizes[i]}});
    return {{"levelName", LevelConfig.LevelName},
            {"levelNote", LevelConfig.LevelNote},
            {"authorName", LevelConfig.AuthorName},
            {"authorMessage", LevelConfig.AuthorMessage},
            {"authorEmails", GroupsOf(LevelConfig.AuthorEmails, 1)},
            {"authorSites", GroupsOf(LevelConfig.AuthorSites, 1)},
            {"externWaves", GroupsOf(LevelConfig.ExternWaves, 4)},
            {"importWads", GroupsOf(LevelConfig.ImportWads, 2)},
            {"importNotes", LevelConfig.ImportNotes},
            {"duplications", GroupsOf(LevelConfig.Duplications, 2)},
            {"moreInfoFile", LevelConfig.MoreInfoFile},
            {"exeKind", LevelConfig.ExeKind},
            {"files", std::move(files)},
            {"useWads", GroupsOf(LevelConfig.UseWads, 2)}};
}

} // namespace

Result Add(Session& session) {
    std::vector<std::string> sources;
    const bool added = StartUpWithArchive(session, {}) && TakeSources(session, sources) &&
                       intake::AddLevel({}, [&](NewLevel& level) {
                           TakeSourcesAndStore(level, sources, session.options.name.value_or(std::string()));
                       });
    const std::int32_t code = added ? core::SelectedLevel() : -1;
    return CodeResult(EndSession(session) && added, code);
}

Result LevelSet(Session& session) {
    const Options& options = session.options;
    std::int32_t code = -1;
    bool set = StartUpWithArchive(session, {}) && SelectCode(options.code, code);
    if (set && !options.name && !options.note && !options.more_info) {
        TellCritical(LoadMessage(msg::kCliNothingToSet));
        set = false;
    }
    if (set)
        intake::ShowProperty([&](NewLevel& level) {
            SetProperties(level, options);
            set = level.State == FormState::Saved;
        });
    return CodeResult(EndSession(session) && set, code);
}

Result Export(Session& session) {
    std::int32_t code = -1;
    std::string zip;
    bool exported = StartUpWithArchive(session, {}) && SelectCode(session.options.code, code) &&
                    TakeTarget(session.options, zip);
    if (exported) {
        session.user.Preset({{.id = msg::kExportTitle, .answer = zip}});
        exported = intake::ExportLevel();
    }
    Result result;
    result.ok = EndSession(session) && exported;
    result.fields = {{"file", zip}};
    return result;
}

Result Config(Session& session) {
    Result result;
    std::string path;
    result.ok = TakeHome(session, MissingHome::Refuse) && TakePath(session.options.path, path) &&
                intake::ReadLevelConfig(path);
    if (result.ok) result.fields = ConfigFields();
    return result;
}

} // namespace kelvash::cli
