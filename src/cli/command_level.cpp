// Commands by which levels come into the Archive and leave it as packages.
#include <memory>

#include "cli/command.h"
#include "cli/messages.h"
#include "cli/steps.h"
#include "core/level_list.h"
#include "foundation/messages.h"
#include "foundation/text.h"
#include "foundation/user.h"
#include "intake/export_level.h"
#include "intake/messages.h"
#include "intake/new_level.h"

namespace kelvash::cli {

namespace {

using intake::FormState;
using intake::NewLevel;

// The sources as path texts; false after a message.
bool TakeSources(const std::vector<std::string>& all_typed, std::vector<std::string>& sources) {
    for (const std::string& typed : all_typed) {
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

struct AddRun {
    std::vector<std::string> sources;
    std::optional<std::string> name;
    std::int32_t code = -1; // of the new level
};

bool Add(Session& session, AddRun& add) {
    std::vector<std::string> sources;
    const bool added = StartUpWithArchive(session, {}) && TakeSources(add.sources, sources) &&
                       intake::AddLevelOf(sources, add.name.value_or(std::string()));
    if (added) add.code = core::SelectedLevel();
    return EndSession(session) && added;
}

struct LevelSetRun {
    std::string typed_code;
    std::optional<std::string> name;
    std::optional<std::string> note;
    std::optional<std::string> more_info;
    std::int32_t code = -1;
};

// What the form does when the options are typed into it and OK is pressed.
bool SetProperties(NewLevel& level, const LevelSetRun& wanted) {
    if (wanted.name) level.Name = *wanted.name;
    if (wanted.note) level.Note = *wanted.note;
    if (!wanted.more_info || SelectDocument(level, *wanted.more_info)) StoreLevel(level);
    return level.State == FormState::Saved;
}

bool LevelSet(Session& session, LevelSetRun& wanted) {
    bool set = StartUpWithArchive(session, {}) && SelectCode(wanted.typed_code, wanted.code);
    if (set && !wanted.name && !wanted.note && !wanted.more_info) {
        TellCritical(LoadMessage(msg::kCliNothingToSet));
        set = false;
    }
    if (set) {
        const FormScope<NewLevel> form(session.user.forms,
                                       [&](NewLevel& level) { return SetProperties(level, wanted); });
        set = intake::ShowProperty();
    }
    return EndSession(session) && set;
}

struct ExportRun {
    std::string typed_code;
    std::string typed_zip;
    bool force = false;
    std::string zip; // path text
};

bool Export(Session& session, ExportRun& run) {
    std::int32_t code = -1;
    bool exported = StartUpWithArchive(session, {}) && SelectCode(run.typed_code, code) &&
                    TakePath(run.typed_zip, run.zip) && MayWrite(run.zip, run.force);
    if (exported) {
        session.user.Preset({{.id = msg::kExportTitle, .answer = run.zip}});
        exported = intake::ExportLevel();
    }
    return EndSession(session) && exported;
}

} // namespace

Command AddCommand() {
    const auto add = std::make_shared<AddRun>();
    return {.name = "add",
            .about = "Adds a level made of zips, folders and files",
            .arguments = {{.name = "SOURCE", .value = &add->sources, .required = true},
                          {.name = "--name",
                           .value = &add->name,
                           .about = "The level's name, in place of the zip's or its author's"}},
            .run = [add](Session& session) { return Add(session, *add); },
            .fields = {CodeField([add] { return add->code; })}};
}

Command LevelCommand() {
    const auto wanted = std::make_shared<LevelSetRun>();
    Command set = {.name = "set",
                   .about = "Sets what is given, and stores changed files",
                   .arguments = {CodeArgument(wanted->typed_code),
                                 {.name = "--name", .value = &wanted->name, .about = "Its name"},
                                 {.name = "--note", .value = &wanted->note, .about = "The note of one line"},
                                 {.name = "--more-info",
                                  .value = &wanted->more_info,
                                  .about = "The file of the level that More info opens; \"\" for none"}},
                   .run = [wanted](Session& session) { return LevelSet(session, *wanted); },
                   .fields = {CodeField([wanted] { return wanted->code; })}};
    return {.name = "level", .about = "Changes a level's properties", .parts = {std::move(set)}};
}

Command ExportCommand() {
    const auto run = std::make_shared<ExportRun>();
    return {.name = "export",
            .about = "Writes a level with its savegames to a zip",
            .arguments = {CodeArgument(run->typed_code), PathArgument("ZIP", run->typed_zip),
                          ForceArgument(run->force)},
            .run = [run](Session& session) { return Export(session, *run); },
            .fields = {FileField([run] { return run->zip; })}};
}

} // namespace kelvash::cli
