// Commands on the home and the Archive as a whole.
#include <memory>

#include "cli/command.h"
#include "cli/form_runners.h"
#include "cli/messages.h"
#include "cli/steps.h"
#include "core/archive.h"
#include "core/archive_messages.h"
#include "core/change.h"
#include "core/profile.h"
#include "foundation/drives.h"
#include "foundation/files.h"
#include "foundation/messages.h"
#include "foundation/text.h"
#include "program/fragments.h"
#include "program/start_up.h"
#include "swap/backup.h"
#include "swap/backup_messages.h"
#include "trle/find_trle.h"
#include "trle/trle_folder.h"
#include "trle_state/trle_state.h"

namespace kelvash::cli {

namespace {

std::string ArchivePath() {
    return std::string(Trim(core::profile.LastArchive));
}

// The answers to the question for a new Archive's folder, and to the form that comes before it on a start
// without an Archive.
std::vector<AnswerEntry> NewArchiveAnswers(const std::string& folder) {
    return {{.when = program::FirstArchiveChoice::kForm, .answer = kNewArchiveButton},
            {.id = msg::kSelectArchiveFolder, .answer = folder}};
}

std::vector<AnswerEntry> InitAnswers(const std::string& trle, const std::string& folder, bool full) {
    std::vector<AnswerEntry> answers = {{.when = trle::TrleFolderChoice::kForm, .answer = trle},
                                        {.id = msg::kOriginalNeeded, .answer = "yes"},
                                        {.id = msg::kFullBackupQuestion, .answer = full ? "yes" : "no"}};
    for (AnswerEntry& answer : NewArchiveAnswers(folder))
        answers.push_back(std::move(answer));
    return answers;
}

// True, after a message, if the home is in use or can't be read, and so not to be set up for this TRLE
// folder.
bool HomeIsTaken(const std::string& trle) {
    core::ProfileState state{};
    if (!core::OpenProfile(state)) return true;
    if (FileExists(ArchivePath())) {
        TellCritical(LoadMessage(msg::kCliHomeHasArchive) + ArchivePath());
        return true;
    }
    if (core::TrleFolder().empty() || EqualNoCase(core::TrleFolder(), trle) ||
        !trle::CheckTrleFolder(core::TrleFolder(), false))
        return false;
    TellCritical(LoadMessage(msg::kCliHomeHasTrle) + core::TrleFolder());
    return true;
}

// All that a start-up insists on but the Archive.
bool HomeIsReady() {
    return trle::CheckTrleFolder(core::TrleFolder(), false) && swap::BackupIsValid() &&
           FolderExists(core::LevelFolder(0, false));
}

// What a changing command would end first; empty if there is nothing.
std::string CutShortText(const trle_state::TrleState& state) {
    if (state.Content != trle_state::Holds::CutShort) return {};
    return LoadMessage(msg::kCliCutShort, {state.Record.Owner.Name.empty() ? state.Record.Owner.Folder
                                                                           : state.Record.Owner.Name});
}

nlohmann::ordered_json TextOrNull(const std::string& text) {
    return text.empty() ? nlohmann::ordered_json(nullptr) : nlohmann::ordered_json(text);
}

// A run of one command ends with the Archive's file in place, whatever AutoSave says.
bool WriteNewArchive() {
    return !core::archive.ArchiveChanged || core::SaveArchive();
}

struct InitArguments {
    std::string trle;
    std::string archive_folder;
    std::string backup = "full"; // or "compact"
};

bool Init(Session& session, const InitArguments& taken) {
    std::string trle;
    std::string folder;
    if (!TakeHome(session, MissingHome::Make) || !TakePath(taken.trle, trle) ||
        !TakePath(taken.archive_folder, folder))
        return false;
    const core::Change change(msg::kDoingInit, core::kHomeFolder);
    if (!change || HomeIsTaken(trle)) return false;
    session.user.Preset(InitAnswers(trle, folder, taken.backup == "full"));
    const bool opened = StartUpWithArchive(session, {}) && WriteNewArchive();
    return EndSession(session) && opened;
}

bool Status(Session& session, trle_state::TrleState& state) {
    const bool opened = OpenQuickly(session);
    state = trle_state::LookAtTrle();
    return core::AskSaveArchive() && opened;
}

bool New(Session& session, const std::string& typed) {
    std::string folder;
    if (!TakeHome(session, MissingHome::Make) || !TakePath(typed, folder)) return false;
    session.user.Preset(NewArchiveAnswers(folder));
    program::StartUp({});
    bool created = core::ArchiveIsOpen();
    if (!session.user.PresetUsed(msg::kSelectArchiveFolder)) {
        const std::string former = core::profile.LastArchive;
        created = HomeIsReady() && core::NewArchive();
        if (!created && !former.empty()) static_cast<void>(core::LoadArchive(former));
        if (!created && !session.user.HasTold()) TellNoArchive();
    }
    created = created && WriteNewArchive();
    return EndSession(session) && created;
}

bool Load(Session& session, const std::string& typed) {
    std::string path;
    if (!TakeHome(session, MissingHome::Make) || !TakePath(typed, path)) return false;
    core::ProfileState state{};
    if (!core::OpenProfile(state)) return false;
    const std::string former = core::profile.LastArchive;
    // A name that the program's command line can't hold is none of an Archive.
    if (!EndsWithNoCase(path, LoadFragment(fragment::kArchiveTokenExtension)) ||
        path.find('"') != std::string::npos) {
        program::TellArchiveNotLoaded(path);
        return false;
    }
    const bool opened = StartUpWithArchive(session, "\"" + path + "\"");
    // A mistaken name doesn't cost the home its Archive.
    if (!opened) core::profile.LastArchive = former;
    return EndSession(session) && opened;
}

bool Save(Session& session) {
    const bool saved = StartUpWithArchive(session, {}) && core::SaveArchive();
    return EndSession(session) && saved;
}

struct SaveAsArguments {
    std::string path;
    bool force = false;
};

bool SaveAs(Session& session, const SaveAsArguments& taken) {
    std::string path;
    if (!TakeHome(session, MissingHome::Refuse) || !TakePath(taken.path, path) ||
        !MayWrite(path, taken.force))
        return false;
    session.user.Preset({{.id = msg::kSaveArchiveTitle, .answer = path}});
    const bool saved = StartUpWithArchive(session, {}) && core::SaveArchiveAs() == core::SavedAs::Saved;
    return EndSession(session) && saved;
}

ResultField FullBackupField() {
    return {.name = "fullBackup", .heading = msg::kCliFullBackup, .value = [] {
                return core::profile.FullBackup;
            }};
}

} // namespace

Command InitCommand() {
    const auto taken = std::make_shared<InitArguments>();
    return {.name = "init",
            .about =
                "First start of a new home: takes the TRLE folder, backs its original files up and starts "
                "an Archive",
            .arguments = {{.name = "--trle",
                           .value = &taken->trle,
                           .about = "Folder of the Tomb Raider Level Editor, in original state",
                           .required = true,
                           .type = "DIR"},
                          {.name = "--archive-folder",
                           .value = &taken->archive_folder,
                           .about = "Empty folder for the levels",
                           .required = true,
                           .type = "DIR"},
                          {.name = "--backup",
                           .value = &taken->backup,
                           .about = "Kind of the backup",
                           .choices = {"full", "compact"}}},
            .run = [taken](Session& session) { return Init(session, *taken); },
            .fields = {TrleField(&core::TrleFolder), ArchiveField(), FullBackupField()}};
}

Command StatusCommand() {
    const auto state = std::make_shared<trle_state::TrleState>();
    return {.name = "status",
            .about = "Shows the TRLE folder, the Archive and the level that is installed",
            .run = [state](Session& session) { return Status(session, *state); },
            .fields = {
                TrleField(&core::TrleFolder),
                ArchiveField(),
                LevelCountField(),
                InstalledField(),
                {.name = "owner", .heading = msg::kCliOwner, .value = [state] { return state->OwnerFolder; }},
                FullBackupField(),
                {.name = "backupValid",
                 .heading = msg::kCliBackupValid,
                 .value = [] { return swap::StateOfBackup() == swap::BackupState::Valid; }},
                {.name = "cutShort", .heading = msg::kCliToBeEnded, .value = [state] {
                     return TextOrNull(CutShortText(*state));
                 }}}};
}

Command NewCommand() {
    const auto path = std::make_shared<std::string>();
    return {.name = "new",
            .about = "Starts a new Archive with its levels in an empty folder",
            .arguments = {PathArgument("DIR", *path)},
            .run = [path](Session& session) { return New(session, *path); },
            .fields = {ArchiveField()}};
}

Command LoadCommand() {
    const auto path = std::make_shared<std::string>();
    return {.name = "load",
            .about = "Opens an Archive",
            .arguments = {PathArgument("KVA", *path)},
            .run = [path](Session& session) { return Load(session, *path); },
            .fields = {ArchiveField()}};
}

Command SaveCommand() {
    return {.name = "save", .about = "Saves the Archive", .run = &Save, .fields = {ArchiveField()}};
}

Command SaveAsCommand() {
    const auto taken = std::make_shared<SaveAsArguments>();
    return {.name = "save-as",
            .about = "Saves the Archive under another name",
            .arguments = {PathArgument("KVA", taken->path), ForceArgument(taken->force)},
            .run = [taken](Session& session) { return SaveAs(session, *taken); },
            .fields = {ArchiveField()}};
}

} // namespace kelvash::cli
