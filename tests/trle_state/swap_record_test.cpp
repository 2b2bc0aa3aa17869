#include "trle_state/swap_record.h"

#include <gmock/gmock.h>

#include "core/archive.h"
#include "core/profile.h"
#include "support/swap_home.h"
#include "trle_state/level_owner.h"

namespace kelvash::trle_state {
namespace {

namespace fs = std::filesystem;

class SwapRecordFile : public test::SwapHome {
  protected:
    SwapRecord Example() {
        SwapRecord record;
        record.Step = SwapStep::In;
        record.Owner = {"C:\\Levels\\LEVEL_0012", "..\\Levels\\LEVEL_0012", "City #1|", "00ff", 12};
        record.MarkerHash = "abc";
        record.Copied = {{"\\data\\#a,1:b|.tr4", {7, 1'600'000'000, "0f"}}};
        record.Overwritten = {{"\\script.dat", {3, 5, {}}, "C:\\Kelvash\\kept_files\\x"}};
        record.LeftCopied = {{"\\left.dat"}};
        record.LeftOverwritten = {{"\\left\nover.dat"}};
        record.Saves = {{"savegame.0", {9, 8, {}}}};
        return record;
    }
};

TEST_F(SwapRecordFile, HasALineForEachFieldWithItsLength) {
    const std::string bytes = EncodeSwapRecord(Example(), "C:\\tr#le");
    EXPECT_EQ(bytes.substr(0, bytes.find("end ")),
              "Kelvash swap record 1\n"
              "trle 8:C:\\tr#le,\n"
              "step 2:in,\n"
              "owner 20:C:\\Levels\\LEVEL_0012,20:..\\Levels\\LEVEL_0012,8:City #1|,4:00ff,2:12,\n"
              "marker 3:abc,\n"
              "copied 17:\\data\\#a,1:b|.tr4,1:7,10:1600000000,2:0f,0:,\n"
              "overwritten 11:\\script.dat,1:3,1:5,0:,23:C:\\Kelvash\\kept_files\\x,\n"
              "left-copied 9:\\left.dat,2:-1,1:0,0:,0:,\n"
              "left-overwritten 14:\\left\nover.dat,2:-1,1:0,0:,0:,\n"
              "save 10:savegame.0,1:9,1:8,0:,0:,\n");
}

TEST_F(SwapRecordFile, IsReadAsItWasWritten) {
    const std::string bytes = EncodeSwapRecord(Example(), "C:\\trle");
    const std::optional<SwapRecord> record = DecodeSwapRecord(bytes);
    ASSERT_TRUE(record.has_value());
    EXPECT_EQ(EncodeSwapRecord(*record, "C:\\trle"), bytes);
    EXPECT_EQ(record->Copied.front().Target, "\\data\\#a,1:b|.tr4");
    EXPECT_EQ(record->Owner.Code, 12);
}

TEST_F(SwapRecordFile, CutAtAnyLengthIsDamaged) {
    const std::string bytes = EncodeSwapRecord(Example(), "C:\\trle");
    for (std::size_t length = 0; length < bytes.size(); ++length)
        EXPECT_FALSE(DecodeSwapRecord(bytes.substr(0, length)).has_value()) << length;
    EXPECT_FALSE(DecodeSwapRecord(bytes + "x").has_value());
}

TEST_F(SwapRecordFile, WithAnyByteChangedIsDamaged) {
    const std::string bytes = EncodeSwapRecord(Example(), "C:\\trle");
    for (std::size_t at = 0; at < bytes.size(); ++at) {
        std::string changed = bytes;
        changed[at] = static_cast<char>(changed[at] ^ 1);
        EXPECT_FALSE(DecodeSwapRecord(changed).has_value()) << at;
    }
}

TEST_F(SwapRecordFile, WithALengthThatLiesIsDamaged) {
    for (const char* line :
         {"trle 99999999999999999999:x,\n", "trle 18446744073709551615:x,\n", "trle -1:x,\n", "trle 2:x,\n",
          "trle :x,\n", "trle 1x", "copied 1:a,\n", "step 3:out,\n"})
        EXPECT_FALSE(DecodeSwapRecord(std::string("Kelvash swap record 1\n") + line).has_value()) << line;
}

TEST_F(SwapRecordFile, IsOneForEachTrleFolder) {
    const std::string path = SwapRecordPath();
    EXPECT_TRUE(path.starts_with("C:\\Kelvash\\Swap_"));
    EXPECT_TRUE(path.ends_with(".rec"));
    core::profile.TrleFolder = "c:\\TRLE ";
    EXPECT_EQ(SwapRecordPath(), path);
    core::profile.TrleFolder = "C:\\Song #1";
    EXPECT_NE(SwapRecordPath(), path);
}

TEST_F(SwapRecordFile, ThatIsDamagedIsToldFromNone) {
    EXPECT_EQ(ReadSwapRecord().State, RecordState::None);
    ASSERT_TRUE(WriteSwapRecord(Example()));
    EXPECT_EQ(ReadSwapRecord().State, RecordState::Good);
    for (const fs::directory_entry& entry : fs::directory_iterator(home))
        if (entry.path().extension() == ".rec") test::MakeFile(entry.path(), "");
    EXPECT_EQ(ReadSwapRecord().State, RecordState::Damaged);
}

TEST_F(SwapRecordFile, NamesTheFormerPlaceOnlyDuringAMove) {
    SwapRecord record = Example();
    record.Owner.Former = "C:\\Old\\LEVEL_0012";
    const std::string bytes = EncodeSwapRecord(record, "C:\\trle");
    EXPECT_THAT(bytes, testing::HasSubstr(",2:12,\nformer 17:C:\\Old\\LEVEL_0012,\n"));
    EXPECT_EQ(DecodeSwapRecord(bytes)->Owner.Former, "C:\\Old\\LEVEL_0012");
    EXPECT_EQ(DecodeSwapRecord(EncodeSwapRecord(Example(), "C:\\trle"))->Owner.Former, "");
}

class Owner : public test::SwapHome {
  protected:
    Owner() {
        AddLevel(1, "City", {{"city.tr4", "CITY"}});
        test::MakeFile(LevelPath(1) / "tr4.inf", "the city's files");
    }
};

TEST_F(Owner, IsTheLevelsFolder) {
    const LevelOwner owner = OwnerOf(core::PlaceOf(1));
    EXPECT_EQ(owner.Folder, "C:\\Levels\\LEVEL_0001");
    EXPECT_EQ(owner.FromHome, "..\\Levels\\LEVEL_0001");
    EXPECT_EQ(FindOwnerFolder(owner), "C:\\Levels\\LEVEL_0001");
    EXPECT_EQ(CodeOfFolder("C:\\LEVELS\\level_0001"), 1);
    EXPECT_EQ(CodeOfFolder("C:\\Other\\LEVEL_0001"), kNoLevel);
    EXPECT_EQ(CodeOfFolder("C:\\Kelvash\\LEVEL_0000"), 0);
}

TEST_F(Owner, IsFoundFromTheApplicationsFolderOn) {
    LevelOwner owner = OwnerOf(core::PlaceOf(1));
    owner.Folder = "E:\\Levels\\LEVEL_0001"; // the drive had another letter
    EXPECT_EQ(FindOwnerFolder(owner), "C:\\Levels\\LEVEL_0001");
}

TEST_F(Owner, IsKnownAgainByItsTr4Info) {
    const LevelOwner owner = OwnerOf(core::PlaceOf(1));
    AddLevel(7, "Recovered", {});
    fs::rename(LevelPath(1) / "tr4.inf", LevelPath(7) / "tr4.inf");
    fs::remove_all(LevelPath(1));
    EXPECT_EQ(FindOwnerFolder(owner), "C:\\Levels\\LEVEL_0007");
}

TEST_F(Owner, IsNotAnotherLevelInItsPlace) {
    const LevelOwner owner = OwnerOf(core::PlaceOf(1));
    test::MakeFile(LevelPath(1) / "tr4.inf", "other files");
    EXPECT_EQ(FindOwnerFolder(owner), "");
    fs::remove_all(LevelPath(1));
    EXPECT_EQ(FindOwnerFolder(owner), "");
}

} // namespace
} // namespace kelvash::trle_state
