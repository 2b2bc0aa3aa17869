// Commands for who translates the program's texts. They need no application's folder.
#include <memory>

#include "cli/command.h"
#include "cli/messages.h"
#include "cli/steps.h"
#include "foundation/files.h"
#include "foundation/messages.h"
#include "program/message_tables.h"

namespace kelvash::cli {

namespace {

using nlohmann::ordered_json;

struct ExportRun {
    std::optional<std::string> typed; // without it the table is the result
    bool force = false;
    std::string file; // path text

    ordered_json File() const { return typed ? ordered_json(file) : Absent(); }
    ordered_json Table() const { return typed ? Absent() : ordered_json(program::ExportedMessages()); }
};

bool ExportTable(Session& session, ExportRun& run) {
    if (!run.typed) return true;
    if (!TakePathWithoutHome(session, *run.typed, run.file) || !MayWrite(run.file, run.force)) return false;
    if (ReplaceFileBytes(run.file, program::ExportedMessages(), Flush::Yes)) return true;
    TellCritical(LoadMessage(msg::kCliTableNotWritten) + run.file);
    return false;
}

Command ExportTableCommand() {
    const auto run = std::make_shared<ExportRun>();
    return {.name = "export",
            .about = "Writes all messages to be translated, a line each: its id, a tab, the text",
            .arguments = {{.name = "FILE", .value = &run->typed, .about = "Without it they are shown"},
                          ForceArgument(run->force)},
            .run = [run](Session& session) { return ExportTable(session, *run); },
            .fields = {FileField([run] { return run->File(); }),
                       {.name = "table", .value = [run] { return run->Table(); }}},
            .plain = [run] { return run->typed ? std::string() : program::ExportedMessages(); }};
}

struct CheckRun {
    std::string typed;
    program::TableLoading found;
};

// Messages that the file lacks keep their text, so that a translation can be checked while it grows.
bool CheckTable(Session& session, CheckRun& run) {
    std::string path;
    if (!TakePathWithoutHome(session, run.typed, path)) return false;
    run.found = program::CheckMessageTable(path);
    if (run.found.Taken) return run.found.RefusedLines.empty();
    if (run.found.RefusedLines.empty())
        TellCritical(LoadMessage(msg::kCliTableNotRead) + path);
    else
        TellCritical(LoadMessage(msg::kCliTableNoEntry, {std::to_string(run.found.RefusedLines.front())}));
    return false;
}

Command CheckTableCommand() {
    const auto run = std::make_shared<CheckRun>();
    return {.name = "check",
            .about =
                "Tells what a translation has wrong, by the numbers of its lines, and which messages it "
                "lacks",
            .arguments = {PathArgument("FILE", run->typed)},
            .run = [run](Session& session) { return CheckTable(session, *run); },
            .fields = {{.name = "refused",
                        .heading = msg::kCliRefusedLines,
                        .value = [run] { return run->found.RefusedLines; }},
                       {.name = "missing", .heading = msg::kCliMissingMessages, .value = [run] {
                            return run->found.Missing;
                        }}}};
}

} // namespace

Command MessagesCommand() {
    return {.name = "messages",
            .about = "Helps to translate the program's texts",
            .parts = {ExportTableCommand(), CheckTableCommand()}};
}

} // namespace kelvash::cli
