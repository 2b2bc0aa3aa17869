// Commands on savegames.
#include "cli/commands.h"
#include "foundation/path.h"
#include "swap/rescued_saves.h"

namespace kelvash::cli {

Result Saves(Session& session) {
    Result result;
    result.ok = TakeHome(session, MissingHome::Refuse);
    result.fields["rescued"] = nlohmann::ordered_json::array();
    if (!result.ok) return result;
    for (const swap::RescuedSaves& rescued : swap::ListRescuedSaves()) {
        std::vector<std::string> names;
        for (const std::string& file : rescued.Files)
            names.push_back(FileNameOf(file));
        result.fields["rescued"].push_back(
            {{"folder", rescued.Folder}, {"from", rescued.From}, {"files", names}});
    }
    return result;
}

} // namespace kelvash::cli
