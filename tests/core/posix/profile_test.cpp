// A profile whose file or folder the user may not read or write.
#include <gmock/gmock.h>

#include "core/profile_home.h"

namespace kelvash::core {
namespace {

using test::BytesOf;
using test::MakeFile;
using testing::ElementsAre;
using testing::IsEmpty;
namespace fs = std::filesystem;

TEST_F(Profile, ThatCannotBeReadIsNeitherMissingNorEmpty) {
    MakeFile(file, OtherBytes());
    fs::permissions(file, fs::perms::none);
    {
        const test::OrdinaryUser ordinary;
        EXPECT_EQ(LoadProfile(), ProfileState::Unreadable);
        EXPECT_EQ(EncodeProfile(profile), DefaultBytes());
        EXPECT_THAT(user.Told(), IsEmpty());
        EXPECT_FALSE(WriteProfile());
    }
    fs::permissions(file, fs::perms::owner_all);
    EXPECT_EQ(BytesOf(file), OtherBytes());
}

TEST_F(Profile, InAFolderThatCannotBeEnteredIsUnreadable) {
    MakeFile(file, OtherBytes());
    fs::permissions(home, fs::perms::none);
    ProfileState state{};
    {
        const test::OrdinaryUser ordinary;
        EXPECT_FALSE(OpenProfile(state));
    }
    fs::permissions(home, fs::perms::owner_all);
    EXPECT_EQ(state, ProfileState::Unreadable);
    EXPECT_THAT(user.Told(),
                ElementsAre("critical: The settings can't be read, so nothing is done and nothing "
                            "is changed.\r\nTheir file: C:\\Kelvash\\Kelvash.prf"));
}

TEST_F(Profile, IsNotWrittenOverOneThatHasBecomeUnreadable) {
    MakeFile(file, DefaultBytes());
    ASSERT_EQ(LoadProfile(), ProfileState::Current);
    fs::permissions(file, fs::perms::none);
    profile.SavegamesToKeep = 12;
    {
        const test::OrdinaryUser ordinary;
        EXPECT_FALSE(WriteProfile());
    }
    fs::permissions(file, fs::perms::owner_all);
    EXPECT_EQ(BytesOf(file), DefaultBytes());
}

TEST_F(Profile, IsSavedWithoutAWordWhenItCannotBe) {
    MakeFile(file, "old");
    fs::permissions(home, fs::perms::owner_read | fs::perms::owner_exec);
    {
        const test::OrdinaryUser ordinary;
        EXPECT_FALSE(WriteProfile());
    }
    EXPECT_EQ(BytesOf(file), "old");
    EXPECT_THAT(user.Told(), IsEmpty());
}

} // namespace
} // namespace kelvash::core
