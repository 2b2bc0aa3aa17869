// The package file kelvash.cfg: what a level's author tells about a level beside its files.
//
// The file is one header of 8710 bytes, the list of the level's files, and a trailing text that may be
// missing. It never enters the Archive. Texts are Windows-1252; lists are texts whose items a NUL separates,
// in groups of two or four.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "foundation/record.h"

namespace kelvash::intake {

struct LevelConfigRecord {
    std::string LevelName;
    std::string LevelNote;
    std::string AuthorName;
    std::string AuthorMessage;
    std::string AuthorEmails; // NUL list
    std::string AuthorSites;  // NUL list
    std::string ExternWaves; // groups of four: CD code, name there, name here, name to use if it can't be had
    std::string ImportWads;  // groups of two: name that proves the wads, address of their zip
    std::string ImportNotes;
    std::string Duplications; // groups of two: mask of files, name of their copies
    std::string MoreInfoFile; // no folder
    std::string ExeKind;      // empty, or ZIP, TRLE, MIRROR, FLYDRIVE
    std::int32_t FileCount = 0;

    // Behind the header.
    std::vector<std::string> FileNames;
    std::vector<std::int32_t> FileSizes; // bytes
    std::string UseWads;                 // groups of two: base name of a .tom, mask of its wad's files
};
// The record in use; reader and writer both work on it.
extern LevelConfigRecord& LevelConfig;

inline constexpr std::size_t kConfigHeaderSize = 8710;
inline constexpr std::array<Field<LevelConfigRecord>, 13> kConfigFields = {{
    {"LevelName", 0, 256, &LevelConfigRecord::LevelName},
    {"LevelNote", 256, 256, &LevelConfigRecord::LevelNote},
    {"AuthorName", 512, 80, &LevelConfigRecord::AuthorName},
    {"AuthorMessage", 592, 256, &LevelConfigRecord::AuthorMessage},
    {"AuthorEmails", 848, 256, &LevelConfigRecord::AuthorEmails},
    {"AuthorSites", 1104, 256, &LevelConfigRecord::AuthorSites},
    {"ExternWaves", 1360, 4096, &LevelConfigRecord::ExternWaves},
    {"ImportWads", 5456, 2048, &LevelConfigRecord::ImportWads},
    {"ImportNotes", 7504, 512, &LevelConfigRecord::ImportNotes},
    {"Duplications", 8016, 600, &LevelConfigRecord::Duplications},
    {"MoreInfoFile", 8616, 80, &LevelConfigRecord::MoreInfoFile},
    {"ExeKind", 8696, 10, &LevelConfigRecord::ExeKind},
    {"FileCount", 8706, 4, &LevelConfigRecord::FileCount},
}};
static_assert(IsLayout(kConfigFields, kConfigHeaderSize));

// What the bytes of a file say. False if they end within the header or within the list; the record is filled
// as far as they go.
enum class ConfigFault { None, Header, Entry };
ConfigFault DecodeLevelConfig(std::string_view bytes, LevelConfigRecord& config);
// The bytes of a file. A name's folder is left out, a name or text is cut at 32767 bytes.
std::string EncodeLevelConfig(const LevelConfigRecord& config);

// Bytes of a file that is still taken for one: above those of any package.
inline constexpr std::size_t kLongestConfig = std::size_t{1} << 20;
// Fills LevelConfig from a file. False after a message.
[[nodiscard]] bool ReadLevelConfig(std::string_view path);
// Writes LevelConfig over a file, whose bytes behind what is written stay unless it is too long to be a
// package file. False after a message.
[[nodiscard]] bool WriteLevelConfig(std::string_view path);

// The items of a NUL list; none for an empty text. The last group is filled up with empty items.
std::vector<std::string> ConfigItems(std::string_view list, std::size_t group);
// The list with one empty group behind it, as a newly added entry looks.
std::string AddEmptyGroup(std::string_view list, std::size_t group);

} // namespace kelvash::intake
