#include "core/change.h"

#include <gmock/gmock.h>

#include "core/archive.h"
#include "core/change_messages.h"
#include "core/level_list.h"
#include "core/profile.h"
#include "foundation/drives.h"
#include "foundation/platform/platform.h"
#include "intake/author_notes.h"
#include "intake/messages.h"
#include "intake/new_level.h"
#include "support/core_home.h"
#include "swap/messages.h"

namespace kelvash::core {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

namespace fs = std::filesystem;

class ChangeTest : public test::CoreHome {
  protected:
    ChangeTest() {
        fs::create_directories(drive / "trle");
        profile.TrleFolder = "C:\\trle";
        AddRecord(1, "City");
        EXPECT_TRUE(WriteArchive(profile.LastArchive));
        RefreshLevelList();
    }
    static bool IsLocked(const std::string& folder) {
        LockHolder holder;
        FolderLock lock;
        return lock.Take(folder, LockKind::Change, "", holder) == LockResult::Taken && !lock.IsOnly();
    }
    // The Archive's file as another program leaves it that has added a level.
    void AddElsewhere(std::int32_t code, const std::string& name) {
        ArchiveContents contents;
        ASSERT_TRUE(ReadArchiveFile(profile.LastArchive, contents));
        LevelRecord level;
        level.Code = code;
        level.Name = name;
        contents.Table.Append(level);
        ASSERT_TRUE(WriteArchiveFile(profile.LastArchive, contents));
    }
    std::vector<std::string> NamesInFile() const {
        ArchiveContents contents;
        EXPECT_TRUE(ReadArchiveFile("C:\\Kelvash\\test.kva", contents));
        std::vector<std::string> names;
        for (const LevelRecord& level : contents.Table)
            names.push_back(level.Name);
        return names;
    }
    // The Archive's file as another program leaves it: with a level in front of that of the code 1.
    void PutLevelInFront() {
        ArchiveContents contents;
        ASSERT_TRUE(ReadArchiveFile(profile.LastArchive, contents));
        LevelRecord before;
        before.Code = 7;
        before.Name = "Before";
        contents.Table.Append(contents.Table[1]);
        contents.Table.Replace(1, before);
        ASSERT_TRUE(WriteArchiveFile(profile.LastArchive, contents));
    }
    const std::string zero_ = "- TRLE: Original configuration -";
};

TEST_F(ChangeTest, LocksWhatItChangesAndNothingElse) {
    {
        const Change change(msg::kDoingSizes, kHomeFolder | kArchiveFolder);
        EXPECT_TRUE(static_cast<bool>(change));
        EXPECT_TRUE(IsLocked("C:\\Kelvash"));
        EXPECT_TRUE(IsLocked("C:\\Levels"));
        EXPECT_FALSE(IsLocked("C:\\trle"));
        const Change inner(msg::kDoingInstall, kSwap);
        EXPECT_TRUE(static_cast<bool>(inner));
        EXPECT_TRUE(IsLocked("C:\\trle"));
    }
    EXPECT_FALSE(IsLocked("C:\\Kelvash"));
    EXPECT_FALSE(IsLocked("C:\\Levels"));
    EXPECT_THAT(user.Told(), IsEmpty());
}

TEST_F(ChangeTest, EndsBeforeItsScope) {
    Change change(msg::kDoingInstall, kSwap);
    change.End();
    EXPECT_FALSE(IsLocked("C:\\trle"));
}

TEST_F(ChangeTest, IsRefusedByOneWhoseNameIsNotThere) {
    const int other = platform::OpenLockFile(RuntimeFolder() / (FolderIdentity("C:\\trle") + ".lock"));
    ASSERT_EQ(platform::TryLock(other), LockResult::Taken);
    platform::WriteNote(other, {});
    const Change change(msg::kDoingAdd, kAll);
    EXPECT_FALSE(static_cast<bool>(change));
    EXPECT_THAT(user.Told(), ElementsAre("critical: Another Kelvash is using this TRLE folder"));
    platform::CloseLockFile(other);
}

TEST_F(ChangeTest, IsRefusedWithoutALock) {
    fs::create_directory(RuntimeFolder() / (FolderIdentity("C:\\trle") + ".lock"));
    const Change change(msg::kDoingAdd, kAll);
    EXPECT_FALSE(static_cast<bool>(change));
    EXPECT_FALSE(IsLocked("C:\\Kelvash")) << "what was taken is given back";
    EXPECT_THAT(user.Told(),
                ElementsAre("critical: Kelvash has no folder of its own for its locks, so it can't "
                            "keep other programs out. Nothing has been changed."));
}

// --- the Archive against its file ---

TEST_F(ChangeTest, BringsTheArchiveUpToDate) {
    AddElsewhere(2, "Coast");
    const Change change(msg::kDoingAdd, kAll);
    EXPECT_TRUE(static_cast<bool>(change));
    EXPECT_EQ(archive.Table.NextCode(), 3);
    EXPECT_EQ(level_list.Items.size(), 3U);
    EXPECT_THAT(user.Told(), IsEmpty());
}

TEST_F(ChangeTest, LeavesTheArchiveAloneWithinAnother) {
    const Change outer(msg::kDoingAdd, kAll);
    AddElsewhere(2, "Coast");
    const Change inner(msg::kDoingSizes, kArchiveFolder);
    EXPECT_EQ(archive.Table.NextCode(), 2);
}

TEST_F(ChangeTest, TakesAFileThatIsOnlyTouchedForTheSame) {
    fs::last_write_time(kva, fs::last_write_time(kva) + std::chrono::hours(1));
    EXPECT_FALSE(RefreshArchive());
    archive.Table.Edit(1)->Name = "New name";
    ArchiveTouched();
    EXPECT_THAT(NamesInFile(), ElementsAre(zero_, "New name"));
}

TEST_F(ChangeTest, TakesNoDamagedFileForANewerOne) {
    test::MakeFile(kva, "");
    const Change change(msg::kDoingSizes, kAll);
    EXPECT_EQ(archive.Table.Size(), 2);
}

TEST_F(ChangeTest, LocksTheFolderThatANewerFileNames) {
    fs::create_directories(drive / "Moved");
    ArchiveContents contents;
    ASSERT_TRUE(ReadArchiveFile(profile.LastArchive, contents));
    contents.Header.SecondaryFolder = "C:\\Moved";
    ASSERT_TRUE(WriteArchiveFile(profile.LastArchive, contents));
    const Change change(msg::kDoingAdd, kAll);
    EXPECT_TRUE(IsLocked("C:\\Moved"));
    EXPECT_FALSE(IsLocked("C:\\Levels"));
}

TEST_F(ChangeTest, IsRefusedForALevelThatAnotherProgramHasRemoved) {
    ArchiveContents contents;
    ASSERT_TRUE(ReadArchiveFile(profile.LastArchive, contents));
    contents.Table.Remove(1);
    ASSERT_TRUE(WriteArchiveFile(profile.LastArchive, contents));
    SelectLevel(1);
    EXPECT_FALSE(intake::ShowProperty()) << "another level would be shown";
    EXPECT_THAT(user.Told(),
                ElementsAre("critical: The level is no longer in the Archive: another Kelvash has "
                            "removed it"));
    EXPECT_EQ(archive.Table.Size(), 1);
}

TEST_F(ChangeTest, FindsItsLevelWhereItIsBehindTheDoor) {
    PutLevelInFront();
    const Change change(msg::kDoingSizes, kArchiveFolder, 1);
    ASSERT_TRUE(static_cast<bool>(change));
    EXPECT_EQ(change.Level().Index, 2) << "not where it was before";
    EXPECT_EQ(change.Level().Name, "City");
    EXPECT_EQ(change.Level().Folder, "C:\\Levels\\LEVEL_0001");
}

TEST_F(ChangeTest, OfNoLevelHasNone) {
    const Change change(msg::kDoingSizes, kArchiveFolder);
    EXPECT_FALSE(change.Level().IsListed());
}

TEST_F(ChangeTest, StoresNotesInTheLevelThatTheyAreOf) {
    intake::AuthorNotes notes = intake::BeginAuthorNotes(1);
    notes.Name = "Ann";
    PutLevelInFront();
    ASSERT_TRUE(intake::StoreAuthorNotes(notes));
    EXPECT_EQ(archive.Table.ByCode(1).Author, "Ann");
    EXPECT_EQ(archive.Table.ByCode(7).Author, "");
    EXPECT_THAT(NamesInFile(), ElementsAre(zero_, "Before", "City"));
}

TEST_F(ChangeTest, AsksBeforeItOverwritesWhatAnotherProgramHasWritten) {
    profile.AutoSave = false;
    archive.Table.Edit(1)->Name = "Mine";
    ArchiveTouched();
    AddElsewhere(2, "Coast");
    user.WillAnswer(
        "Another program has changed the Archive test.kva since Kelvash read it.\r\nIn its file: 3 "
        "levels, saved ",
        "no");
    EXPECT_FALSE(SaveArchive());
    EXPECT_THAT(NamesInFile(), ElementsAre(zero_, "City", "Coast"));
    EXPECT_TRUE(archive.ArchiveChanged);
    EXPECT_THAT(user.Asked().back(), HasSubstr("\r\nHere: 2 levels, read "));
    EXPECT_THAT(user.Told(), IsEmpty());
    user.WillAnswer("Do you want to overwrite the file with what is here?", "yes");
    EXPECT_TRUE(SaveArchive());
    EXPECT_THAT(NamesInFile(), ElementsAre(zero_, "Mine"));
}

TEST_F(ChangeTest, KeepsOthersOutWhileChangesAreUnsaved) {
    profile.AutoSave = false;
    ArchiveTouched();
    EXPECT_TRUE(IsLocked("C:\\Levels"));
    EXPECT_FALSE(IsLocked("C:\\Kelvash"));
    EXPECT_THAT(test::BytesOf(RuntimeFolder() / (FolderIdentity("C:\\Levels") + ".lock")),
                HasSubstr("\nit has changes that aren't saved yet\n"));
    EXPECT_TRUE(SaveArchive());
    EXPECT_FALSE(IsLocked("C:\\Levels"));
}

TEST_F(ChangeTest, LetsOthersInWhenChangesAreDropped) {
    profile.AutoSave = false;
    ArchiveTouched();
    user.WillAnswer("Do you want save it?", "no");
    AskSaveArchive();
    EXPECT_FALSE(IsLocked("C:\\Levels"));
}

TEST_F(ChangeTest, WritesOverAFileThatIsGone) {
    fs::remove(kva);
    ArchiveTouched();
    EXPECT_THAT(NamesInFile(), ElementsAre(zero_, "City"));
}

// --- a stale window ---

TEST_F(ChangeTest, AddsALevelBesideThatOfAnotherProgram) {
    AddElsewhere(2, "Coast");
    test::MakeFile(levels / "LEVEL_0002" / "FILES" / "coast.tr4", "coast");
    user.WillGiveUp<intake::NewLevel>();
    EXPECT_FALSE(intake::AddLevel());
    EXPECT_EQ(test::BytesOf(levels / "LEVEL_0002" / "FILES" / "coast.tr4"), "coast");
    EXPECT_THAT(Entries(levels), ElementsAre("LEVEL_0002\\"));
    EXPECT_THAT(NamesInFile(), ElementsAre(zero_, "City", "Coast"));
}

} // namespace
} // namespace kelvash::core
