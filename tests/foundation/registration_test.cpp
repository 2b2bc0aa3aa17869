#include "foundation/registration.h"

#include <gtest/gtest.h>

#include "support/foundation_home.h"

namespace kelvash {
namespace {

class Registration : public test::FoundationHome {};

TEST_F(Registration, AMissingKeyIsEmpty) {
    EXPECT_EQ(ReadRegistryValue("SOFTWARE\\Kelvash test\\No such key"), "");
    EXPECT_EQ(ReadRegistryValue(""), "");
}

TEST_F(Registration, AShortcutStaysBelowItsFolder) {
    EXPECT_FALSE(CreateShortcut(SpecialFolderId::Programs, "C:\\Kelvash", "x.exe", "..\\..\\evil", ""));
    EXPECT_FALSE(CreateShortcut(SpecialFolderId::Programs, "C:\\Kelvash", "x.exe", "", ""));
}

} // namespace
} // namespace kelvash
