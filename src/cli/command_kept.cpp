// Level folders that no record names.
#include <memory>

#include "cli/command.h"
#include "cli/messages.h"
#include "cli/steps.h"
#include "core/archive.h"
#include "core/kept_folders.h"

namespace kelvash::cli {

namespace {

using nlohmann::ordered_json;

struct KeptRun {
    std::string folder; // to be taken
    ordered_json code = Absent();
    ordered_json kept = ordered_json::array();
};

bool EndWithList(Session& session, KeptRun& run, bool done) {
    if (core::ArchiveIsOpen())
        for (const core::KeptLevel& level : core::ListKept())
            run.kept.push_back({{"folder", level.Folder}, {"name", level.Name}, {"size", level.Bytes}});
    return EndSession(session) && done;
}

bool List(Session& session, KeptRun& run) {
    const bool opened = StartUpWithArchive(session, {});
    return EndWithList(session, run, opened);
}

bool Take(Session& session, KeptRun& run) {
    bool done = StartUpWithArchive(session, {});
    if (done) {
        const std::int32_t code = core::TakeKept(run.folder);
        done = code >= 0;
        run.code = done ? ordered_json(code) : ordered_json(nullptr);
    }
    return EndWithList(session, run, done);
}

} // namespace

Command KeptCommand() {
    const auto run = std::make_shared<KeptRun>();
    const ResultField kept = {.name = "kept", .heading = msg::kCliKept, .value = [run] { return run->kept; }};
    const auto list = [run](Session& session) { return List(session, *run); };
    return {.name = "kept",
            .about = "Level folders that no level of the Archive names, put aside in its folder KEPT",
            .run = list,
            .fields = {kept},
            .parts = {{.name = "list", .about = "Lists them", .run = list, .fields = {kept}},
                      {.name = "take",
                       .about = "Makes one a level again, with a new code",
                       .arguments = {{.name = "FOLDER",
                                      .value = &run->folder,
                                      .about = "Its name, as the list shows it",
                                      .required = true}},
                       .run = [run](Session& session) { return Take(session, *run); },
                       .fields = {CodeField([run] { return run->code; }), kept}}}};
}

} // namespace kelvash::cli
