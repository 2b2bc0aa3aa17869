#include "ui/savegame_panel.h"

#include <QEvent>
#include <QKeyEvent>
#include <QListWidget>
#include <QScrollBar>
#include <QSignalBlocker>
#include <algorithm>
#include <array>

#include "companion/archive_slots.h"
#include "companion/restore_slots.h"
#include "companion/savegame_commands.h"
#include "companion/savegame_mail.h"
#include "companion/savegame_notes.h"
#include "companion/savegames.h"
#include "companion/screenshots.h"
#include "core/level_list.h"
#include "foundation/files.h"
#include "foundation/text.h"
#include "swap/savegame_files.h"
#include "ui/Dialog_InputTesto.h"
#include "ui/Dialog_ListSaveGame.h"
#include "ui/Principale.h"
#include "ui/form_support.h"
#include "ui/job_door.h"
#include "ui/savegame_panel_messages.h"

namespace kelvash::ui {

using companion::Asker;
using companion::SlotsOutcome;
using companion::SlotsResult;

namespace {

// Reads its file when its line is to be shown: a level may have thousands of savegames.
class SavegameItem final : public QListWidgetItem {
  public:
    explicit SavegameItem(const std::string& path) : path_(path) {}

    QVariant data(int role) const override {
        if (role != Qt::DisplayRole && role != Qt::ToolTipRole) return QListWidgetItem::data(role);
        if (line_.isNull()) line_ = ShownLine(companion::SavegameLine(path_));
        return line_;
    }

  private:
    std::string path_;
    mutable QString line_;
};

// Within a sentence. To be made before the file goes or moves.
std::string ToldLine(const std::string& savegame) {
    return CleanLine(Trim(companion::SavegameLine(savegame)));
}

template <class Data>
void Fill(QListWidget* list, const std::vector<std::string>& savegames, const Data& data_of) {
    const QSignalBlocker quiet(list);
    list->clear();
    for (std::size_t i = 0; i < savegames.size(); ++i) {
        auto* const item = new SavegameItem(savegames[i]);
        item->setData(Qt::UserRole, data_of(i));
        list->addItem(item);
    }
}

} // namespace

SavegamePanel::SavegamePanel(Principale& window, JobDoor& door)
    : QObject(&window), window_(window), door_(door) {
    ConnectControls();
}

void SavegamePanel::ConnectControls() {
    struct ButtonCommand {
        QPushButton* button;
        void (SavegamePanel::*run)();
    };
    const std::array<ButtonCommand, 6> commands = {
        {{window_.Pul_RestoreSaveGame, &SavegamePanel::RestoreToSlots},
         {window_.Pul_ArchiviaSavegames, &SavegamePanel::Archive},
         {window_.Pul_DeleteSavegame, &SavegamePanel::DeleteSavegame},
         {window_.Pul_ImportSavegame, &SavegamePanel::ImportOne},
         {window_.Pul_ExportSaveGame, &SavegamePanel::MailSelected},
         {window_.Pul_ChangeScreenshot, &SavegamePanel::ChooseImage}}};
    for (const ButtonCommand& command : commands)
        connect(command.button, &QPushButton::clicked, this,
                [this, run = command.run] { door_.Try([this, run] { (this->*run)(); }); });
    QListWidget* const slots_list = window_.List_SaveGameTomb;
    QListWidget* const archived_list = window_.List_SaveGameArchiviati;
    connect(slots_list, &QListWidget::itemSelectionChanged, this,
            [=, this] { TakeChoice(slots_list, archived_list); });
    connect(archived_list, &QListWidget::itemSelectionChanged, this,
            [=, this] { TakeChoice(archived_list, slots_list); });
    window_.Text_NoteSaveGame->setToolTip(Caption(msg::kPanelNoteTip));
    window_.Text_NoteSaveGame->installEventFilter(this);
    window_.Text_NoteSaveGame->viewport()->installEventFilter(this);
    window_.Image_SaveGame->installEventFilter(this);
}

void SavegamePanel::RefreshSavegameLists(const program::LevelView& level) {
    slots_ = level.SlotSavegames;
    archived_ = level.ArchivedSavegames;
    screenshots_ = level.Screenshots;
    images_.reset();
    level_name_ = level.Name;
    Fill(window_.List_SaveGameTomb, slots_, [this](std::size_t i) { return swap::SlotNumber(slots_[i]); });
    Fill(window_.List_SaveGameArchiviati, archived_, [](std::size_t i) { return static_cast<int>(i); });
    ShowSavegameDetails();
}

SavegamePanel::Eye SavegamePanel::TakeEye() const {
    return {chosen_, seen_, window_.List_SaveGameTomb->verticalScrollBar()->value(),
            window_.List_SaveGameArchiviati->verticalScrollBar()->value()};
}

void SavegamePanel::ReturnTo(const Eye& eye) {
    const auto choose = [&eye](QListWidget* list, const std::vector<std::string>& savegames) {
        const auto at = std::find(savegames.begin(), savegames.end(), eye.chosen);
        if (at != savegames.end()) list->setCurrentRow(static_cast<int>(at - savegames.begin()));
    };
    if (!eye.chosen.empty() && trle_state::IsStill(eye.chosen, eye.seen)) {
        choose(window_.List_SaveGameTomb, slots_);
        choose(window_.List_SaveGameArchiviati, archived_);
    }
    window_.List_SaveGameTomb->verticalScrollBar()->setValue(eye.slots_scrolled);
    window_.List_SaveGameArchiviati->verticalScrollBar()->setValue(eye.archived_scrolled);
}

int SavegamePanel::ChosenRow(const QListWidget* list) {
    const QList<QListWidgetItem*> chosen = list->selectedItems();
    return chosen.isEmpty() ? -1 : list->row(chosen.front());
}

// One savegame is chosen at most, in either list.
void SavegamePanel::TakeChoice(QListWidget* chosen, QListWidget* other) {
    if (ChosenRow(chosen) >= 0) {
        const QSignalBlocker quiet(other);
        other->clearSelection();
    }
    ShowSavegameDetails();
}

SavegamePanel::Selected SavegamePanel::GetSelectedSavegame() const {
    Selected selected;
    const QListWidget* list = window_.List_SaveGameArchiviati;
    selected.archived = ChosenRow(list) >= 0;
    if (!selected.archived) list = window_.List_SaveGameTomb;
    selected.index = ChosenRow(list);
    if (selected.index < 0) {
        TellCritical(LoadMessage(msg::kPanelNoneSelected));
        return selected;
    }
    selected.data = list->item(selected.index)->data(Qt::UserRole).toInt();
    selected.path = (selected.archived ? archived_ : slots_).at(static_cast<std::size_t>(selected.index));
    return selected;
}

void SavegamePanel::ShowDefaultImage() {
    current_image_.clear();
    const std::string path = companion::DefaultScreenshot();
    window_.Image_SaveGame->ShowFile(FileExists(path) ? NativeText(path) : QString(),
                                     Caption(msg::kSavesNoImage));
}

// What needs a choice is grey without one, and says which.
void SavegamePanel::EnableButtons() {
    const bool archived = ChosenRow(window_.List_SaveGameArchiviati) >= 0;
    const bool any = archived || ChosenRow(window_.List_SaveGameTomb) >= 0;
    window_.Pul_RestoreSaveGame->setEnabled(archived);
    window_.Pul_RestoreSaveGame->setToolTip(archived ? QString() : Caption(msg::kWhyNoOldSave));
    const QString why = any ? QString() : Caption(msg::kWhyNoSave);
    for (QPushButton* button : {window_.Pul_ExportSaveGame, window_.Pul_ChangeScreenshot}) {
        button->setEnabled(any);
        button->setToolTip(why);
    }
    window_.Pul_DeleteSavegame->setEnabled(any);
    window_.Pul_DeleteSavegame->setToolTip(any ? window_.Pul_DeleteSavegame->accessibleDescription() : why);
}

void SavegamePanel::ShowSavegameDetails() {
    EnableButtons();
    const int archived = ChosenRow(window_.List_SaveGameArchiviati);
    const int slot = ChosenRow(window_.List_SaveGameTomb);
    if (archived < 0 && slot < 0) {
        chosen_.clear();
        window_.Text_NoteSaveGame->clear();
        ShowDefaultImage();
        return;
    }
    const std::string& path = archived >= 0 ? archived_.at(static_cast<std::size_t>(archived))
                                            : slots_.at(static_cast<std::size_t>(slot));
    chosen_ = path;
    seen_ = trle_state::StampOf(path);
    window_.Text_NoteSaveGame->setPlainText(ShownText(companion::ReadNote(path)));
    if (!images_) images_ = companion::DatedImages(screenshots_);
    current_image_ = companion::LinkedImage(FileTime(path).value_or(0), *images_);
    if (current_image_.empty())
        ShowDefaultImage();
    else
        window_.Image_SaveGame->ShowFile(NativeText(current_image_), {});
}

void SavegamePanel::Choose(int archived_row) {
    QListWidget* const list = window_.List_SaveGameArchiviati;
    const int row = std::min(archived_row, list->count() - 1);
    if (row < 0) return;
    list->setCurrentRow(row);
    list->scrollToItem(list->item(row));
}

void SavegamePanel::Refresh(int archived_row) {
    window_.AggiornaDatiLivello(true);
    Choose(archived_row);
}

void SavegamePanel::Archive() {
    const SlotsOutcome outcome =
        companion::ArchiveSlots(core::SelectedLevel(), companion::kGameSlots, Asker::User);
    Refresh();
    TellOutcome(outcome);
    if (outcome.Result == SlotsResult::Nothing) window_.Say(Caption(msg::kSaidNoneArchived));
    if (outcome.Result == SlotsResult::Done)
        window_.Say(outcome.Count == 1 ? Caption(msg::kSaidArchivedOne)
                                       : Caption(msg::kSaidArchived, {std::to_string(outcome.Count)}));
}

void SavegamePanel::TellEnd(const SlotsOutcome& outcome, MessageId done, MessageId nothing) {
    Refresh();
    TellOutcome(outcome);
    if (outcome.Result == SlotsResult::Done) ShowMessage(MessageStyle::Plain, LoadMessage(done));
    if (outcome.Result == SlotsResult::Nothing) ShowMessage(MessageStyle::Exclamation, LoadMessage(nothing));
}

void SavegamePanel::BackupSavegame() {
    TellEnd(companion::ArchiveSlots(core::SelectedLevel(), companion::kGameSlots, Asker::User),
            msg::kPanelArchived, msg::kPanelNothingArchived);
}

void SavegamePanel::RestoreSavegames() {
    TellEnd(companion::RestoreLastSlot(core::SelectedLevel(), Asker::User), msg::kPanelRestored,
            msg::kPanelNothingRestored);
}

void SavegamePanel::PutIntoSlots(const std::string& savegame) {
    const std::string line = ToldLine(savegame);
    const int row = ChosenRow(window_.List_SaveGameArchiviati);
    const SlotsOutcome outcome = companion::RestoreToSlots(core::SelectedLevel(), savegame);
    Refresh(row);
    TellOutcome(outcome);
    if (outcome.Result == SlotsResult::Done) window_.Say(Caption(msg::kSaidInSlots, {line}));
}

void SavegamePanel::RestoreToSlots() {
    const int row = ChosenRow(window_.List_SaveGameArchiviati);
    if (row < 0) {
        ShowMessage(MessageStyle::Exclamation, LoadMessage(msg::kPanelSelectOld));
        return;
    }
    PutIntoSlots(archived_.at(static_cast<std::size_t>(row)));
}

void SavegamePanel::DeleteSavegame() {
    const Selected selected = GetSelectedSavegame();
    if (selected.path.empty()) return;
    const std::string line = ToldLine(selected.path);
    const SlotsOutcome outcome = companion::AskDeleteSavegame(core::SelectedLevel(), selected.path);
    if (outcome.Result != SlotsResult::Nothing) Refresh(selected.archived ? selected.index : -1);
    TellOutcome(outcome);
    if (outcome.Result == SlotsResult::Done) window_.Say(Caption(msg::kSaidDeleted, {line}));
}

void SavegamePanel::SaveAs() {
    const Selected selected = GetSelectedSavegame();
    if (!selected.path.empty()) companion::SaveSavegameAs(selected.path);
}

void SavegamePanel::ImportOne() {
    const std::string path = companion::ChooseSavegameToImport();
    if (path.empty()) return;
    PutIntoSlots(path);
}

void SavegamePanel::ImportFolder() {
    const std::string folder = companion::ChooseImportFolder();
    if (!folder.empty()) List(companion::ListPurpose::Import, folder);
}

void SavegamePanel::Export() {
    List(companion::ListPurpose::Export, {});
}

void SavegamePanel::MailMany() {
    List(companion::ListPurpose::Mail, {});
}

void SavegamePanel::List(companion::ListPurpose purpose, const std::string& folder) {
    Dialog_ListSaveGame form(&window_);
    const bool is_import = purpose == companion::ListPurpose::Import;
    if (!form.ImpostaValori(folder, is_import, purpose == companion::ListPurpose::Mail, false)) return;
    form.exec();
    if (form.Changed) Refresh();
}

void SavegamePanel::MailSelected() {
    const Selected selected = GetSelectedSavegame();
    if (!selected.path.empty())
        companion::SendSavegames({selected.path}, level_name_, companion::MailFrom::Selection);
}

void SavegamePanel::ShowProperty() {
    const Selected selected = GetSelectedSavegame();
    if (!selected.path.empty())
        ShowMessage(MessageStyle::Plain, companion::SavegameProperty(selected.path, current_image_));
}

void SavegamePanel::ChooseImage() {
    const Selected selected = GetSelectedSavegame();
    if (selected.path.empty() || !companion::ChooseLinkedImage(core::SelectedLevel(), selected.path)) return;
    images_.reset(); // their dates are others now
    ShowSavegameDetails();
}

void SavegamePanel::EditNote() {
    const Selected selected = GetSelectedSavegame();
    if (selected.path.empty()) return;
    const companion::SeenNote seen = companion::LookAtNote(selected.path);
    Dialog_InputTesto form(&window_);
    form.ImpostaValori(LoadMessage(msg::kPanelNoteTitle), seen.Text.value_or(std::string()));
    bool written = false;
    while (!written && form.exec() == QDialog::Accepted) // a refusal leaves what was typed
        written = companion::WriteNote(selected.path, form.Testo, seen);
    ShowSavegameDetails(); // what others have written too
    window_.List_SaveGameArchiviati->setFocus();
}

std::optional<std::size_t> SavegamePanel::ChosenArchived() const {
    const int row = ChosenRow(window_.List_SaveGameArchiviati);
    return row < 0 ? std::nullopt : std::optional<std::size_t>(row);
}

void SavegamePanel::ShowFound(std::optional<std::size_t> found) {
    if (!found) return;
    window_.ShowPanel(false);
    Choose(static_cast<int>(*found));
}

void SavegamePanel::FindNote() {
    ShowFound(companion::FindSavegameNote(archived_, ChosenArchived()));
}

void SavegamePanel::FindAgain(companion::SearchWay way) {
    ShowFound(companion::FindSavegameAgain(archived_, ChosenArchived(), way));
}

bool SavegamePanel::eventFilter(QObject* watched, QEvent* event) {
    const bool double_click = event->type() == QEvent::MouseButtonDblClick;
    if (watched == window_.Image_SaveGame && double_click && open_picture) {
        const std::string image = current_image_.empty() ? companion::DefaultScreenshot() : current_image_;
        door_.Try([&] { open_picture(image); });
        return true;
    }
    const bool enter = event->type() == QEvent::KeyPress && watched == window_.Text_NoteSaveGame &&
                       (static_cast<QKeyEvent*>(event)->key() == Qt::Key_Return ||
                        static_cast<QKeyEvent*>(event)->key() == Qt::Key_Enter);
    if (enter || (watched == window_.Text_NoteSaveGame->viewport() && double_click)) {
        // The click's own event must have ended before a form opens.
        door_.WhenFree([this] { EditNote(); });
        return true;
    }
    return QObject::eventFilter(watched, event);
}

} // namespace kelvash::ui
