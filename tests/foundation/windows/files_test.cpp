// Files on a disk with attributes, short names and creation times, and names in UTF-16.
#include "foundation/files.h"

#include <gmock/gmock.h>
#include <windows.h>

#include "foundation/drives.h"
#include "foundation/place_file.h"
#include "support/foundation_home.h"
#undef CopyFile
#undef DeleteFile

namespace kelvash {
namespace {

namespace fs = std::filesystem;
using test::BytesOf;
using test::MakeFile;

class WindowsFiles : public test::FoundationHome {};

TEST_F(WindowsFiles, AReadOnlyFileIsReplaced) {
    MakeFile(drive / "a.bin", "old");
    SetFileAttributesW((drive / "a.bin").c_str(), FILE_ATTRIBUTE_READONLY);
    EXPECT_TRUE(ReplaceFileBytes("C:\\a.bin", "new", Flush::Yes));
    EXPECT_EQ(BytesOf(drive / "a.bin"), "new");
}

TEST_F(WindowsFiles, ReadOnlyFoldersAreRemoved) {
    MakeFile(drive / "tree/inner/a.bin", "x");
    fs::create_directories(drive / "single");
    for (const char* folder : {"tree", "tree/inner", "single"})
        SetFileAttributesW((drive / folder).c_str(), FILE_ATTRIBUTE_READONLY);
    Bar bar;
    EXPECT_TRUE(RemoveFolderTree("C:\\tree", bar));
    EXPECT_FALSE(test::Exists(drive / "tree"));
    EXPECT_TRUE(RemoveFolder("C:\\single"));
    EXPECT_FALSE(test::Exists(drive / "single"));
}

TEST_F(WindowsFiles, AReadOnlyFileIsFlushedAndStaysSo) {
    MakeFile(drive / "a.bin", "of a disc");
    SetFileAttributesW((drive / "a.bin").c_str(), FILE_ATTRIBUTE_READONLY);
    EXPECT_TRUE(FlushFile("C:\\a.bin"));
    EXPECT_NE(GetFileAttributesW((drive / "a.bin").c_str()) & FILE_ATTRIBUTE_READONLY, 0U);
    EXPECT_TRUE(CopyFileNew("C:\\a.bin", "C:\\b.bin"));
    EXPECT_EQ(BytesOf(drive / "b.bin"), "of a disc");
    EXPECT_FALSE(FlushFile("C:\\none"));
}

TEST_F(WindowsFiles, AFileInUseIsKept) {
    MakeFile(drive / "a.bin", "old");
    const HANDLE held = CreateFileW((drive / "a.bin").c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr,
                                    OPEN_EXISTING, 0, nullptr);
    ASSERT_NE(held, INVALID_HANDLE_VALUE);
    EXPECT_FALSE(ReplaceFileBytes("C:\\a.bin", "new", Flush::No));
    EXPECT_FALSE(DeleteFile("C:\\a.bin"));
    CloseHandle(held);
    EXPECT_EQ(BytesOf(drive / "a.bin"), "old");
    EXPECT_FALSE(test::Exists(drive / "a.bin.new"));
}

TEST_F(WindowsFiles, ADateIsAlsoTheCreations) {
    MakeFile(drive / "a.txt", "x");
    ASSERT_TRUE(SetFileDate("C:\\a.txt", 1000000000));
    WIN32_FILE_ATTRIBUTE_DATA data{};
    ASSERT_NE(GetFileAttributesExW((drive / "a.txt").c_str(), GetFileExInfoStandard, &data), 0);
    for (const FILETIME& time : {data.ftLastWriteTime, data.ftCreationTime}) {
        EXPECT_EQ(time.dwHighDateTime, 0x01C138D1U);
        EXPECT_EQ(time.dwLowDateTime, 0x44FF8000U);
    }
}

TEST_F(WindowsFiles, PathTextsAreTheSystemsOwnPaths) {
    ResetDrives();
    ASSERT_TRUE(SetAppFolder(home));
    const std::string text = home.string();
    EXPECT_EQ(AppFolder(), text);
    EXPECT_EQ(NativePath(text), home);
    std::string small = text;
    small[0] = static_cast<char>(small[0] - 'A' + 'a');
    EXPECT_EQ(DosPath(small), text);
    EXPECT_FALSE(ShortPath(text).empty());
    EXPECT_TRUE(FolderExists(ShortPath(text)));
}

TEST_F(WindowsFiles, ShortPathsOfADriveSetByHandAreThePathItself) {
    MakeFile(drive / "a long name.text", "x");
    EXPECT_EQ(ShortPath("C:\\a long name.text"), "C:\\a long name.text");
}

} // namespace
} // namespace kelvash
