#include "swap/trle_folder.h"

#include "core/profile.h"
#include "foundation/files.h"
#include "foundation/messages.h"
#include "foundation/text.h"

namespace kelvash::swap {

namespace {

struct Fault {
    MessageStyle style;
    MessageText text;
};

std::optional<Fault> FindFault(const std::string& folder) {
    if (!FileExists(folder + LoadMessage(MessageId::kGameProgram, {})))
        return Fault{MessageStyle::Critical, LoadMessage(MessageId::kMissingTomb4, {}) + folder};
    if (!AnyFile(folder + LoadMessage(MessageId::kDataFolder, {}), LoadMessage(MessageId::kTrleTr4Mask, {})))
        return Fault{MessageStyle::Critical, LoadMessage(MessageId::kMissingTr4, {folder})};
    if (!AnyFile(folder, LoadMessage(MessageId::kTrleDatMask, {})))
        return Fault{MessageStyle::Critical, LoadMessage(MessageId::kMissingDat, {}) + folder};
    const std::size_t waves =
        ListFiles(folder + LoadMessage(MessageId::kAudioFolder, {}), LoadMessage(MessageId::kTrleWavMask, {}))
            .size();
    if (waves < kAudioTracks)
        return Fault{MessageStyle::Plain,
                     LoadMessage(MessageId::kMissingWaves, {std::to_string(kAudioTracks - waves)})};
    return std::nullopt;
}

} // namespace

bool CheckTrleFolder(std::string_view folder, bool show_messages) {
    const std::optional<Fault> fault = FindFault(std::string(Trim(folder)));
    if (fault && show_messages) ShowMessage(fault->style, fault->text);
    return !fault;
}

bool IsGameProgram(std::string_view target) {
    return EqualNoCase(target, LoadMessage(MessageId::kGameProgram, {}));
}

bool TrleIsThere() {
    if (FolderExists(core::TrleFolder())) return true;
    TellCritical(LoadMessage(MessageId::kTrleUnreadable, {}) + core::TrleFolder());
    return false;
}

} // namespace kelvash::swap
