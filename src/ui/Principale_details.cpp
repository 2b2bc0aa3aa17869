// What the main form shows of the selected level: its note, its pictures, its savegames.
#include <QStatusBar>

#include "companion/screenshots.h"
#include "core/archive.h"
#include "core/level_list.h"
#include "core/profile.h"
#include "foundation/files.h"
#include "foundation/text.h"
#include "intake/author_notes.h"
#include "program/beside.h"
#include "program/level_view.h"
#include "ui/Principale.h"
#include "ui/Principale_messages.h"
#include "ui/savegame_panel.h"
#include "ui/screenshot_panel.h"

namespace kelvash::ui {

void Principale::AggiornaDatiLivello(bool keep_image) {
    program::NoteShownLevel();
    const std::optional<program::LevelView> view = program::SelectedLevelView();
    const program::LevelView shown = view.value_or(program::LevelView());
    if (view) levels_->Renew(view->Code);
    shots_->ShowLevel(shown, keep_image);
    savegames_->RefreshSavegameLists(shown);
    Label_InfoLevel->SetLine(core::ArchiveIsOpen() ? ShownLine(shown.Note)
                                                   : Caption(msg::kMainNoArchiveNote));
    Label_InfoDir->SetLine(ShownLine(shown.Place));
    ShowHead(shown);
    ShowContacts(view.has_value());
    ShowEmptiness(view ? &*view : nullptr);
    EnableCommands();
}

void Principale::Say(const QString& done) {
    constexpr int kShownFor = 20'000; // milliseconds
    Label_Info->SetLine(done);
    QTimer::singleShot(kShownFor, Label_Info, [this, done] {
        if (Label_Info->text() == done) Label_Info->SetLine({});
    });
}

// Beside the label, which the job has for itself.
void Principale::SayJobRuns() {
    constexpr int kShownFor = 4'000; // milliseconds
    statusBar()->showMessage(Caption(msg::kMainJobRuns), kShownFor);
}

void Principale::ShowHead(const program::LevelView& level) {
    Image_Level->ShowLevel(
        ShownLine(level.Name),
        level.Author.empty() ? QString() : Caption(msg::kMainByAuthor, {CleanLine(level.Author)}),
        NativeText(companion::NewestOf(level.Screenshots)));
    Image_Level->SetSign(core::ArchiveIsOpen() && level.Code == 0 ? std::optional(Glyph::Original)
                                                                  : std::nullopt);
    if (level.IsIn)
        Label_Play->SetLine(Caption(msg::kMainPlaysAtOnce));
    else if (level.TakenOut.empty())
        Label_Play->SetLine({});
    else
        Label_Play->SetLine(Caption(msg::kMainTakesOut, {CleanLine(level.TakenOut)}));
    Label_Play->setVisible(!Label_Play->text().isEmpty()); // an empty line would part the buttons
}

void Principale::ShowContacts(bool shown) {
    const intake::AuthorNotes notes =
        shown ? intake::BeginAuthorNotes(core::LevelIndex(core::SelectedLevel())) : intake::AuthorNotes();
    Bar_Contacts->ShowContacts(notes.Emails, notes.Sites);
}

// What helps where a page has nothing to show. Without an Archive the library takes the whole window.
void Principale::ShowEmptiness(const program::LevelView* level) {
    ShowEmptyLibrary();
    ShowRightSide(core::ArchiveIsOpen());
    Empty_Level->StandFor(Page_Level, level == nullptr);
    Empty_Level->Say(Glyph::List, Caption(msg::kMainNoLevelShown), {});
    if (level == nullptr) return;
    const std::string trle = core::TrleFolder();
    Empty_Trle->StandFor(Image_Level, trle.empty() || !FolderExists(trle));
    Empty_Trle->Say(Glyph::NoFolder, Caption(msg::kMainNoTrle, {CleanLine(trle)}), {Pul_ChooseTrle});
    Empty_Shots->setVisible(level->Screenshots.empty() && !level->FolderMissing);
    Empty_Shots->Say(Glyph::Camera, Caption(msg::kMainNoShots), {Pul_AddShots});
    Empty_SaveGames->StandFor(Page_SaveGames,
                              level->SlotSavegames.empty() && level->ArchivedSavegames.empty());
    Empty_SaveGames->Say(Glyph::Savegames, Caption(msg::kMainNoSaves), {Pul_PlayNow, Pul_ImportFirst});
}

// The splitter would divide the room anew when the side comes back.
void Principale::ShowRightSide(bool shown) {
    if (shown != right_side_->isHidden()) return;
    if (!shown) divided_ = splitter_->saveState();
    right_side_->setVisible(shown);
    if (shown) splitter_->restoreState(divided_);
}

void Principale::ShowEmptyLibrary() {
    const bool open = core::ArchiveIsOpen();
    const bool only_original = open && core::level_list.Items.size() <= 1 && levels_->Filter().isEmpty();
    const bool nothing = levels_->rowCount() == 0;
    Combo_Livelli->setVisible(!nothing);
    Empty_Levels->setVisible(nothing || only_original);
    if (!open)
        Empty_Levels->Say(Glyph::Archive, Caption(msg::kMainNoArchiveNote),
                          {Pul_NewArchive, Pul_LoadArchive});
    else if (only_original)
        Empty_Levels->Say(Glyph::Nothing, Caption(msg::kMainNoLevels), {Pul_AddLevel});
    else
        Empty_Levels->Say(Glyph::Search, Caption(msg::kMainNoLevelFound), {Pul_ShowAll});
}

} // namespace kelvash::ui
