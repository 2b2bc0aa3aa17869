#include "foundation/messages.h"

#include <gmock/gmock.h>

#include "foundation/texts.h"

namespace kelvash {
namespace {

TEST(Messages, OfTheFoundationStandToTheLetter) {
    EXPECT_EQ(LoadMessage(msg::kCannotCreateFolder), "I can not create '~1' folder");
    EXPECT_EQ(LoadMessage(msg::kErrorCopyingFileTo), "Error copying file '~1' to '");
    EXPECT_EQ(LoadMessage(msg::kErrorCopyingFileFromTo), "Error copying file from '~1'  to  '");
    EXPECT_EQ(LoadMessage(msg::kUtilityMissing), "Utility \"~1\" doesn't exist");
    EXPECT_EQ(LoadMessage(msg::kPipeFailed), "Error in function CreatePipe()");
    EXPECT_EQ(LoadMessage(msg::kRedirectFailed), "Error redirecting standard output with SetStdHandle");
    EXPECT_EQ(LoadMessage(msg::kNulInOutput), "Valore 0");
    EXPECT_EQ(LoadMessage(msg::kBreakUser), "Break user");
}

TEST(MessageMarks, WithoutArgumentsTheTextIsUnchanged) {
    EXPECT_EQ(FillMarks("\\note~1.txt", {}), "\\note~1.txt");
}

TEST(MessageMarks, OnlyTheFirstOccurrenceOfAMarkIsFilled) {
    EXPECT_EQ(FillMarks("a~1b~1", {"X"}), "aXb~1");
}

TEST(MessageMarks, AMarkWithoutAnArgumentStays) {
    EXPECT_EQ(FillMarks("~1 and ~2", {"X"}), "X and ~2");
    EXPECT_EQ(FillMarks("only ~1", {"X", "Y"}), "only X");
    EXPECT_EQ(LoadMessage(msg::kCannotCreateFolder, {"C:\\x", "Y"}), "I can not create 'C:\\x' folder");
}

TEST(MessageMarks, FourteenMarksAreFilledEachWithItsOwn) {
    EXPECT_EQ(FillMarks("~1.~2.~3.~4.~5.~6.~7.~8.~9.~10.~11.~12.~13.~14",
                        {"a", "b", "c", "d", "e", "f", "g", "h", "i", "j", "k", "l", "m", "n"}),
              "a.b.c.d.e.f.g.h.i.j.k.l.m.n");
}

TEST(MessageMarks, AMarkInsideAnArgumentIsFilledInItsTurn) {
    EXPECT_EQ(FillMarks("~1 - ~2", {"<~2>", "X"}), "<X> - ~2");
    EXPECT_EQ(FillMarks("~2 - ~1", {"<~2>", "X"}), "X - <~2>"); // the true one stands first
    EXPECT_EQ(FillMarks("~1~2", {"a~1", "X"}), "a~1X");         // its own turn is over
}

TEST(MessageMarks, InAnArgumentOfOthersAreNone) {
    EXPECT_EQ(LoadMessageOfOthers(msg::kErrorCopyingFileTo, {"~1 ~2", "X"}),
              "Error copying file '~1 ~2' to '");
    EXPECT_EQ(LoadMessageOfOthers(msg::kCannotCreateFolder, {}), "I can not create '~1' folder");
    SetTranslation({{msg::kCannotCreateFolder.Number(), "~3|~1|~2|~1|~10"}});
    const auto fill = [](const MessageArgs& args) {
        return LoadMessageOfOthers(msg::kCannotCreateFolder, args);
    };
    EXPECT_EQ(fill({"a~2", "b~3~1", "c~1~2"}), "c~1~2|a~2|b~3~1|~1|~10");
    EXPECT_EQ(fill({"", "~2", ""}), "||~2|~1|~10");
    EXPECT_EQ(fill({"C:\\DOCUME~2\\A~3.JPG", "x", "y"}), "y|C:\\DOCUME~2\\A~3.JPG|x|~1|~10");
    EXPECT_EQ(fill({"~1", "2", "3", "4", "5", "6", "7", "8", "9", "ten"}), "3|~1|2|~1|ten");
    SetTranslation({});
}

} // namespace
} // namespace kelvash
