#include "foundation/desktop.h"

#include <gmock/gmock.h>

#include "support/fake_desktop.h"

namespace kelvash {
namespace {

using testing::ElementsAre;

TEST(Desktop, SetDesktopGivesTheOldOneBack) {
    test::FakeDesktop first;
    {
        test::FakeDesktop second;
        EXPECT_EQ(&TheDesktop(), &second);
    }
    EXPECT_EQ(&TheDesktop(), &first);
    EXPECT_EQ(SetDesktop(nullptr), &first);
    EXPECT_NE(&TheDesktop(), &first); // the platform's own
    EXPECT_EQ(SetDesktop(&first), nullptr);
}

TEST(Desktop, AKeyIsPressed) {
    test::FakeDesktop desktop;
    SendKey(kKeyPrintScreen, 0x37);
    EXPECT_THAT(desktop.pressed, ElementsAre(0x2C));
}

TEST(Desktop, AllGivenKeysMustBeHeld) {
    test::FakeDesktop desktop;
    desktop.held = {kKeyF9, 0x11};
    EXPECT_TRUE(IsKeyDown({kKeyF9}));
    EXPECT_TRUE(IsKeyDown({0x11, kKeyF9}));
    EXPECT_FALSE(IsKeyDown({0x11, kKeyF9, 0x12}));
    EXPECT_FALSE(IsKeyDown({kKeyF11}));
}

TEST(Desktop, KeysThatAreNoneAreLeftOut) {
    test::FakeDesktop desktop;
    desktop.held = {kKeyF9, 0x11};
    EXPECT_TRUE(IsKeyDown({0, kKeyF9, 0}));
    EXPECT_TRUE(IsKeyDown({0, 0, 0x11}));
    EXPECT_FALSE(IsKeyDown({0, kKeyF11, kKeyF9}));
    EXPECT_FALSE(IsKeyDown({0, 0, 0}));
    EXPECT_FALSE(IsKeyDown({}));
}

TEST(Desktop, WindowsAreFoundByTheirCaption) {
    test::FakeDesktop desktop;
    desktop.windows = {{1, "Tomb Raider setup", 10}, {2, "Tomb Raider", 20}, {3, "Tomb Raider", 30}};
    EXPECT_EQ(FindWindowByCaption("Tomb Raider", Caption::Whole).handle, 2U);
    EXPECT_EQ(FindWindowByCaption("Tomb Raider", Caption::Start).handle, 1U);
    EXPECT_EQ(FindWindowByCaption("tomb raider", Caption::Whole).handle, 0U);
    EXPECT_EQ(FindWindowByCaption("Raider", Caption::Start).handle, 0U);
}

TEST(Desktop, ListsAllWindowsAndThoseOfAProcess) {
    test::FakeDesktop desktop;
    desktop.windows = {{1, "one", 10}, {2, "two", 20}, {3, "three", 10}};
    EXPECT_EQ(ListTopWindows().size(), 3U);
    const std::vector<DesktopWindow> own = ListThreadWindows(10);
    ASSERT_EQ(own.size(), 2U);
    EXPECT_EQ(own[0].caption, "one");
    EXPECT_EQ(own[1].handle, 3U);
}

TEST(Desktop, TopMostAndCursorAreSwitchedBothWays) {
    test::FakeDesktop desktop;
    SetTopMost(7);
    EXPECT_TRUE(desktop.top_most.at(7));
    ClearTopMost(7);
    EXPECT_FALSE(desktop.top_most.at(7));
    HideCursor();
    EXPECT_FALSE(desktop.cursor_shown);
    ShowCursor();
    EXPECT_TRUE(desktop.cursor_shown);
}

TEST(Desktop, TheWindowsVersionIsTheNewerFamilys) {
    EXPECT_EQ(WindowsVersion(), 6);
}

} // namespace
} // namespace kelvash
