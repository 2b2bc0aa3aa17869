// Commands on savegames.
#include <memory>

#include "cli/command.h"
#include "foundation/path.h"
#include "swap/rescued_saves.h"

namespace kelvash::cli {

namespace {

using nlohmann::ordered_json;

bool ListRescued(Session& session, ordered_json& list) {
    if (!TakeHome(session, MissingHome::Refuse)) return false;
    for (const swap::RescuedSaves& rescued : swap::ListRescuedSaves()) {
        std::vector<std::string> names;
        for (const std::string& file : rescued.Files)
            names.push_back(FileNameOf(file));
        list.push_back({{"folder", rescued.Folder}, {"from", rescued.From}, {"files", names}});
    }
    return true;
}

Command RescuedCommand() {
    const auto list = std::make_shared<ordered_json>(ordered_json::array());
    return {.name = "rescued",
            .about = "Lists the saves that had no place, and where they lie",
            .run = [list](Session& session) { return ListRescued(session, *list); },
            .fields = {{.name = "rescued", .value = [list] { return *list; }}}};
}

} // namespace

Command SavesCommand() {
    return {.name = "saves", .about = "Shows savegames", .parts = {RescuedCommand()}};
}

} // namespace kelvash::cli
