#include "companion/shot_files.h"

#include <algorithm>

#include "companion/fragments.h"
#include "companion/screenshots.h"
#include "companion/shot_messages.h"
#include "core/archive.h"
#include "core/change.h"
#include "foundation/clipboard_picture.h"
#include "foundation/drives.h"
#include "foundation/files.h"
#include "foundation/path.h"
#include "foundation/place.h"
#include "foundation/text.h"
#include "foundation/user.h"
#include "swap/bitmap_file.h"

namespace kelvash::companion {

namespace {

// Bytes of the file that stands at a path as far as the level's record counts it.
std::int64_t Counted(const trle_state::LevelPlace& level, const std::string& path) {
    return LiesIn(path, core::ScreenshotsFolder(level.Folder)) ? FileSize(path) : 0;
}

// Where a file is made beside the one that it is to replace.
std::string PartialBeside(const std::string& path) {
    return FolderOf(path) + "\\" + std::string(kPartialFile);
}

// Puts a finished file, whole on the disk and of its date, in the place of another.
bool PutInPlace(const trle_state::LevelPlace& level, const std::string& partial, const std::string& path,
                bool is_finished) {
    const std::int64_t before = Counted(level, path);
    if (!is_finished || !RenameFile(partial, path)) {
        DeleteFile(partial);
        return false;
    }
    AddImageToLevel(Counted(level, path) - before, level);
    return true;
}

bool MakeFolder(const trle_state::LevelPlace& level, const std::string& path) {
    const std::string folder = core::ScreenshotsFolder(level.Folder);
    return !StartsWithNoCase(path, folder + "\\") || CreateFolder(folder);
}

} // namespace

bool IsDefaultShot(std::string_view path) {
    const std::string home = AppFolder() + "\\";
    return EqualNoCase(path, DefaultScreenshot()) ||
           (StartsWithNoCase(path, home) && EndsWithNoCase(path, LoadFragment(fragment::kOriginalShot)));
}

bool IsShotName(std::string_view path) {
    const std::vector<std::string> kinds = Split(LoadFragment(fragment::kShotKinds), '|');
    return std::any_of(kinds.begin(), kinds.end(),
                       [&](const std::string& kind) { return EndsWithNoCase(path, kind); });
}

unsigned LocksOfShots(std::int32_t code) {
    return core::kArchiveFolder | (code == 0 ? core::kHomeFolder : 0U);
}

bool HasExactly(const std::string& path) {
    const std::vector<std::string> files = ListFiles(FolderOf(path), FileNameOf(path));
    return std::find(files.begin(), files.end(), path) != files.end();
}

bool IsSameShot(const std::string& path, const std::string& other) {
    const bool are_two = path != other && EqualNoCase(path, other) && HasExactly(path) && HasExactly(other);
    return !are_two && IsSamePlace(path, other);
}

std::optional<swap::Picture> ReadShot(std::string_view path) {
    if (FileSize(path) > static_cast<std::int64_t>(swap::kMaxPictureBytes)) return std::nullopt;
    const std::optional<std::string> bytes = ReadFileStart(path, swap::kMaxPictureBytes);
    return bytes ? swap::DecodePicture(*bytes) : std::nullopt;
}

std::optional<swap::Picture> ReadShotOrTell(std::string_view path) {
    std::optional<swap::Picture> picture = ReadShot(path);
    if (!picture) TellCritical(LoadMessage(msg::kShotUnreadable) + path);
    return picture;
}

void AddImageToLevel(std::int64_t size, const trle_state::LevelPlace& level) {
    if (size != 0 && level.IsListed())
        core::AddLevelSize(level.Index, static_cast<double>(size), core::SizeKind::Saves);
}

bool StoreShot(const trle_state::LevelPlace& level, const std::string& path, std::string_view bytes,
               std::optional<std::int64_t> date) {
    if (!MakeFolder(level, path)) return false;
    const std::string partial = PartialBeside(path);
    const bool is_finished =
        ReplaceFileBytes(partial, bytes, Flush::Yes) && (!date || SetFileDate(partial, *date));
    return PutInPlace(level, partial, path, is_finished);
}

bool CopyShot(const trle_state::LevelPlace& level, const std::string& source, const std::string& path) {
    if (IsSameShot(source, path)) return true;
    if (!MakeFolder(level, path)) return false;
    const std::string partial = PartialBeside(path);
    return PutInPlace(level, partial, path, CopyFile(source, partial) && FlushFile(partial));
}

bool ConvertToJpeg(std::string_view source, std::string_view destination, int quality) {
    const std::optional<swap::Picture> picture = ReadShot(source);
    const std::optional<std::string> jpeg = picture ? swap::JpegFromPicture(*picture, quality) : std::nullopt;
    return jpeg && ReplaceFileBytes(destination, *jpeg, Flush::Yes);
}

bool SaveClipboardJpeg(std::string_view path) {
    const ClipboardPicture content = ReadClipboardPicture();
    const std::optional<swap::Picture> picture = swap::DecodePicture(content.Bytes);
    const std::optional<std::string> jpeg =
        picture ? swap::JpegFromPicture(*picture, swap::kBestQuality) : std::nullopt;
    return jpeg && ReplaceFileBytes(path, *jpeg, Flush::Yes);
}

} // namespace kelvash::companion
