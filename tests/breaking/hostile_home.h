// One hostile thing after the other is given to the real program, and everything around is compared.
#pragma once

#include <set>

#include "breaking/breaking_home.h"

namespace kelvash::test {

class HostileHome : public BreakingHome {
  protected:
    // What a command may change: paths below the ground.
    enum class May { AddLevel, ChangeHome, Nothing };

    // Starts a case: the world as it was made.
    void Begin();
    // Runs a command and compares what it may not change. `seconds` is the longest that it may take.
    Told Check(const Words& words, May may, Answers answers = Answers::Yes, double seconds = 30);
    // Gives a zip to `add` in a world of its own.
    Told Add(const std::string& zip, Answers answers = Answers::Yes);
    // Everything that can be done with a level that came in: shown, installed, taken out, exported, removed.
    void WalkRoad(int code);
    // The level that a zip became, 0 if it was refused.
    static int CodeOf(const Told& told) { return told.status() == 0 ? told.result.value("code", 0) : 0; }
    // TRLE's own files are as they were made.
    void ExpectOriginal(const std::string& after) const;
    // Everything that lies in a level's folder has a name that every platform can hold.
    void ExpectPlainNames() const;
    // True if the bytes lie in a file of the Archive, or among those of TRLE.
    bool Holds(const std::string& bytes) const;

    std::filesystem::path package; // where Add puts the zip

  private:
    std::function<bool(const std::string&)> Allowed(May may) const;

    std::set<std::string> known_levels_;
};

} // namespace kelvash::test
