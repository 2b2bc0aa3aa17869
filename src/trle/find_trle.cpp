#include "trle/find_trle.h"

#include "core/path_field.h"
#include "core/profile.h"
#include "foundation/messages.h"
#include "foundation/path.h"
#include "foundation/registration.h"
#include "foundation/text.h"
#include "foundation/user.h"
#include "trle/fragments.h"
#include "trle/messages.h"
#include "trle/trle_folder.h"

namespace kelvash::trle {

using core::profile;

std::string FindTrleInRegistry() {
    const std::string program = ReadRegistryValue(LoadFragment(fragment::kRoomEditorKey));
    return EndsWithNoCase(program, ".exe") ? FolderOf(program) : std::string();
}

bool AskTrleFolder() {
    const std::string known = FindTrleInRegistry();
    const std::string start = CheckTrleFolder(known, false) ? known : std::string();
    for (;;) {
        TrleFolderChoice choice{LoadMessage(msg::kFindTrleCaption), start};
        if (!ShowForm(choice)) return false;
        if (CheckTrleFolder(choice.Folder, true) && core::CheckPath(choice.Folder)) {
            profile.TrleFolder = choice.Folder;
            return true;
        }
    }
}

bool ChooseTrleFolder() {
    if (CheckTrleFolder(profile.TrleFolder, false) || AskTrleFolder()) return true;
    TellCritical(LoadMessage(msg::kCannotRunWithoutTrle, {kLineBreak}));
    return false;
}

} // namespace kelvash::trle
