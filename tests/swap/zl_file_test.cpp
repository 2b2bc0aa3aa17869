#include "swap/zl_file.h"

#include <gmock/gmock.h>
#include <zlib.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "foundation/drives.h"
#include "foundation/pumping.h"
#include "support/format_test.h"
#include "support/test_home.h"
#include "swap/zl_file_home.h"

namespace kelvash::swap {
namespace {

namespace fs = std::filesystem;
using test::BytesOf;
using test::Exists;
using test::MakeFile;

// Records with small differences, as in a level file: packs to about a quarter.
std::string Records(std::size_t size) {
    std::string bytes;
    const std::string noise = Noise(size / 8 + 1);
    for (std::size_t i = 0; bytes.size() < size; ++i) {
        bytes += noise[i];
        bytes.push_back(static_cast<char>(i));
        bytes.push_back(static_cast<char>(i >> 8));
        bytes.append("\x00\x10\xFF\x7F\x01", 5);
    }
    bytes.resize(size);
    return bytes;
}

std::string UnpackedByZlib(const std::string& packed, std::size_t size) {
    std::string bytes(size + 1, '\0');
    auto got = static_cast<uLongf>(bytes.size());
    EXPECT_EQ(uncompress(reinterpret_cast<Bytef*>(bytes.data()), &got,
                         reinterpret_cast<const Bytef*>(packed.data()), static_cast<uLong>(packed.size())),
              Z_OK);
    bytes.resize(got);
    return bytes;
}

// Pieces of a text, each of `size` bytes.
ReadPiece InPieces(const std::string& bytes, std::size_t size) {
    return [&bytes, size, at = std::size_t{0}]() mutable -> std::optional<std::string_view> {
        const std::string_view piece = std::string_view(bytes).substr(at, size);
        at += piece.size();
        return piece;
    };
}

WritePiece Into(std::string& text) {
    return [&text](std::string_view piece) {
        text += piece;
        return true;
    };
}

TEST_F(ZlFile, PacksAFileAsOneZlibStream) {
    const std::string bytes = Records(100'000);
    MakeFile(Native("city.tr4"), bytes);
    ASSERT_TRUE(CompressFile("C:\\city.tr4", "C:\\city.tr4.zl"));
    const std::string packed = BytesOf(Native("city.tr4.zl"));
    EXPECT_EQ(packed.substr(0, 2), "\x78\xDA");
    EXPECT_EQ(UnpackedByZlib(packed, bytes.size()), bytes);
    EXPECT_EQ(BytesOf(Native("city.tr4")), bytes);
}

TEST_F(ZlFile, PacksAtLeastAsCloseAsZlibsLevel9) {
    for (const std::string& bytes : {Records(100'000), Noise(300'000)}) {
        MakeFile(Native("city.tr4"), bytes);
        ASSERT_TRUE(CompressFile("C:\\city.tr4", "C:\\city.tr4.zl"));
        EXPECT_LE(BytesOf(Native("city.tr4.zl")).size(), PackedByZlib(bytes, 9, 15).size());
    }
}

TEST_F(ZlFile, UnpacksWhatItPacked) {
    for (const std::string& bytes : {Records(1'500'000), Noise(3'000'000), std::string(1, 'x')}) {
        MakeFile(Native("a.wav"), bytes);
        ASSERT_TRUE(CompressFile("C:\\a.wav", "C:\\a.wav.zl"));
        ASSERT_TRUE(DecompressFile("C:\\a.wav.zl", "C:\\b.wav"));
        EXPECT_EQ(BytesOf(Native("b.wav")), bytes);
    }
}

TEST_F(ZlFile, PacksAndUnpacksAnEmptyFile) {
    MakeFile(Native("a.wav"), "");
    ASSERT_TRUE(CompressFile("C:\\a.wav", "C:\\a.wav.zl"));
    EXPECT_EQ(UnpackedByZlib(BytesOf(Native("a.wav.zl")), 0), "");
    ASSERT_TRUE(DecompressFile("C:\\a.wav.zl", "C:\\b.wav"));
    EXPECT_EQ(BytesOf(Native("b.wav")), "");
}

TEST_F(ZlFile, UnpacksWhatZlibPacked) {
    const std::string bytes = Records(200'000);
    for (const int level : {0, 1, 6, 9}) {
        ASSERT_TRUE(Unpack(PackedByZlib(bytes, level, 15))) << level;
        EXPECT_EQ(BytesOf(Native("city.tr4")), bytes) << level;
    }
}

TEST_F(ZlFile, UnpacksAStreamWithASmallWindow) {
    const std::string bytes = Records(50'000);
    const std::string packed = PackedByZlib(bytes, 9, 9);
    ASSERT_EQ(packed[0], '\x18');
    ASSERT_TRUE(Unpack(packed));
    EXPECT_EQ(BytesOf(Native("city.tr4")), bytes);
}

TEST_F(ZlFile, UnpacksAStreamWithAGzipHead) {
    const std::string bytes = Records(50'000);
    const std::string packed = PackedByZlib(bytes, 9, 15 + 16);
    ASSERT_EQ(packed.substr(0, 2), "\x1F\x8B");
    ASSERT_TRUE(Unpack(packed));
    EXPECT_EQ(BytesOf(Native("city.tr4")), bytes);
}

TEST_F(ZlFile, RefusesARawStream) {
    ExpectRefused(PackedByZlib(Records(50'000), 9, -15));
}

TEST_F(ZlFile, RefusesAStreamThatNeedsADictionary) {
    ExpectRefused(PackedByZlib("trigger trigger trigger", 9, 15, "a trigger"));
}

TEST_F(ZlFile, OverlooksBytesBehindTheStream) {
    const std::string bytes = Records(50'000);
    for (const int window_bits : {15, 15 + 16}) {
        ASSERT_TRUE(Unpack(PackedByZlib(bytes, 9, window_bits) + "and some more")) << window_bits;
        EXPECT_EQ(BytesOf(Native("city.tr4")), bytes) << window_bits;
    }
}

TEST_F(ZlFile, RefusesAStreamCutAtAnyLength) {
    const std::string packed = PackedByZlib(Records(600), 9, 15);
    for (std::size_t length = 0; length < packed.size(); ++length) {
        SCOPED_TRACE(length);
        ExpectRefused(packed.substr(0, length));
    }
}

TEST(ZlFormat, WithstandsCuts) {
    const auto converted = [](bool (*convert)(std::string_view, const WritePiece&), std::string_view bytes) {
        std::string result;
        const bool done = convert(bytes, [&](std::string_view piece) {
            result += piece;
            return true;
        });
        return done ? std::optional<std::string>(result) : std::nullopt;
    };
    test::ExpectFormat<std::string>(
        {.bytes = converted(DeflateTo, Records(600)).value(),
         .decode = [&](std::string_view bytes) { return converted(InflateTo, bytes); },
         .encode = [&](const std::string& bytes) { return converted(DeflateTo, bytes).value(); }});
}

TEST_F(ZlFile, RefusesALongStreamCutShort) {
    const std::string packed = PackedByZlib(Records(8'000'000), 1, 15);
    for (const std::size_t missing : {std::size_t{1}, std::size_t{4}, packed.size() / 2, packed.size() - 3}) {
        SCOPED_TRACE(missing);
        ExpectRefused(packed.substr(0, packed.size() - missing));
    }
}

// Only the bits that fill up the last byte in front of the check sum mean nothing.
TEST_F(ZlFile, RefusesAStreamWithAnyByteChanged) {
    const std::string packed = PackedByZlib(Records(600), 9, 15);
    for (std::size_t at = 0; at < packed.size(); ++at) {
        if (at == packed.size() - 5) continue;
        SCOPED_TRACE(at);
        std::string damaged = packed;
        damaged[at] = static_cast<char>(damaged[at] ^ 0x24);
        ExpectRefused(damaged);
    }
}

TEST_F(ZlFile, RefusesAFileThatIsNoStream) {
    ExpectRefused("This is a level, not a stream.");
    ExpectRefused(Noise(100'000));
}

TEST_F(ZlFile, UnpacksAStreamThatExpandsAThousandfold) {
    const std::string bytes(20'000'000, '\0');
    ASSERT_TRUE(Unpack(PackedByZlib(bytes, 9, 15)));
    EXPECT_TRUE(BytesOf(Native("city.tr4")) == bytes);
}

TEST_F(ZlFile, GivesTheResultTheTimeOfTheSource) {
    MakeFile(Native("a.wav"), "sound");
    ASSERT_TRUE(SetFileDate("C:\\a.wav", 978'307'200));
    ASSERT_TRUE(CompressFile("C:\\a.wav", "C:\\a.wav.zl"));
    EXPECT_EQ(FileTime("C:\\a.wav.zl"), 978'307'200);
    ASSERT_TRUE(DecompressFile("C:\\a.wav.zl", "C:\\b.wav"));
    EXPECT_EQ(FileTime("C:\\b.wav"), 978'307'200);
}

TEST_F(ZlFile, ReplacesAnOldTargetOnlyWhenItSucceeds) {
    MakeFile(Native("city.tr4"), "the old level");
    EXPECT_FALSE(Unpack(PackedByZlib("the new level", 9, 15).substr(0, 12)));
    EXPECT_EQ(BytesOf(Native("city.tr4")), "the old level");
    EXPECT_TRUE(Unpack(PackedByZlib("the new level", 9, 15)));
    EXPECT_EQ(BytesOf(Native("city.tr4")), "the new level");
}

TEST_F(ZlFile, RefusesASourceThatIsMissingOrAFolder) {
    fs::create_directory(Native("folder"));
    for (const char* source : {"C:\\nothing", "C:\\folder", "", "Q:\\a.wav"}) {
        EXPECT_FALSE(CompressFile(source, "C:\\a.zl")) << source;
        EXPECT_FALSE(DecompressFile(source, "C:\\a")) << source;
    }
    EXPECT_FALSE(Exists(Native("a.zl")));
    EXPECT_FALSE(Exists(Native("a")));
}

TEST_F(ZlFile, RefusesATargetThatCantBeMade) {
    MakeFile(Native("a.wav"), "sound");
    fs::create_directory(Native("folder"));
    for (const char* target : {"C:\\missing\\a.zl", "C:\\folder", "Q:\\a.zl"})
        EXPECT_FALSE(CompressFile("C:\\a.wav", target)) << target;
    EXPECT_TRUE(fs::is_directory(Native("folder")));
}

// --- made ahead ---

TEST_F(ZlFile, MadeInMemoryIsToTheByteWhatIsWrittenOtherwise) {
    for (const std::string& bytes : {std::string(), std::string("text"), Records(3'000'000)}) {
        MakeFile(drive / "a.tr4", bytes);
        fs::last_write_time(drive / "a.tr4", fs::file_time_type::clock::now() - std::chrono::hours(50));
        ASSERT_TRUE(CompressFile("C:\\a.tr4", "C:\\plain.zl"));
        const MadeFile packed = PackInMemory("C:\\a.tr4");
        ASSERT_TRUE(packed);
        ASSERT_TRUE(CompressFile("C:\\a.tr4", "C:\\ahead.zl", packed));
        EXPECT_EQ(BytesOf(drive / "ahead.zl"), BytesOf(drive / "plain.zl"));
        EXPECT_EQ(FileTime("C:\\ahead.zl"), FileTime("C:\\a.tr4"));
        const MadeFile unpacked = UnpackInMemory("C:\\plain.zl");
        ASSERT_TRUE(unpacked);
        ASSERT_TRUE(DecompressFile("C:\\plain.zl", "C:\\b.tr4", {}, unpacked));
        EXPECT_EQ(BytesOf(drive / "b.tr4"), bytes);
        EXPECT_EQ(FileTime("C:\\b.tr4"), FileTime("C:\\a.tr4"));
    }
}

TEST_F(ZlFile, IsNotMadeInMemoryOfWhatCannotBe) {
    EXPECT_FALSE(PackInMemory("C:\\missing"));
    EXPECT_FALSE(UnpackInMemory("C:\\missing"));
    MakeFile(drive / "no.zl", "no stream");
    EXPECT_FALSE(UnpackInMemory("C:\\no.zl"));
    MakeFile(drive / "big.zl", PackedByZlib(std::string(60 << 20, 'x'), 9, 15));
    EXPECT_FALSE(UnpackInMemory("C:\\big.zl")) << "of several at once none may take so much";
    EXPECT_TRUE(DecompressFile("C:\\big.zl", "C:\\big"));
    EXPECT_EQ(fs::file_size(drive / "big"), 60U << 20);
}

TEST_F(ZlFile, MadeInMemoryAsksBeforeItGrowsTheDisk) {
    MakeFile(drive / "a.zl", PackedByZlib(Records(5000), 9, 15));
    MakeFile(drive / "a", "old");
    const MadeFile made = UnpackInMemory("C:\\a.zl");
    std::int64_t asked = 0;
    const MayGrow may_grow = [&asked](std::int64_t bytes) {
        asked = bytes;
        return false;
    };
    EXPECT_FALSE(DecompressFile("C:\\a.zl", "C:\\a", may_grow, made));
    EXPECT_EQ(asked, 5000);
    EXPECT_EQ(BytesOf(drive / "a"), "old");
}

TEST_F(ZlFile, ABigOneHoldsNoWindowUp) {
    using Clock = std::chrono::steady_clock;
    SetPumpClock(&Clock::now);
    MakeFile(drive / "a", Noise(24 << 20));
    const JobScope job;
    Clock::time_point last = Clock::now();
    Clock::duration longest{0};
    user.when_pumped = [&] {
        longest = std::max(longest, Clock::now() - last);
        last = Clock::now();
    };
    ASSERT_TRUE(CompressFile("C:\\a", "C:\\a.zl"));
    ASSERT_TRUE(DecompressFile("C:\\a.zl", "C:\\b"));
    EXPECT_GE(user.pumps, 5);
    EXPECT_LT(longest, std::chrono::milliseconds(400)) << "50 on an idle machine; all takes seconds";
}

TEST(ZlBlocks, UnpackWhateverThePiecesAre) {
    const std::string bytes = Records(3 << 20); // three full blocks of output
    const std::string packed = PackedByZlib(bytes, 1, 15);
    for (const std::size_t size : {std::size_t{1}, std::size_t{1000}, packed.size() - 1, packed.size()}) {
        std::string unpacked;
        EXPECT_TRUE(InflateBlocks(InPieces(packed, size), Into(unpacked))) << size;
        EXPECT_TRUE(unpacked == bytes) << size;
        EXPECT_FALSE(InflateBlocks(InPieces(packed.substr(0, packed.size() - 1), size), Into(unpacked)))
            << size;
    }
}

TEST(ZlBlocks, PackWhateverThePiecesAre) {
    const std::string bytes = Noise(2'500'000);
    for (const std::size_t size : {std::size_t{7}, std::size_t{100'000}, bytes.size()}) {
        std::string packed;
        ASSERT_TRUE(DeflateBlocks(InPieces(bytes, size), Into(packed))) << size;
        EXPECT_EQ(packed.substr(0, 2), "\x78\xDA") << size;
        EXPECT_TRUE(UnpackedByZlib(packed, bytes.size()) == bytes) << size;
    }
}

TEST(ZlBlocks, GiveUpWhenTheSourceCantBeRead) {
    const ReadPiece unreadable = []() -> std::optional<std::string_view> { return std::nullopt; };
    std::string text;
    EXPECT_FALSE(DeflateBlocks(unreadable, Into(text)));
    EXPECT_FALSE(InflateBlocks(unreadable, Into(text)));
}

TEST(ZlBlocks, StopAtTheFirstRefusedPiece) {
    int calls = 0;
    const WritePiece refuse = [&calls](std::string_view) {
        ++calls;
        return false;
    };
    const std::string bytes = Noise(3'000'000);
    const std::string packed = PackedByZlib(bytes, 9, 15);
    EXPECT_FALSE(DeflateTo(bytes, refuse));
    EXPECT_FALSE(InflateTo(packed, refuse));
    EXPECT_FALSE(DeflateBlocks(InPieces(bytes, 100'000), refuse));
    EXPECT_FALSE(InflateBlocks(InPieces(packed, 100'000), refuse));
    EXPECT_EQ(calls, 4);
}

} // namespace
} // namespace kelvash::swap
