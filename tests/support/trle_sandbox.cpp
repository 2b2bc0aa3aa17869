#include "support/trle_sandbox.h"

#include <string>

#include "support/test_home.h"

namespace kelvash::test {

void MakeTrle(const std::filesystem::path& folder) {
    constexpr int kWaves = 54;
    for (const char* name :
         {"tomb4.exe", "winroomedit.exe", "script.dat", "english.dat", "load.bmp", "objects.h",
          "data/title.tr4", "data/tut1.tr4", "data/uklogo.pak", "graphics/wads/tut1.wad",
          "sound/samples/step.wav", "script/script.txt", "manual/manual.pdf"})
        MakeFile(folder / name, std::string("original ") + name);
    for (int i = 0; i < kWaves; ++i) {
        const std::string number = std::to_string(i);
        const std::string name = "audio/" + std::string(3 - number.size(), '0') + number + ".wav";
        MakeFile(folder / name, "original " + name);
    }
}

} // namespace kelvash::test
