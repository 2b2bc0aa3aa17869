#include "cli/session.h"

#include <iostream>

#include "foundation/drive_options.h"
#include "foundation/drives.h"
#include "foundation/files.h"
#include "foundation/messages.h"

namespace kelvash::cli {

namespace fs = std::filesystem;

fs::path HomeOf(const Options& options) {
    return options.home.empty() ? DefaultAppFolder() : NativeFromUser(options.drives, options.home);
}

bool TakeHome(Session& session, MissingHome missing) {
    if (session.home_taken) return true;
    std::error_code error;
    const bool stands = fs::is_directory(session.home, error);
    if ((!stands && missing == MissingHome::Refuse) || !SetAppFolder(session.home)) {
        TellCritical(LoadMessage(stands ? MessageId::kCliCannotWrite : MessageId::kCliNoHome, {}) +
                     session.home.string());
        return false;
    }
    session.home_taken = true;
    const std::string table = AppFolder() + "\\messages.txt";
    if (FileExists(table) && !LoadMessageTable(table))
        std::cerr << LoadMessage(MessageId::kCliTableRefused, {}).text << NativePath(table).string() << '\n';
    return true;
}

} // namespace kelvash::cli
