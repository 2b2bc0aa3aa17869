// Savegames that go to the mail program: a script stands for it.
#include <gmock/gmock.h>

#include "support/savegame_bytes.h"
#include "support/stand_in_mailer.h"
#include "ui/Dialog_ListSaveGame.h"
#include "ui/principale_home.h"

namespace kelvash::test {
namespace {

using testing::HasSubstr;

class SavegameMail : public PrincipaleHome {
  protected:
    SavegameMail() {
        MakeFile(StashPath(1) / "savegame.0", SaveBytes("Gate", 5));
        MakeFile(StashPath(1) / "savegame.1", SaveBytes("Gate", 6));
        core::SelectLevel(1);
        form.AggiornaDatiLivello(false);
        form.ShowPanel(false);
    }
    StandInMailer mailer{root};
};

TEST_F(SavegameMail, SendsTheChosenOne) {
    mailer.Make(0);
    form.List_SaveGameTomb->setCurrentRow(1);
    Press(&form, "Pul_ExportSaveGame");
    EXPECT_THAT(mailer.Words(), HasSubstr("--subject\nSavegame 6 - \"Gate\" of level \"City of Gold\"\n"));
    EXPECT_THAT(mailer.Words(), HasSubstr("--attach\n" + (StashPath(1) / "savegame.1").string() + "\n"));
}

TEST_F(SavegameMail, SendsMany) {
    mailer.Make(0);
    robot.Will("Dialog_ListSaveGame", [](QWidget* window) {
        EXPECT_FALSE(dynamic_cast<ui::Dialog_ListSaveGame*>(window)->Check_Elimina->isVisible());
        Press(window, "Pul_All");
        Press(window, "Pul_Ok");
    });
    Choose(Entry::mnu_SendSaveGameEmail);
    EXPECT_THAT(mailer.Words(), HasSubstr("--subject\n2 Savegames of level \"City of Gold\"\n"));
    EXPECT_THAT(mailer.Words(), HasSubstr(" --> savegame.1\n"));
}

TEST_F(SavegameMail, AFailureIsTold) {
    mailer.Make(4);
    form.List_SaveGameTomb->setCurrentRow(0);
    robot.WillPress("Error trying to send savegames via email", "OK");
    Choose(Entry::mnu_SendSingoloSavegame);
}

} // namespace
} // namespace kelvash::test
