// The bytes of an Archive file with two levels, and what they hold.
#pragma once

#include "core/archive_file.h"
#include "support/record_bytes.h"
#include "support/test_home.h"

namespace kelvash::core {

// A header: both folders C:\LevelFolder, 2 levels, 3 CDs, compressed, no mp3, a move pending, sizes 1.5 and
// -2.
inline std::string HeaderBytes() {
    std::string bytes(546, '\0');
    test::Put(bytes, 0, test::Literal("\x01\x00\x00\x00"));
    test::Put(bytes, 4, test::Blanks(512));
    test::Put(bytes, 4, "C:\\LevelFolder");
    test::Put(bytes, 260, "C:\\LevelFolder");
    test::Put(bytes, 516, test::Literal("\x02\x00\x00\x00"));
    test::Put(bytes, 520, test::Literal("\x03\x00\x00\x00"));
    test::Put(bytes, 524, "\xFF\xFF");
    test::Put(bytes, 526, test::Literal("\x00\x00"));
    test::Put(bytes, 528, "\xFF\xFF");
    test::Put(bytes, 530, test::Literal("\x00\x00\x00\x00\x00\x00\xF8\x3F"));
    test::Put(bytes, 538, test::Literal("\x00\x00\x00\x00\x00\x00\x00\xC0"));
    return bytes;
}

// A level with every field set.
inline std::string FirstLevelBytes() {
    std::string bytes(1634, ' ');
    test::Put(bytes, 0, "Caf\xE9 \x80");
    test::Put(bytes, 256, "Choose the second entry");
    test::Put(bytes, 512, "A. Uthor");
    test::Put(bytes, 592, test::Literal("a@b.com\0c@d.org"));
    test::Put(bytes, 848, test::Literal("http://one\0http://two\0http://three"));
    test::Put(bytes, 1104, "A note");
    test::Put(bytes, 1360, test::Literal("\x0C\x00\x00\x00"));
    test::Put(bytes, 1364, test::Literal("\x01\x00\x00\x00"));
    test::Put(bytes, 1368, "readme.htm");
    test::Put(bytes, 1624, test::Literal("\x00\x00\x10\x00"));
    test::Put(bytes, 1628, "\xFE\xFF\xFF\xFF");
    test::Put(bytes, 1632, "\xFF\xFF");
    return bytes;
}

inline std::string SecondLevelBytes() {
    std::string bytes(1634, ' ');
    test::Put(bytes, 0, "Plain");
    test::Put(bytes, 1360, test::Literal("\x0F\x27\x00\x00\x00\x00\x00\x00"));
    test::Put(bytes, 1624, test::Literal("\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00"));
    return bytes;
}

inline std::string TwoLevelBytes() {
    return HeaderBytes() + FirstLevelBytes() + SecondLevelBytes();
}

inline ArchiveContents TwoLevels() {
    ArchiveContents contents;
    contents.Header.MainFolder = "C:\\LevelFolder";
    contents.Header.SecondaryFolder = "C:\\LevelFolder";
    contents.Header.CdCount = 3;
    contents.Header.CompressFiles = true;
    contents.Header.CdInstallPending = true;
    contents.Header.MainFolderSize = 1.5;
    contents.Header.SecondaryFolderSize = -2;
    LevelRecord level;
    level.Name = "Caf\xC3\xA9 \xE2\x82\xAC";
    level.Note = "Choose the second entry";
    level.Author = "A. Uthor";
    level.Emails = test::Literal("a@b.com\0c@d.org");
    level.Sites = test::Literal("http://one\0http://two\0http://three");
    level.AuthorNote = "A note";
    level.Code = 12;
    level.CdNumber = 1;
    level.MoreInfoFile = "readme.htm";
    level.FilesSize = 1048576;
    level.SavesSize = -2;
    level.RecountSaves = true;
    LevelRecord plain;
    plain.Name = "Plain";
    plain.Code = 9999;
    contents.Table = {level, plain};
    return contents;
}

class ArchiveFile : public test::TestHome {
  protected:
    static constexpr const char* kPath = "C:\\Kelvash\\a.kva";
    std::filesystem::path file = home / "a.kva";

    // The Archive in a file of these bytes.
    ArchiveContents Read(const std::string& bytes) {
        test::MakeFile(file, bytes);
        ArchiveContents contents;
        EXPECT_TRUE(ReadArchiveFile(kPath, contents));
        return contents;
    }
};

} // namespace kelvash::core
