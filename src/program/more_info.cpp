// The document behind the [More info] button.
#include <algorithm>
#include <string>

#include "core/archive.h"
#include "core/change.h"
#include "core/level_list.h"
#include "foundation/files.h"
#include "foundation/messages.h"
#include "foundation/path.h"
#include "foundation/plain_name.h"
#include "foundation/strangers_files.h"
#include "foundation/text.h"
#include "foundation/user.h"
#include "program/fragments.h"
#include "program/level_view.h"
#include "program/messages.h"

namespace kelvash::program {

namespace {

constexpr std::size_t kLongestPage = std::size_t{8} << 20; // bytes that are searched for names of files

void OpenAndTell(const std::string& document) {
    if (OpenStrangersFile(document) == Opening::Failed)
        TellCritical(LoadMessage(msg::kMoreInfoOpenFailed) + document);
}

bool IsPage(const std::string& document) {
    const std::vector<std::string> kinds = Split(LoadFragment(fragment::kMoreInfoPages), '|');
    return std::any_of(kinds.begin(), kinds.end(),
                       [&](const std::string& kind) { return EndsWithNoCase(document, kind); });
}

// Copies a document and, for a page, the files beside it that its text names.
bool CopyInfoFile(const std::string& source, const std::string& target) {
    if (!CreateFolder(FolderOf(target)) || !CopyFile(source, target)) return false;
    if (!IsPage(source)) return true;
    const std::string text = ReadFileStart(source, kLongestPage).value_or(std::string());
    for (const std::string& file : ListFiles(FolderOf(source), "*")) {
        const std::string copy = FolderOf(target) + "\\" + FileNameOf(file);
        if (FindNoCase(text, FileNameOf(file)) != std::string::npos && !FileExists(copy) &&
            !CopyFile(file, copy))
            return false;
    }
    return true;
}

void ShowFromCd(const core::LevelPlace& level, const PlainName& name, const std::string& on_disk) {
    const std::string folder = core::ReachFolder(level);
    if (core::archive.CdMissing) {
        TellCritical(LoadMessage(msg::kMoreInfoCdMissing));
        return;
    }
    const std::string on_cd = folder + LoadFragment(fragment::kMoreInfoFolder) + name.Text();
    if (!FileExists(on_cd)) {
        TellCritical(LoadMessage(msg::kMoreInfoNotFound, {on_cd}));
        return;
    }
    core::Change change(msg::kDoingMoreInfo, core::kArchiveFolder, level.Code);
    if (!change) return;
    const bool copied = CopyInfoFile(on_cd, on_disk);
    change.End(); // opening it may ask
    if (!copied) {
        TellCritical(LoadMessage(msg::kMoreInfoCopyFailed, {on_cd}) + on_disk);
        return;
    }
    OpenAndTell(on_disk);
}

} // namespace

void ShowMoreInfo() {
    const core::LevelPlace level = core::PlaceOf(core::SelectedLevel());
    if (!level.IsListed()) {
        TellCritical(LoadMessage(msg::kMoreInfoUnknownLevel) + std::to_string(level.Code));
        return;
    }
    const std::string_view document = Trim(core::archive.Table[level.Index].MoreInfoFile);
    if (document.empty()) {
        ShowMessage(MessageStyle::Plain, LoadMessage(msg::kMoreInfoNone, {kLineBreak}));
        return;
    }
    const std::optional<PlainName> name = PlainName::From(document);
    if (!name) {
        TellCritical(LoadMessage(msg::kMoreInfoNotFound, {std::string(document)}));
        return;
    }
    const std::string on_disk = level.Folder + LoadFragment(fragment::kMoreInfoFolder) + name->Text();
    if (FileExists(on_disk))
        OpenAndTell(on_disk);
    else
        ShowFromCd(level, *name, on_disk);
}

} // namespace kelvash::program
