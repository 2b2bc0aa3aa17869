// Markers and journals that somebody else wrote: nothing outside the TRLE folder is touched, whatever they
// say.
#include <gmock/gmock.h>

#include <chrono>
#include <random>

#include "core/archive.h"
#include "core/profile.h"
#include "support/swap_home.h"
#include "support/swap_world.h"
#include "swap/hostile_marker_home.h"
#include "swap/install.h"
#include "swap/remove.h"
#include "swap/restore.h"
#include "trle_state/marker.h"
#include "trle_state/trle_state.h"

namespace kelvash::swap {

using trle_state::CurrentLevelCode;
using trle_state::OwnerOf;
using trle_state::SwapRecord;
using trle_state::SwapStep;
using trle_state::WriteMarker;
using trle_state::WriteSwapRecord;
namespace {

using testing::Each;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

namespace fs = std::filesystem;

const char* const kClimbing[] = {"\\..\\x",         "\\data\\..\\..\\x",
                                 "\\..\\..\\x",     "\\.. \\x",
                                 "\\...\\x",        "C:\\x",
                                 "\\C:\\x",         "/etc",
                                 "\\/etc",          "\\data/../../x",
                                 "..\\x",           "x",
                                 "\\\\server\\x",   "\\data\\\\..\\x",
                                 "\\.\\..\\x",      "\\data\\..",
                                 "C:\\Windows\\x",  "\\\\.\\C:\\x",
                                 "\\data\\.. .\\x", "\\"};

TEST_F(HostileMarker, CannotDeleteOutsideTheFolder) {
    for (const char* entry : kClimbing) {
        SCOPED_TRACE(entry);
        MarkWith(entry, "");
        const test::FileMap before = Outside();
        user.Forget();
        EXPECT_EQ(RemovePreviousLevel(2), 1);
        EXPECT_THAT(user.Told(), Each(Not(HasSubstr("critical"))));
        EXPECT_EQ(Outside(), before);
    }
}

TEST_F(HostileMarker, CannotOverwriteOutsideTheFolder) {
    for (const char* entry : kClimbing) {
        SCOPED_TRACE(entry);
        MarkWith("", entry);
        const test::FileMap before = Outside();
        EXPECT_EQ(RemovePreviousLevel(2), 1);
        EXPECT_EQ(Outside(), before);
    }
}

TEST_F(HostileMarker, IsNoBetterInARecord) {
    user.MayBeTold("I cann't delete file: C:\\trle");
    for (const char* entry : kClimbing) {
        SCOPED_TRACE(entry);
        SwapRecord record;
        record.Step = SwapStep::Leaving;
        record.Owner = OwnerOf(core::PlaceOf(1));
        record.Copied = {{entry}};
        record.Overwritten = {{entry}};
        ASSERT_TRUE(WriteSwapRecord(record));
        const test::FileMap before = Outside();
        EXPECT_EQ(RemovePreviousLevel(2), 0);
        EXPECT_EQ(Outside(), before);
    }
}

TEST_F(HostileMarker, WithARecordOfAnUnknownLevelLosesNoSave) {
    for (const char* owner : {"C:\\Levels\\LEVEL_0077", "", "x", "C:\\trle\\..", "\\\\?\\C:"}) {
        SCOPED_TRACE(owner);
        test::MakeFile(trle / "savegame.5", "somebody's save");
        SwapRecord record;
        record.Step = SwapStep::In;
        record.Owner.Folder = owner;
        ASSERT_TRUE(WriteSwapRecord(record));
        EXPECT_TRUE(InstallLevel(2));
        EXPECT_TRUE(InstallLevel(0));
        EXPECT_EQ(test::BytesOf(home / "rescued_saves_1" / "savegame.5"), "somebody's save");
        fs::remove_all(home / "rescued_saves_1");
        user.Forget();
    }
}

TEST_F(HostileMarker, WithEmptyEntriesDeletesNothing) {
    for (const char* list : {"|", "||||", "|\\nothing.dat|", "\\nothing.dat||"}) {
        SCOPED_TRACE(list);
        MarkWith(list, list);
        const test::FileMap before = Outside();
        user.Forget();
        EXPECT_EQ(RemovePreviousLevel(2), 1);
        EXPECT_THAT(user.Told(), Each(Not(HasSubstr("critical"))));
        EXPECT_EQ(Outside(), before);
        EXPECT_TRUE(test::Exists(trle / "script.dat"));
    }
}

TEST_F(HostileMarker, WithTwentyThousandEntriesIsWorkedThroughInSeconds) {
    std::string copied;
    for (int i = 0; i < 20'000; ++i)
        copied += (i == 0 ? "\\data\\f" : "|\\data\\f") + std::to_string(i) + ".tr4";
    MarkWith(copied, "");
    test::MakeFile(trle / "data" / "f19999.tr4", "last");
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(RemovePreviousLevel(2), 1);
    EXPECT_FALSE(test::Exists(trle / "data" / "f19999.tr4"));
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(30));
}

TEST_F(HostileMarker, MayHoldNulCharacters) {
    user.MayBeTold("I cann't delete file: C:\\trle");
    using namespace std::string_literals;
    WriteMarker("\0\0#LEVEL_CODE=0001#\0#LEVEL_NAME=City#\0#COPIED_FILES=\\a\0b.dat#"s);
    test::MakeFile(trle / "a", "mine");
    EXPECT_EQ(CurrentLevelCode(), 1);
    EXPECT_EQ(RemovePreviousLevel(2), 1);
    EXPECT_EQ(test::BytesOf(trle / "a"), "mine");
}

TEST_F(HostileMarker, OfNothingButTagsIsDamaged) {
    WriteMarker("#LEVEL_CODE=#LEVEL_NAME=#OVERWROTEN_FILES=#COPIED_FILES=");
    EXPECT_EQ(CurrentLevelCode(), 0);
    EXPECT_EQ(RemovePreviousLevel(2), -1);
    EXPECT_THAT(user.Told(),
                ElementsAre("critical: Configuration file \"C:\\trle\\Kelvash.txt\" is damaged\r\nIt will "
                            "not be possible recover correctly old level data"));
    EXPECT_FALSE(test::Exists(trle / "Kelvash.txt"));
}

TEST_F(HostileMarker, WithACodeOfNoLevelIsToldAndLeft) {
    const std::pair<const char*, const char*> codes[] = {{"99999999999999999999", "2147483647"},
                                                         {"-99999999999999999999", "-2147483648"},
                                                         {"-7", "-0007"},
                                                         {"0077", "0077"}};
    for (const auto& [code, folder] : codes) {
        SCOPED_TRACE(code);
        WriteMarker(std::string("#LEVEL_CODE=") + code + "#\r\n#COPIED_FILES=\\script.dat#\r\n");
        const test::FileMap before = Outside();
        user.Forget();
        EXPECT_NE(RemovePreviousLevel(2), 0);
        ASSERT_EQ(user.Told().size(), 1U);
        EXPECT_THAT(user.Told().front(),
                    HasSubstr(std::string("level folder [C:\\Levels\\LEVEL_") + folder + "]"));
        EXPECT_TRUE(test::Exists(trle / "Kelvash.txt"));
        EXPECT_TRUE(test::Exists(trle / "script.dat"));
        EXPECT_EQ(Outside(), before);
    }
}

TEST_F(HostileMarker, WithACodeThatIsNoNumberIsThatOfTheOriginal) {
    for (const char* code : {"abc", "..\\..", "0x1", "\xFF\xFE"}) {
        SCOPED_TRACE(code);
        WriteMarker(std::string("#LEVEL_CODE=") + code + "#\r\n#COPIED_FILES=\\script.dat#\r\n");
        EXPECT_EQ(CurrentLevelCode(), 0);
        EXPECT_EQ(RemovePreviousLevel(2), 0);
        EXPECT_TRUE(test::Exists(trle / "script.dat"));
        EXPECT_FALSE(test::Exists(trle / "Kelvash.txt"));
    }
}

TEST_F(HostileMarker, ThatIsAFolderCountsAsNone) {
    test::MakeFile(trle / "Kelvash.txt" / "inside", "mine");
    test::MakeFile(trle / "savegame.0", "original save");
    EXPECT_EQ(CurrentLevelCode(), 0);
    EXPECT_EQ(RemovePreviousLevel(2), 0);
    EXPECT_FALSE(InstallLevel(2));
    EXPECT_THAT(user.Told(),
                ElementsAre("critical: Error: I can't overwrite (or create) file: C:\\trle\\Kelvash.txt"));
    EXPECT_TRUE(InstallLevel(0));
    EXPECT_EQ(test::BytesOf(trle / "savegame.0"), "original save");
    EXPECT_EQ(test::BytesOf(trle / "Kelvash.txt" / "inside"), "mine");
}

TEST_F(HostileMarker, OfAnyBytesTouchesNothingOutside) {
    user.MayBeTold("I cann't find level folder");
    user.MayBeTold("Kelvash.txt\" is damaged");
    user.MayBeTold("I cann't delete file: C:\\trle");
    const std::string pieces[] = {"#LEVEL_CODE=",
                                  "#COPIED_FILES=",
                                  "#OVERWROTEN_FILES=",
                                  "#LEVEL_NAME=",
                                  "0001",
                                  "#\r\n",
                                  "|",
                                  "\\..",
                                  "\\",
                                  "x",
                                  "\\data\\",
                                  "C:",
                                  "/",
                                  std::string(1, '\0'),
                                  "#",
                                  "\\script.dat",
                                  "-",
                                  "\xE8"};
    std::mt19937 random(7);
    std::uniform_int_distribution<std::size_t> any(0, std::size(pieces) - 1);
    const test::FileMap before = Outside();
    for (int i = 0; i < 500; ++i) {
        std::string marker = i % 2 == 0 ? "#LEVEL_CODE=0001#" : "";
        for (int n = 0; n < 12; ++n)
            marker += pieces[any(random)];
        WriteMarker(marker);
        static_cast<void>(RemovePreviousLevel(2));
        ASSERT_EQ(Outside(), before) << marker;
    }
}

} // namespace
} // namespace kelvash::swap
