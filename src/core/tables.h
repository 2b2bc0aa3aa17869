// Fixed tables that several subsystems read.
#pragma once

#include <array>
#include <cstdint>
#include <string_view>

namespace kelvash::core {

inline constexpr std::array<std::string_view, 10> kSourceExtensions = {
    ".sam", ".sfx", ".swd", ".tom", ".wad", ".was", ".cd", ".pc", ".raw", ".lar"};
inline constexpr std::array<std::string_view, 3> kEngineNames = {"<NONE>", "Tr4 The Last Revelation",
                                                                 "Tr5 Chronicles"};
inline constexpr std::string_view kEngineShortNames = "<NONE>|TR4|TR5";
inline constexpr std::array<std::string_view, 2> kLevelDataExtensions = {".tr4", ".pak"};
inline constexpr std::array<std::string_view, 5> kMainFolderExtensions = {".dat", ".h", ".txt", ".bmp",
                                                                          ".pcx"};
// Sizes of the editions of a TRLE file that differs between them; the last is the current one. Bytes.
inline constexpr std::array<std::int32_t, 4> kTrleFileSizes = {38264, 403696, 1139044, 1325439};

} // namespace kelvash::core
