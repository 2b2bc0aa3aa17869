// The keys of the program. What works by a key of its own gets it together with the words that tell of it, so
// that the sheet of keys can't tell anything else than what the keys do.
#pragma once

#include <QKeySequence>
#include <QString>
#include <QStringList>
#include <functional>
#include <vector>

class QMainWindow;
class QWidget;

namespace kelvash::ui {

// Where the keyboard has to be for a key to act.
enum class KeyWorks { InTheForm, InTheControl };

// Makes keys do something: in a form, or in one of its controls. The words are those of the sheet.
void AddKeys(QWidget* where, KeyWorks works, const std::vector<QKeySequence>& keys, const QString& words,
             const std::function<void()>& act);

struct KeyLine {
    QStringList keys; // each does it
    QString words;
};
struct KeyGroup {
    QString title;
    std::vector<KeyLine> lines;
};

// The keys as the desktop writes them.
KeyLine LineOf(const std::vector<QKeySequence>& keys, const QString& words);
// What AddKeys has given to a form, or to a control.
std::vector<KeyLine> AddedKeys(const QWidget& where);
// All of a window: a group for each of its menus, tool bars, and controls with keys of their own. Commands
// that are still to come are left out.
std::vector<KeyGroup> KeysOf(const QMainWindow& window);

} // namespace kelvash::ui
