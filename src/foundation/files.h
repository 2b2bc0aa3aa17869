// Files and folders, addressed by path texts.
//
// These routines swallow errors and answer with a boolean. A result that a caller may not lose is
// [[nodiscard]]; the others are those whose failure is deliberately not looked at in places.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "foundation/user.h"

namespace kelvash {

// False for an empty or blank path, for a folder, and on any error.
bool FileExists(std::string_view path);
bool FolderExists(std::string_view path);
// True if a file of the folder matches the mask.
bool AnyFile(std::string_view folder, std::string_view mask);

// Makes one level. True if the folder existed or could be made.
bool CreateFolder(std::string_view path);
// True also when there is nothing to delete; clears the read-only attribute first. False for a folder.
bool DeleteFile(std::string_view path);
// Deletes an existing destination first, read-only or not. The copy keeps the modification time. False if the
// copy failed; the destination is gone then.
bool CopyFile(std::string_view source, std::string_view destination);
// The same for long copies that the user may stop: the interface is looked after meanwhile. After a stop it
// is false and TheUser().StopRequested() true.
bool CopyFileStoppable(std::string_view source, std::string_view destination);
// Gives a file a second name on its drive, or copies it where that can't be: then it is one file, which is
// not to be written in place. The destination doesn't exist yet.
bool LinkOrCopyFile(std::string_view source, std::string_view destination);
// Takes a name away that may be one of several of a file, whose attributes stay as they are.
bool RemoveName(std::string_view path);
// Puts each of two folders in the other's place in one step. False, with nothing changed, where the file
// system can't.
bool ExchangeFolders(std::string_view a, std::string_view b);
// Renames within one drive; a file of the new name is replaced.
bool RenameFile(std::string_view old_path, std::string_view new_path);
// As CopyFile, but the destination holds its old content or the whole new one at every instant, also when the
// program is killed. The copy is made under kPartialFile beside it.
[[nodiscard]] bool CopyFileWhole(std::string_view source, std::string_view destination);
// The name under which CopyFileWhole works. A file of this name is left over from a killed run and worth
// nothing.
inline constexpr std::string_view kPartialFile = "Kelvash.tmp";

// The bytes as they are; empty on error. ReadFileBytes tells an error from an empty file.
std::string ReadWholeFile(std::string_view path);
std::optional<std::string> ReadFileBytes(std::string_view path);
// The first `limit` bytes at most; nothing on error.
std::optional<std::string> ReadFileStart(std::string_view path, std::size_t limit);
// Writes the text and a line end (CR LF), replacing the file.
[[nodiscard]] bool WriteTextFile(std::string_view path, std::string_view text);
// Replaces the file by the given bytes: written to a sibling, renamed over it. Killed at any instant, the
// program leaves the old file or the new one. With `flush` the bytes reach the disk before the rename.
enum class Flush { No, Yes };
[[nodiscard]] bool ReplaceFileBytes(std::string_view path, std::string_view bytes, Flush flush);
// The same for bytes that a procedure produces piece by piece; it gives the pieces to `write`, which answers
// false when it should stop.
using WritePiece = std::function<bool(std::string_view piece)>;
[[nodiscard]] bool ReplaceFileBytes(std::string_view path,
                                    const std::function<bool(const WritePiece&)>& produce, Flush flush);

// What has been written to the drive of a folder is on the disk after this. False on error.
[[nodiscard]] bool FlushDrive(std::string_view folder);
// The same for one file.
[[nodiscard]] bool FlushFile(std::string_view path);

// Bytes of a file; 0 if it is missing.
std::int64_t FileSize(std::string_view path);
// Modification time in seconds since 1970, UTC; nothing for a missing file.
std::optional<std::int64_t> FileTime(std::string_view path);
// Sets the access and write time (and the creation time where there is one). False for a missing file.
bool SetFileDate(std::string_view path, std::int64_t seconds);
// Clears the read-only attribute of a file; false if there is no such file.
bool ClearReadOnly(std::string_view path);
// The short form of a path, or the path itself where the platform gives none or it has more than 255
// characters.
std::string ShortPath(std::string_view path);

// Full paths of the files of a folder that match the mask, in the order of NTFS: alphabetical without regard
// to case. Empty for a missing folder. Both lists leave out names that can't be spelt in a path text.
std::vector<std::string> ListFiles(std::string_view folder, std::string_view mask);
std::vector<std::string> ListFolders(std::string_view folder);

// Deletes the matching files, not the sub-folders. Stops at the first failure with false. An empty mask, and
// a folder whose files MayDeleteFilesIn (guarded_folders.h) keeps, delete nothing and give false.
bool DeleteFiles(std::string_view folder, std::string_view mask);
enum class Existing { Replace, Ask };
// Copies the matching files under their names; with Ask an existing destination goes through AskReplaceFile.
// Stops at the first failed copy with false.
bool CopyFiles(std::string_view source, std::string_view destination, Existing existing,
               std::string_view mask);
// Deletes the files of a folder, then the folder. False if sub-folders are left in it, and with nothing
// deleted for a guarded folder.
bool RemoveFolder(std::string_view path);
// Deletes a folder that holds nothing, a read-only one too; of a link to a folder the link. False if it
// can't, or isn't there.
bool RemoveEmptyFolder(std::string_view path);

struct Tree {
    std::vector<std::string> folders;
    std::vector<std::string> files;
};
// All folders and files below a root, as full paths: the names of one folder first, then its sub-folders one
// by one, each followed down. Links to folders are not followed.
Tree ScanTree(std::string_view root);
// Bytes of the files in a tree that match the mask.
std::int64_t TreeSize(std::string_view root, std::string_view mask);
// Deletes a whole tree with the bar moving: files first, then folders from the deepest up. A link is deleted,
// not followed. False if anything is left, and with nothing deleted for a guarded folder.
[[nodiscard]] bool RemoveFolderTree(std::string_view root, Bar& bar);

enum class FilesFolders { Copy, Skip };
// Copies a tree into `destination`, which is made. With Skip every path that holds "\files\" stays behind.
// Shows its own critical message on failure and gives false; a stop gives false without a message. CopyTree
// with `show` opens the progress dialog; CopyTreeShown uses the caller's bar. Bars go by bytes.
[[nodiscard]] bool CopyTree(std::string_view source, std::string_view destination, bool show,
                            Existing existing, FilesFolders skip);
[[nodiscard]] bool CopyTreeShown(std::string_view source, std::string_view destination, Bar& bar,
                                 Existing existing, FilesFolders skip);

// "1.5 Gb" from 1073741824, "1.0 Mb" from 1048576, whole kilobytes "1 Kb" from 1024, else the plain number.
// Pattern "###.0": half a megabyte never stands here, so no leading digit is missing.
std::string FormatSize(std::int64_t bytes);
// Asks whether the old file may be replaced by the new one, with name, size and date of both. The new one
// is a file, or what its facts say of a file that isn't there yet.
struct FileFacts {
    std::string Name;      // as it is shown
    std::int64_t Size = 0; // bytes
    std::int64_t Time = 0; // seconds since 1970, UTC
};
[[nodiscard]] bool AskReplaceFile(std::string_view new_path, std::string_view old_path);
[[nodiscard]] bool AskReplaceFile(const FileFacts& new_file, std::string_view old_path);

} // namespace kelvash
