// What a test of the breaking suite did, in numbers, and how long it may go on.
#pragma once

#include <map>
#include <string>

namespace kelvash::test {

// How many times the short form's work is done: KELVASH_BREAKING_ROUNDS, 1 without it.
int BreakingRounds();
// True for the form that leaves nothing out.
inline bool LongForm() {
    return BreakingRounds() > 1;
}

// Counts by name. They are printed as one line "figures: TEST: 12 cases, 3 kills" when the test ends.
class Figures {
  public:
    ~Figures();
    void Count(const std::string& what, int by = 1) { counts_[what] += by; }
    int Of(const std::string& what) const;

  private:
    std::map<std::string, int> counts_;
};

} // namespace kelvash::test
