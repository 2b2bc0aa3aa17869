// A package file in the application's folder.
#pragma once

#include "intake/level_config.h"
#include "support/test_home.h"

namespace kelvash::intake {

// A text blank padded to a width.
inline std::string Padded(std::string text, std::size_t width) {
    text.resize(width, ' ');
    return text;
}

// A header with these texts and this count, all else blank.
inline std::string Header(const std::string& name, const std::string& count) {
    return Padded(name, 256) + std::string(8450, ' ') + count;
}

class LevelConfigFile : public test::TestHome {
  protected:
    LevelConfigFile() { LevelConfig = LevelConfigRecord(); }
    ~LevelConfigFile() override { LevelConfig = LevelConfigRecord(); }
    bool Read(const std::string& bytes) {
        test::MakeFile(home / "kelvash.cfg", bytes);
        return ReadLevelConfig("C:\\Kelvash\\kelvash.cfg");
    }
};

} // namespace kelvash::intake
