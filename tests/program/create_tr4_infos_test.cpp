#include "program/create_tr4_infos.h"

#include <gmock/gmock.h>

#include "core/archive.h"
#include "core/tr4_info.h"
#include "support/core_home.h"
#include "support/swap_world.h"

namespace kelvash::program {
namespace {

using core::ReadTr4Info;
using core::Tr4List;
using testing::Contains;
using testing::IsEmpty;

class CreateTr4Infos : public test::CoreHome {
  protected:
    void AddLevel(std::int32_t code, const std::string& name, const std::string& file,
                  const std::string& bytes) {
        AddRecord(code, name);
        test::MakeFile(Folder(code) / "FILES" / file, bytes);
    }
    std::filesystem::path Folder(std::int32_t code) const {
        return levels / ("LEVEL_000" + std::to_string(code));
    }
};

TEST_F(CreateTr4Infos, MakesMissingOnesAlsoOfStoredForms) {
    AddLevel(1, "Plain", "maze.tr4", "level");
    AddLevel(2, "Packed", "pass.tr4.zl", test::ZlibStream("unpacked"));
    AddLevel(3, "Damaged", "bad.tr4.zl", "no stream");
    AddLevel(4, "Has one", "new.tr4", "x");
    Tr4List = {{"kept.tr4", 0, 4}};
    ASSERT_TRUE(core::WriteTr4Info(core::PlaceAt(4)));
    CreaInfoTr4();
    EXPECT_THAT(user.Shown(), Contains("Creating tr4.inf files in progress"));
    EXPECT_THAT(user.Told(), Contains("critical: Error decompressing files of level [Damaged"));
    ASSERT_TRUE(ReadTr4Info(core::PlaceOf(1)));
    EXPECT_EQ(Tr4List.at(0).FileName, "maze.tr4");
    ASSERT_TRUE(ReadTr4Info(core::PlaceOf(2)));
    EXPECT_EQ(Tr4List.at(0).FileName, "pass.tr4");
    EXPECT_EQ(Tr4List.at(0).FileSize, 8);
    EXPECT_FALSE(test::Exists(Folder(3) / "tr4.inf"));
    ASSERT_TRUE(ReadTr4Info(core::PlaceOf(4)));
    EXPECT_EQ(Tr4List.at(0).FileName, "kept.tr4");
    EXPECT_THAT(Entries(home / "_temp_Dec"), IsEmpty()) << "after a failure it stays till its next use";
}

TEST_F(CreateTr4Infos, EndsWithoutACd) {
    AddRecord(1, "On CD", 1);
    CreaInfoTr4();
    EXPECT_EQ(user.Told().back(), "exclamation: Missing cd. Creating tr4.inf files aborted");
}

} // namespace
} // namespace kelvash::program
