// What other programs change beside an open window: a command in a shell, a game started elsewhere, files
// moved by hand.
//
// A look compares sizes and dates of a few files and folders with those of the look before; nothing is read
// as long as they stand.
#pragma once

namespace kelvash::program {

enum class Beside {
    Nothing,
    Page, // files of the selected level: what is shown of it is out of date
    List  // the Archive, or what is in TRLE; the level list has been brought up to date
};
// An Archive of which memory holds unsaved changes is left alone until they are saved.
Beside TakeWhatIsBeside();
// The selected level is about to be shown as its files are now.
void NoteShownLevel();

} // namespace kelvash::program
