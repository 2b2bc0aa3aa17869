// An Archive file behind a link, and one that the user may not read or write.
#include <gmock/gmock.h>

#include "core/archive_file_home.h"

namespace kelvash::core {
namespace {

using test::BytesOf;
using test::MakeFile;
namespace fs = std::filesystem;

TEST_F(ArchiveFile, ThatIsUnreadableCannotBeRead) {
    MakeFile(file, TwoLevelBytes());
    fs::permissions(file, fs::perms::none);
    ArchiveContents contents;
    const test::OrdinaryUser ordinary;
    EXPECT_FALSE(ReadArchiveFile(kPath, contents));
}

TEST_F(ArchiveFile, StaysWhenItsFolderIsReadOnly) {
    MakeFile(file, TwoLevelBytes());
    fs::permissions(home, fs::perms::owner_read | fs::perms::owner_exec);
    {
        const test::OrdinaryUser ordinary;
        EXPECT_FALSE(WriteArchiveFile(kPath, ArchiveContents{{}, {LevelRecord()}}));
    }
    EXPECT_EQ(BytesOf(file), TwoLevelBytes());
}

TEST_F(ArchiveFile, StaysWhenItIsWriteProtected) {
    MakeFile(file, TwoLevelBytes());
    fs::permissions(file, fs::perms::owner_read);
    {
        const test::OrdinaryUser ordinary;
        EXPECT_FALSE(WriteArchiveFile(kPath, ArchiveContents{{}, {LevelRecord()}}));
    }
    EXPECT_EQ(BytesOf(file), TwoLevelBytes());
}

TEST_F(ArchiveFile, BehindALinkIsWrittenWhereTheLinkPoints) {
    MakeFile(drive / "elsewhere" / "real.kva", std::string(4000, 'o'));
    fs::create_symlink(drive / "elsewhere" / "real.kva", file);
    ASSERT_TRUE(WriteArchiveFile(kPath, TwoLevels()));
    EXPECT_TRUE(fs::is_symlink(file));
    EXPECT_EQ(BytesOf(drive / "elsewhere" / "real.kva"), TwoLevelBytes() + std::string(186, 'o'));
    ArchiveContents contents;
    ASSERT_TRUE(ReadArchiveFile(kPath, contents));
    EXPECT_EQ(contents.Table.Size(), 2);
}

} // namespace
} // namespace kelvash::core
