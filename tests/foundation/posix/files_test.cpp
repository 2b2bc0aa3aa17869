// Files on a disk with permissions, links, limits and regard to case.
#include "foundation/files.h"

#include <gmock/gmock.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include "foundation/drives.h"
#include "support/foundation_home.h"

namespace kelvash {
namespace {

namespace fs = std::filesystem;
using test::BytesOf;
using test::Exists;
using test::MakeFile;
using testing::ElementsAre;
using testing::IsEmpty;

// While it lives no file of this process grows beyond so many bytes, as on a full disk.
class FullDisk {
  public:
    explicit FullDisk(rlim_t bytes) : old_signal_(::signal(SIGXFSZ, SIG_IGN)) {
        ::getrlimit(RLIMIT_FSIZE, &old_);
        const rlimit limit{bytes, old_.rlim_max};
        ::setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~FullDisk() {
        ::setrlimit(RLIMIT_FSIZE, &old_);
        ::signal(SIGXFSZ, old_signal_);
    }
    FullDisk(const FullDisk&) = delete;
    FullDisk& operator=(const FullDisk&) = delete;

  private:
    rlimit old_{};
    void (*old_signal_)(int);
};

class PosixFiles : public test::FoundationHome {};

TEST_F(PosixFiles, ReplaceFileBytesKeepsTheOldFileOnAFullDisk) {
    MakeFile(drive / "a.bin", "old");
    {
        const FullDisk full(1000);
        EXPECT_FALSE(ReplaceFileBytes("C:\\a.bin", std::string(5000, 'x'), Flush::Yes));
    }
    EXPECT_EQ(BytesOf(drive / "a.bin"), "old");
    EXPECT_FALSE(Exists(drive / "a.bin.new"));
}

TEST_F(PosixFiles, ACopyThatDoesNotFitLeavesNothing) {
    MakeFile(drive / "a.bin", std::string(5000, 'x'));
    MakeFile(drive / "b.bin", "old");
    {
        const FullDisk full(1000);
        EXPECT_FALSE(CopyFile("C:\\a.bin", "C:\\c.bin"));
        EXPECT_FALSE(CopyFileWhole("C:\\a.bin", "C:\\b.bin"));
    }
    EXPECT_FALSE(Exists(drive / "c.bin"));
    EXPECT_EQ(BytesOf(drive / "b.bin"), "old");
    EXPECT_FALSE(Exists(drive / "Kelvash.tmp"));
}

TEST_F(PosixFiles, AFolderThatNobodyMayWriteKeepsItsFiles) {
    MakeFile(drive / "locked" / "a.bin", "old");
    for (const fs::path& folder : {root, drive, drive / "locked"})
        fs::permissions(folder, fs::perms(0555));
    const test::OrdinaryUser ordinary;
    EXPECT_FALSE(ReplaceFileBytes("C:\\locked\\a.bin", "new", Flush::No));
    EXPECT_FALSE(DeleteFile("C:\\locked\\a.bin"));
    EXPECT_FALSE(CreateFolder("C:\\locked\\sub"));
    EXPECT_EQ(BytesOf(drive / "locked" / "a.bin"), "old");
}

TEST_F(PosixFiles, ReplacementKeepsALinkAndReplacesItsTarget) {
    MakeFile(drive / "real" / "a.bin", "old");
    fs::create_symlink(drive / "real" / "a.bin", drive / "link.bin");
    EXPECT_TRUE(ReplaceFileBytes("C:\\link.bin", "new", Flush::No));
    EXPECT_TRUE(fs::is_symlink(drive / "link.bin"));
    EXPECT_EQ(BytesOf(drive / "real" / "a.bin"), "new");
}

TEST_F(PosixFiles, DeletingALinkLeavesItsTarget) {
    MakeFile(drive / "real.txt", "x");
    fs::create_symlink(drive / "real.txt", drive / "link.txt");
    fs::create_symlink(drive / "nowhere", drive / "dangling");
    EXPECT_TRUE(DeleteFile("C:\\link.txt"));
    EXPECT_TRUE(DeleteFile("C:\\dangling"));
    EXPECT_EQ(BytesOf(drive / "real.txt"), "x");
    EXPECT_FALSE(Exists(drive / "dangling"));
}

TEST_F(PosixFiles, PipesAreNoFiles) {
    ASSERT_EQ(::mkfifo((drive / "pipe").c_str(), 0666), 0);
    EXPECT_FALSE(FileExists("C:\\pipe"));
    EXPECT_EQ(ReadFileBytes("C:\\pipe"), std::nullopt);
    EXPECT_FALSE(CopyFile("C:\\pipe", "C:\\copy"));
    EXPECT_THAT(ListFiles("C:", "*"), IsEmpty());
}

TEST_F(PosixFiles, NamesThatNoPathTextCanHoldAreLeftOut) {
    MakeFile(drive / "list" / "a\\b", "x");
    MakeFile(drive / "list" / "good", "x");
    fs::create_directories(drive / "list" / "x\\y");
    EXPECT_THAT(ListFiles("C:\\list", "*"), ElementsAre("C:\\list\\good"));
    EXPECT_THAT(ListFolders("C:\\list"), IsEmpty());
}

TEST_F(PosixFiles, LinksToFoldersAreNotFollowed) {
    MakeFile(drive / "tree" / "a.txt", "x");
    fs::create_directory_symlink(drive / "tree", drive / "tree" / "loop");
    MakeFile(drive / "outside" / "keep.txt", "x");
    fs::create_directory_symlink(drive / "outside", drive / "tree" / "out");
    EXPECT_THAT(ScanTree("C:\\tree").files, ElementsAre("C:\\tree\\a.txt"));
    Bar bar;
    EXPECT_TRUE(RemoveFolderTree("C:\\tree", bar));
    EXPECT_FALSE(Exists(drive / "tree"));
    EXPECT_TRUE(Exists(drive / "outside" / "keep.txt"));
}

TEST_F(PosixFiles, ATreeWithSomethingLeftIsNotRemoved) {
    MakeFile(drive / "tree" / "a\\b", "x");
    Bar bar;
    EXPECT_FALSE(RemoveFolderTree("C:\\tree", bar));
    EXPECT_TRUE(Exists(drive / "tree" / "a\\b"));
}

TEST_F(PosixFiles, NamesAreFoundInAnyCase) {
    MakeFile(drive / "Data" / "Level.TR4", "x");
    EXPECT_EQ(NativePath("C:\\DATA\\level.tr4"), drive / "Data" / "Level.TR4");
    EXPECT_EQ(NativePath("C:\\data\\New File.txt"), drive / "Data" / "New File.txt");
    EXPECT_EQ(NativePath("C:\\data\\None\\LEVEL.tr4"), drive / "Data" / "None" / "LEVEL.tr4");
    MakeFile(drive / "caffÈ", "x");
    EXPECT_EQ(NativePath("C:\\CAFFè"), drive / "caffÈ");
}

TEST_F(PosixFiles, TheExactNameComesFirst) {
    MakeFile(drive / "a.txt", "small");
    MakeFile(drive / "A.TXT", "capital");
    EXPECT_EQ(ReadWholeFile("C:\\a.txt"), "small");
    EXPECT_EQ(ReadWholeFile("C:\\A.TXT"), "capital");
    EXPECT_FALSE(ReadWholeFile("C:\\A.txt").empty());
}

TEST_F(PosixFiles, ThereAreNoShortPaths) {
    MakeFile(drive / "a long name.text", "x");
    EXPECT_EQ(ShortPath("C:\\a long name.text"), "C:\\a long name.text");
}

} // namespace
} // namespace kelvash
