#include "core/archive_file.h"

#include <gmock/gmock.h>

#include "core/archive_file_home.h"
#include "support/format_test.h"
#include "support/record_bytes.h"
#include "support/test_home.h"

namespace kelvash::core {
namespace {

using test::Blanks;
using test::BytesOf;
using test::Literal;
using test::MakeFile;
using test::Put;

namespace fs = std::filesystem;

TEST_F(ArchiveFile, HasTheseBytesForTwoLevels) {
    ASSERT_TRUE(WriteArchiveFile(kPath, TwoLevels()));
    const std::string bytes = BytesOf(file);
    EXPECT_EQ(bytes.size(), 3814U);
    EXPECT_EQ(bytes.substr(0, 546), HeaderBytes());
    EXPECT_EQ(bytes.substr(546, 1634), FirstLevelBytes());
    EXPECT_EQ(bytes.substr(2180), SecondLevelBytes());
}

TEST_F(ArchiveFile, GivesEveryFieldOfTheseBytes) {
    const ArchiveContents contents = Read(TwoLevelBytes());
    EXPECT_EQ(contents.Header.Version, 1);
    EXPECT_EQ(contents.Header.MainFolder, "C:\\LevelFolder");
    EXPECT_EQ(contents.Header.SecondaryFolder, "C:\\LevelFolder");
    EXPECT_EQ(contents.Table.Size(), 2);
    EXPECT_EQ(contents.Header.CdCount, 3);
    EXPECT_TRUE(contents.Header.CompressFiles);
    EXPECT_FALSE(contents.Header.EncodeWavInMp3);
    EXPECT_TRUE(contents.Header.CdInstallPending);
    EXPECT_EQ(contents.Header.MainFolderSize, 1.5);
    EXPECT_EQ(contents.Header.SecondaryFolderSize, -2.0);
    const LevelRecord& level = contents.Table[0];
    EXPECT_EQ(level.Name, "Caf\xC3\xA9 \xE2\x82\xAC");
    EXPECT_EQ(level.Note, "Choose the second entry");
    EXPECT_EQ(level.Author, "A. Uthor");
    EXPECT_EQ(level.Emails, Literal("a@b.com\0c@d.org"));
    EXPECT_EQ(level.Sites, Literal("http://one\0http://two\0http://three"));
    EXPECT_EQ(level.AuthorNote, "A note");
    EXPECT_EQ(level.Code, 12);
    EXPECT_EQ(level.CdNumber, 1);
    EXPECT_EQ(level.MoreInfoFile, "readme.htm");
    EXPECT_EQ(level.FilesSize, 1048576);
    EXPECT_EQ(level.SavesSize, -2);
    EXPECT_TRUE(level.RecountSaves);
    EXPECT_EQ(contents.Table[1].Name, "Plain");
    EXPECT_EQ(contents.Table[1].Code, 9999);
    EXPECT_FALSE(contents.Table[1].RecountSaves);
}

TEST_F(ArchiveFile, WithOneLevelHas2180Bytes) {
    ArchiveContents contents = TwoLevels();
    contents.Table.Remove(1);
    ASSERT_TRUE(WriteArchiveFile(kPath, contents));
    EXPECT_EQ(fs::file_size(file), 2180U);
}

TEST_F(ArchiveFile, WithoutLevelsIsTheHeaderAlone) {
    ASSERT_TRUE(WriteArchiveFile(kPath, ArchiveContents()));
    EXPECT_EQ(fs::file_size(file), 546U);
    EXPECT_EQ(Read(BytesOf(file)).Table.Size(), 0);
}

TEST_F(ArchiveFile, BlankPadsAndTrimsAtBothEnds) {
    std::string bytes = TwoLevelBytes();
    Put(bytes, 2180, "   Padded in front   ");
    EXPECT_EQ(Read(bytes).Table[1].Name, "Padded in front");
}

TEST_F(ArchiveFile, CutsALongTextAtItsWidth) {
    ArchiveContents contents = TwoLevels();
    contents.Table.Edit(0)->Author = std::string(80, 'x') + "yz";
    contents.Table.Edit(0)->Emails = "e";
    ASSERT_TRUE(WriteArchiveFile(kPath, contents));
    EXPECT_EQ(BytesOf(file).substr(546 + 512, 82), std::string(80, 'x') + "e ");
    EXPECT_EQ(Read(BytesOf(file)).Table[0].Author, std::string(80, 'x'));
}

TEST_F(ArchiveFile, CountsTheWidthInBytesOfTheCodePage) {
    ArchiveContents contents = TwoLevels();
    contents.Table.Edit(1)->Name.clear();
    for (int i = 0; i < 300; ++i)
        contents.Table.Edit(1)->Name += "\xC3\xA9";
    contents.Table.Edit(1)->Note = "next";
    ASSERT_TRUE(WriteArchiveFile(kPath, contents));
    EXPECT_EQ(BytesOf(file).substr(2180, 261), std::string(256, '\xE9') + "next ");
}

TEST_F(ArchiveFile, PutsAQuestionMarkForWhatTheCodePageLacks) {
    ArchiveContents contents = TwoLevels();
    contents.Table.Edit(1)->Name = "\xE6\x97\xA5\xE6\x9C\xAC \xC5\xBD";
    ASSERT_TRUE(WriteArchiveFile(kPath, contents));
    EXPECT_EQ(BytesOf(file).substr(2180, 6), "?? \x8E  ");
}

TEST_F(ArchiveFile, GivesEveryByteOfTheCodePageBack) {
    std::string name;
    for (int code = 1; code < 256; ++code)
        name += static_cast<char>(code);
    std::string bytes = TwoLevelBytes();
    Put(bytes, 2180, name);
    const ArchiveContents contents = Read(bytes);
    ASSERT_TRUE(WriteArchiveFile(kPath, contents));
    EXPECT_EQ(BytesOf(file).substr(2180, 256), name + " ");
}

TEST_F(ArchiveFile, TakesAnyBooleanButZeroAsTrueAndWritesMinusOne) {
    std::string bytes = TwoLevelBytes();
    Put(bytes, 526, Literal("\x01\x00"));
    const ArchiveContents contents = Read(bytes);
    EXPECT_TRUE(contents.Header.EncodeWavInMp3);
    ASSERT_TRUE(WriteArchiveFile(kPath, contents));
    EXPECT_EQ(BytesOf(file).substr(526, 2), "\xFF\xFF");
}

TEST_F(ArchiveFile, DoesNotTestTheVersionAndWritesItAsOne) {
    std::string bytes = TwoLevelBytes();
    Put(bytes, 0, Literal("\x63\x00\x00\x00"));
    const ArchiveContents contents = Read(bytes);
    EXPECT_EQ(contents.Table.Size(), 2);
    ASSERT_TRUE(WriteArchiveFile(kPath, contents));
    EXPECT_EQ(BytesOf(file), TwoLevelBytes());
}

TEST_F(ArchiveFile, KeepsItsLengthAndItsTailWhenTheTableGetsShorter) {
    ArchiveContents contents = TwoLevels();
    ASSERT_TRUE(WriteArchiveFile(kPath, contents));
    contents.Table.Remove(0);
    ASSERT_TRUE(WriteArchiveFile(kPath, contents));
    std::string expected = HeaderBytes() + SecondLevelBytes() + SecondLevelBytes();
    Put(expected, 516, "\x01");
    EXPECT_EQ(BytesOf(file), expected);
    const ArchiveContents loaded = Read(expected);
    EXPECT_EQ(loaded.Table.Size(), 1);
    EXPECT_EQ(loaded.Table[0].Code, 9999);
}

TEST_F(ArchiveFile, KeepsALongTailOfAnyBytes) {
    const std::string tail = std::string(500000, 'T') + "the end";
    MakeFile(file, TwoLevelBytes() + tail);
    ASSERT_TRUE(WriteArchiveFile(kPath, TwoLevels()));
    EXPECT_EQ(BytesOf(file), TwoLevelBytes() + tail);
}

TEST_F(ArchiveFile, HoldsManyLevelsInTheOrderOfTheTable) {
    constexpr std::int32_t kLevels = 1000; // several blocks
    ArchiveContents contents;
    for (std::int32_t i = 0; i < kLevels; ++i) {
        LevelRecord level;
        level.Code = kLevels - i;
        contents.Table.Append(level);
    }
    ASSERT_TRUE(WriteArchiveFile(kPath, contents));
    const std::string bytes = BytesOf(file);
    ASSERT_EQ(bytes.size(), 546U + 1634U * 1000U);
    EXPECT_EQ(bytes.substr(546 + 1634 * 999 + 1360, 4), Literal("\x01\x00\x00\x00"));
    const ArchiveContents loaded = Read(bytes);
    ASSERT_EQ(loaded.Table.Size(), 1000);
    for (std::int32_t i = 0; i < kLevels; ++i)
        ASSERT_EQ(loaded.Table[i].Code, kLevels - i);
}

TEST_F(ArchiveFile, TruncatedAtAnyLengthLeavesTheRestBlank) {
    const std::string whole = TwoLevelBytes();
    for (std::size_t length = 0; length < whole.size(); ++length) {
        const std::string bytes = whole.substr(0, length);
        std::size_t given = 0;
        const ArchiveContents contents = DecodeArchive([&](std::size_t size) {
            const std::string_view piece = std::string_view(bytes).substr(given, size);
            given += piece.size();
            return piece;
        });
        const std::int32_t levels = length <= 546 ? 0 : length <= 2180 ? 1 : 2;
        ASSERT_EQ(contents.Table.Size(), levels) << length;
        ASSERT_EQ(contents.Header.Version, length < 4 ? 0 : 1) << length;
        ASSERT_EQ(contents.Header.CdCount, length < 524 ? 0 : 3) << length;
        ASSERT_EQ(contents.Header.SecondaryFolder, length < 516 ? "" : "C:\\LevelFolder") << length;
        ASSERT_EQ(contents.Header.SecondaryFolderSize, length < 546 ? 0 : -2) << length;
        const bool first = length >= 546 + 1364;
        if (levels == 0) continue;
        ASSERT_EQ(contents.Table[0].Code, first ? 12 : 0) << length;
        ASSERT_EQ(contents.Table[0].RecountSaves, length >= 2180) << length;
    }
}

TEST(ArchiveFormat, WithstandsCutsAndLies) {
    test::ExpectFormat<ArchiveContents>(
        {.bytes = TwoLevelBytes(),
         .decode = [](std::string_view bytes) -> std::optional<ArchiveContents> {
             return DecodeArchive([&](std::size_t size) {
                 const std::string_view piece = bytes.substr(0, size);
                 bytes.remove_prefix(piece.size());
                 return piece;
             });
         },
         .encode =
             [](const ArchiveContents& contents) {
                 std::string bytes;
                 EXPECT_TRUE(EncodeArchive(contents, [&](std::string_view piece) {
                     bytes += piece;
                     return true;
                 }));
                 return bytes;
             },
         .takes_cut = [](std::size_t) { return true; },
         .counts = {{516, 4,
                     [](const ArchiveContents& contents) {
                         return static_cast<std::size_t>(contents.Table.Size());
                     },
                     2}}});
}

TEST_F(ArchiveFile, OfNoBytesHasNoLevels) {
    const ArchiveContents contents = Read({});
    EXPECT_EQ(contents.Table.Size(), 0);
    EXPECT_EQ(contents.Header.Version, 0);
    EXPECT_EQ(contents.Header.MainFolder, "");
}

TEST_F(ArchiveFile, WithALyingLevelCountGivesWhatIsThere) {
    for (const std::string& lie :
         {Literal("\xFF\xFF\xFF\x7F"), Literal("\x00\x00\x00\x40"), Literal("\x03\x00\x00\x00")}) {
        std::string bytes = TwoLevelBytes();
        Put(bytes, 516, lie);
        const ArchiveContents contents = Read(bytes);
        EXPECT_EQ(contents.Table.Size(), 2);
        EXPECT_EQ(contents.Table[1].Code, 9999);
    }
}

TEST_F(ArchiveFile, SpendsNoMemoryOnALyingLevelCount) {
    std::string bytes = TwoLevelBytes();
    Put(bytes, 516, Literal("\xFF\xFF\xFF\x7F"));
    std::string_view left = bytes;
    std::size_t largest = 0;
    DecodeArchive([&](std::size_t size) {
        largest = std::max(largest, size);
        const std::string_view piece = left.substr(0, size);
        left.remove_prefix(piece.size());
        return piece;
    });
    EXPECT_LE(largest, 128U * 1634U);
}

TEST_F(ArchiveFile, WithANegativeLevelCountHasNoLevels) {
    for (const std::string& lie : {Literal("\xFF\xFF\xFF\xFF"), Literal("\x00\x00\x00\x80")}) {
        std::string bytes = TwoLevelBytes();
        Put(bytes, 516, lie);
        EXPECT_EQ(Read(bytes).Table.Size(), 0);
    }
}

TEST_F(ArchiveFile, ThatIsMissingOrAFolderCannotBeRead) {
    ArchiveContents contents = TwoLevels();
    EXPECT_FALSE(ReadArchiveFile("C:\\Kelvash\\missing.kva", contents));
    EXPECT_FALSE(ReadArchiveFile("", contents));
    EXPECT_FALSE(ReadArchiveFile("Q:\\a.kva", contents));
    fs::create_directory(home / "folder.kva");
    EXPECT_FALSE(ReadArchiveFile("C:\\Kelvash\\folder.kva", contents));
    EXPECT_EQ(contents.Table.Size(), 2) << "what was there is untouched";
}

TEST_F(ArchiveFile, IsNotWrittenOverAFolder) {
    fs::create_directory(file);
    EXPECT_FALSE(WriteArchiveFile(kPath, TwoLevels()));
    EXPECT_TRUE(fs::is_directory(file));
    EXPECT_FALSE(WriteArchiveFile("C:\\missing\\a.kva", TwoLevels()));
    EXPECT_FALSE(WriteArchiveFile("", TwoLevels()));
}

TEST_F(ArchiveFile, IsFoundWithoutRegardToCase) {
    MakeFile(home / "Mixed.KVA", TwoLevelBytes());
    ArchiveContents contents;
    EXPECT_TRUE(ReadArchiveFile("c:\\kelvash\\mixed.kva", contents));
    EXPECT_EQ(contents.Table.Size(), 2);
}

TEST_F(ArchiveFile, LeavesNothingBesideIt) {
    ASSERT_TRUE(WriteArchiveFile(kPath, TwoLevels()));
    int entries = 0;
    for ([[maybe_unused]] const auto& entry : fs::directory_iterator(home))
        ++entries;
    EXPECT_EQ(entries, fs::exists(home / "drive_c") ? 2 : 1);
}

} // namespace
} // namespace kelvash::core
