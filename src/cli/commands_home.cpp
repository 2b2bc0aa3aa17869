// Commands on the home and the Archive as a whole.
#include "cli/commands.h"
#include "cli/messages.h"
#include "core/archive.h"
#include "core/archive_messages.h"
#include "core/change.h"
#include "core/fragments.h"
#include "core/profile.h"
#include "core/start_up.h"
#include "foundation/drives.h"
#include "foundation/files.h"
#include "foundation/messages.h"
#include "foundation/text.h"
#include "swap/backup.h"
#include "swap/backup_messages.h"
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
    return {{.when = "Dialog_NewArc", .answer = "Pul_New"},
            {.id = msg::kSelectArchiveFolder, .answer = folder}};
}

std::vector<AnswerEntry> InitAnswers(const std::string& trle, const std::string& folder, bool full) {
    std::vector<AnswerEntry> answers = {{.when = "Dialog_TrovaTrle", .answer = trle},
                                        {.id = msg::kOriginalNeeded, .answer = "yes"},
                                        {.id = msg::kFullBackupQuestion, .answer = full ? "yes" : "no"}};
    for (AnswerEntry& answer : NewArchiveAnswers(folder))
        answers.push_back(std::move(answer));
    return answers;
}

Result InitResult(bool ok) {
    Result result;
    result.ok = ok;
    result.fields = {
        {"trle", core::TrleFolder()}, {"archive", ArchivePath()}, {"fullBackup", core::profile.FullBackup}};
    return result;
}

Result ArchiveResult(bool ok) {
    Result result;
    result.ok = ok;
    result.fields = {{"archive", ArchivePath()}};
    return result;
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

// A run of one command ends with the Archive's file in place, whatever AutoSave says.
bool WriteNewArchive() {
    return !core::archive.ArchiveChanged || core::SaveArchive();
}

} // namespace

Result Init(Session& session) {
    std::string trle;
    std::string folder;
    if (!TakeHome(session, MissingHome::Make) || !TakePath(session.options.trle, trle) ||
        !TakePath(session.options.archive_folder, folder))
        return InitResult(false);
    const core::Change change(msg::kDoingInit, core::kHomeFolder);
    if (!change || HomeIsTaken(trle)) return InitResult(false);
    session.user.Preset(InitAnswers(trle, folder, session.options.backup == "full"));
    const bool opened = StartUpWithArchive(session, {}) && WriteNewArchive();
    return InitResult(EndSession(session) && opened);
}

Result Status(Session& session) {
    Result result;
    result.ok = OpenQuickly(session);
    const trle_state::TrleState state = trle_state::LookAtTrle();
    const std::string cut_short = CutShortText(state);
    result.fields = {{"trle", core::TrleFolder()},
                     {"archive", ArchivePath()},
                     {"levels", core::archive.Header.LevelCount},
                     {"installed", InstalledCode()},
                     {"owner", state.OwnerFolder},
                     {"fullBackup", core::profile.FullBackup},
                     {"backupValid", swap::StateOfBackup() == swap::BackupState::Valid}};
    if (cut_short.empty())
        result.fields["cutShort"] = nullptr;
    else
        result.fields["cutShort"] = cut_short;
    result.ok = core::AskSaveArchive() && result.ok;
    return result;
}

Result New(Session& session) {
    std::string folder;
    if (!TakeHome(session, MissingHome::Make) || !TakePath(session.options.path, folder))
        return ArchiveResult(false);
    session.user.Preset(NewArchiveAnswers(folder));
    core::StartUp({});
    bool created = core::ArchiveIsOpen();
    if (!session.user.PresetUsed(msg::kSelectArchiveFolder)) {
        const std::string former = core::profile.LastArchive;
        created = HomeIsReady() && core::NewArchive();
        if (!created && !former.empty()) static_cast<void>(core::LoadArchive(former));
        if (!created && !session.user.HasTold()) TellNoArchive();
    }
    created = created && WriteNewArchive();
    return ArchiveResult(EndSession(session) && created);
}

Result Load(Session& session) {
    std::string path;
    if (!TakeHome(session, MissingHome::Make) || !TakePath(session.options.path, path))
        return ArchiveResult(false);
    core::ProfileState state{};
    if (!core::OpenProfile(state)) return ArchiveResult(false);
    const std::string former = core::profile.LastArchive;
    // A name that the program's command line can't hold is none of an Archive.
    if (!EndsWithNoCase(path, LoadFragment(fragment::kArchiveTokenExtension)) ||
        path.find('"') != std::string::npos) {
        core::TellArchiveNotLoaded(path);
        return ArchiveResult(false);
    }
    const bool opened = StartUpWithArchive(session, "\"" + path + "\"");
    // A mistaken name doesn't cost the home its Archive.
    if (!opened) core::profile.LastArchive = former;
    return ArchiveResult(EndSession(session) && opened);
}

Result Save(Session& session) {
    const bool saved = StartUpWithArchive(session, {}) && core::SaveArchive();
    return ArchiveResult(EndSession(session) && saved);
}

Result SaveAs(Session& session) {
    std::string path;
    if (!TakeHome(session, MissingHome::Refuse) || !TakeTarget(session.options, path))
        return ArchiveResult(false);
    session.user.Preset({{.id = msg::kSaveArchiveTitle, .answer = path}});
    const bool saved = StartUpWithArchive(session, {}) && core::SaveArchiveAs();
    return ArchiveResult(EndSession(session) && saved);
}

} // namespace kelvash::cli
