#include "cli/session.h"

#include <iostream>

#include "cli/messages.h"
#include "foundation/drive_options.h"
#include "foundation/drives.h"
#include "foundation/files.h"
#include "foundation/messages.h"
#include "foundation/native_text.h"
#include "program/message_tables.h"

namespace kelvash::cli {

namespace fs = std::filesystem;

fs::path HomeOf(const Options& options) {
    return options.home.empty() ? DefaultAppFolder() : NativeFromUser(options.drives, options.home);
}

namespace {

void TakeMessageTable(const std::string& table) {
    const program::TableLoading loading = program::LoadMessageTable(table);
    const std::string path = TextOfNative(NativePath(table));
    const std::string lines = program::RefusedLinesText(loading);
    std::string told;
    if (!loading.Taken)
        told = LoadMessage(msg::kCliTableRefused) + path +
               (lines.empty() ? std::string() : LoadMessage(msg::kCliTableLine, {lines}).text);
    else if (!lines.empty())
        told = LoadMessageOfOthers(msg::kCliTableLines,
                                   {path, std::to_string(loading.RefusedLines.size()), lines});
    if (!told.empty()) std::cerr << told << '\n';
}

} // namespace

bool TakeHome(Session& session, MissingHome missing) {
    if (session.home_taken) return true;
    std::error_code error;
    const bool stands = fs::is_directory(session.home, error);
    if ((!stands && missing == MissingHome::Refuse) || !SetAppFolder(session.home)) {
        const bool can_begin = !stands && missing == MissingHome::Refuse;
        TellCritical(
            LoadMessage(stands ? msg::kCliCannotWrite : msg::kCliNoHome) + TextOfNative(session.home) +
            (can_begin ? LoadMessage(msg::kCliHowToBegin, {kLineBreak, kLineBreak}).text : std::string()));
        return false;
    }
    session.home_taken = true;
    const std::string table = AppFolder() + "\\messages.txt";
    if (FileExists(table)) TakeMessageTable(table);
    return true;
}

} // namespace kelvash::cli
