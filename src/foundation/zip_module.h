// Zip files: making, listing and extracting them, with the progress that is shown meanwhile.
//
// A level package is a zip file of anybody's making. Names come as UTF-8, in the DOS code page or in the ANSI
// one; an entry that would leave its destination, a link or an entry of an unknown method is left out and
// told, and the rest is extracted. Nothing is written but below the destination.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "foundation/user.h"

namespace kelvash {

// One file of a zip. Folders are no entries.
struct ZipEntry {
    std::string Name;      // UTF-8, with back-slashes between folders
    std::int64_t Size = 0; // bytes, unpacked, as the zip declares it
};
// The entries of a zip in its order, without extracting any; nothing if it can't be read, with the reason in
// `message`.
std::optional<std::vector<ZipEntry>> ListZip(std::string_view archive, std::string& message);

enum class Recurse { No, Yes };
enum class Wipe { No, Yes };
// Flat puts all files of a zip into one folder, whatever folders they have in the zip.
enum class ZipFolders { Flat, Kept };
enum class ZipProgress { Silent, Shown };

// Makes a new zip of the files of a folder, with Recurse of its whole tree; a file of that name is replaced
// when the whole zip is on the disk. `entries` receives the full paths of what went in. The bar's place shows
// the progress. False after a stop or an error, which `message` names; the old file stands then.
[[nodiscard]] bool ZipFolder(std::string_view folder, std::string_view archive,
                             std::vector<std::string>& entries, Recurse recurse, Bar& bar,
                             std::string& message);

// Extracts a zip into a folder, which exists. With Wipe the folder's files are deleted first. `entries`
// receives the full paths of the files that were written. Entries left out and entries that failed are told
// in one message each; a question comes before more than the drive's free space, or suspiciously much, is
// filled. A file that exists is replaced, but not by a second entry of the same zip. Progress goes to the
// bar's place. False, with the reason in `message`, if the zip can't be read, the user stopped it or an entry
// failed; what was written whole stays.
[[nodiscard]] bool UnzipToFolder(std::string_view archive, std::string_view destination,
                                 std::vector<std::string>& entries, Wipe wipe, ZipFolders folders,
                                 ZipProgress progress, Bar& bar, std::string& message);

class UnzipClass;
// Sets the properties for an extraction of everything, with existing files replaced.
void UnzipSettings(std::string_view archive, std::string_view destination, ZipFolders folders,
                   UnzipClass& unzip);

// Extracts with the outside tool unzip.exe of the application's folder, for archives that need it. A missing
// tool and its failure are told.
[[nodiscard]] bool UnzipWithTool(std::string_view archive, std::string_view destination, Bar& bar);

} // namespace kelvash
