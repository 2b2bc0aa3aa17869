#include "foundation/file_times.h"

#include <gmock/gmock.h>

#include "foundation/files.h"
#include "support/foundation_home.h"

namespace kelvash {
namespace {

using testing::ElementsAre;

class FileTimesOf : public test::FoundationHome {};

TEST_F(FileTimesOf, ComeInTheOrderOfThePaths) {
    test::MakeFile(drive / "Shots/a.jpg", "a");
    test::MakeFile(drive / "Shots/b.jpg", "b");
    test::MakeFile(drive / "other/a.jpg", "c");
    ASSERT_TRUE(SetFileDate("C:\\Shots\\a.jpg", 1000));
    ASSERT_TRUE(SetFileDate("C:\\Shots\\b.jpg", 3000));
    ASSERT_TRUE(SetFileDate("C:\\other\\a.jpg", 2000));
    EXPECT_THAT(FileTimes({"C:\\shots\\b.jpg", "C:\\shots\\a.jpg", "C:\\other\\a.jpg", "C:\\other\\gone.jpg",
                           "C:\\shots\\a.jpg"}),
                ElementsAre(3000, 1000, 2000, std::nullopt, 1000));
    EXPECT_TRUE(FileTimes({}).empty());
}

} // namespace
} // namespace kelvash
