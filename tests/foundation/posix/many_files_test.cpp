// Names are looked for in any case here, which a disk that has regard to case makes dear.
#include <gtest/gtest.h>

#include <ctime>

#include "foundation/files.h"
#include "support/foundation_home.h"

namespace kelvash::test {
namespace {

namespace fs = std::filesystem;

class ManyFiles : public FoundationHome {};

// A look at the whole folder for each new name would take sixteen times as long for four times as many.
TEST_F(ManyFiles, AreCopiedInATimeByTheirNumber) {
    const auto seconds_for = [&](const std::string& name, int count) {
        for (int i = 0; i < count; ++i)
            MakeFile(drive / name / ("file" + std::to_string(i)), "");
        fs::create_directories(drive / (name + "2"));
        const std::clock_t start = std::clock();
        EXPECT_TRUE(CopyFiles("C:\\" + name, "C:\\" + name + "2", Existing::Replace, "*"));
        EXPECT_EQ(ListFiles("C:\\" + name + "2", "*").size(), static_cast<std::size_t>(count));
        return static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
    };
    const double few = seconds_for("few", 1000);
    const double many = seconds_for("many", 4000);
    EXPECT_LT(many, 9 * few) << few << " s for 1,000 files, " << many << " s for 4,000";
}

} // namespace
} // namespace kelvash::test
