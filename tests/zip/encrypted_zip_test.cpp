// Encrypted zips: AES of both forms, passwords that are wrong, are typed again, or aren't given.
#include <gmock/gmock.h>

#include <cstdlib>

#include "foundation/native_text.h"
#include "support/foundation_home.h"
#include "support/zip_program.h"
#include "zip/zip.h"
#include "zip/zip_module.h"

namespace kelvash::zip {
namespace {

using test::BytesOf;
using test::Exists;
using testing::IsEmpty;

// caffè.txt (10 times "crema "), plain.bin (bytes 0 to 63) and secret.txt (12 times "Kelvash keeps levels.
// "), made by 7-Zip with the password "sesame": AES-256 entries without a checksum, the second one stored.
const char* const kAes =
    "504b03043300010863001b98755d00000000330000003c0000000a000b0063616666c3a82e7478740199070002004145"
    "03080036e9708eb6f29fce7c89e9e8e402df90e405b9ac0a10bf8e86c2435d1ac847e11d94d1af9026d9c5fe57ef1a2d"
    "25da2781c912504b03043300010063001b98755d000000005c0000004000000009000b00706c61696e2e62696e019907"
    "0002004145030000ddff33c9f2c5d2ec7b41d8c5c6114bbc74770ff2b3ad20944b915ecf15f5378dfededa5e224c34d1"
    "ee037af6d548eed63eaad830fee29268372f915304f1e363f3055ce4c0762b4b8f6a98c38bf21978bee03fcfe37e0b0b"
    "deb9fd82504b03043300010063001b98755d0000000043000000080100000a000b007365637265742e74787401990700"
    "0200414503080049568f13af08704b1fc0c365413b2abfbadb3ee95fbf70022b1217b6d0017423e15547bb852ad32dd0"
    "26003419845090e8fd05e75fd74107b748382515fa060f1273f4504b01023f033300010863001b98755d000000003300"
    "00003c0000000a002f000000000000002080a4810000000063616666c3a82e7478740a00200000000000010018001cfd"
    "daa1ea79dd01000000000000000000000000000000000199070002004145030800504b01023f033300010063001b9875"
    "5d000000005c0000004000000009002f000000000000002080a48166000000706c61696e2e62696e0a00200000000000"
    "0100180062fadaa1ea79dd01000000000000000000000000000000000199070002004145030000504b01023f03330001"
    "0063001b98755d0000000043000000080100000a002f000000000000002080a481f40000007365637265742e7478740a"
    "002000000000000100180021d8daa1ea79dd01000000000000000000000000000000000199070002004145030800504b"
    "05060000000003000300340100006a0100000000";

std::string FromHex(const std::string& hex) {
    std::string bytes;
    for (std::size_t i = 0; i < hex.size(); i += 2)
        bytes += static_cast<char>(std::stoi(hex.substr(i, 2), nullptr, 16));
    return bytes;
}

std::string Repeated(const std::string& text, int times) {
    std::string all;
    for (int i = 0; i < times; ++i)
        all += text;
    return all;
}

class EncryptedZip : public test::FoundationHome {
  protected:
    EncryptedZip() { std::filesystem::create_directories(drive / "out"); }
    void Put(const std::string& bytes) { test::MakeFile(drive / "a.zip", bytes); }
    // A zip of the traditional kind.
    void PutTraditional() {
        test::MakeFile(drive / "in/a.txt", "secret text");
        test::MakeFile(drive / "in/b.txt", "more of it");
        ASSERT_TRUE(test::MakeZipOf(drive / "in", drive / "a.zip", "sesame"));
    }
    UnzipEnd Extract() {
        Bar bar;
        unzipped = UnzipToFolder({"C:\\a.zip", "C:\\out"}, bar);
        return unzipped.End;
    }
    std::size_t Count() const {
        std::size_t count = 0;
        for ([[maybe_unused]] const auto& entry : std::filesystem::directory_iterator(drive / "out"))
            ++count;
        return count;
    }

    Unzipped unzipped;
};

TEST_F(EncryptedZip, AesWithoutChecksumsIsRead) {
    Put(FromHex(kAes));
    user.WillAnswer("The zip file a.zip is encrypted.\r\nType its password:", "sesame");
    EXPECT_EQ(Extract(), UnzipEnd::Whole);
    EXPECT_EQ(BytesOf(drive / "out/secret.txt"), Repeated("Kelvash keeps levels. ", 12));
    EXPECT_EQ(BytesOf(drive / NativeFromText("out/caff\u00E8.txt")), Repeated("crema ", 10));
    EXPECT_EQ(BytesOf(drive / "out/plain.bin").size(), 64U);
    EXPECT_EQ(Count(), 3U);
    EXPECT_THAT(user.Told(), IsEmpty());
    EXPECT_EQ(user.Asked().size(), 1U);
}

TEST_F(EncryptedZip, AWrongPasswordIsAskedForAgainWithAWord) {
    Put(FromHex(kAes));
    user.WillAnswer("The zip file a.zip is encrypted.", "open");
    user.WillAnswer("The password of the zip file a.zip is wrong.\r\nType it again, or press Cancel:",
                    "Sesame");
    user.WillAnswer("The password of the zip file a.zip is wrong.", "sesame");
    EXPECT_EQ(Extract(), UnzipEnd::Whole);
    EXPECT_EQ(Count(), 3U);
    EXPECT_EQ(user.Asked().size(), 3U);
    EXPECT_THAT(user.Told(), IsEmpty());
}

// Wherever a byte of the content is turned: no damaged file comes out, and no right password is called wrong
// once a file has come out with it.
TEST_F(EncryptedZip, DamagedAesIsToldFromAWrongPassword) {
    const std::string whole = FromHex(kAes);
    const std::size_t second = whole.find("plain.bin") + 9;
    for (const std::size_t offset : {60U, 95U}) // in the data, in the proof behind them
    {
        std::string bytes = whole;
        bytes[second + offset] = static_cast<char>(bytes[second + offset] ^ 1);
        Put(bytes);
        user.Forget();
        user.WillAnswer("is encrypted", "sesame");
        EXPECT_EQ(Extract(), UnzipEnd::Failed) << offset;
        EXPECT_EQ(unzipped.Message,
                  "Error extracting following entries of zip file a.zip:\r\n"
                  "plain.bin: the data are damaged");
        EXPECT_FALSE(Exists(drive / "out/plain.bin"));
        EXPECT_EQ(BytesOf(drive / "out/secret.txt").size(), 264U);
        EXPECT_EQ(user.Asked().size(), 1U);
    }
}

TEST_F(EncryptedZip, ADamagedFirstEntryIsToldOnceThePasswordIsTypedAgain) {
    std::string bytes = FromHex(kAes);
    const std::size_t place = bytes.find("caff") + 45;
    bytes[place] = static_cast<char>(bytes[place] ^ 1);
    Put(bytes);
    user.WillAnswer("is encrypted", "sesame");
    user.WillAnswer("is wrong", "sesame");
    EXPECT_EQ(Extract(), UnzipEnd::Failed);
    EXPECT_FALSE(Exists(drive / "out/caff\u00E8.txt"));
    EXPECT_EQ(Count(), 2U);
}

TEST_F(EncryptedZip, WithoutAPasswordNothingComesAndNothingIsListed) {
    PutTraditional();
    user.WillAnswer("is encrypted", "wrong");
    user.WillAnswer("is wrong", "cancel");
    EXPECT_EQ(Extract(), UnzipEnd::Stopped);
    EXPECT_EQ(unzipped.Message, "The zip file a.zip is encrypted, and its password has not been given");
    EXPECT_EQ(Count(), 0U);
    EXPECT_THAT(user.Told(), IsEmpty());
}

TEST_F(EncryptedZip, AnAnswerThatNeverChangesEndsTheAsking) {
    PutTraditional();
    user.WillAnswer("is encrypted", "wrong");
    for (int i = 0; i < 99; ++i)
        user.WillAnswer("is wrong", "wrong");
    EXPECT_EQ(Extract(), UnzipEnd::Stopped);
    EXPECT_EQ(Count(), 0U);
}

// The password stands in nothing that is told, shown or left on the disk.
TEST_F(EncryptedZip, ThePasswordIsNowhereToBeRead) {
    Put(FromHex(kAes));
    user.WillAnswer("is encrypted", "never-told");
    user.WillAnswer("is wrong", "cancel");
    EXPECT_EQ(Extract(), UnzipEnd::Stopped);
    std::vector<std::string> texts = user.Told();
    texts.insert(texts.end(), user.Asked().begin(), user.Asked().end());
    texts.insert(texts.end(), user.Shown().begin(), user.Shown().end());
    texts.push_back(unzipped.Message);
    for (const std::string& text : texts)
        EXPECT_EQ(text.find("never-told"), std::string::npos) << text;
}

} // namespace
} // namespace kelvash::zip
