#include "core/level_draft.h"

#include "core/archive.h"
#include "foundation/files.h"
#include "foundation/known_names.h"
#include "foundation/path.h"
#include "foundation/text.h"

namespace kelvash::core {

namespace {

// FILES as it is spelt where it has to be made.
std::string NewFilesFolder(const std::string& level_folder) {
    return level_folder + "\\FILES";
}

// What was in FILES, between the two steps of a storing.
std::string OldFolder(const std::string& level_folder) {
    return level_folder + "\\FILES_OLD";
}

bool FillFolder(const std::string& source, const std::string& folder,
                bool (*put)(std::string_view file, std::string_view target)) {
    if (!CreateFolder(folder)) return false;
    const KnownNames names(folder);
    for (const std::string& file : ListFiles(source, "*"))
        if (!put(file, folder + "\\" + FileNameOf(file))) return false;
    return true;
}

bool PutDraftInPlace(const std::string& level_folder) {
    const std::string draft = DraftFolder(level_folder);
    const std::string old = OldFolder(level_folder);
    if (ExchangeFolders(draft, FilesFolder(level_folder))) return true;
    if (!RenameFile(FilesFolder(level_folder), old)) return false;
    const bool stored = RenameFile(draft, NewFilesFolder(level_folder));
    // The old files are dropped as a draft, by EndStoring if not now.
    RenameFile(old, stored ? draft : NewFilesFolder(level_folder));
    return stored;
}

} // namespace

std::string DraftFolder(const std::string& level_folder) {
    return level_folder + "\\FILES_NEW";
}

bool MakeDraft(const std::string& level_folder) {
    EndStoring(level_folder);
    DropDraft(level_folder);
    if (FillFolder(FilesFolder(level_folder), DraftFolder(level_folder), LinkOrCopyFile)) return true;
    DropDraft(level_folder);
    return false;
}

void DropDraft(const std::string& level_folder) {
    const std::string draft = DraftFolder(level_folder);
    // The program makes no folders there: one that is there stood in FILES when it was put away.
    for (const std::string& folder : ListFolders(draft))
        RenameFile(folder, FilesFolder(level_folder) + "\\" + FileNameOf(folder));
    if (FolderExists(draft)) RemoveFolder(draft);
}

bool StoreLevelFiles(const std::string& source, const std::string& level_folder) {
    const std::string files = FilesFolder(level_folder);
    const std::string draft = DraftFolder(level_folder);
    if (EqualNoCase(source, files)) return true;
    if (!FolderExists(source) || !CreateFolder(files)) return false;
    const bool from_draft = EqualNoCase(source, draft);
    if (!from_draft) {
        DropDraft(level_folder);
        if (!FillFolder(source, draft, CopyFile)) {
            DropDraft(level_folder);
            return false;
        }
    }
    const bool stored = PutDraftInPlace(level_folder);
    if (stored || !from_draft) DropDraft(level_folder);
    return stored;
}

void EndStoring(const std::string& level_folder) {
    const std::string draft = DraftFolder(level_folder);
    const std::string old = OldFolder(level_folder);
    if (!FolderExists(old)) return;
    // Cut short between the two steps, the draft is whole.
    if (!FolderExists(FilesFolder(level_folder)) &&
        !RenameFile(FolderExists(draft) ? draft : old, NewFilesFolder(level_folder)))
        return;
    if (!FolderExists(old)) return;
    DropDraft(level_folder);
    if (RenameFile(old, draft)) DropDraft(level_folder);
}

} // namespace kelvash::core
