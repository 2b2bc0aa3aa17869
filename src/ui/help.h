// Help: one text file in the application's folder, opened at a mark.
#pragma once

#include <Qt>

class QPushButton;
class QWidget;

namespace kelvash::ui {

// The places of help_kelvash.txt that forms refer to; the number stands between two "#" in the file.
enum class HelpMark {
    MainWindow = 1,
    FirstStart = 2,
    Restore = 3,
    Savegames = 4,
    Questions = 5,
    Settings = 6,
    Archive = 7,
    FindTrle = 8,
    ChooseFolder = 9,
    Search = 10,
    Keyboard = 11,
    Files = 12,
    MoreInfo = 13,
    AddLevel = 14,
    Author = 15,
    ArchivePreferences = 16,
    Maintenance = 17,
    Audio = 18,
    Screenshots = 30,
    SmallWindows = 40,
    ReadingHelp = 41
};

inline constexpr Qt::Key kHelpKey = Qt::Key_F1;

// Shows the help at a mark, above a window, or in it if that shows the help already; tells when the file is
// missing.
void ShowHelp(QWidget* parent, HelpMark mark);

// Makes a button show the help at a mark, above its form.
void ConnectHelp(QPushButton* button, QWidget* form, HelpMark mark);
// Makes the key do so, anywhere in a form.
void ConnectHelpKey(QWidget* form, HelpMark mark);

} // namespace kelvash::ui
