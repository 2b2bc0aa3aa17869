// The forms by which levels come in and are changed.
#include <gmock/gmock.h>

#include <QDropEvent>
#include <QMenu>
#include <QMimeData>
#include <QUrl>
#include <chrono>

#include "core/tr4_info.h"
#include "foundation/files.h"
#include "intake/new_level.h"
#include "principale_home.h"
#include "support/zip_bytes.h"
#include "ui/Dialog_Autore.h"
#include "ui/Dialog_NewLevel.h"
#include "ui/Dialog_PrefArc.h"
#include "ui/Dialog_Progress.h"

namespace kelvash::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using ui::Dialog_Autore;
using ui::Dialog_NewLevel;
using ui::Dialog_PrefArc;

class LevelForms : public PrincipaleHome {
  protected:
    LevelForms() {
        MakeFile(drive / "in/Maze.zip",
                 MakeZipBytes({MakeEntry("maze.tr4", "level data"), MakeEntry("script.dat", "s"),
                               MakeEntry("DOC/readme.txt", "Hi"), MakeEntry("english.dat", "e")}));
        std::filesystem::create_directories(drive / "in/Two");
        for (const char* name : {"two.tr4", "script.dat", "english.dat"})
            MakeFile(drive / "in/Two" / name, name);
    }
    void Drop(QWidget* on, const std::vector<std::string>& files) {
        QMimeData data;
        QList<QUrl> urls;
        for (const std::string& file : files)
            urls.append(QUrl::fromLocalFile(QString::fromStdString((drive / file).string())));
        data.setUrls(urls);
        QDragEnterEvent enter({10, 10}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(on, &enter);
        EXPECT_TRUE(enter.isAccepted());
        QDropEvent drop({10, 10}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(on, &drop);
    }
    static std::vector<std::string> Files(const Dialog_NewLevel& open) {
        std::vector<std::string> names;
        for (int row = 0; row < open.List_Files->count(); ++row)
            names.push_back(open.List_Files->item(row)->text().toStdString());
        return names;
    }
    // What is done with the form of a level once it stands.
    void WillWork(const std::function<void(Dialog_NewLevel&)>& act) {
        robot.Will("Dialog_NewLevel",
                   [act](QWidget* window) { act(*qobject_cast<Dialog_NewLevel*>(window)); });
    }
    std::int32_t Count() const { return core::archive.Table.Size(); }
};

TEST_F(LevelForms, ADroppedZipOpensTheFormAndIsAdded) {
    Type("beta"); // a filter that would hide it
    WillWork([&](Dialog_NewLevel& open) {
        EXPECT_EQ(open.windowTitle().toStdString(), " Add new level");
        EXPECT_EQ(open.Text_NameLevel->text().toStdString(), "Maze");
        EXPECT_EQ(open.Combo_MoreInfo->currentText().toStdString(), "readme.txt");
        EXPECT_EQ(open.Label_Size->text().toStdString(), "4 files (14)");
        EXPECT_THAT(Files(open), ElementsAre("english.dat", "maze.tr4", "readme.txt", "script.dat"));
        open.Text_NameLevel->setText(QStringLiteral("The Maze of Échoes"));
        open.Text_Note->setText(QStringLiteral("Bring oil"));
        Press(&open, "Pul_Ok");
    });
    Drop(&form, {"in/Maze.zip"});
    WaitUntil([&] { return Count() == 5; });
    WaitUntil([&] { return Current() == "The Maze of Échoes"; });
    EXPECT_EQ(core::archive.Table[4].Note, "Bring oil");
    EXPECT_EQ(core::archive.Table[4].MoreInfoFile, "readme.txt");
    EXPECT_EQ(form.Label_InfoLevel->text().toStdString(), "Bring oil");
    EXPECT_EQ(BytesOf(LevelPath(4) / "FILES/maze.tr4"), "level data");
    EXPECT_EQ(form.Label_Info->text().toStdString(), "Added: The Maze of Échoes");
}

TEST_F(LevelForms, ANameIsJudgedWhereItIsTyped) {
    WillWork([&](Dialog_NewLevel& open) {
        EXPECT_EQ(open.Note_Fields->text().toStdString(), "");
        const auto note = [&open](QLineEdit* field, const char* text) {
            field->setText(QString::fromUtf8(text));
            QTest::qWait(300);
            EXPECT_EQ(field->accessibleDescription(), open.Note_Fields->text());
            return open.Note_Fields->text().toStdString();
        };
        EXPECT_EQ(note(open.Text_NameLevel, " "), "A level needs a name");
        EXPECT_EQ(note(open.Text_NameLevel, "Ωmega Ω Ж"), "These characters can't be stored: Ω Ж");
        EXPECT_EQ(note(open.Text_NameLevel, "Größe"), "");
        EXPECT_EQ(note(open.Text_Note, "→ there"), "These characters can't be stored: →");
        EXPECT_EQ(note(open.Text_Note, ""), "");
        Press(&open, "Pul_Cancel");
    });
    core::SelectLevel(1);
    Choose(Entry::mnu_Property);
}

TEST_F(LevelForms, ADroppedFolderIsTakenByTheOpenForm) {
    WillWork([&](Dialog_NewLevel& open) {
        EXPECT_EQ(open.List_Files->count(), 3);
        EXPECT_TRUE(open.Text_NameLevel->text().isEmpty());
        Drop(&open, {"in/Maze.zip"}); // more files for the same level
        WaitUntil([&] { return open.List_Files->count() == 5; });
        Press(&open, "Pul_Cancel");
    });
    Drop(&form, {"in/Two"});
    WaitUntil([&] { return robot.HasSeen("Add new level") && !Exists(LevelPath(4)); });
    EXPECT_EQ(Count(), 4);
}

TEST_F(LevelForms, SeveralDropsAreTakenInWithASummary) {
    robot.WillPress("Added levels: 2 of 2", "OK");
    Drop(&form, {"in/Maze.zip", "in/Two"});
    WaitUntil([&] { return Count() == 6; });
    EXPECT_EQ(core::archive.Table[4].Name, "Maze");
    EXPECT_EQ(core::archive.Table[5].Name, "Two");
}

TEST_F(LevelForms, WithoutAnArchiveNothingCanBeDropped) {
    core::CloseArchive();
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(QString::fromStdString((drive / "in/Maze.zip").string()))});
    QDragEnterEvent enter({10, 10}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    enter.ignore();
    QCoreApplication::sendEvent(&form, &enter);
    EXPECT_FALSE(enter.isAccepted());
    for (const Entry entry : {Entry::mnu_AddLevel, Entry::mnu_Property, Entry::mnu_RemoveLevel,
                              Entry::mnu_Export, Entry::mnu_PrefArchive})
        EXPECT_FALSE(form.Command(entry)->isEnabled()) << form.Command(entry)->objectName().toStdString();
    EXPECT_TRUE(form.Command(Entry::mnu_Recover)->isEnabled());
}

TEST_F(LevelForms, FilesAreAddedRemovedAndRefreshed) {
    WillWork([&](Dialog_NewLevel& open) {
        EXPECT_FALSE(open.Pul_Remove->isEnabled());
        EXPECT_FALSE(open.Pul_RimuoviTutti->isEnabled());
        for (QPushButton* later : {open.Pul_SearchLevel, open.Pul_CompileTom, open.Pul_SetMyLanguage})
            EXPECT_FALSE(later->isEnabled());
        robot.WillChooseFile("Select source file (zip or other)", drive / "in/Maze.zip");
        Press(&open, "Pul_AddFile");
        EXPECT_EQ(open.List_Files->count(), 4);
        MakeFile(LevelPath(4) / "FILES/by hand.txt", "x");
        Press(&open, "Pul_Refresh");
        EXPECT_EQ(open.List_Files->count(), 5);
        open.List_Files->setCurrentRow(0);
        robot.WillPress("Are you sure to remove file: by hand.txt", "Yes");
        QTest::keyClick(open.List_Files, Qt::Key_Delete);
        EXPECT_EQ(open.List_Files->count(), 4);
        robot.WillPress("Are you sure to remove file: english.dat", "No");
        Press(&open, "Pul_Remove");
        EXPECT_EQ(open.List_Files->count(), 4);
        Press(&open, "Pul_RimuoviTutti");
        EXPECT_EQ(open.List_Files->count(), 0);
        open.Text_NameLevel->setText(QStringLiteral("Empty"));
        robot.WillPress("Missing file .tr4 and also file .tom", "OK");
        Press(&open, "Pul_Ok");
        EXPECT_TRUE(open.isVisible());
        robot.WillPress("Do you want give up the new level?", "No");
        QTest::keyClick(&open, Qt::Key_Escape);
        EXPECT_TRUE(open.isVisible());
        EXPECT_EQ(open.Text_NameLevel->text().toStdString(), "Empty");
        robot.WillPress("Do you want give up the new level?", "Yes");
        open.close();
    });
    Choose(Entry::mnu_AddLevel);
    EXPECT_EQ(Count(), 4);
    EXPECT_FALSE(Exists(LevelPath(4)));
}

TEST_F(LevelForms, TheFormNamesItsFields) {
    WillWork([](Dialog_NewLevel& open) {
        EXPECT_EQ(Plain(open.Label_Note->text()), "Single row note");
        EXPECT_EQ(Plain(open.Label_MoreInfo->text()), "File as \"More Info\"");
        open.close();
    });
    Choose(Entry::mnu_AddLevel);
}

TEST_F(LevelForms, ACancelledLanguageKeepsTheFormOpen) {
    std::filesystem::remove(backup / "english.dat");
    WillWork([&](Dialog_NewLevel& open) {
        for (const char* name : {"maze.tr4", "script.dat", "french.dat", "german.dat"})
            MakeFile(LevelPath(4) / "FILES" / name, name);
        Press(&open, "Pul_Refresh");
        open.Text_NameLevel->setText(QStringLiteral("The Maze"));
        robot.Will("Choose language for current level",
                   [](QWidget* window) { QTest::keyClick(window, Qt::Key_Escape); });
        Press(&open, "Pul_Ok");
        EXPECT_TRUE(open.isVisible());
        EXPECT_THAT(Files(open), ElementsAre("french.dat", "german.dat", "maze.tr4", "script.dat"));
        robot.Will("Choose language for current level", [](QWidget* window) {
            auto* const field = window->findChild<QLineEdit*>();
            ASSERT_NE(field, nullptr);
            field->setText(QStringLiteral("2"));
            QTest::keyClick(field, Qt::Key_Return);
        });
        Press(&open, "Pul_Ok");
    });
    Choose(Entry::mnu_AddLevel);
    EXPECT_EQ(Count(), 5);
    EXPECT_TRUE(Exists(LevelPath(4) / "FILES/german.dat"));
    EXPECT_FALSE(Exists(LevelPath(4) / "FILES/french.dat"));
}

TEST_F(LevelForms, PropertiesChangeTheLevel) {
    core::SelectLevel(2);
    WillWork([](Dialog_NewLevel& open) {
        EXPECT_EQ(open.windowTitle().toStdString(), " Properties of level");
        EXPECT_EQ(open.Text_NameLevel->text().toStdString(), "Alpha");
        EXPECT_EQ(open.Label_Size->text().toStdString(), "Level size: 0 + 0 = 0");
        open.Text_NameLevel->setText(QStringLiteral("Omega"));
        Press(&open, "Pul_Cancel");
    });
    Choose(Entry::mnu_Property);
    EXPECT_EQ(core::archive.Table[2].Name, "Alpha");
    WillWork([&](Dialog_NewLevel& open) {
        open.Text_NameLevel->setText(QStringLiteral("Omega"));
        MakeFile(LevelPath(2) / "FILES/script.dat", "s");
        Press(&open, "Pul_Ok");
    });
    Choose(Entry::mnu_Property);
    EXPECT_EQ(core::archive.Table[2].Name, "Omega");
    EXPECT_EQ(Current(), "Omega");
}

TEST_F(LevelForms, RemovalAndExportWorkOnTheSelectedLevel) {
    core::SelectLevel(1);
    robot.WillChooseFile("Save exported level files", drive / "out.zip");
    robot.WillPress("All files of current level saved in C:\\out.zip", "OK");
    Choose(Entry::mnu_Export);
    EXPECT_TRUE(Exists(drive / "out.zip"));
    EXPECT_EQ(form.Label_Info->text().toStdString(), "Exported: City of Gold");
    robot.WillPress("Are you sure to want remove level \"City of Gold\" ?", "Yes");
    robot.WillPress("Do you want remove all sub-folders of level?", "Yes");
    robot.WillPress("Level has been removed", "OK");
    Choose(Entry::mnu_RemoveLevel);
    EXPECT_EQ(form.Label_Info->text().toStdString(), "Removed: City of Gold");
    EXPECT_EQ(Count(), 3);
    EXPECT_FALSE(Exists(LevelPath(1)));
    EXPECT_THAT(Shown(), testing::Not(testing::Contains("City of Gold")));
    EXPECT_EQ(Current(), "- TRLE: Original configuration - (*)");
}

TEST_F(LevelForms, MaintenanceCommandsWork) {
    Choose(Entry::mnu_CreaInfoTr4);
    EXPECT_TRUE(Exists(LevelPath(1) / "tr4.inf"));
    robot.WillPress("There is no equal level.", "OK");
    Choose(Entry::mnu_ControllaUguali);
    std::filesystem::create_directories(drive / "new");
    robot.Will("Select target folder", [](QWidget* window) {
        window->findChild<QLineEdit*>(QStringLiteral("Text_PathDir"))->setText(QStringLiteral("C:\\new"));
        Press(window, "Pul_Ok");
    });
    robot.WillPress("Folder archive moved in C:\\new", "OK");
    Choose(Entry::mnu_MoveArc);
    EXPECT_TRUE(Exists(drive / "new/LEVEL_0001/FILES/gold.tr4"));
    EXPECT_THAT(form.Label_InfoDir->text().toStdString(), HasSubstr("Path: \""));
}

class AuthorForm : public PrincipaleHome {
  protected:
    AuthorForm() {
        core::archive.Table.Edit(1)->Author = "Ada";
        core::archive.Table.Edit(1)->Emails = std::string("a@x.org\0b@x.org", 15);
        core::archive.Table.Edit(1)->AuthorNote = "Hello";
        core::SelectLevel(1);
    }
    void WillWork(const std::function<void(Dialog_Autore&)>& act) {
        robot.Will("Dialog_Autore", [act](QWidget* window) { act(*qobject_cast<Dialog_Autore*>(window)); });
    }
    void WillType(const std::string& title, const std::string& question, const QString& text) {
        robot.Will(title, [text, question](QWidget* window) {
            EXPECT_EQ(window->findChild<QLabel*>()->text().toStdString(), question);
            window->findChild<QLineEdit*>()->setText(text);
            Press(window, "OK");
        });
    }
};

TEST_F(AuthorForm, ShowsAndChangesWhoMadeTheLevel) {
    WillWork([&](Dialog_Autore& open) {
        EXPECT_EQ(open.Text_NomeAutore->text().toStdString(), "Ada");
        EXPECT_EQ(open.Combo_Email->count(), 2);
        EXPECT_EQ(open.Combo_Siti->count(), 0);
        EXPECT_EQ(open.Text_NoteAutore->toPlainText().toStdString(), "Hello");
        WillType("Emails", "Insert new email address", QStringLiteral("c@x.org"));
        Press(&open, "Pul_NewEmail");
        EXPECT_EQ(open.Combo_Email->currentText().toStdString(), "c@x.org");
        open.Combo_Email->setCurrentIndex(0);
        WillType("Emails", "Change current email address", QStringLiteral("z@x.org"));
        Press(&open, "Pul_ChangeEmail");
        open.Combo_Email->setCurrentIndex(1);
        Press(&open, "Pul_DelEmail");
        robot.WillPress("No selected item", "OK");
        Press(&open, "Pul_ModSito");
        robot.WillPress("No selected site", "OK");
        Press(&open, "Pul_GoSito");
        WillType("Web sites", "Insert new url address", QStringLiteral("http://x.org"));
        Press(&open, "Pul_New_Sito");
        open.Text_NomeAutore->setText(QString(80, QLatin1Char('n')));
        robot.WillPress("Game designer name too long", "OK");
        Press(&open, "Pul_Ok");
        EXPECT_TRUE(open.isVisible());
        open.Text_NomeAutore->setText(QString(79, QChar(0xE9))); // bytes of the file count, not of memory
        Press(&open, "Pul_Ok");
    });
    Choose(Entry::mnu_ShowAutoreInfo);
    EXPECT_EQ(core::archive.Table[1].Emails, std::string("z@x.org\0c@x.org", 15));
    EXPECT_EQ(core::archive.Table[1].Sites, "http://x.org");
    EXPECT_EQ(core::archive.Table[1].Author.size(), 158U);
}

TEST_F(AuthorForm, TextsThatDoNotFitAreTold) {
    WillWork([&](Dialog_Autore& open) {
        WillType("Emails", "Insert new email address", QString(250, QLatin1Char('e')));
        Press(&open, "Pul_NewEmail");
        robot.WillPress("Emails field too long. Remove any email address", "OK");
        Press(&open, "Pul_Ok");
        Press(&open, "Pul_DelEmail");
        WillType("Web sites", "Insert new url address", QString(256, QLatin1Char('u')));
        Press(&open, "Pul_New_Sito");
        robot.WillPress("Sites field too long. Remove any url address", "OK");
        Press(&open, "Pul_Ok");
        Press(&open, "Pul_DelSito");
        open.Text_NoteAutore->setPlainText(QString(256, QLatin1Char('m')));
        robot.WillPress("Author's note too long", "OK");
        Press(&open, "Pul_Ok");
        Press(&open, "Pul_Cancel");
    });
    Choose(Entry::mnu_ShowAutoreInfo);
    EXPECT_EQ(core::archive.Table[1].AuthorNote, "Hello");
}

class PreferencesForm : public PrincipaleHome {};

TEST_F(PreferencesForm, UnchangedSettingsAskNothing) {
    robot.Will("Dialog_PrefArc", [](QWidget* window) {
        auto& open = *qobject_cast<Dialog_PrefArc*>(window);
        EXPECT_FALSE(open.Check_CompressFiles->isChecked());
        EXPECT_FALSE(open.Check_EncodeWavInMp3->isChecked());
        Press(&open, "Pul_Ok");
    });
    Choose(Entry::mnu_PrefArchive);
    EXPECT_TRUE(Exists(LevelPath(1) / "FILES/gold.tr4"));
}

TEST_F(PreferencesForm, ChangedSettingsBringOldLevelsIntoTheNewForm) {
    robot.Will("Dialog_PrefArc", [](QWidget* window) {
        auto& open = *qobject_cast<Dialog_PrefArc*>(window);
        open.Check_CompressFiles->setChecked(true);
        Press(&open, "Pul_Ok");
    });
    robot.WillPress("Compression settings have been changed.", "Yes");
    robot.WillPress("New size [files] folders = ", "OK");
    Choose(Entry::mnu_PrefArchive);
    EXPECT_TRUE(core::archive.Header.CompressFiles);
    EXPECT_TRUE(Exists(LevelPath(1) / "FILES/gold.tr4.zl"));
}

class StopButton : public UiHome<SwapHome> {};

TEST_F(StopButton, StopsAJobThatHeedsIt) {
    using Clock = std::chrono::steady_clock;
    forms.SetPatience(0);
    ProgressDialog outer(BarPlace::StoppableDialog, "A long job");
    auto* const window = qobject_cast<ui::Dialog_Progress*>(QApplication::activeModalWidget());
    ASSERT_NE(window, nullptr);
    EXPECT_TRUE(window->Pul_Stop->isVisible());
    EXPECT_FALSE(TheUser().StopRequested());
    Clock::time_point pressed;
    QTimer::singleShot(100, window, [&] {
        pressed = Clock::now();
        Press(window, "Pul_Stop");
    });
    while (!TheUser().StopRequested()) { // a job that looks every 50 ms
        QTest::qSleep(50);
        TheUser().PumpEvents();
    }
    EXPECT_LT(Clock::now() - pressed, std::chrono::milliseconds(200));
    {
        const ProgressDialog inner(BarPlace::ZipDialog, "A part of it");
        EXPECT_TRUE(TheUser().StopRequested());
    }
    EXPECT_TRUE(TheUser().StopRequested());
}

TEST_F(StopButton, IsNotThereForOtherJobsWhichCannotBeClosed) {
    forms.SetPatience(0);
    const ProgressDialog job(BarPlace::ProgressDialog, "A job");
    auto* const window = qobject_cast<ui::Dialog_Progress*>(QApplication::activeModalWidget());
    ASSERT_NE(window, nullptr);
    EXPECT_FALSE(window->Pul_Stop->isVisible());
    EXPECT_FALSE(window->close());
    EXPECT_TRUE(window->isVisible());
    EXPECT_FALSE(TheUser().StopRequested());
}

TEST_F(StopButton, IsPressedByClosingAndForgottenAfterwards) {
    forms.SetPatience(0);
    {
        const ProgressDialog job(BarPlace::StoppableDialog, "A long job");
        auto* const window = qobject_cast<ui::Dialog_Progress*>(QApplication::activeModalWidget());
        ASSERT_NE(window, nullptr);
        window->close();
        EXPECT_TRUE(TheUser().StopRequested());
    }
    EXPECT_FALSE(TheUser().StopRequested());
}

} // namespace
} // namespace kelvash::test
