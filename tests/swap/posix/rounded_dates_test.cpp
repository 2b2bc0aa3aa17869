// A file system that gives a copy another date than the file it was made of.
#include <gtest/gtest.h>
#include <sys/syscall.h>

#include "support/child_process.h"
#include "support/refused_call.h"
#include "support/swap_home.h"
#include "swap/install.h"
#include "trle_state/swap_record.h"

namespace kelvash::swap {

using trle_state::IsStill;
using trle_state::ReadSwapRecord;
using trle_state::SwapRecord;
namespace {

namespace fs = std::filesystem;

class RoundedDates : public test::SwapHome {};

TEST_F(RoundedDates, AreRecordedAsTheCopyHasThem) {
    AddLevel(1, "City", {{"city.tr4", "CITY"}, {"own.h", "own"}});
    const auto old = fs::file_time_type::clock::now() - std::chrono::hours(1000);
    for (const char* name : {"city.tr4", "own.h"})
        fs::last_write_time(LevelPath(1) / "FILES" / name, old);
    const test::ChildResult result = test::InChild([] {
        // No date of a file is set, and nobody notices.
        if (!test::RefuseCall(SYS_utimensat, 0) || !InstallLevel(1)) return false;
        const SwapRecord record = ReadSwapRecord().Record;
        return record.Copied.size() == 2 && IsStill("C:\\trle\\own.h", record.Copied[0].Stamp) &&
               IsStill("C:\\trle\\data\\city.tr4", record.Copied[1].Stamp);
    });
    EXPECT_TRUE(result.answer);
    EXPECT_NE(fs::last_write_time(trle / "own.h"), old) << "the copy has got the date all the same";
    EXPECT_TRUE(InstallLevel(0));
    EXPECT_FALSE(test::Exists(trle / "own.h"));
    EXPECT_FALSE(test::Exists(home / "kept_files")) << "the level's own files were taken for the user's";
}

} // namespace
} // namespace kelvash::swap
