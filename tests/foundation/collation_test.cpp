#include "foundation/collation.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <string>
#include <vector>

namespace kelvash {
namespace {

using testing::ElementsAre;

std::vector<std::string> InOrder(std::vector<std::string> texts) {
    std::sort(texts.begin(), texts.end(),
              [](const std::string& a, const std::string& b) { return CollationKey(a) < CollationKey(b); });
    return texts;
}

TEST(Collation, PutsLettersWithMarksBesideThoseWithout) {
    EXPECT_THAT(InOrder({"Zebra", "Über", "Uta", "Ubi", "Éden", "Eden", "Edda", "Ñandu", "Nora", "Łódź",
                         "Lodge", "Loft"}),
                ElementsAre("Edda", "Eden", "Éden", "Lodge", "Łódź", "Loft", "Ñandu", "Nora", "Über", "Ubi",
                            "Uta", "Zebra"));
}

TEST(Collation, TakesPairsForWhatTheyStandFor) {
    EXPECT_THAT(InOrder({"Straßf", "Strasse", "Straße", "Strast", "Æon", "Aes", "Af", "Œuvre", "Oeil"}),
                ElementsAre("Æon", "Aes", "Af", "Oeil", "Œuvre", "Strasse", "Straße", "Straßf", "Strast"));
}

TEST(Collation, HasNoRegardToCase) {
    EXPECT_EQ(CollationKey("the maze"), CollationKey("The Maze"));
    EXPECT_EQ(CollationKey("ÜBER"), CollationKey("über"));
    EXPECT_THAT(InOrder({"beta", "Alpha", "Gamma", "alpha 2"}),
                ElementsAre("Alpha", "alpha 2", "beta", "Gamma"));
}

TEST(Collation, TellsApartWhatOnlyAMarkTellsApart) {
    EXPECT_LT(CollationKey("Eden"), CollationKey("Éden"));
    EXPECT_NE(CollationKey("Éden"), CollationKey("Êden"));
}

TEST(Collation, AMarkOfItsOwnCharacterDoesNotCount) {
    EXPECT_THAT(InOrder({"U\xCC\x88"
                         "bf",
                         "Uber", "Ubz"}),
                ElementsAre("Uber",
                            "U\xCC\x88"
                            "bf",
                            "Ubz"));
}

TEST(Collation, LeavesSignsOtherAlphabetsAndBrokenBytesInPlace) {
    EXPECT_THAT(InOrder({"Ω", "a", "- x", "Я", "1"}), ElementsAre("- x", "1", "a", "Ω", "Я"));
    EXPECT_EQ(CollationKey("\xC3"), "\xC3");
    EXPECT_EQ(CollationKey("5×3"), "5×3");
}

} // namespace
} // namespace kelvash
