// A level in its dialog, about to be stored.
#pragma once

#include "core/archive.h"
#include "intake/apply_config.h"
#include "support/intake_home.h"

namespace kelvash::intake {

class StoreLevelTest : public test::IntakeHome {
  protected:
    // A level that passes all checks.
    const Files kGood = {{"maze.tr4", "level data"}, {"script.dat", "script"}, {"english.dat", "words"}};
    void OpenGood(const Files& more = {}) {
        Files files = kGood;
        files.insert(more.begin(), more.end());
        OpenNew(files);
        level.Name = "The Maze";
    }
    // What is told when a save or a picture has made way.
    const std::string kKept =
        "exclamation: Savegames and screenshots that had the names of those of the level "
        "files are now in: C:\\Kelvash\\rescued_saves_1";
    std::filesystem::path Shots() const { return LevelPath(1) / "SCREENSHOTS"; }
};

} // namespace kelvash::intake
