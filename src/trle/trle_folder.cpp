#include "trle/trle_folder.h"

#include "core/profile.h"
#include "foundation/files.h"
#include "foundation/messages.h"
#include "foundation/text.h"
#include "trle/fragments.h"
#include "trle/messages.h"
#include "trle_state/fragments.h"

namespace kelvash::trle {

namespace {

struct Fault {
    MessageStyle style;
    MessageText text;
};

std::optional<Fault> FindFault(const std::string& folder) {
    if (!FileExists(folder + LoadFragment(fragment::kGameProgram)))
        return Fault{MessageStyle::Critical, LoadMessage(msg::kMissingTomb4) + folder};
    if (!AnyFile(folder + LoadFragment(fragment::kDataFolder), LoadFragment(fragment::kTrleTr4Mask)))
        return Fault{MessageStyle::Critical, LoadMessage(msg::kMissingTr4, {folder})};
    if (!AnyFile(folder, LoadFragment(fragment::kTrleDatMask)))
        return Fault{MessageStyle::Critical, LoadMessage(msg::kMissingDat) + folder};
    const std::size_t waves =
        ListFiles(folder + LoadFragment(fragment::kAudioFolder), LoadFragment(fragment::kTrleWavMask)).size();
    if (waves < kAudioTracks)
        return Fault{MessageStyle::Plain,
                     LoadMessage(msg::kMissingWaves, {std::to_string(kAudioTracks - waves)})};
    return std::nullopt;
}

} // namespace

bool CheckTrleFolder(std::string_view folder, bool show_messages) {
    const std::optional<Fault> fault = FindFault(std::string(Trim(folder)));
    if (fault && show_messages) ShowMessage(fault->style, fault->text);
    return !fault;
}

bool TrleIsThere() {
    if (FolderExists(core::TrleFolder())) return true;
    TellCritical(LoadMessage(msg::kTrleUnreadable) + core::TrleFolder());
    return false;
}

} // namespace kelvash::trle
