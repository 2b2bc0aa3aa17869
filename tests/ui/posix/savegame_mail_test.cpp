// Savegames that go to the mail program: a script stands for it.
#include <gmock/gmock.h>

#include <cstdlib>

#include "support/savegame_bytes.h"
#include "ui/Dialog_ListSaveGame.h"
#include "ui/principale_home.h"

namespace kelvash::test {
namespace {

using testing::HasSubstr;

class SavegameMail : public PrincipaleHome {
  protected:
    SavegameMail() : old_path_(std::getenv("PATH")) {
        MakeFile(StashPath(1) / "savegame.0", SaveBytes("Gate", 5));
        MakeFile(StashPath(1) / "savegame.1", SaveBytes("Gate", 6));
        core::SelectLevel(1);
        form.AggiornaDatiLivello(false);
        form.ShowPanel(false);
        SetEnvironment("PATH", (root / "bin").string() + ":" + old_path_);
    }
    ~SavegameMail() override { SetEnvironment("PATH", old_path_); }
    void MakeMailer(const std::string& end) {
        const std::filesystem::path mailer = root / "bin/xdg-email";
        MakeFile(mailer,
                 "#!/bin/sh\nprintf '%s\\n' \"$@\" > '" + (root / "words").string() + "'\n" + end + "\n");
        std::filesystem::permissions(mailer, std::filesystem::perms::owner_all);
    }
    std::string Words() const { return BytesOf(root / "words"); }

  private:
    std::string old_path_;
};

TEST_F(SavegameMail, SendsTheChosenOne) {
    MakeMailer("exit 0");
    form.List_SaveGameTomb->setCurrentRow(1);
    Press(&form, "Pul_ExportSaveGame");
    EXPECT_THAT(Words(), HasSubstr("--subject\nSavegame 6 - \"Gate\" of level \"City of Gold\"\n"));
    EXPECT_THAT(Words(), HasSubstr("--attach\n" + (StashPath(1) / "savegame.1").string() + "\n"));
}

TEST_F(SavegameMail, SendsMany) {
    MakeMailer("exit 0");
    robot.Will("Dialog_ListSaveGame", [](QWidget* window) {
        EXPECT_FALSE(dynamic_cast<ui::Dialog_ListSaveGame*>(window)->Check_Elimina->isVisible());
        Press(window, "Pul_All");
        Press(window, "Pul_Ok");
    });
    Choose(Entry::mnu_SendSaveGameEmail);
    EXPECT_THAT(Words(), HasSubstr("--subject\n2 Savegames of level \"City of Gold\"\n"));
    EXPECT_THAT(Words(), HasSubstr(" --> savegame.1\n"));
}

TEST_F(SavegameMail, AFailureIsTold) {
    MakeMailer("exit 4");
    form.List_SaveGameTomb->setCurrentRow(0);
    robot.WillPress("Error trying to send savegames via email", "OK");
    Choose(Entry::mnu_SendSingoloSavegame);
}

} // namespace
} // namespace kelvash::test
