// Every save that a player of the sandbox ever made, by its bytes, and where it may be.
#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <vector>

namespace kelvash::test {

class SaveLedger {
  public:
    // Below `drive` lie the application's folder, the TRLE folder and the levels. A level is known again by
    // the file owner.txt among its files, wherever its folder goes.
    SaveLedger(std::filesystem::path drive, std::filesystem::path home, std::filesystem::path trle);

    static constexpr const char* kOriginal = "original"; // level 0000
    static constexpr const char* kUser = "user";         // files of the user's own, no saves

    // Gives a level's folder its name in this ledger.
    static void Name(const std::filesystem::path& level, const std::string& owner);
    // The name of a level's folder, empty for one without.
    std::string OwnerOf(const std::filesystem::path& level) const;
    // Puts a mark of its own into each save of a level's stash, and takes it down.
    void TakeStash(const std::filesystem::path& level);
    // Writes a save with bytes that no other has. One that stood there is gone by the player's own doing.
    void Write(const std::filesystem::path& file, const std::string& owner);

    // May be gone from now on: the player deleted it, or the level that it is of.
    void Drop(const std::string& bytes);
    void DropAllOf(const std::string& owner);
    void DropNamed(const std::string& owner, const std::string& name);
    void DropUnder(const std::filesystem::path& folder);
    // The files that say whose the saves in the TRLE root are have been damaged by hand: those saves are
    // nobody's. They may be put away aside, or be taken for the original's.
    void OrphanRoot();
    // A level's folder was taken away by hand while its saves may be in the TRLE root.
    void OrphanRootOf(const std::string& owner);
    // A folder that the program may make anew for a level whose folder was taken away.
    void Expect(const std::filesystem::path& level, const std::string& owner) { expected_[level] = owner; }

    // What is wrong, a line each: saves that are nowhere, and saves in another level's folders.
    std::string Faults() const;
    // What is wrong when the original configuration is in: saves of levels in the TRLE root.
    std::string FaultsOfRoot() const;
    // The same saves on a copy of the drive.
    SaveLedger MovedTo(const std::filesystem::path& drive) const;
    int Count() const { return static_cast<int>(saves_.size()); }

  private:
    enum class State { Alive, Dropped, Orphan };
    struct Save {
        std::string owner;
        std::string name;
        State state = State::Alive;
    };
    // A file that holds a save's bytes; `level` is the owner of the stash that it lies in, if it is one.
    struct Found {
        std::string path;
        bool in_stash = false;
        std::string level;
    };
    std::map<std::string, std::vector<Found>> FindAll() const;
    Found PlaceOf(const std::filesystem::path& file) const;
    std::string FaultOf(const Save& save, const std::vector<Found>& found) const;

    std::filesystem::path drive_, home_, trle_;
    std::map<std::string, Save> saves_; // by bytes
    std::map<std::filesystem::path, std::string> expected_;
};

} // namespace kelvash::test
