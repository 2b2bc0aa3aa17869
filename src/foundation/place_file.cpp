#include "foundation/place_file.h"

#include <string>

#include "foundation/drives.h"
#include "foundation/files.h"
#include "foundation/path.h"
#include "foundation/platform/platform.h"

namespace kelvash {

namespace fs = std::filesystem;

namespace {

bool Stands(std::string_view path) {
    std::error_code error;
    return fs::exists(fs::symlink_status(NativePath(path), error));
}

} // namespace

bool IsLink(std::string_view path) {
    std::error_code error;
    return fs::is_symlink(NativePath(path), error);
}

bool PlaceFileNew(std::string_view source, std::string_view destination) {
    if (!FileExists(source) || Stands(destination)) return false;
    if (!IsLink(source) && platform::LinkFile(NativePath(source), NativePath(destination))) return true;
    return CopyFileNew(source, destination);
}

bool CopyFileNew(std::string_view source, std::string_view destination) {
    if (Stands(destination)) return false;
    const std::string partial = FolderOf(destination) + "\\" + std::string(kPartialFile);
    bool placed = CopyFile(source, partial) && FlushFile(partial);
    if (placed && platform::LinkFile(NativePath(partial), NativePath(destination))) {
        static_cast<void>(platform::Unlink(NativePath(partial)));
        return true;
    }
    // Where the disk has no links only this look keeps what stands there.
    placed = placed && !Stands(destination) && RenameFile(partial, destination);
    if (!placed) DeleteFile(partial);
    return placed;
}

bool LeavePlace(std::string_view path) {
    return !Stands(path) || platform::Unlink(NativePath(path));
}

} // namespace kelvash
