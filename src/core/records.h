// The two records of an Archive file (.kva) and their layout. docs/formats.md describes the bytes.
#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "foundation/record.h"

namespace kelvash::core {

// Written into every Archive file, never tested.
inline constexpr std::int32_t kArchiveVersion = 1;

// Head of an Archive file.
struct ArchiveHeader {
    std::int32_t Version = kArchiveVersion;
    std::string
        MainFolder; // may lie on a read-only medium; the first two characters are the CD reader's drive
    std::string SecondaryFolder; // writable; holds the LEVEL_NNNN folders
    std::int32_t CdCount = 0;    // 0: the Archive is wholly on disk
    bool CompressFiles = false;
    bool EncodeWavInMp3 = false;
    bool CdInstallPending = false;
    double MainFolderSize = 0;      // bytes
    double SecondaryFolderSize = 0; // bytes
};

// As a file holds it: with the number of its levels, which in memory is that of the level table.
struct StoredHeader : ArchiveHeader {
    std::int32_t LevelCount = 0; // level 0000 included
};

inline constexpr std::size_t kHeaderSize = 546;
inline constexpr std::array<Field<StoredHeader>, 10> kHeaderFields = {{
    {"Version", 0, 4, &StoredHeader::Version},
    {"MainFolder", 4, 256, &StoredHeader::MainFolder},
    {"SecondaryFolder", 260, 256, &StoredHeader::SecondaryFolder},
    {"LevelCount", 516, 4, &StoredHeader::LevelCount},
    {"CdCount", 520, 4, &StoredHeader::CdCount},
    {"CompressFiles", 524, 2, &StoredHeader::CompressFiles},
    {"EncodeWavInMp3", 526, 2, &StoredHeader::EncodeWavInMp3},
    {"CdInstallPending", 528, 2, &StoredHeader::CdInstallPending},
    {"MainFolderSize", 530, 8, &StoredHeader::MainFolderSize},
    {"SecondaryFolderSize", 538, 8, &StoredHeader::SecondaryFolderSize},
}};
static_assert(IsLayout(kHeaderFields, kHeaderSize));

// One level.
struct LevelRecord {
    std::string Name;
    std::string Note;
    std::string Author;
    std::string Emails; // separated by one NUL each
    std::string Sites;  // separated by one NUL each
    std::string AuthorNote;
    std::int32_t Code = 0;      // names the folder LEVEL_NNNN; 0 is the original configuration
    std::int32_t CdNumber = 0;  // 0: the FILES folder is on disk
    std::string MoreInfoFile;   // inside FILES
    std::int32_t FilesSize = 0; // bytes, the nearest that 32 bits hold
    std::int32_t SavesSize = 0; // likewise
    bool RecountSaves = false;  // SavesSize is to be recounted on load; nothing here sets it
};

inline constexpr std::size_t kLevelSize = 1634;
inline constexpr std::array<Field<LevelRecord>, 12> kLevelFields = {{
    {"Name", 0, 256, &LevelRecord::Name},
    {"Note", 256, 256, &LevelRecord::Note},
    {"Author", 512, 80, &LevelRecord::Author},
    {"Emails", 592, 256, &LevelRecord::Emails},
    {"Sites", 848, 256, &LevelRecord::Sites},
    {"AuthorNote", 1104, 256, &LevelRecord::AuthorNote},
    {"Code", 1360, 4, &LevelRecord::Code},
    {"CdNumber", 1364, 4, &LevelRecord::CdNumber},
    {"MoreInfoFile", 1368, 256, &LevelRecord::MoreInfoFile},
    {"FilesSize", 1624, 4, &LevelRecord::FilesSize},
    {"SavesSize", 1628, 4, &LevelRecord::SavesSize},
    {"RecountSaves", 1632, 2, &LevelRecord::RecountSaves},
}};
static_assert(IsLayout(kLevelFields, kLevelSize));

} // namespace kelvash::core
