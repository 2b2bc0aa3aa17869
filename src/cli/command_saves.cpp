// Commands on savegames.
#include <memory>

#include "cli/command.h"
#include "cli/messages.h"
#include "cli/savegame_lists.h"
#include "cli/steps.h"
#include "companion/archive_slots.h"
#include "companion/restore_slots.h"
#include "companion/savegame_commands.h"
#include "companion/savegame_messages.h"
#include "companion/savegame_notes.h"
#include "companion/savegame_transfer.h"
#include "companion/savegames.h"
#include "core/level_list.h"
#include "foundation/files.h"
#include "foundation/messages.h"
#include "foundation/path.h"
#include "foundation/text.h"
#include "foundation/texts.h"
#include "foundation/user.h"
#include "swap/moved_saves.h"
#include "swap/rescued_saves.h"
#include "swap/savegame_files.h"

namespace kelvash::cli {

namespace {

using companion::Asker;
using companion::SlotsOutcome;
using companion::SlotsResult;
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

struct SavesRun {
    std::string typed_code;
    std::string file; // as typed
    std::vector<std::string> files;
    std::string count = std::to_string(companion::kGameSlots);
    std::string text;
    std::string folder;
    bool force = false;
    bool delete_source = false;
    core::LevelPlace level;
    SavegameLists lists; // as they are afterwards
};

bool List(Session& session, SavesRun& run) {
    std::int32_t code = -1;
    const bool listed = OpenQuickly(session) && TakeCode(run.typed_code, code);
    if (listed) {
        swap::LookForMovedSaves();
        run.lists = ListSavegames(core::PlaceOf(code));
    }
    return core::AskSaveArchive() && listed;
}

// True if an operation did all that it was to do. Nothing to do is told, and is no failure.
bool Ended(const SlotsOutcome& outcome) {
    TellOutcome(outcome);
    if (outcome.Result == SlotsResult::Nothing)
        ShowMessage(MessageStyle::Plain, LoadMessage(msg::kCliNothingDone));
    return outcome.Result == SlotsResult::Done || outcome.Result == SlotsResult::Nothing;
}

bool IsDone(const SlotsOutcome& outcome) {
    TellOutcome(outcome);
    return outcome.Result == SlotsResult::Done;
}

// A command that changes savegames, and the lists as they are then.
using Work = bool (*)(Session& session, SavesRun& run);
bool Change(Session& session, SavesRun& run, Work work) {
    std::int32_t code = -1;
    bool done = StartUpWithArchive(session, {}) && SelectCode(run.typed_code, code);
    if (done) {
        run.level = core::PlaceOf(code);
        done = DoneWithoutFailure(session.user, [&] { return work(session, run); });
        run.lists = ListSavegames(core::PlaceOf(code));
    }
    return EndSession(session) && done;
}

// The savegame that a list calls so; tells otherwise.
bool TakeFile(const SavesRun& run, std::string& path) {
    path = SavegameCalled(run.level, run.file);
    if (!path.empty() && !swap::IsNoteName(FileNameOf(path))) return true;
    TellCritical(LoadMessage(msg::kCliNoSavegame) + run.file);
    return false;
}

bool Archive(Session&, SavesRun& run) {
    const std::optional<std::int32_t> count = WholeNumber(run.count);
    if (!count || *count < 1) {
        TellCritical(LoadMessage(msg::kCliBadCount) + run.count);
        return false;
    }
    return Ended(companion::ArchiveSlots(run.level.Code, *count, Asker::User));
}

bool RestoreLast(Session&, SavesRun& run) {
    return Ended(companion::RestoreLastSlot(run.level.Code, Asker::User));
}

bool ToSlots(Session&, SavesRun& run) {
    std::string path;
    return TakeFile(run, path) && IsDone(companion::RestoreToSlots(run.level.Code, path));
}

bool Delete(Session& session, SavesRun& run) {
    std::string path;
    session.user.Preset({{.id = msg::kSaveDeleteQuestion, .answer = "yes"}});
    return TakeFile(run, path) && IsDone(companion::AskDeleteSavegame(run.level.Code, path));
}

bool Note(Session&, SavesRun& run) {
    std::string path;
    return TakeFile(run, path) && companion::WriteNote(path, run.text);
}

// A file of the lists or of the disk.
bool TakeSource(const SavesRun& run, const std::string& typed, std::string& path) {
    path = SavegameCalled(run.level, typed);
    if (path.empty() && !TakePath(typed, path)) return false;
    const bool is_file = FileExists(path);
    if (is_file && companion::IsSavegameName(FileNameOf(path))) return true;
    TellCritical(LoadMessage(is_file ? msg::kCliNoSavegameName : msg::kCliNoImportFile) + typed);
    return false;
}

// One comes with its note, as the window's import of a single file does; several without.
bool Import(Session&, SavesRun& run) {
    std::vector<std::string> sources;
    for (const std::string& typed : run.files)
        if (!TakeSource(run, typed, sources.emplace_back())) return false;
    return IsDone(sources.size() == 1 ? companion::RestoreToSlots(run.level.Code, sources.front())
                                      : companion::ImportSavegames(run.level.Code, sources));
}

bool Export(Session& session, SavesRun& run) {
    if (run.force) session.user.Preset({{.id = msg::kReplaceFile, .answer = "yes"}});
    std::string path;
    std::string folder;
    if (!TakeFile(run, path) || !TakePath(run.folder, folder)) return false;
    const auto sources = run.delete_source ? companion::Sources::Delete : companion::Sources::Keep;
    return IsDone(companion::ExportSavegames(run.level.Code, {path}, folder, sources));
}

Argument FileArgument(const std::shared_ptr<SavesRun>& run) {
    return {.name = "FILE", .value = &run->file, .about = "As 'saves CODE' calls it", .required = true};
}

} // namespace

Command SavesCommand() {
    const auto run = std::make_shared<SavesRun>();
    const std::vector<ResultField> fields = {
        {.name = "slots", .value = [run] { return run->lists.slots; }},
        {.name = "archived", .value = [run] { return run->lists.archived; }},
        {.name = "kept", .value = [run] { return run->lists.kept; }}};
    const auto lines = [run] { return SavegameLines(run->lists); };
    const auto part = [&](const char* name, const char* about, std::vector<Argument> arguments, Work work) {
        arguments.insert(arguments.begin(), CodeArgument(run->typed_code));
        return Command{.name = name,
                       .about = about,
                       .arguments = std::move(arguments),
                       .run = [run, work](Session& session) { return Change(session, *run, work); },
                       .fields = fields,
                       .plain = lines};
    };
    return {
        .name = "saves",
        .about = "Lists a level's savegames, and moves them",
        .arguments = {CodeArgument(run->typed_code)},
        .run = [run](Session& session) { return List(session, *run); },
        .fields = fields,
        .plain = lines,
        .parts = {
            part("archive", "Puts the oldest savegames of the slots into the archive",
                 {{.name = "COUNT", .value = &run->count, .about = "How many"}}, &Archive),
            part("restore-last", "Brings the savegames archived last back into the slots", {}, &RestoreLast),
            part("to-slots", "Copies a savegame into the slots", {FileArgument(run)}, &ToSlots),
            part("delete", "Deletes a savegame with its note", {FileArgument(run)}, &Delete),
            part("note", "Writes a savegame's note",
                 {FileArgument(run),
                  {.name = "TEXT", .value = &run->text, .about = "\"\" for none", .required = true}},
                 &Note),
            part("import", "Copies savegames into the slots",
                 {{.name = "FILE",
                   .value = &run->files,
                   .about = "One, with its note, or several",
                   .required = true}},
                 &Import),
            part("export", "Copies a savegame into a folder",
                 {FileArgument(run),
                  PathArgument("DIR", run->folder),
                  ForceArgument(run->force),
                  {.name = "--delete",
                   .value = &run->delete_source,
                   .about = "Takes it, with its note, out of the level once the copy has been compared"}},
                 &Export),
            RescuedCommand()}};
}

} // namespace kelvash::cli
