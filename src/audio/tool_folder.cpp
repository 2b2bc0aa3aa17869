#include "audio/tool_folder.h"

#include "audio/fragments.h"
#include "foundation/drives.h"
#include "foundation/files.h"
#include "foundation/messages.h"
#include "foundation/path.h"
#include "foundation/text.h"

namespace kelvash::audio {

namespace {

std::string FolderNumber(const std::string& number) {
    return AppFolder() + LoadFragment(fragment::kToolFolder, {number});
}

// False if another run has it, of this process too.
bool TakeLock(FolderLock& lock, const std::string& folder) {
    LockHolder holder;
    return lock.Take(folder, LockKind::Change, {}, holder) == LockResult::Taken && lock.IsOnly() &&
           FolderExists(folder);
}

// The source stands there under a second name and keeps its attributes.
void RemoveWithNames(const std::string& folder) {
    for (const std::string& file : ListFiles(folder, "*"))
        RemoveName(file);
    RemoveEmptyFolder(folder);
}

void SweepFolders() {
    for (const std::string& folder : ListFolders(AppFolder())) {
        FolderLock lock;
        if (StartsWithNoCase(folder, FolderNumber({})) && TakeLock(lock, folder)) RemoveWithNames(folder);
    }
}

} // namespace

ToolFolder::ToolFolder() {
    constexpr int kMost = 100; // runs at once
    SweepFolders();
    for (int number = 1; number <= kMost && path_.empty(); ++number) {
        const std::string folder = FolderNumber(std::to_string(number));
        if (!FolderExists(folder) && CreateFolder(folder) && TakeLock(lock_, folder)) path_ = folder;
    }
}

ToolFolder::~ToolFolder() {
    if (!path_.empty()) RemoveWithNames(path_);
}

bool ToolFolder::TakeIn(const std::string& file, const std::string& name) const {
    return !path_.empty() && LinkOrCopyFile(file, path_ + "\\" + name);
}

} // namespace kelvash::audio
