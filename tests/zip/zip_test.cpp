// Making zips, and the progress of zip work.
#include "zip/zip.h"

#include <gmock/gmock.h>

#include "support/foundation_home.h"
#include "zip/zip_home.h"
#include "zip/zip_module.h"
#include "zip/zip_progress.h"

namespace kelvash::zip {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST_F(Zip, AFolderGoesInFlatOrWithItsTree) {
    EXPECT_TRUE(ZipFolder("C:\\in", "C:\\a.zip", entries, Recurse::No, bar, message));
    EXPECT_THAT(Names(), ElementsAre("a.txt", "Größe Ł.txt"));
    EXPECT_THAT(entries, ElementsAre("C:\\in\\a.txt", "C:\\in\\Größe Ł.txt"));
    EXPECT_EQ(bar.percent, 100);
    EXPECT_TRUE(ZipFolder("C:\\in", "C:\\a.zip", entries, Recurse::Yes, bar, message));
    EXPECT_THAT(Names(), ElementsAre("a.txt", "Größe Ł.txt", "sub\\b.txt"));
}

TEST_F(Zip, LinesNameEachEntry) {
    ZipClass zip;
    zip.ZipFileName = "C:\\a.zip";
    zip.RootDirectory = "C:\\in";
    zip.RecurseFolders = true;
    zip.AddFile("C:\\in");
    EXPECT_EQ(zip.ZipFileCount(), 3);
    zip.RemoveFile("c:\\IN\\A.txt");
    EXPECT_EQ(zip.ZipFileCount(), 2);
    std::vector<std::string> lines;
    EXPECT_TRUE(zip.MakeZipFile({[&](const std::string& line) {
                                     lines.push_back(line);
                                     return false;
                                 },
                                 nullptr}));
    EXPECT_THAT(lines, ElementsAre("  adding: Größe Ł.txt", "  adding: sub/b.txt"));
    EXPECT_EQ(zip.GetLastMessage(), "  adding: sub/b.txt");
}

TEST_F(Zip, UpdatingReplacesAndKeepsTheRest) {
    ASSERT_TRUE(ZipFolder("C:\\in", "C:\\a.zip", entries, Recurse::No, bar, message));
    test::MakeFile(drive / "in/a.txt", "longer");
    ZipClass zip;
    zip.ZipFileName = "C:\\a.zip";
    zip.UpdatingZip = true;
    zip.RootDirectory = "C:\\in";
    zip.AddFile("C:\\in\\a.txt");
    zip.AddFile("C:\\in\\sub\\b.txt");
    EXPECT_TRUE(zip.MakeZipFile({}));
    EXPECT_THAT(Names(), ElementsAre("a.txt", "Größe Ł.txt", "sub\\b.txt"));
    EXPECT_EQ(ListZip("C:\\a.zip", message)->front().Size, 6);
}

TEST_F(Zip, AStopOrAnErrorLeavesTheOldZip) {
    test::MakeFile(drive / "a.zip", "the old one");
    user.stop = true;
    EXPECT_FALSE(ZipFolder("C:\\in", "C:\\a.zip", entries, Recurse::No, bar, message));
    EXPECT_EQ(message, "Stopped by the user");
    EXPECT_EQ(test::BytesOf(drive / "a.zip"), "the old one");
    user.stop = false;
    EXPECT_FALSE(ZipFolder("C:\\in", "C:\\missing\\a.zip", entries, Recurse::No, bar, message));
    EXPECT_NE(message, "");
    ZipClass zip;
    zip.ZipFileName = "C:\\a.zip";
    zip.AddFile("C:\\in\\gone.txt");
    EXPECT_FALSE(zip.MakeZipFile({}));
    EXPECT_EQ(zip.GetLastMessage(), "I can not read the file C:\\in\\gone.txt");
    EXPECT_EQ(test::BytesOf(drive / "a.zip"), "the old one");
    EXPECT_THAT(Names("C:\\b.zip"), IsEmpty());
}

class ZipLines : public test::FoundationHome {
  protected:
    bool stop = true;
};

TEST_F(ZipLines, InflatingAndAddingAreCounted) {
    LineProgress progress{{}, 4};
    GestioneUnzip(progress, "  inflating: a.txt", false, stop);
    GestioneUnzip(progress, "   creating: sub/", false, stop);
    GestioneUnzip(progress, "  adding: a.txt", false, stop);
    EXPECT_EQ(user.last_percent, 25);
    EXPECT_FALSE(stop);
    GestioneZip(progress, "  adding: b.txt (deflated 5%)", false, stop);
    EXPECT_EQ(user.last_percent, 50);
}

TEST_F(ZipLines, ResettingEmptiesCaptionAndBar) {
    LineProgress progress{{}, 4};
    for (const auto manage : {GestioneUnzip, GestioneZip}) {
        GestioneUnzip(progress, "inflating", false, stop);
        user.stop = true;
        manage(progress, "inflating adding:", true, stop);
        user.stop = false;
        EXPECT_FALSE(stop);
        EXPECT_EQ(user.last_percent, 0);
        EXPECT_EQ(progress.done, 0);
        EXPECT_EQ(user.Shown().back(), "");
    }
}

TEST_F(ZipLines, TheUsersStopComesOut) {
    LineProgress progress{{}, 4};
    user.stop = true;
    stop = false;
    GestioneZip(progress, "", false, stop);
    EXPECT_TRUE(stop);
}

} // namespace
} // namespace kelvash::zip
