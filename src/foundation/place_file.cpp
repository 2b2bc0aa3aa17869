#include "foundation/place_file.h"

#include <string>

#include "foundation/drives.h"
#include "foundation/files.h"
#include "foundation/path.h"
#include "foundation/platform/platform.h"

namespace kelvash {

namespace fs = std::filesystem;

bool AnythingStands(std::string_view path) {
    std::error_code error;
    return fs::exists(fs::symlink_status(NativePath(path), error));
}

bool IsLink(std::string_view path) {
    std::error_code error;
    return fs::is_symlink(NativePath(path), error);
}

bool PlaceFileNew(std::string_view source, std::string_view destination) {
    if (!FileExists(source) || AnythingStands(destination)) return false;
    if (!IsLink(source) && platform::LinkFile(NativePath(source), NativePath(destination))) return true;
    return CopyFileNew(source, destination);
}

bool CopyFileNew(std::string_view source, std::string_view destination) {
    if (AnythingStands(destination)) return false;
    const std::string partial = FolderOf(destination) + "\\" + std::string(kPartialFile);
    // A killed run may have left it as a second name of what it copied.
    static_cast<void>(platform::Unlink(NativePath(partial)));
    bool placed = CopyFile(source, partial) && FlushFile(partial);
    if (placed && platform::LinkFile(NativePath(partial), NativePath(destination))) {
        static_cast<void>(platform::Unlink(NativePath(partial)));
        return true;
    }
    // Where the disk has no links only this look keeps what stands there.
    placed = placed && !AnythingStands(destination) && RenameFile(partial, destination);
    if (!placed) DeleteFile(partial);
    return placed;
}

bool FlushFolder(std::string_view folder) {
    const fs::path native = NativePath(folder);
    return platform::FlushFolder(native) && platform::FlushFolder(native.parent_path());
}

bool LeavePlace(std::string_view path) {
    return !AnythingStands(path) || platform::Unlink(NativePath(path));
}

} // namespace kelvash
