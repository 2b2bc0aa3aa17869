// Compressing where the user may not, on a full disk, and within bounds of memory.
#include <gmock/gmock.h>

#include <fstream>

#include "foundation/files.h"
#include "support/child_process.h"
#include "swap/zl_file_home.h"

namespace kelvash::swap {
namespace {

namespace fs = std::filesystem;
using test::BytesOf;
using test::Exists;
using test::MakeFile;

TEST_F(ZlFile, RefusesAnUnreadableSourceAndAFolderThatTakesNoFiles) {
    MakeFile(Native("a.wav"), "sound");
    MakeFile(Native("secret.wav"), "sound");
    MakeFile(Native("closed/old.zl"), "old");
    for (const fs::path& path : {root, drive, Native("closed")})
        fs::permissions(path, fs::perms(0755), fs::perm_options::replace);
    fs::permissions(Native("secret.wav"), fs::perms::none, fs::perm_options::replace);
    fs::create_directory(Native("open"));
    fs::permissions(Native("open"), fs::perms::all);
    fs::permissions(Native("closed"), fs::perms(0555), fs::perm_options::replace);
    {
        const test::OrdinaryUser ordinary;
        EXPECT_TRUE(CompressFile("C:\\a.wav", "C:\\open\\a.zl"));
        EXPECT_FALSE(CompressFile("C:\\secret.wav", "C:\\open\\secret.zl"));
        EXPECT_FALSE(CompressFile("C:\\a.wav", "C:\\closed\\new.zl"));
        EXPECT_FALSE(CompressFile("C:\\a.wav", "C:\\closed\\old.zl"));
    }
    fs::permissions(Native("closed"), fs::perms(0755), fs::perm_options::replace);
    EXPECT_FALSE(Exists(Native("open/secret.zl")));
    EXPECT_FALSE(Exists(Native("closed/new.zl")));
    EXPECT_EQ(BytesOf(Native("closed/old.zl")), "old");
}

TEST_F(ZlFile, LeavesNothingOnAFullDisk) {
    MakeFile(Native("noise.wav"), Noise(3'000'000));
    MakeFile(Native("bomb.zl"), PackedByZlib(std::string(20'000'000, '\0'), 1, 15));
    MakeFile(Native("big_bomb.zl"), PackedByZlib(std::string(140'000'000, '\0'), 1, 15));
    MakeFile(Native("old.wav"), "old");
    const auto unpack_all = [] {
        test::LimitFiles(1'000'000);
        return !CompressFile("C:\\noise.wav", "C:\\noise.wav.zl") &&
               !DecompressFile("C:\\bomb.zl", "C:\\bomb") &&
               !DecompressFile("C:\\big_bomb.zl", "C:\\big_bomb") &&
               !DecompressFile("C:\\bomb.zl", "C:\\old.wav");
    };
    EXPECT_TRUE(test::InChild(unpack_all).answer);
    EXPECT_THAT(ListFiles("C:", "*"),
                testing::ElementsAre("C:\\big_bomb.zl", "C:\\bomb.zl", "C:\\noise.wav", "C:\\old.wav"));
    EXPECT_EQ(BytesOf(Native("old.wav")), "old");
}

// 300 MB of holes with a few written places.
TEST_F(ZlFile, KeepsItsMemoryBoundedForABigFile) {
    constexpr std::int64_t kSize = 300'000'000;
    MakeFile(Native("big.tr4"), "start");
    fs::resize_file(Native("big.tr4"), kSize);
    {
        std::fstream file(Native("big.tr4"), std::ios::binary | std::ios::in | std::ios::out);
        file.seekp(150'000'000).write("middle", 6);
        file.seekp(kSize - 3).write("end", 3);
        ASSERT_TRUE(file.good());
    }
    const auto pack = [] { return CompressFile("C:\\big.tr4", "C:\\big.tr4.zl"); };
    const test::ChildResult packed = test::InChild(pack);
    EXPECT_TRUE(packed.answer);
    EXPECT_LT(packed.grown, 20'000'000);
    EXPECT_LT(fs::file_size(Native("big.tr4.zl")), 400'000U);
    fs::remove(Native("big.tr4"));
    const auto unpack = [] { return DecompressFile("C:\\big.tr4.zl", "C:\\big.tr4"); };
    const test::ChildResult unpacked = test::InChild(unpack);
    EXPECT_TRUE(unpacked.answer);
    EXPECT_LT(unpacked.grown, 200'000'000);
    ASSERT_EQ(FileSize("C:\\big.tr4"), kSize);
    std::ifstream file(Native("big.tr4"), std::ios::binary);
    std::string text(6, '\0');
    file.seekg(150'000'000).read(text.data(), 6);
    EXPECT_EQ(text, "middle");
    file.seekg(kSize - 6).read(text.data(), 6);
    EXPECT_EQ(text, std::string("\0\0\0end", 6));
}

} // namespace
} // namespace kelvash::swap
