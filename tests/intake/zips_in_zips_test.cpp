// Zips in zips: what they come to together, how deep they go, and what is told of a bad one.
#include <gmock/gmock.h>
#include <zlib.h>

#include "core/archive.h"
#include "foundation/drives.h"
#include "foundation/files.h"
#include "intake/work_folder.h"
#include "support/intake_home.h"
#include "support/zip_bytes.h"

namespace kelvash::intake {
namespace {

using test::MakeEntry;
using test::MakeFile;
using test::MakeZipBytes;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::int64_t kMegabyte = 1048576;

// So many zeroes as one entry, packed a thousandfold.
test::ZipBytes Zeroes(const std::string& name, std::int64_t bytes) {
    test::ZipBytes entry = MakeEntry(name, "");
    const std::string block(static_cast<std::size_t>(kMegabyte), '\0');
    z_stream stream{};
    EXPECT_EQ(deflateInit2(&stream, 1, Z_DEFLATED, -MAX_WBITS, 8, Z_DEFAULT_STRATEGY), Z_OK);
    std::string packed(static_cast<std::size_t>(bytes / 100 + 1000), '\0');
    stream.next_out = reinterpret_cast<Bytef*>(packed.data());
    stream.avail_out = static_cast<uInt>(packed.size());
    uLong crc = 0;
    for (std::int64_t left = bytes; left > 0; left -= kMegabyte) {
        stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(block.data()));
        stream.avail_in = static_cast<uInt>(kMegabyte);
        crc = crc32(crc, stream.next_in, stream.avail_in);
        EXPECT_EQ(deflate(&stream, left > kMegabyte ? Z_NO_FLUSH : Z_FINISH),
                  left > kMegabyte ? Z_OK : Z_STREAM_END);
    }
    packed.resize(stream.total_out);
    deflateEnd(&stream);
    entry.content = packed;
    entry.method = 8;
    entry.crc = static_cast<std::uint32_t>(crc);
    entry.declared = static_cast<std::uint32_t>(bytes);
    return entry;
}

class ZipsInZips : public test::IntakeHome {
  protected:
    // A zip of zips, each of which unpacks to so much.
    void PutBomb(int zips, std::int64_t bytes_each) {
        std::vector<test::ZipBytes> inner;
        test::ZipBytes zeroes = Zeroes("zeroes", bytes_each);
        for (int i = 0; i < zips; ++i) {
            zeroes.name = "zeroes" + std::to_string(i);
            inner.push_back(MakeEntry("z" + std::to_string(10 + i) + ".zip", MakeZipBytes({zeroes})));
        }
        MakeFile(drive / "in/Bomb.zip", MakeZipBytes(inner));
    }
    // Bytes that the disk holds below the work folder and the temporary ones.
    std::int64_t BytesOnDisk() const { return TreeSize("C:\\Levels", "*") + TreeSize("C:\\Kelvash", "*_*"); }
};

// None of the parts is suspicious by itself, and the question comes before the first byte too much.
TEST_F(ZipsInZips, ThatComeToABombAreAskedAbout) {
    OpenNew();
    level.Zips.Budget.Unasked = 64.0 * kMegabyte;
    PutBomb(6, 20 * kMegabyte);
    ASSERT_LT(FileSize("C:\\in\\Bomb.zip"), kMegabyte);
    user.WillAnswer("With the files of zip z13.zip all unpacked files need 80.5 Mb, that is ", "no");
    EXPECT_FALSE(AddSource(level, "C:\\in\\Bomb.zip"));
    EXPECT_LE(TreeSize("C:\\Levels", "*"), 61 * kMegabyte);
    EXPECT_EQ(user.Asked().size(), 1U);
    EXPECT_THAT(user.Told(), IsEmpty());
    RefreshFileList(level); // not again for the same zips
    user.WillAnswer("all unpacked files need 80.5 Mb", "yes");
    Refresh(level); // but when the user wants it; what was agreed to holds up to twice as much
    EXPECT_GE(TreeSize("C:\\Levels", "*"), 120 * kMegabyte);
}

TEST_F(ZipsInZips, ThatAreRefusedEndAnAddingWithoutAForm) {
    OpenNew();
    level.Zips.Budget.Unasked = 30.0 * kMegabyte;
    MakeFile(Work() / "maze.tr4", "level");
    PutBomb(2, 20 * kMegabyte);
    user.WillAnswer("With the files of zip z11.zip all unpacked files need ", "no");
    TakeSourcesAndStore(level, {"C:\\in\\Bomb.zip"});
    EXPECT_EQ(level.State, FormState::Cancelled);
    EXPECT_FALSE(level.Stopped); // the next of several sources has its turn
}

TEST_F(ZipsInZips, GoOnlySoDeep) {
    OpenNew();
    std::string bytes = MakeZipBytes({MakeEntry("maze.tr4", "level")});
    for (int depth = 12; depth > 0; --depth)
        bytes = MakeZipBytes({MakeEntry("z" + std::to_string(depth) + ".zip", bytes),
                              MakeEntry("t" + std::to_string(depth) + ".txt", "x")});
    MakeFile(drive / "in/Deep.zip", bytes);
    EXPECT_TRUE(AddSource(level, "C:\\in\\Deep.zip"));
    EXPECT_THAT(user.Told(),
                ElementsAre("exclamation: Warning: following zip files have been left as they are "
                            "because there are too many zips in zips:\r\nz9.zip"));
    EXPECT_EQ(WorkNames().size(), 10U); // t1 to t9, z9.zip
    user.Forget();
    RefreshFileList(level);
    EXPECT_THAT(user.Told(), IsEmpty());
    EXPECT_EQ(WorkNames().size(), 10U);
}

// Zips that hold each other, and each time some more.
TEST_F(ZipsInZips, ThatBringManyNewOnesEnd) {
    OpenNew();
    std::vector<test::ZipBytes> many;
    for (int i = 0; i < 1200; ++i)
        many.push_back(MakeEntry("z" + std::to_string(i) + ".zip", MakeZipBytes({MakeEntry("a.txt", "a")})));
    MakeFile(drive / "in/Many.zip", MakeZipBytes(many));
    EXPECT_TRUE(AddSource(level, "C:\\in\\Many.zip"));
    EXPECT_EQ(WorkNames().size(), 201U);
    EXPECT_EQ(user.Told().size(), 1U);
}

TEST_F(ZipsInZips, ABadOneIsToldInOneBox) {
    OpenNew();
    MakeFile(drive / "in/Bad.zip", "no zip");
    EXPECT_FALSE(AddSource(level, "C:\\in\\Bad.zip"));
    EXPECT_THAT(user.Told(), ElementsAre("critical: Error while copying or unzipping file: Bad.zip\r\n"
                                         "I can not open zip file: Bad.zip (Not a zip archive)"));
    EXPECT_EQ(level.Name, ""); // nor is its name that of the level
    MakeFile(drive / "in/Good.zip", MakeZipBytes({MakeEntry("maze.tr4", "level")}));
    EXPECT_TRUE(AddSource(level, "C:\\in\\Good.zip"));
    EXPECT_EQ(level.Name, "Good");
    EXPECT_THAT(WorkNames(), ElementsAre("maze.tr4"));
}

TEST_F(ZipsInZips, ABadInnerOneIsToldInOneBoxHoweverOftenTheListIsMade) {
    OpenNew();
    MakeFile(drive / "in/Outer.zip",
             MakeZipBytes({MakeEntry("bad.zip", "no zip"), MakeEntry("maze.tr4", "level")}));
    EXPECT_TRUE(AddSource(level, "C:\\in\\Outer.zip"));
    RefreshFileList(level);
    EXPECT_THAT(user.Told(), ElementsAre("critical: Error decompressing file: bad.zip\r\n"
                                         "I can not open zip file: bad.zip (Not a zip archive)"));
    Refresh(level);
    EXPECT_EQ(user.Told().size(), 2U);
}

TEST_F(ZipsInZips, WithoutItsPasswordAZipIsToldOnceAndNotListed) {
    OpenNew();
    MakeZip("in/Secret.zip", {{"maze.tr4", "level"}, {"script.dat", "s"}}, "sesame");
    user.WillAnswer("The zip file Secret.zip is encrypted.", "wrong");
    user.WillAnswer("The password of the zip file Secret.zip is wrong.", "cancel");
    EXPECT_FALSE(AddSource(level, "C:\\in\\Secret.zip"));
    EXPECT_THAT(
        user.Told(),
        ElementsAre("exclamation: Adding of files has been stopped. The files copied until now are in "
                    "the list.\r\nThe zip file Secret.zip is encrypted, and its password has not been "
                    "given"));
    EXPECT_EQ(level.Name, "");
    EXPECT_FALSE(level.Stopped); // the next of several sources has its turn
}

} // namespace
} // namespace kelvash::intake
