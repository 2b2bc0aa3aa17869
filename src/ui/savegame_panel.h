// The savegames of the selected level in the main form: its two lists, the note and the picture of the chosen
// one, and all commands on them.
//
// The controls are the main form's; this works them. What a command does stands in companion/.
#pragma once

#include <QObject>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "companion/savegame_images.h"
#include "companion/savegame_search.h"
#include "companion/savegame_transfer.h"
#include "program/level_view.h"
#include "trle_state/file_stamp.h"

class QListWidget;

namespace kelvash::ui {

class JobDoor;
class Principale;

class SavegamePanel final : public QObject {
    Q_OBJECT

  public:
    // Connects the controls; jobs begin through the door.
    SavegamePanel(Principale& window, JobDoor& door);

    // Fills the lists with the savegames of a level, in the order in which they were found. The choice is
    // gone then.
    void RefreshSavegameLists(const program::LevelView& level);

    // Where the eye is in the lists, for lists that are filled anew because others have changed something:
    // the choice comes back as long as it is the same savegame.
    struct Eye {
        std::string chosen; // path; empty for none
        trle_state::FileStamp seen;
        int slots_scrolled = 0;
        int archived_scrolled = 0;
    };
    Eye TakeEye() const;
    void ReturnTo(const Eye& eye);

    // Path of the chosen savegame, the archived ones first. Without a choice the path is empty after a
    // message.
    struct Selected {
        std::string path;
        int index = -1;        // in its list
        bool archived = false; // or in the slots
        int data = -1;         // slot number, or place among the archived ones
    };
    Selected GetSelectedSavegame() const;
    // The picture of the chosen savegame; empty if it has none.
    const std::string& CurrentImage() const { return current_image_; }

    // The commands of the menu and of the buttons.
    void Archive();
    void BackupSavegame();
    void RestoreSavegames();
    void RestoreToSlots();
    void DeleteSavegame();
    void SaveAs();
    void ImportOne();
    void ImportFolder();
    void Export();
    void MailMany();
    void MailSelected();
    void ShowProperty();
    void ChooseImage();
    void EditNote();
    void FindNote();
    void FindAgain(companion::SearchWay way);

    // Opens a picture in full size, told by its path text: what a double click on the picture wants. Who has
    // such a form puts it here.
    std::function<void(const std::string& image)> open_picture;

  private:
    void ConnectControls();
    void EnableButtons();
    void ShowSavegameDetails();
    void ShowDefaultImage();
    void TakeChoice(QListWidget* chosen, QListWidget* other);
    // Where the choice is; -1 without one.
    static int ChosenRow(const QListWidget* list);
    std::optional<std::size_t> ChosenArchived() const;
    void Choose(int archived_row);
    void ShowFound(std::optional<std::size_t> found);
    // What is to be shown and told behind a command; the archived savegame at that row is chosen again.
    void Refresh(int archived_row = -1);
    void TellEnd(const companion::SlotsOutcome& outcome, MessageId done, MessageId nothing);
    void PutIntoSlots(const std::string& savegame);
    void List(companion::ListPurpose purpose, const std::string& folder);
    bool eventFilter(QObject* watched, QEvent* event) override;

    Principale& window_;
    JobDoor& door_;
    std::vector<std::string> slots_;                           // full paths, by row
    std::vector<std::string> archived_;                        // full paths, by row
    std::vector<std::string> screenshots_;                     // full paths
    std::optional<std::vector<companion::DatedImage>> images_; // of these, once somebody asks
    std::string chosen_; // the savegame whose details are shown; empty for none
    trle_state::FileStamp seen_;
    std::string level_name_;
    std::string current_image_;
};

} // namespace kelvash::ui
