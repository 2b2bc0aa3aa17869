// Bytes of what a stranger sends, written by offset after docs/formats.md and without the code under test.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "support/zip_bytes.h"

namespace kelvash::test {

// Little-endian.
std::string NumberBytes(std::uint64_t value, int bytes);
// Blank padded or cut to a width.
std::string TextField(const std::string& text, std::size_t width);
// Items of a NUL list.
std::string Items(const std::vector<std::string>& items);

struct PackageConfig {
    std::string name = "Maze";
    std::string note = {};
    std::string author = {};
    std::string message = {};
    std::string emails = {};
    std::string sites = {};
    std::string extern_waves = {}; // lists as Items makes them
    std::string import_wads = {};
    std::string import_notes = {};
    std::string duplications = {};
    std::string more_info = {};
    std::string exe_kind = {};
    std::vector<std::pair<std::string, std::int32_t>> files = {};
    std::optional<std::int32_t> file_count = {}; // in place of the true one
    std::string use_wads = {};
    std::optional<std::uint16_t> use_wads_length = {};
};
std::string ConfigBytes(const PackageConfig& config);

// A .mcf whose events put every file field to use with that name. `count` stands in place of the true one.
std::string MediaBytes(const std::vector<std::string>& names, std::optional<std::uint32_t> count = {});
std::string Tr4InfoBytes(const std::vector<std::pair<std::string, std::int32_t>>& records,
                         std::optional<std::uint32_t> count = {});
std::string MarkerBytes(const std::string& code, const std::string& name, const std::string& overwritten,
                        const std::string& copied);

// What every level needs, as the entries of a zip.
std::vector<ZipBytes> SoundLevel();
// The zip of a sound level with more entries behind.
std::string PackageWith(std::vector<ZipBytes> more);

// An entry of so many megabytes of zeros in some thousandth of that room.
ZipBytes ZerosEntry(const std::string& name, int megabytes);
// One zlib stream of so many megabytes of zeros.
std::string ZerosStream(int megabytes);

} // namespace kelvash::test
