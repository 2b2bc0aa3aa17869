// What all forms share: texts between the logic and Qt, controls under their names, mnemonics.
#pragma once

#include <QLabel>
#include <QProgressBar>
#include <QString>
#include <QWidget>
#include <functional>
#include <initializer_list>
#include <string>
#include <type_traits>

#include "foundation/messages.h"

class QAction;
class QComboBox;

namespace kelvash::ui {

inline QString FromUtf8(const std::string& text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}
inline std::string ToUtf8(const QString& text) {
    return text.toStdString();
}

// A text of the message table, with line breaks as Qt has them.
QString Caption(MessageId id, const MessageArgs& args = {});
// A text of the logic for a label or a box: line breaks as Qt has them, and no controls.
QString ShownText(const std::string& text);
// The same for a label of several lines. What no line holds, such as a long path, goes on in the next one,
// but not between a drive and its folders: marks that are not seen say where. What is copied from there goes
// without them.
QString WrappedText(const std::string& text);
QString WithoutWraps(QString text);
// The same for a place of one line: a name, a caption, an item of a list.
QString ShownLine(const std::string& text);
// A window's title with a note behind it, which may be empty.
QString TitleWith(const QString& title, const QString& note);
// The native path of a path text, as Qt takes it; empty for an empty one.
QString NativeText(const std::string& path);
// A text as a tool tip shows it to the letter: a name may look like mark-up.
QString ToolTipText(const QString& text);

// For a list of names that may be longer than its field: they leave the room of the form as it is, and tool
// tips have all of them.
void TakeLongItems(QComboBox* combo);

// Does work, such as to read a picture, when what is to be shown now has been painted. Not done any more if
// the receiver is gone by then.
void AfterPainting(QObject* receiver, const std::function<void()>& work);

// A control whose object name is the name by which the form knows it. The parent owns it.
template <class Control, class... Rest>
Control* Make(QWidget* parent, const char* name, Rest... rest) {
    auto* const control = new Control(parent, rest...);
    control->setObjectName(QString::fromLatin1(name));
    // Names of files and levels are no mark-up.
    if constexpr (std::is_same_v<Control, QLabel>) control->setTextFormat(Qt::PlainText);
    // Bars go from 0 to 100; without a value one shows no number.
    if constexpr (std::is_same_v<Control, QProgressBar>) control->setValue(0);
    return control;
}

// Greys what has no logic to stand on yet, says so in its tool tip, and leaves the letters to the others. To
// be called before Set_Caption_Texts; nothing enables it again.
void NotYet(std::initializer_list<QWidget*> controls);
void NotYet(QAction* action, bool not_yet);
bool IsNotYet(const QObject* object);
QString WhyNotYet();
// A grey command says why it is grey, as a tool tip and in the status line; nothing while it isn't.
void TellWhy(QAction* action, const QString& why);

// Buttons that get a letter only when all others have one: what they do is reached otherwise too. To be
// called before Set_Caption_Texts.
void LettersLast(std::initializer_list<QWidget*> buttons);

// A caption without the letter that AssignMnemonics gave it.
QString WithoutLetter(const QString& caption);

// Gives every button, check box and labelled field of a form, and every entry of a menu, a letter by which
// the keyboard reaches it. Letters are handed out from the front of the captions, no letter twice; what finds
// none stays without. A caption's own "&" is shown as it is. To be called after Set_Caption_Texts.
void AssignMnemonics(QWidget* form);

} // namespace kelvash::ui
