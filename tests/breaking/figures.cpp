#include "breaking/figures.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <iostream>

namespace kelvash::test {

int BreakingRounds() {
    const char* value = std::getenv("KELVASH_BREAKING_ROUNDS");
    return value == nullptr ? 1 : std::max(1, std::atoi(value));
}

Figures::~Figures() {
    if (counts_.empty()) return;
    const testing::TestInfo* test = testing::UnitTest::GetInstance()->current_test_info();
    std::cout << "figures: " << test->test_suite_name() << "." << test->name() << ":";
    const char* between = " ";
    for (const auto& [what, count] : counts_) {
        std::cout << between << count << " " << what;
        between = ", ";
    }
    std::cout << "\n";
}

int Figures::Of(const std::string& what) const {
    const auto found = counts_.find(what);
    return found == counts_.end() ? 0 : found->second;
}

} // namespace kelvash::test
