// Stored files that unpack to far more than a level holds, and temporary folders that can't be filled.
#include "swap/unpack_guard.h"

#include <gmock/gmock.h>
#include <zlib.h>

#include "core/archive.h"
#include "core/profile.h"
#include "foundation/files.h"
#include "support/swap_home.h"
#include "swap/compression.h"
#include "swap/install.h"

namespace kelvash::swap {
namespace {

using test::Exists;
using test::MakeFile;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::int64_t kMegabyte = 1048576;
const char* const kQuestion = "the unpacked files need 257.0 Mb or more, that is ";

std::string PackedZeroes(std::int64_t megabytes) {
    const std::string block(static_cast<std::size_t>(kMegabyte), '\0');
    std::string packed(static_cast<std::size_t>(megabytes * 5000 + 1000), '\0');
    z_stream stream{};
    EXPECT_EQ(deflateInit(&stream, 1), Z_OK);
    stream.next_out = reinterpret_cast<Bytef*>(packed.data());
    stream.avail_out = static_cast<uInt>(packed.size());
    for (std::int64_t i = 1; i <= megabytes; ++i) {
        stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(block.data()));
        stream.avail_in = static_cast<uInt>(kMegabyte);
        EXPECT_EQ(deflate(&stream, i < megabytes ? Z_NO_FLUSH : Z_FINISH),
                  i < megabytes ? Z_OK : Z_STREAM_END);
    }
    packed.resize(stream.total_out);
    deflateEnd(&stream);
    return packed;
}

class PackedBomb : public test::SwapHome {
  protected:
    PackedBomb() {
        AddLevel(1, "Bomb", {{"a.tr4.zl", PackedZeroes(300)}, {"script.dat", "s"}});
        AddLevel(2, "Small", {{"b.tr4", "level"}});
    }
    std::string Files() const { return "C:\\Levels\\LEVEL_0001\\FILES"; }
    bool NothingTemporary() const { return !Exists(home / "_temp_Dec") && !Exists(home / "_temp_"); }
};

TEST_F(PackedBomb, IsAskedAboutAndLeavesNothing) {
    user.WillAnswer(kQuestion, "no");
    std::string temp;
    EXPECT_FALSE(DecompressLevelFiles(Files(), temp, false));
    EXPECT_EQ(temp, "");
    EXPECT_TRUE(NothingTemporary());
    EXPECT_THAT(user.Told(), IsEmpty());
    EXPECT_TRUE(Exists(LevelPath(1) / "FILES/a.tr4.zl"));
}

TEST_F(PackedBomb, IsUnpackedIfTheUserWantsIt) {
    user.WillAnswer(kQuestion, "yes");
    std::string temp;
    EXPECT_TRUE(DecompressLevelFiles(Files(), temp, false));
    EXPECT_EQ(FileSize("C:\\Kelvash\\_temp_Dec\\a.tr4"), 300 * kMegabyte);
}

TEST_F(PackedBomb, MayBeSeveralFilesAndIsAskedAboutOnce) {
    const std::string part = PackedZeroes(100);
    for (const char* name : {"a.tr4.zl", "b.wav.zl", "c.wav.zl", "d.wav.zl"})
        MakeFile(LevelPath(1) / "FILES" / name, part);
    user.WillAnswer("With the compressed file c.wav.zl the unpacked files need 300.0 Mb or more", "yes");
    std::string temp;
    EXPECT_TRUE(DecompressLevelFiles(Files(), temp, false));
    EXPECT_EQ(TreeSize("C:\\Kelvash\\_temp_Dec", "*.*"), 400 * kMegabyte + 1);
}

TEST_F(PackedBomb, KeepsTheLevelOutOfTrle) {
    user.MayBeTold("Error decompressing files");
    const std::vector<std::string> before = NamesIn(trle);
    user.WillAnswer(kQuestion, "no");
    EXPECT_FALSE(InstallLevel(1));
    EXPECT_EQ(NamesIn(trle), before);
    EXPECT_FALSE(Exists(trle / "data/a.tr4"));
    EXPECT_TRUE(NothingTemporary());
    EXPECT_TRUE(InstallLevel(2));
}

TEST_F(PackedBomb, IsNotViewedUnasked) {
    user.WillAnswer(kQuestion, "no");
    EXPECT_EQ(DecompressOneFile(Files() + "\\a.tr4.zl", false), "");
    EXPECT_TRUE(NothingTemporary());
    EXPECT_THAT(user.Told(), IsEmpty());
}

TEST_F(PackedBomb, StaysPackedWhenOldLevelsAreUnpacked) {
    core::archive.Header.CompressFiles = true;
    user.WillAnswer("Do you want change compress status of old level files?", "yes");
    user.WillAnswer(kQuestion, "no");
    ApplyCompressionSettings({});
    EXPECT_THAT(NamesIn(LevelPath(1) / "FILES"), ElementsAre("a.tr4.zl", "script.dat"));
}

// Whatever is left over of another use would be taken for a file of the level.
TEST_F(PackedBomb, ATemporaryFolderThatCannotBeEmptiedIsNotUsed) {
    MakeFile(LevelPath(2) / "FILES/load.jpg", "picture");
    std::filesystem::create_directories(home);
    MakeFile(home / "_temp_Dec", "a file where the folder should be");
    std::string temp;
    EXPECT_FALSE(DecompressLevelFiles("C:\\Levels\\LEVEL_0002\\FILES", temp, false));
    EXPECT_THAT(user.Told(), ElementsAre("critical: I can not copy the level files in temp directory: "
                                         "C:\\Kelvash\\_temp_Dec"));
    EXPECT_EQ(temp, "");
}

} // namespace
} // namespace kelvash::swap
