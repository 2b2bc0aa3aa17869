// The window beside other programs that change what it shows.
#include <gmock/gmock.h>

#include <QImage>

#include "support/bitmaps.h"
#include "swap/install.h"
#include "ui/principale_home.h"

namespace kelvash::test {
namespace {

using testing::Contains;
using testing::Not;

class WindowBeside : public PrincipaleHome {
  protected:
    WindowBeside() {
        EXPECT_TRUE(core::WriteArchive("C:\\Kelvash\\test.kva"));
        form.Timer_Beside->setInterval(20);
        core::SelectLevel(1);
        Settle();
    }
    // Time in which the window looks more than once.
    static void Settle() { QTest::qWait(150); }
    // Another program writes the Archive.
    static void WriteBeside(const std::function<void(core::ArchiveContents&)>& change) {
        core::ArchiveContents other = core::archive;
        change(other);
        ASSERT_TRUE(core::WriteArchiveFile("C:\\Kelvash\\test.kva", other));
    }
    static void AddDelta(core::ArchiveContents& other) {
        core::LevelRecord level;
        level.Code = 4;
        level.Name = "Delta";
        other.Table.Append(level);
    }
};

TEST_F(WindowBeside, ShowsALevelThatIsAdded) {
    WriteBeside(&AddDelta);
    WaitUntil([this] { return Shown().size() == 5; });
    EXPECT_THAT(Shown(), Contains("Delta"));
    EXPECT_EQ(form.windowTitle().toStdString(), "Kelvash: 5 (test.kva levels)");
    EXPECT_EQ(Current(), "City of Gold") << "what is selected stays";
}

TEST_F(WindowBeside, ShowsANoteThatIsChanged) {
    WriteBeside([](core::ArchiveContents& other) { other.Table.Edit(1)->Note = "told elsewhere"; });
    WaitUntil([this] { return form.Label_InfoLevel->text() == QLatin1String("told elsewhere"); });
}

TEST_F(WindowBeside, LeavesALevelThatIsRemoved) {
    WriteBeside([](core::ArchiveContents& other) { other.Table.Remove(1); });
    WaitUntil([this] { return Shown().size() == 3; });
    EXPECT_EQ(Current(), "- TRLE: Original configuration - (*)");
    EXPECT_EQ(form.Image_Level->Name().toStdString(), "- TRLE: Original configuration -");
}

TEST_F(WindowBeside, MovesTheMarkWithAnInstall) {
    ASSERT_TRUE(swap::InstallLevel(2)); // the list isn't told
    WaitUntil([this] { return form.Label_Play->text() == QLatin1String("Takes out \"Alpha\" first"); });
    EXPECT_THAT(Shown(), Contains("Alpha (*)"));
}

TEST_F(WindowBeside, ShowsFilesThatComeToTheLevel) {
    ASSERT_TRUE(form.Empty_Shots->isVisible());
    form.Say(QStringLiteral("Added: City of Gold"));
    MakeFile(LevelPath(1) / "SCREENSHOTS/1.bmp", MakeBitmap({}));
    WaitUntil([this] { return !form.Empty_Shots->isVisible(); });
    MakeFile(StashPath(1) / "savegame.1", "Hall,");
    WaitUntil([this] { return form.List_SaveGameTomb->count() == 2; });
    MakeFile(StashPath(1) / "savegame.1", "Tower,"); // in its place
    WaitUntil([this] { return form.List_SaveGameTomb->item(1)->text().contains(QLatin1String("Tower")); });
    EXPECT_EQ(form.Label_Info->text().toStdString(), "Added: City of Gold");
}

TEST_F(WindowBeside, ShowsWhatChangesAmongTheArchivedSavegames) {
    const auto slots = LevelPath(1) / "SAVEGAMES";
    MakeFile(slots / "slot1/savegame.0", "Hall,");
    MakeFile(slots / "slot1/savegame.1", "Tower,");
    WaitUntil([this] { return form.List_SaveGameArchiviati->count() == 2; });
    Settle();
    std::filesystem::remove(slots / "slot1/savegame.1");
    WaitUntil([this] { return form.List_SaveGameArchiviati->count() == 1; });
    Settle();
    MakeFile(slots / "slot1/kept/savegame.2", "Cellar,"); // at any depth
    WaitUntil([this] { return form.List_SaveGameArchiviati->count() == 2; });
    Settle();
    std::filesystem::remove(slots / "slot1/kept/savegame.2");
    WaitUntil([this] { return form.List_SaveGameArchiviati->count() == 1; });
}

TEST_F(WindowBeside, ShowsAPictureThatIsPaintedOver) {
    const auto folder = LevelPath(1) / "SCREENSHOTS";
    std::filesystem::create_directories(folder);
    const auto paint = [&folder](const QSize& size) { // in its place, as graphics programs do
        QImage picture(size, QImage::Format_RGB32);
        picture.fill(Qt::red);
        EXPECT_TRUE(picture.save(QString::fromStdString((folder / "1.bmp").string())));
    };
    const auto shows = [this](bool wide) {
        const QSize size = form.Image1->PictureSize();
        return form.Image1->HasPicture() && (size.width() > 3 * size.height()) == wide;
    };
    form.ShowPanel(true);
    paint({40, 40});
    WaitUntil([&] { return !form.Empty_Shots->isVisible() && shows(false); });
    Settle();
    paint({400, 40});
    WaitUntil([&] { return shows(true); });
}

TEST_F(WindowBeside, ReadsTheRowsOfOtherLevelsAnew) {
    const auto line = [this] {
        const auto& model = dynamic_cast<const ui::LevelModel&>(*form.Combo_Livelli->model());
        return model.Row(1).line.toStdString();
    };
    WaitUntil([&] { return line().find("savegame") == std::string::npos; });
    Settle(); // its card is read
    MakeFile(StashPath(2) / "savegame.0", "Alpha,");
    WriteBeside([](core::ArchiveContents& other) { other.Table.Edit(2)->SavesSize = 6; });
    WaitUntil([&] { return line().find("1 savegame") != std::string::npos; });
}

TEST_F(WindowBeside, LeavesAnArchiveWithUnsavedChangesAlone) {
    core::archive.ArchiveChanged = true;
    WriteBeside(&AddDelta);
    Settle();
    EXPECT_THAT(Shown(), Not(Contains("Delta")));
    EXPECT_TRUE(core::archive.ArchiveChanged);
    core::archive.ArchiveChanged = false; // they are given up
    WaitUntil([this] { return Shown().size() == 5; });
}

TEST_F(WindowBeside, WaitsForTheEndOfAJob) {
    {
        const JobScope job;
        WriteBeside(&AddDelta);
        Settle();
        EXPECT_THAT(Shown(), Not(Contains("Delta")));
    }
    WaitUntil([this] { return Shown().size() == 5; });
}

// What is selected in a list of savegames would be lost.
TEST_F(WindowBeside, LeavesAPageAloneOfWhichNothingHasChanged) {
    form.Pul_SaveGames->click();
    form.List_SaveGameTomb->setCurrentRow(0);
    core::ArchiveTouched();
    ASSERT_TRUE(core::WriteArchive("C:\\Kelvash\\test.kva"));
    Settle();
    EXPECT_EQ(form.List_SaveGameTomb->currentRow(), 0);
}

} // namespace
} // namespace kelvash::test
