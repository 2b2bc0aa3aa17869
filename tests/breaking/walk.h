// A random walk of the real program's commands, of a player's and a bungler's doings and of kills, over one
// sandbox. Everything is drawn from one seed.
#pragma once

#include <optional>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "breaking/breaking_home.h"
#include "breaking/save_ledger.h"

namespace kelvash::test {

class WalkHome : public BreakingHome {
  protected:
    void BeginWalk(unsigned seed);
    // Takes one step, and looks for every save afterwards. False when something was wrong.
    bool Step();
    // Both restores: the original files must be back, and every save at home.
    void EndWalk();
    std::string Road() const;

  private:
    int Below(int n) { return std::uniform_int_distribution<int>(0, n - 1)(random_); }
    template <class T>
    const T& AnyOf(const std::vector<T>& all) {
        return all[static_cast<std::size_t>(Below(static_cast<int>(all.size())))];
    }

    // A command, killed at a random call in about half of the runs.
    Told Do(const Words& words, Answers answers = Answers::None);
    TracedRun RunToKill(const ProgramStart& start, const std::string& command);
    void Log(const std::string& what) { road_.push_back(what); }
    // Where the open Archive's levels lie, as its file says.
    std::filesystem::path CurrentFolder();
    std::vector<int> Codes();

    void DoCommand();
    void Install(int code);
    void Play(int code);
    void Restore(const char* kind);
    void AddLevel();
    void RemoveLevel(int code);
    void ChangeLevel(int code);
    void ChangeArchive();
    void Player();
    void PlayerWrites();
    void PlayerDeletes();
    // The player's saves get bytes of their own, those that the game wrote too.
    void TakeGameSaves();
    void Bungler();
    void DamageMarker();
    void DamageRecord();
    void DamageTrle();
    void OwnFile();
    void DamageLevelFolder();
    std::vector<std::filesystem::path> Records() const;
    // What both the marker's and the record's loss mean.
    void TellsNothing();
    void SwapEnded(const Told& told, const std::string& owner);

    std::mt19937 random_;
    std::vector<std::string> road_;
    std::optional<SaveLedger> ledger_;
    std::map<std::string, int> usual_calls_; // of commands
    std::set<std::string> known_files_;      // of the application's folder at the start
    std::optional<std::string> in_;          // who owns what is in TRLE; nothing when it can't be known
    bool killed_ = false;                    // the last command
    bool marker_damaged_ = false;
    bool record_damaged_ = false;
    bool trle_damaged_ = false;
    int serial_ = 0;
};

} // namespace kelvash::test
