// What a swap does to the TRLE folder and the levels' stashes, told a second time from the rules alone. It
// works on maps of names and bytes and calls nothing of the program.
//
// Two rules go beyond those of a single swap: a save that the player didn't delete never vanishes, so a stash
// whose files lie nowhere else is added to instead of emptied; and where such a stash holds a newer file than
// the one that comes in, the newer stays.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "support/swap_world.h"

namespace kelvash::test {

class SwapModel {
  public:
    // As the folders stand now, with the original configuration in.
    SwapModel(const World& world, const std::vector<WorldLevel>& levels, Backup backup);

    // True if the level is in at the end. Without a .tr4 file the user is asked, see AsksForTr4.
    bool InstallLevel(std::int32_t code);
    bool AsksForTr4(std::int32_t code) const { return code != 0 && code != current_ && !HasTr4(code); }
    std::int32_t RemovePreviousLevel(std::int32_t code);
    void FullRestore();

    // The player's doings.
    void PlayerWrites(const std::string& name, const std::string& bytes);
    void PlayerDeletes(const std::string& name);
    void LevelFileDeleted(std::int32_t code, const std::string& name);
    void LevelFilesRepaired(std::int32_t code);

    std::int32_t Current() const { return current_; }
    const FileMap& Trle() const { return trle_; }
    const FileMap& Stash(std::int32_t code) const { return stash_.at(code); }
    // Bytes of the marker in lower case, as Windows-1252; nothing while the original configuration is in.
    std::optional<std::string> Marker() const { return marker_; }
    // Every save that the player has, by its level.
    const std::map<std::int32_t, FileMap>& Alive() const { return alive_; }
    // FILES folder of a level by lower-case names.
    FileMap Files(std::int32_t code) const;

  private:
    struct Item {
        std::string name;   // in lower case
        std::string target; // path in the TRLE folder, in lower case
        std::string bytes;
    };
    using Ready = std::map<std::string, std::string>; // a level's files as the game wants them
    Ready ReadyFiles(std::int32_t code) const;
    bool HasTr4(std::int32_t code) const;
    std::vector<Item> WorkList(std::int32_t code) const;
    std::optional<std::string> LanguageFile(const std::vector<Item>& items) const;
    void StashInto(std::int32_t code);
    void BringBack(std::int32_t code);
    void CopyLevel(std::int32_t code);
    void TakeOut();

    std::map<std::int32_t, WorldLevel> levels_;
    std::map<std::int32_t, std::set<std::string>> missing_; // names deleted in FILES
    std::map<std::int32_t, FileMap> stash_;
    std::map<std::int32_t, FileMap> alive_;
    FileMap trle_;
    FileMap backup_;
    bool full_;
    std::int32_t current_ = 0;
    bool original_waits_ = false; // level 0000's stash holds files that lie nowhere else
    std::vector<std::string> copied_;
    std::vector<std::string> overwritten_;
    std::optional<std::string> marker_;
};

} // namespace kelvash::test
