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

namespace kelvash::zip {

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

// What the zips of one undertaking unpack to, those in zips included, against what they were packed in.
struct ZipBudget {
    double Packed = 0;   // bytes of the outermost zips
    double Unpacked = 0; // of all files that came out of zips, as these declare them
    double Agreed = 0;   // what the user has agreed to
    // So much needs no question, whatever it was packed in.
    double Unasked = 2147483648.0;
};

struct Unzipping {
    std::string Archive;     // path text of the zip
    std::string Destination; // path text of a folder, which exists
    Wipe Wiping = Wipe::No;  // the destination's files are deleted first
    ZipFolders Folders = ZipFolders::Flat;
    ZipProgress Progress = ZipProgress::Shown;
    ZipBudget* Budget = nullptr;        // that of a greater undertaking; null: the zip stands alone
    std::vector<std::string> Entries{}; // masks of names with "\" between folders; empty: everything
};
// Stopped is the user's wish: the stop, a No to the size, a password that wasn't given.
enum class UnzipEnd { Whole, Failed, Stopped };
struct Unzipped {
    UnzipEnd End = UnzipEnd::Failed;
    std::string Message{};              // why it failed, for the caller to show; or the last line
    std::vector<std::string> Written{}; // full paths
    bool NoPassword = false;            // it was stopped for want of the password
};
// Extracts a zip. Entries that are left out are told in one message each; a question comes before more than
// the drive's free space, or suspiciously much, is filled. A file that exists is replaced, but not by a
// second entry of the same zip. Progress goes to the bar's place. Failed means that the zip can't be read or
// an entry failed; what was written whole stays.
Unzipped UnzipToFolder(const Unzipping& job, Bar& bar);

class UnzipClass;
// Sets the properties for an extraction of everything, with existing files replaced.
void UnzipSettings(std::string_view archive, std::string_view destination, ZipFolders folders,
                   UnzipClass& unzip);

// Extracts with the outside tool unzip.exe of the application's folder, for archives that need it. A missing
// tool and its failure are told.
[[nodiscard]] bool UnzipWithTool(std::string_view archive, std::string_view destination, Bar& bar);

} // namespace kelvash::zip
