// Building an Archive anew of the level folders that are left of one.
#include <set>

#include "core/archive.h"
#include "core/change.h"
#include "core/change_messages.h"
#include "core/fragments.h"
#include "core/level_list.h"
#include "core/maintenance.h"
#include "core/moving_messages.h"
#include "core/path_field.h"
#include "core/profile.h"
#include "core/sizes.h"
#include "foundation/files.h"
#include "foundation/messages.h"
#include "foundation/path.h"
#include "foundation/text.h"
#include "foundation/user.h"

namespace kelvash::core {

namespace {

// Codes of the LEVEL_NNNN folders: exactly four characters behind the line, a number above 0.
std::vector<std::int32_t> CodesIn(const std::string& folder) {
    constexpr std::size_t kCodeLength = 4;
    const std::string mask = LoadFragment(fragment::kRecoverMask);
    std::vector<std::int32_t> codes;
    std::set<std::int32_t> seen;
    for (const std::string& path : ListFolders(folder)) {
        const std::string name = FileNameOf(path);
        if (name.size() != mask.size() || !MatchesMask(name, mask)) continue;
        const std::optional<std::int32_t> code = WholeNumber(name.substr(name.size() - kCodeLength));
        if (code && *code > 0 && seen.insert(*code).second) codes.push_back(*code);
    }
    return codes;
}

LevelRecord RecoveredLevel(std::int32_t code) {
    LevelRecord level;
    level.Code = code;
    level.Name = LoadMessage(msg::kRecoverName) + std::to_string(code);
    return level;
}

void StartArchive(const std::string& folder, const std::vector<std::int32_t>& codes) {
    profile.LastArchive = DefaultArchivePath();
    archive.Header = ArchiveHeader();
    archive.Header.MainFolder = folder;
    archive.Header.SecondaryFolder = folder;
    archive.Table = {LevelZero()};
    for (const std::int32_t code : codes)
        archive.Table.Append(RecoveredLevel(code));
}

// Tells of folders that hold no level that could be played.
void CheckLevelFiles(const std::vector<std::int32_t>& codes) {
    std::string missing;
    for (const std::int32_t code : codes) {
        const std::string files = FilesFolder(LevelFolder(code, false));
        if (!AnyFile(files, LoadFragment(fragment::kTr4InfoMask)) &&
            !AnyFile(files, LoadFragment(fragment::kTr4InfoZlMask)))
            missing += kLineBreak + files;
    }
    if (!missing.empty()) ShowMessage(MessageStyle::Exclamation, LoadMessage(msg::kRecoverNoTr4) + missing);
}

} // namespace

bool RecoverArchive() {
    const Change change(msg::kDoingRecover, kAll);
    if (!change) return false;
    ShowMessage(MessageStyle::Plain, LoadMessage(msg::kRecoverText));
    if (!AskSaveArchive()) return false;
    const std::optional<std::string> folder =
        TheUser().ChooseFolder(LoadMessage(msg::kRecoverFolder), archive.Header.SecondaryFolder);
    if (!folder || !CheckPath(*folder) || !CheckPath(DefaultArchivePath())) return false;
    if (AskYesNo(MessageStyle::Question, LoadMessage(msg::kRecoverOnCd)))
        ShowMessage(MessageStyle::Exclamation, LoadMessage(msg::kRecoverCdLater));
    const std::vector<std::int32_t> codes = CodesIn(*folder);
    if (codes.empty()) { // found before the open Archive makes room
        ShowMessage(MessageStyle::Exclamation, LoadMessage(msg::kRecoverNoLevels) + *folder);
        return false;
    }
    StartArchive(*folder, codes);
    CheckLevelFiles(codes);
    ArchiveTouched();
    ComputeArchiveSize(Report::Silent);
    RefreshLevelList();
    return true;
}

} // namespace kelvash::core
