// Extraction past links, of what only the system's own programs make, and by an outside tool.
#include <gmock/gmock.h>

#include <chrono>
#include <cstdlib>

#include "zip/unzip_home.h"

namespace kelvash::zip {
namespace {

using test::MakeEntry;
using testing::ElementsAre;
using testing::IsEmpty;

// Runs programs of the system in a folder.
void RunIn(const std::filesystem::path& folder, const std::string& command) {
    const std::string line = "cd '" + folder.string() + "' && " + command;
    ASSERT_EQ(std::system(line.c_str()), 0) << line;
}

TEST_F(Unzip, LinksAreRefusedAndNotFollowed) {
    std::filesystem::create_directory_symlink(drive, drive / "out/there");
    test::ZipBytes link = MakeEntry("link", "/etc");
    link.made_by = 0x0314;
    link.attributes = 0120777U << 16;
    Put({link, MakeEntry("link/evil.txt", "evil"), MakeEntry("there/evil.txt", "evil")});
    EXPECT_FALSE(Extract());
    EXPECT_FALSE(test::Exists(drive / "evil.txt"));
    EXPECT_EQ(Bytes("link/evil.txt"), "evil"); // "link" is a plain folder here
    EXPECT_THAT(user.Told(), ElementsAre(testing::EndsWith("\r\nlink")));
    EXPECT_EQ(message,
              "Error extracting following entries of zip file a.zip:\r\n"
              "there/evil.txt: I can not write the file");
}

TEST_F(Unzip, MoreEntriesThanAPlainEndRecordTells) {
    std::filesystem::create_directories(drive / "in");
    RunIn(drive / "in",
          "seq 1 100000 | xargs touch && seq 1 100000 | zip -q -0 '" + (drive / "a.zip").string() + "' -@");
    EXPECT_EQ(ListZip("C:\\a.zip", message)->size(), 100000U);
}

TEST_F(Unzip, AStopActsWithinOneEntry) {
    std::filesystem::create_directories(drive / "in");
    RunIn(drive / "in", "truncate -s 1000000000 big && zip -q -1 '" + (drive / "a.zip").string() + "' big");
    UnzipClass unzip;
    UnzipSettings("C:\\a.zip", "C:\\out", ZipFolders::Flat, unzip);
    using Clock = std::chrono::steady_clock;
    const Clock::time_point start = Clock::now();
    Clock::time_point asked;
    EXPECT_FALSE(unzip.UnZip({nullptr, [&] {
                                  if (Clock::now() - start < std::chrono::milliseconds(100)) return false;
                                  asked = Clock::now();
                                  return true;
                              }}));
    EXPECT_TRUE(unzip.Stopped);
    EXPECT_LT(Clock::now() - asked, std::chrono::milliseconds(200));
    EXPECT_THAT(Tree(), IsEmpty());
}

TEST_F(Unzip, TheToolIsRunFromTheProgramsFolder) {
    test::MakeFile(drive / "in/a.txt", std::string(1000, 'a'));
    RunIn(drive / "in", "zip -q '" + (drive / "a.zip").string() + "' a.txt");
    EXPECT_FALSE(UnzipWithTool("C:\\a.zip", "C:\\out", bar));
    EXPECT_THAT(user.Told(),
                ElementsAre("critical: Unzip: I cannot find  'unzip.exe' utility\r\nIt's necessary "
                            "'unzip.exe' utility  will be  in folder: C:\\Kelvash"));
    ASSERT_EQ(std::system(("cp \"$(command -v unzip)\" '" + (home / "unzip.exe").string() + "'").c_str()), 0);
    bar.percent = 70; // of a former job
    user.percents.clear();
    EXPECT_TRUE(UnzipWithTool("C:\\a.zip", "C:\\out", bar));
    EXPECT_EQ(Bytes("a.txt"), std::string(1000, 'a'));
    EXPECT_EQ(bar.percent, 100);
    EXPECT_THAT(user.percents, ElementsAre(0, 100));
}

TEST_F(Unzip, AToolThatSaysNothingIsStopped) {
    Put({MakeEntry("a.txt", "content")});
    const std::filesystem::path tool = home / "unzip.exe";
    test::MakeFile(tool, "#!/bin/sh\nsleep 60\n");
    std::filesystem::permissions(tool, std::filesystem::perms::owner_all);
    user.stop_at_pump = 1;
    EXPECT_FALSE(UnzipWithTool("C:\\a.zip", "C:\\out", bar));
    EXPECT_THAT(user.Told(), ElementsAre("critical: Error executing utility: Break user"));
}

} // namespace
} // namespace kelvash::zip
