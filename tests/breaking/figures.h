// What a test of the breaking suite did, in numbers, and how long it may go on.
#pragma once

#include <map>
#include <string>
#include <vector>

namespace kelvash::test {

// How many times the short form's work is done: KELVASH_BREAKING_ROUNDS, 1 without it.
int BreakingRounds();
// True for the form that leaves nothing out.
inline bool LongForm() {
    return BreakingRounds() > 1;
}

// The whole list in the long form; in the short one each `each`-th case of it, beginning with `first`.
template <typename Case>
std::vector<Case> Sampled(const std::vector<Case>& all, std::size_t each, std::size_t first = 0) {
    if (LongForm()) return all;
    std::vector<Case> some;
    for (std::size_t i = first; i < all.size(); i += each)
        some.push_back(all[i]);
    return some;
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
