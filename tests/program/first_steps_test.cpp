#include "program/first_steps.h"

#include <gmock/gmock.h>

#include "program/end.h"
#include "program/start_up.h"
#include "program/start_up_home.h"
#include "support/format_test.h"
#include "support/record_bytes.h"

namespace kelvash::program {
namespace {

using test::Blanks;
using test::BytesOf;
using test::Exists;
using test::kFull;
using test::kNewFolder;
using test::kOriginal;
using test::Literal;
using test::MakeFile;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;

namespace fs = std::filesystem;

std::string Bytes(char step, const std::string& folder) {
    return std::string(1, step) + Literal("\0\0\0") + folder + Blanks(256 - folder.size());
}

TEST(FirstStepsRecord, HasTheseBytes) {
    test::ExpectFormat<FirstSteps>(
        {.bytes = Bytes('\2', "C:\\trl\xE9"), .decode = &DecodeFirstSteps, .encode = &EncodeFirstSteps});
    const std::optional<FirstSteps> steps = DecodeFirstSteps(Bytes('\2', "C:\\trl\xE9"));
    ASSERT_TRUE(steps.has_value());
    EXPECT_EQ(steps->Step, 2);
    EXPECT_EQ(steps->TrleFolder, "C:\\trl\xC3\xA9");
}

TEST(FirstStepsRecord, OfAStepThatThereIsntIsNone) {
    EXPECT_FALSE(DecodeFirstSteps(Bytes('\0', "C:\\trle")).has_value());
    EXPECT_FALSE(DecodeFirstSteps(Bytes('\4', "C:\\trle")).has_value());
    EXPECT_FALSE(DecodeFirstSteps(Bytes('\2', "C:\\trle") + "x").has_value());
    EXPECT_FALSE(DecodeFirstSteps("").has_value());
}

// As the window starts.
class BrokenOffStart : public test::StartUpHome {
  protected:
    std::vector<FirstStep> Start() {
        std::vector<FirstStep> told;
        StartUp("", [&told](FirstStep step) { told.push_back(step); });
        return told;
    }
    std::string Kept() const {
        return Exists(home / "first_start.prf") ? BytesOf(home / "first_start.prf") : "";
    }
};

TEST_F(BrokenOffStart, IsKeptStepByStep) {
    std::vector<std::string> kept;
    WillMakeAFirstArchive();
    StartUp("", [&](FirstStep) { kept.push_back(Kept()); });
    EXPECT_THAT(kept, ElementsAre(Bytes('\1', ""), Bytes('\2', "C:\\trle"), Bytes('\3', "C:\\trle"), ""));
    EXPECT_FALSE(Exists(home / "first_start.prf"));
}

// A kill from then on loses nothing, and one before still goes on with the first start.
TEST_F(BrokenOffStart, IsOverOnlyWhenTheProfileIsWritten) {
    WillMakeAFirstArchive();
    StartUp("");
    EXPECT_EQ(fs::file_size(home / "Kelvash.prf"), 1588U);
    EXPECT_THAT(BytesOf(home / "Kelvash.prf"), HasSubstr("C:\\Kelvash\\LevelArchive.kva "));
    EXPECT_THAT(BytesOf(home / "Kelvash.prf"), HasSubstr("C:\\trle "));
}

TEST_F(BrokenOffStart, GoesOnWhereTheProfileCannotBeWritten) {
    fs::create_directory(home / "Kelvash.prf.new");
    WillMakeAFirstArchive();
    Start();
    EXPECT_EQ(Kept(), Bytes('\3', "C:\\trle"));
}

// Of a program that was killed before there is no profile.
TEST_F(BrokenOffStart, GoesOnInTheFolderThatWasChosen) {
    MakeFile(home / "first_start.prf", Bytes('\2', "C:\\trle"));
    user.WillAnswer(kOriginal, "yes");
    user.WillAnswer(kFull, "no");
    WillChooseToMakeOne(true);
    user.WillAnswer(kNewFolder, "C:\\Levels");
    EXPECT_THAT(Start(),
                ElementsAre(FirstStep::TrleFolder, FirstStep::Backup, FirstStep::Archive, FirstStep::Over));
    EXPECT_THAT(user.Asked(),
                ElementsAre(StartsWith(kOriginal), StartsWith(kFull), "Dialog_NewArc", kNewFolder));
    EXPECT_EQ(core::profile.TrleFolder, "C:\\trle");
    EXPECT_FALSE(Exists(home / "first_start.prf"));
}

// An Archive on the command line had been its start's: the next one doesn't take that for a later start.
TEST_F(BrokenOffStart, IsGuidedThoughAnArchiveIsKnown) {
    LiveIn();
    MakeFile(home / "first_start.prf", Bytes('\2', "C:\\trle"));
    EXPECT_THAT(Start(),
                ElementsAre(FirstStep::TrleFolder, FirstStep::Backup, FirstStep::Archive, FirstStep::Over));
    EXPECT_FALSE(Exists(home / "first_start.prf"));
}

TEST_F(BrokenOffStart, IsStillOneWhenAStepIsGivenUp) {
    WillFindTrle();
    user.WillAnswer(kOriginal, "no");
    Start();
    EXPECT_THAT(user.Told(), testing::SizeIs(2)); // why there is no backup
    EXPECT_EQ(Kept(), Bytes('\2', "C:\\trle"));
}

TEST_F(BrokenOffStart, EndsWithAStartThatShowsNoPage) {
    LiveIn();
    MakeFile(home / "first_start.prf", Bytes('\3', "C:\\trle"));
    StartUp("");
    EXPECT_FALSE(Exists(home / "first_start.prf"));
}

TEST_F(BrokenOffStart, OfADamagedRecordIsNone) {
    LiveIn();
    MakeFile(home / "first_start.prf", "\2");
    EXPECT_TRUE(Start().empty());
    EXPECT_TRUE(core::ArchiveIsOpen());
}

} // namespace
} // namespace kelvash::program
