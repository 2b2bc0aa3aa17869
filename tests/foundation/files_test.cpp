#include "foundation/files.h"

#include <gmock/gmock.h>

#include <fstream>

#include "foundation/drives.h"
#include "foundation/known_names.h"
#include "support/foundation_home.h"

namespace kelvash {
namespace {

namespace fs = std::filesystem;
using test::BytesOf;
using test::Exists;
using test::MakeFile;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::int64_t kOldTime = 1000000000; // 2001-09-09 01:46:40 UTC

class Files : public test::FoundationHome {
  protected:
    static void MakeReadOnly(const fs::path& file) {
        const auto write = fs::perms::owner_write | fs::perms::group_write | fs::perms::others_write;
        fs::permissions(file, write, fs::perm_options::remove);
    }
};

TEST_F(Files, AFileExistsOnlyAsAFile) {
    MakeFile(drive / "a.txt", "x");
    EXPECT_TRUE(FileExists("C:\\a.txt"));
    EXPECT_TRUE(FileExists("C:\\A.TXT"));
    EXPECT_FALSE(FileExists("C:\\b.txt"));
    EXPECT_FALSE(FileExists("C:\\Kelvash"));
    EXPECT_FALSE(FileExists(""));
    EXPECT_FALSE(FileExists("   "));
    EXPECT_FALSE(FileExists("a.txt"));
    EXPECT_FALSE(FileExists("Q:\\a.txt"));
    EXPECT_FALSE(FileExists(std::string_view("C:\\a.txt\0", 9)));
}

TEST_F(Files, AFolderExistsOnlyAsAFolder) {
    MakeFile(drive / "a.txt", "x");
    EXPECT_TRUE(FolderExists("C:\\Kelvash"));
    EXPECT_TRUE(FolderExists("C:"));
    EXPECT_FALSE(FolderExists("C:\\a.txt"));
    EXPECT_FALSE(FolderExists("C:\\none"));
    EXPECT_FALSE(FolderExists(""));
}

TEST_F(Files, AnyFileLooksAtFilesOnly) {
    fs::create_directory(drive / "x.tr4");
    EXPECT_FALSE(AnyFile("C:", "*.tr4"));
    MakeFile(drive / "y.TR4", "");
    EXPECT_TRUE(AnyFile("C:", "*.tr4"));
    EXPECT_FALSE(AnyFile("C:\\none", "*"));
}

TEST_F(Files, CreateFolderMakesOneLevel) {
    EXPECT_TRUE(CreateFolder("C:\\new"));
    EXPECT_TRUE(fs::is_directory(drive / "new"));
    EXPECT_TRUE(CreateFolder("C:\\new"));
    EXPECT_TRUE(CreateFolder("C:\\NEW"));
    EXPECT_FALSE(CreateFolder("C:\\a\\b"));
    EXPECT_FALSE(Exists(drive / "a"));
    MakeFile(drive / "file", "");
    EXPECT_FALSE(CreateFolder("C:\\file"));
    EXPECT_FALSE(CreateFolder("Q:\\x"));
    EXPECT_FALSE(CreateFolder(""));
}

TEST_F(Files, DeleteFileTakesReadOnlyAndMissingOnes) {
    MakeFile(drive / "a.txt", "x");
    MakeReadOnly(drive / "a.txt");
    EXPECT_TRUE(DeleteFile("C:\\a.txt"));
    EXPECT_FALSE(Exists(drive / "a.txt"));
    EXPECT_TRUE(DeleteFile("C:\\a.txt"));
    EXPECT_TRUE(DeleteFile("C:\\none\\a.txt"));
    EXPECT_FALSE(DeleteFile("C:\\Kelvash"));
    EXPECT_TRUE(Exists(home));
}

TEST_F(Files, CopyFileKeepsBytesAndTime) {
    std::string bytes(3000000, 'x');
    for (std::size_t i = 0; i < bytes.size(); i += 7)
        bytes[i] = static_cast<char>(i * 31);
    MakeFile(drive / "a.bin", bytes);
    ASSERT_TRUE(SetFileDate("C:\\a.bin", kOldTime));
    EXPECT_TRUE(CopyFile("C:\\a.bin", "C:\\Kelvash\\b.bin"));
    EXPECT_EQ(BytesOf(home / "b.bin"), bytes);
    EXPECT_EQ(FileTime("C:\\Kelvash\\b.bin"), kOldTime);
}

TEST_F(Files, CopyFileReplacesAReadOnlyDestination) {
    MakeFile(drive / "a.txt", "new");
    MakeFile(drive / "b.txt", "old and longer");
    MakeReadOnly(drive / "b.txt");
    EXPECT_TRUE(CopyFile("C:\\a.txt", "C:\\b.txt"));
    EXPECT_EQ(BytesOf(drive / "b.txt"), "new");
}

TEST_F(Files, ACopyOfAReadOnlyFileIsReadOnlyAndCanBeReplaced) {
    MakeFile(drive / "a.txt", "one");
    MakeReadOnly(drive / "a.txt");
    ASSERT_TRUE(CopyFile("C:\\a.txt", "C:\\b.txt"));
    EXPECT_EQ(fs::status(drive / "b.txt").permissions() & fs::perms::owner_write, fs::perms::none);
    EXPECT_TRUE(CopyFile("C:\\a.txt", "C:\\b.txt"));
    EXPECT_EQ(BytesOf(drive / "b.txt"), "one");
    EXPECT_TRUE(ClearReadOnly("C:\\b.txt"));
    EXPECT_NE(fs::status(drive / "b.txt").permissions() & fs::perms::owner_write, fs::perms::none);
    EXPECT_FALSE(ClearReadOnly("C:\\none"));
}

TEST_F(Files, CopyFileCopiesEmptyFiles) {
    MakeFile(drive / "a.txt", "");
    EXPECT_TRUE(CopyFile("C:\\a.txt", "C:\\b.txt"));
    EXPECT_EQ(BytesOf(drive / "b.txt"), "");
}

TEST_F(Files, CopyFileFailsWithoutASourceOrAPlace) {
    EXPECT_FALSE(CopyFile("C:\\none.txt", "C:\\b.txt"));
    EXPECT_FALSE(Exists(drive / "b.txt"));
    MakeFile(drive / "a.txt", "x");
    EXPECT_FALSE(CopyFile("C:\\a.txt", "C:\\none\\b.txt"));
    EXPECT_FALSE(CopyFile("C:\\a.txt", "C:\\Kelvash"));
    EXPECT_FALSE(CopyFile("C:\\Kelvash", "C:\\b.txt"));
    EXPECT_FALSE(CopyFile("C:\\a.txt", "Q:\\b.txt"));
    EXPECT_TRUE(Exists(home));
}

TEST_F(Files, CopyFileOntoItselfLosesNothing) {
    MakeFile(drive / "a.txt", "x");
    EXPECT_TRUE(CopyFile("C:\\a.txt", "C:\\A.txt"));
    EXPECT_EQ(BytesOf(drive / "a.txt"), "x");
}

TEST_F(Files, CopyFileWholeKeepsTheOldFileWhenItFails) {
    MakeFile(drive / "b.txt", "old");
    EXPECT_FALSE(CopyFileWhole("C:\\none.txt", "C:\\b.txt"));
    EXPECT_EQ(BytesOf(drive / "b.txt"), "old");
    MakeFile(drive / "a.txt", "new");
    MakeFile(drive / "folder" / "x", "");
    EXPECT_FALSE(CopyFileWhole("C:\\a.txt", "C:\\folder"));
    EXPECT_FALSE(Exists(drive / "Kelvash.tmp"));
}

TEST_F(Files, CopyFileWholeReplaces) {
    MakeFile(drive / "a.txt", "new");
    MakeFile(drive / "b.txt", "old");
    MakeReadOnly(drive / "b.txt");
    EXPECT_TRUE(CopyFileWhole("C:\\a.txt", "C:\\b.txt"));
    EXPECT_EQ(BytesOf(drive / "b.txt"), "new");
    EXPECT_FALSE(Exists(drive / "Kelvash.tmp"));
}

TEST_F(Files, AFolderTakesNoFilesPlace) {
    MakeFile(drive / "folder/in it.txt", "x");
    MakeFile(drive / "file.txt", "y");
    EXPECT_FALSE(RenameFile("C:\\folder", "C:\\file.txt"));
    EXPECT_EQ(BytesOf(drive / "file.txt"), "y");
    EXPECT_TRUE(FileExists("C:\\folder\\in it.txt"));
}

TEST_F(Files, RenameFileReplaces) {
    MakeFile(drive / "a.txt", "a");
    MakeFile(drive / "b.txt", "b");
    EXPECT_TRUE(RenameFile("C:\\a.txt", "C:\\b.txt"));
    EXPECT_FALSE(Exists(drive / "a.txt"));
    EXPECT_EQ(BytesOf(drive / "b.txt"), "a");
    EXPECT_FALSE(RenameFile("C:\\a.txt", "C:\\c.txt"));
}

TEST_F(Files, ReadingTellsAnErrorFromAnEmptyFile) {
    MakeFile(drive / "empty", "");
    MakeFile(drive / "a.bin", std::string_view("a\0\r\n\xFF", 5));
    EXPECT_EQ(ReadFileBytes("C:\\empty"), "");
    EXPECT_EQ(ReadFileBytes("C:\\a.bin"), std::string("a\0\r\n\xFF", 5));
    EXPECT_EQ(ReadFileBytes("C:\\none"), std::nullopt);
    EXPECT_EQ(ReadFileBytes("C:\\Kelvash"), std::nullopt);
    EXPECT_EQ(ReadWholeFile("C:\\none"), "");
    EXPECT_EQ(ReadWholeFile("C:\\a.bin"), std::string("a\0\r\n\xFF", 5));
}

TEST_F(Files, ReadFileStartStopsAtTheLimit) {
    const std::string bytes(200000, 'y');
    MakeFile(drive / "big", bytes);
    EXPECT_EQ(ReadFileStart("C:\\big", 3), "yyy");
    EXPECT_EQ(ReadFileStart("C:\\big", 0), "");
    EXPECT_EQ(ReadFileStart("C:\\big", 70000), std::string(70000, 'y'));
    EXPECT_EQ(ReadFileStart("C:\\big", 9999999), bytes);
    EXPECT_EQ(ReadFileStart("C:\\none", 3), std::nullopt);
}

TEST_F(Files, WriteTextFileAddsALineEnd) {
    EXPECT_TRUE(WriteTextFile("C:\\a.txt", "one\r\ntwo"));
    EXPECT_EQ(BytesOf(drive / "a.txt"), "one\r\ntwo\r\n");
    EXPECT_TRUE(WriteTextFile("C:\\a.txt", ""));
    EXPECT_EQ(BytesOf(drive / "a.txt"), "\r\n");
    EXPECT_FALSE(WriteTextFile("C:\\none\\a.txt", "x"));
    EXPECT_FALSE(WriteTextFile("C:\\Kelvash", "x"));
}

TEST_F(Files, ReplaceFileBytesReplacesTheWhole) {
    MakeFile(drive / "a.bin", "a long old content");
    EXPECT_TRUE(ReplaceFileBytes("C:\\A.BIN", "new", Flush::Yes));
    EXPECT_EQ(BytesOf(drive / "a.bin"), "new");
    EXPECT_FALSE(Exists(drive / "a.bin.new"));
    EXPECT_TRUE(ReplaceFileBytes("C:\\b.bin", "", Flush::No));
    EXPECT_EQ(BytesOf(drive / "b.bin"), "");
}

TEST_F(Files, ReplaceFileBytesKeepsTheOldFileWhenTheProducerStops) {
    MakeFile(drive / "a.bin", "old");
    const auto produce = [](const WritePiece& write) { return write("half") && false; };
    EXPECT_FALSE(ReplaceFileBytes("C:\\a.bin", produce, Flush::No));
    EXPECT_EQ(BytesOf(drive / "a.bin"), "old");
    EXPECT_FALSE(Exists(drive / "a.bin.new"));
}

TEST_F(Files, ReplaceFileBytesTakesPieces) {
    const auto produce = [](const WritePiece& write) {
        for (int i = 0; i < 3; ++i)
            if (!write(std::string(2, static_cast<char>('a' + i)))) return false;
        return true;
    };
    EXPECT_TRUE(ReplaceFileBytes("C:\\a.bin", produce, Flush::Yes));
    EXPECT_EQ(BytesOf(drive / "a.bin"), "aabbcc");
}

TEST_F(Files, ReplaceFileBytesLeavesFoldersAlone) {
    MakeFile(drive / "folder" / "x", "");
    EXPECT_FALSE(ReplaceFileBytes("C:\\folder", "x", Flush::No));
    EXPECT_FALSE(ReplaceFileBytes("C:\\none\\x", "x", Flush::No));
    EXPECT_TRUE(Exists(drive / "folder" / "x"));
    EXPECT_FALSE(Exists(drive / "folder.new"));
}

TEST_F(Files, SizesAndTimes) {
    MakeFile(drive / "a.txt", "12345");
    EXPECT_EQ(FileSize("C:\\a.txt"), 5);
    EXPECT_EQ(FileSize("C:\\none"), 0);
    EXPECT_EQ(FileTime("C:\\none"), std::nullopt);
    EXPECT_TRUE(SetFileDate("C:\\a.txt", kOldTime));
    EXPECT_EQ(FileTime("C:\\a.txt"), kOldTime);
    EXPECT_FALSE(SetFileDate("C:\\none", kOldTime));
    EXPECT_FALSE(SetFileDate("", kOldTime));
    EXPECT_FALSE(SetFileDate("C:\\Kelvash", kOldTime));
}

TEST_F(Files, ShortPathOfAMissingFileIsThePathItself) {
    EXPECT_EQ(ShortPath("C:\\none\\long name.extension"), "C:\\none\\long name.extension");
    const std::string long_path = "C:\\" + std::string(300, 'x');
    EXPECT_EQ(ShortPath(long_path), long_path);
}

TEST_F(Files, ListsInAlphabeticalOrderWithoutCase) {
    for (const char* name : {"b.txt", "A.txt", "a_1.txt", "aZ.txt", "C.dat", "É.txt"})
        MakeFile(drive / "list" / fs::path(std::u8string(name, name + std::string_view(name).size())), "");
    fs::create_directories(drive / "list" / "folder.txt");
    EXPECT_THAT(ListFiles("C:\\list", "*.txt"),
                ElementsAre("C:\\list\\A.txt", "C:\\list\\aZ.txt", "C:\\list\\a_1.txt", "C:\\list\\b.txt",
                            "C:\\list\\É.txt"));
    EXPECT_THAT(ListFiles("C:\\LIST", "c.*"), ElementsAre("C:\\LIST\\C.dat"));
    EXPECT_THAT(ListFiles("C:\\list", "*.none"), IsEmpty());
    EXPECT_THAT(ListFiles("C:\\none", "*"), IsEmpty());
    EXPECT_THAT(ListFiles("C:\\list\\b.txt", "*"), IsEmpty());
}

TEST_F(Files, ListsFoldersWithoutTheDots) {
    fs::create_directories(drive / "list" / "z");
    fs::create_directories(drive / "list" / "Y" / "deep");
    MakeFile(drive / "list" / "file", "");
    EXPECT_THAT(ListFolders("C:\\list"), ElementsAre("C:\\list\\Y", "C:\\list\\z"));
    EXPECT_THAT(ListFolders("C:\\none"), IsEmpty());
}

TEST_F(Files, DeleteFilesLeavesSubFoldersAndOthers) {
    MakeFile(drive / "list" / "savegame.1", "");
    MakeFile(drive / "list" / "SAVEGAME.2", "");
    MakeFile(drive / "list" / "other", "");
    MakeFile(drive / "list" / "sub" / "savegame.3", "");
    MakeReadOnly(drive / "list" / "savegame.1");
    EXPECT_TRUE(DeleteFiles("C:\\list", "savegame.*"));
    EXPECT_THAT(ListFiles("C:\\list", "*"), ElementsAre("C:\\list\\other"));
    EXPECT_TRUE(Exists(drive / "list" / "sub" / "savegame.3"));
    EXPECT_TRUE(DeleteFiles("C:\\none", "*"));
}

TEST_F(Files, CopyFilesCopiesUnderTheirNames) {
    MakeFile(drive / "from" / "a.txt", "a");
    MakeFile(drive / "from" / "b.dat", "b");
    MakeFile(drive / "from" / "sub" / "c.txt", "c");
    fs::create_directories(drive / "to");
    MakeFile(drive / "to" / "a.txt", "old");
    EXPECT_TRUE(CopyFiles("C:\\from", "C:\\to", Existing::Replace, "*.txt"));
    EXPECT_EQ(BytesOf(drive / "to" / "a.txt"), "a");
    EXPECT_THAT(ListFiles("C:\\to", "*"), ElementsAre("C:\\to\\a.txt"));
}

TEST_F(Files, CopyFilesAsksBeforeItReplaces) {
    MakeFile(drive / "from" / "a.txt", "new");
    MakeFile(drive / "from" / "b.txt", "new");
    MakeFile(drive / "from" / "c.txt", "new");
    MakeFile(drive / "to" / "a.txt", "old");
    MakeFile(drive / "to" / "b.txt", "old");
    user.WillAnswer("C:\\to\\a.txt", "no");
    user.WillAnswer("C:\\to\\b.txt", "yes");
    EXPECT_TRUE(CopyFiles("C:\\from", "C:\\to", Existing::Ask, "*"));
    EXPECT_EQ(BytesOf(drive / "to" / "a.txt"), "old");
    EXPECT_EQ(BytesOf(drive / "to" / "b.txt"), "new");
    EXPECT_EQ(BytesOf(drive / "to" / "c.txt"), "new");
}

TEST_F(Files, CopyFilesStopsAtTheFirstFailure) {
    MakeFile(drive / "from" / "a.txt", "a");
    MakeFile(drive / "from" / "b.txt", "b");
    MakeFile(drive / "from" / "c.txt", "c");
    MakeFile(drive / "to" / "b.txt" / "in the way", "");
    EXPECT_FALSE(CopyFiles("C:\\from", "C:\\to", Existing::Replace, "*"));
    EXPECT_TRUE(Exists(drive / "to" / "a.txt"));
    EXPECT_FALSE(Exists(drive / "to" / "c.txt"));
}

TEST_F(Files, ALinkedFileIsOneWithItsSource) {
    MakeFile(drive / "a.txt", "bytes");
    fs::create_directories(drive / "to");
    EXPECT_TRUE(LinkOrCopyFile("C:\\A.TXT", "C:\\to\\b.txt"));
    EXPECT_EQ(BytesOf(drive / "to/b.txt"), "bytes");
    EXPECT_TRUE(DeleteFile("C:\\to\\b.txt"));
    EXPECT_EQ(BytesOf(drive / "a.txt"), "bytes");
    EXPECT_FALSE(LinkOrCopyFile("C:\\gone.txt", "C:\\to\\c.txt"));
    EXPECT_FALSE(LinkOrCopyFile("C:\\to", "C:\\d"));
}

TEST_F(Files, ManyNewNamesInAKnownFolderAreFoundInAnyCase) {
    MakeFile(drive / "to/Old.txt", "old");
    const KnownNames names("C:\\TO");
    EXPECT_TRUE(FileExists("C:\\to\\OLD.TXT"));
    EXPECT_FALSE(FileExists("C:\\to\\new.txt"));
    ASSERT_TRUE(WriteTextFile("C:\\to\\New.txt", "new"));
    EXPECT_TRUE(FileExists("C:\\to\\NEW.TXT"));
    EXPECT_TRUE(RenameFile("C:\\to\\new.TXT", "C:\\to\\other.txt"));
    EXPECT_FALSE(FileExists("C:\\to\\NEW.TXT"));
    EXPECT_TRUE(FileExists("C:\\to\\Other.TXT"));
    EXPECT_TRUE(DeleteFile("C:\\to\\old.TXT"));
    EXPECT_FALSE(FileExists("C:\\to\\Old.txt"));
    EXPECT_EQ(ListFiles("C:\\to", "*"), std::vector<std::string>{"C:\\to\\other.txt"});
}

TEST_F(Files, RemoveFolderTakesItsFilesAndFailsOnSubFolders) {
    MakeFile(drive / "x" / "a", "");
    MakeFile(drive / "x" / "b", "");
    MakeReadOnly(drive / "x" / "b");
    EXPECT_TRUE(RemoveFolder("C:\\x"));
    EXPECT_FALSE(Exists(drive / "x"));
    MakeFile(drive / "y" / "sub" / "a", "");
    EXPECT_FALSE(RemoveFolder("C:\\y"));
    EXPECT_TRUE(Exists(drive / "y" / "sub" / "a"));
    EXPECT_FALSE(RemoveFolder("C:\\none"));
}

TEST_F(Files, RemoveEmptyFolderTakesNothingElse) {
    fs::create_directories(drive / "x");
    EXPECT_TRUE(RemoveEmptyFolder("C:\\x"));
    EXPECT_FALSE(Exists(drive / "x"));
    EXPECT_FALSE(RemoveEmptyFolder("C:\\x"));
    MakeFile(drive / "y" / "a", "kept");
    EXPECT_FALSE(RemoveEmptyFolder("C:\\y"));
    EXPECT_FALSE(RemoveEmptyFolder("C:\\y\\a"));
    EXPECT_EQ(BytesOf(drive / "y" / "a"), "kept");
}

TEST_F(Files, NamesOutsideAsciiTravelBothWays) {
    ASSERT_TRUE(WriteTextFile("C:\\Editeur de pièces €.txt", "x"));
    EXPECT_THAT(ListFiles("C:", "*€*"), ElementsAre("C:\\Editeur de pièces €.txt"));
    EXPECT_EQ(DosPath(drive / fs::path(u8"Editeur de pièces €.txt")), "C:\\Editeur de pièces €.txt");
    EXPECT_TRUE(FileExists("C:\\EDITEUR DE PIÈCES €.TXT"));
}

} // namespace
} // namespace kelvash
