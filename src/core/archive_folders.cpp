// The check of an Archive's two folders on load, which may have moved with their disk or letter.
#include "core/archive.h"
#include "core/archive_messages.h"
#include "core/owner_moves.h"
#include "core/path_field.h"
#include "foundation/files.h"
#include "foundation/messages.h"
#include "foundation/path.h"
#include "foundation/text.h"
#include "foundation/user.h"

namespace kelvash::core {

namespace {

// A folder that the Archive's file can hold; nothing if the user gives up.
std::optional<std::string> AskFolder(MessageId warning, MessageId caption, const std::string& missing) {
    ShowMessage(MessageStyle::Exclamation, LoadMessage(warning, {kLineBreak + missing}));
    for (;;) {
        std::optional<std::string> picked =
            TheUser().ChooseFolder(LoadMessage(caption) + FileNameOf(missing), missing);
        if (!picked || CheckPath(*picked)) return picked;
    }
}

void TakeSecondaryFolder(const std::string& folder) {
    const std::string old(Trim(archive.Header.SecondaryFolder));
    archive.Header.SecondaryFolder = folder;
    ArchiveTouched();
    if (NoteLevelsMoved(old, folder)) NoteMoveEnded(); // a failure has been told
}

enum class Outcome { Found, GivenUp, GoOn };

Outcome FindMainFolder() {
    ArchiveHeader& header = archive.Header;
    if (header.CdCount != 0 || FolderExists(header.MainFolder)) return Outcome::GoOn;
    const std::optional<std::string> picked =
        AskFolder(msg::kMainFolderMissing, msg::kSelectMainFolder, header.MainFolder);
    if (!picked) return Outcome::GivenUp;
    // A pick for the main folder alone is not taken: the secondary folder is looked at next. That is meant.
    if (!EqualNoCase(header.MainFolder, header.SecondaryFolder)) return Outcome::GoOn;
    header.MainFolder = *picked;
    TakeSecondaryFolder(*picked);
    return Outcome::Found;
}

Outcome FindSecondaryFolder() {
    ArchiveHeader& header = archive.Header;
    if (FolderExists(header.SecondaryFolder)) return Outcome::Found;
    const std::optional<std::string> picked =
        AskFolder(msg::kSecondaryFolderMissing, msg::kSelectSecondaryFolder, header.SecondaryFolder);
    if (!picked) return Outcome::GivenUp;
    TakeSecondaryFolder(*picked);
    return Outcome::Found;
}

} // namespace

bool CheckArchiveFolders() {
    if (archive.Table.IsEmpty()) return true;
    Outcome outcome = FindMainFolder();
    if (outcome == Outcome::GoOn) outcome = FindSecondaryFolder();
    return outcome == Outcome::Found;
}

} // namespace kelvash::core
