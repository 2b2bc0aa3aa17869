// A package file as it is.
#include <algorithm>
#include <memory>

#include "cli/command.h"
#include "cli/steps.h"
#include "intake/level_config.h"

namespace kelvash::cli {

namespace {

using intake::LevelConfig;

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

Groups FilesOfConfig() {
    Groups files = Groups::array();
    for (std::size_t i = 0; i < std::min(LevelConfig.FileNames.size(), LevelConfig.FileSizes.size()); ++i)
        files.push_back({{"name", LevelConfig.FileNames[i]}, {"size", LevelConfig.FileSizes[i]}});
    return files;
}

std::vector<ResultField> ConfigFields() {
    return {{.name = "levelName", .value = [] { return LevelConfig.LevelName; }},
            {.name = "levelNote", .value = [] { return LevelConfig.LevelNote; }},
            {.name = "authorName", .value = [] { return LevelConfig.AuthorName; }},
            {.name = "authorMessage", .value = [] { return LevelConfig.AuthorMessage; }},
            {.name = "authorEmails", .value = [] { return GroupsOf(LevelConfig.AuthorEmails, 1); }},
            {.name = "authorSites", .value = [] { return GroupsOf(LevelConfig.AuthorSites, 1); }},
            {.name = "externWaves", .value = [] { return GroupsOf(LevelConfig.ExternWaves, 4); }},
            {.name = "importWads", .value = [] { return GroupsOf(LevelConfig.ImportWads, 2); }},
            {.name = "importNotes", .value = [] { return LevelConfig.ImportNotes; }},
            {.name = "duplications", .value = [] { return GroupsOf(LevelConfig.Duplications, 2); }},
            {.name = "moreInfoFile", .value = [] { return LevelConfig.MoreInfoFile; }},
            {.name = "exeKind", .value = [] { return LevelConfig.ExeKind; }},
            {.name = "files", .value = &FilesOfConfig},
            {.name = "useWads", .value = [] { return GroupsOf(LevelConfig.UseWads, 2); }}};
}

bool ReadConfig(Session& session, const std::string& typed) {
    std::string path;
    return TakeHome(session, MissingHome::Refuse) && TakePath(typed, path) && intake::ReadLevelConfig(path);
}

} // namespace

Command ConfigCommand() {
    struct ConfigRun {
        std::string path;
        bool read = false;
    };
    const auto config = std::make_shared<ConfigRun>();
    std::vector<ResultField> fields = ConfigFields();
    for (ResultField& field : fields)
        field.value = [config, value = std::move(field.value)] { return config->read ? value() : Absent(); };
    return {.name = "config",
            .about = "Shows a package file kelvash.cfg",
            .arguments = {PathArgument("FILE", config->path)},
            .run = [config](Session& session) { return config->read = ReadConfig(session, config->path); },
            .fields = std::move(fields)};
}

} // namespace kelvash::cli
