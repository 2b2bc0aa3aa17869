// A level "City" and its pictures.
#pragma once

#include <string>

#include "core/archive.h"
#include "foundation/files.h"
#include "foundation/messages.h"
#include "support/swap_home.h"

namespace kelvash::test {

// A bitmap of two pixels, a red and a blue one: 62 bytes.
inline const std::string kRedBlue(
    "BM\x3E\0\0\0\0\0\0\0\x36\0\0\0"
    "\x28\0\0\0\2\0\0\0\1\0\0\0\1\0\x18\0\0\0\0\0\x08\0\0\0"
    "\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0"
    "\0\0\xFF\xFF\0\0\0\0",
    62);

class ShotsHome : public SwapHome {
  protected:
    ShotsHome() {
        AddLevel(1, "City", {});
        folder = LevelPath(1) / "SCREENSHOTS";
    }
    static std::string PathOf(const std::string& name) {
        return "C:\\Levels\\LEVEL_0001\\screenshots\\" + name;
    }
    // Puts a picture there, which the level's record counts.
    void Take(const std::string& name, const std::string& bytes = kRedBlue,
              std::int64_t seconds = 1'000'000) {
        MakeFile(folder / name, bytes);
        ASSERT_TRUE(SetFileDate(PathOf(name), seconds));
        core::AddLevelSize(1, static_cast<double>(bytes.size()), core::SizeKind::Saves);
    }
    static std::int32_t Counted() { return core::archive.Table[1].SavesSize; }
    std::vector<std::string> Names() const { return NamesIn(folder); }
    static std::int64_t DateOf(const std::string& name) { return FileTime(PathOf(name)).value_or(0); }

    std::filesystem::path folder;
};

} // namespace kelvash::test
