#include "foundation/state.h"

#include <gmock/gmock.h>

#include <memory>
#include <string>

#include "foundation/desktop.h"
#include "foundation/drives.h"
#include "foundation/guarded_folders.h"
#include "foundation/messages.h"
#include "foundation/registration.h"
#include "foundation/texts.h"
#include "support/foundation_home.h"

namespace kelvash {
namespace {

struct Sample {
    int Number = 7;
    std::string Name = "as at the start";
    std::shared_ptr<int> Owned;
};
constinit Sample& sample = State<Sample>::Get();

struct Other {
    bool Set = false;
};
constinit bool& other = State<Other>::Get().Set;

struct Outliving {
    int Count = 0;
};

TEST(StateTest, StartsWithItsDefaults) {
    EXPECT_EQ(sample.Number, 7);
    EXPECT_EQ(sample.Name, "as at the start");
    EXPECT_FALSE(other);
}

TEST(StateTest, GoesBackToItsDefaultsWithoutBeingListed) {
    const auto owned = std::make_shared<int>(1);
    sample = {8, "changed", owned};
    other = true;
    ResetProgramState();
    EXPECT_EQ(sample.Number, 7);
    EXPECT_EQ(sample.Name, "as at the start");
    EXPECT_FALSE(other);
    EXPECT_EQ(owned.use_count(), 1) << "what it held is let go";
}

TEST(StateTest, LeavesWhatOutlivesAReset) {
    Lifelong<Outliving>::Get().Count = 3;
    ResetProgramState();
    EXPECT_EQ(Lifelong<Outliving>::Get().Count, 3);
    Lifelong<Outliving>::Get().Count = 0;
}

using FoundationState = test::FoundationHome;

TEST_F(FoundationState, IsThatOfAFreshStartAfterAReset) {
    AllowRegistration(false);
    SetTranslation({{msg::kBreakUser.Number(), "x"}});
    ASSERT_EQ(NativePath("C:\\a"), drive / "a");
    ResetProgramState();
    EXPECT_TRUE(MayRegister());
    EXPECT_NE(LoadMessage(msg::kBreakUser).text, "x");
    EXPECT_EQ(AppFolder(), "");
    EXPECT_NE(NativePath("C:\\a"), drive / "a");
    EXPECT_EQ(&TheDesktop(), &desktop) << "ports stay";
}

} // namespace
} // namespace kelvash
