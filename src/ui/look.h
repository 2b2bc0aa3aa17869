// The look of the program in one place: steps of space, sizes of type, colours by their role. Forms speak in
// these words; no colour, size in pixels or style sheet stands elsewhere, which checks/look.sh asserts.
//
// A desktop that brings a style and colours of its own keeps them, and the roles follow its palette.
// Elsewhere, on Windows too, the program draws itself.
#pragma once

#include <QBrush>
#include <QColor>
#include <QFont>
#include <QPalette>
#include <QSize>

class QAbstractButton;
class QLabel;
class QPainter;
class QPixmap;
class QRect;
class QWidget;

namespace kelvash::ui {

// Room between things, in pixels that don't depend on the screen.
namespace space {
inline constexpr int kTight = 4;
inline constexpr int kClose = 8;
inline constexpr int kNear = 12;
inline constexpr int kApart = 16;
inline constexpr int kWide = 24;
} // namespace space

// Room of pictures: in a row of the list, in a tile, and by itself, which is more where the window has more.
namespace picture {
inline constexpr QSize kRow{80, 60};
inline constexpr QSize kTile{180, 135};
inline constexpr QSize kAlone{320, 240};
} // namespace picture

inline constexpr int kCornerRadius = 6;

// Sizes of type, from the system's own font.
enum class Type { Caption, Text, Title, Headline };
QFont FontOf(Type type);

// Two surfaces, the page and what lies on it, and what is written on both. Every text role can be read on
// both of them; OnAccent is written on Accent.
enum class Role { Surface, Raised, Text, MutedText, Accent, OnAccent, Danger, Success };
QColor ColourOf(Role role, const QPalette& palette);
// The same by the program's palette of the moment.
QColor ColourOf(Role role);
// The ground of a chosen row of a list, on which every text role can be read too, as on a button's.
QColor ChosenGround(const QPalette& palette);

// The ground of what was found in a row, which can be told from the row's.
QColor FoundGround(const QPalette& palette, bool chosen_row);

// Parts of one colour in another, 0 to 1: hints of a colour on a surface.
QColor Mixed(const QColor& colour, const QColor& ground, double share);
// From 1 to 21, by the luminance of both as WCAG 2 counts it. 4.5 is what a text needs.
double ContrastOf(const QColor& one, const QColor& other);

// The colours of our own.
QPalette OwnPalette(bool dark);

// Takes style and palette for the program: the desktop's where it has some, else ours. To be called once
// there is an application, and again for a change between light and dark.
void TakeLook(bool dark);
// True if the desktop has a style or colours of its own, which hold.
bool DesktopHasItsLook();

// --- what the forms say of their controls ---

void SetType(QWidget* control, Type type);
// Text that explains: smaller, and in the muted colour.
void SetExplaining(QLabel* label);
// The action that a form is there for.
void SetMainAction(QAbstractButton* button);
// A window that is to show nothing at all, whatever the desktop's colours.
void SetBlack(QWidget* window);
// An action by which something goes.
void SetDestructive(QAbstractButton* button);

// Gives a control the colours that `colours` makes of the program's palette, now and whenever that changes.
using ColoursOf = QPalette (*)(const QPalette& program);
void FollowPalette(QWidget* control, ColoursOf colours);

// --- painting ---

void FillRounded(QPainter& painter, const QRect& place, const QBrush& ground);
// A picture that fills a place with round corners, cut off at the sides that it has too much of. Scaling it
// well takes longer than a frame may: that is done where it is read, and one of another size stands in until
// then.
void DrawCover(QPainter& painter, const QRect& place, const QPixmap& picture);
// What words on a picture need: a shade over its lower part, and their colour. Without a picture, the ground.
void DrawShade(QPainter& painter, const QRect& picture);
QColor ShadeText();
QColor BannerColour();
// A short word on a ground of its own, its right end at the place's; gives its width.
int DrawBadge(QPainter& painter, const QRect& place, const QString& word, Role role);

} // namespace kelvash::ui
