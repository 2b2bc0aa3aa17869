// The menu of the main form: every command under its name, in its order.
#pragma once

class QMenu;
class QMenuBar;
class QWidget;

namespace kelvash::ui {

// The two menus that stand apart from the menu bar.
struct ContextMenus {
    QMenu* mnu_SaveGameHid = nullptr;  // of a savegame's image
    QMenu* mnu_SaveGameHid2 = nullptr; // of the savegame lists
};

// Fills the bar with actions whose object names are the commands' names; all are disabled until somebody
// connects them. The actions belong to `form`.
ContextMenus BuildMenu(QMenuBar* bar, QWidget* form);
// Sets the captions of all actions of a form.
void SetMenuCaptions(QWidget* form);

} // namespace kelvash::ui
