// Icons: drawings of one set, in the palette's colour and sharp at any size.
#pragma once

#include <QIcon>
#include <QRect>

#include "ui/look.h"

class QAbstractButton;
class QPainter;

namespace kelvash::ui {

// What there are drawings of; the names of their files stand in icons.inc.
enum class Glyph {
#define KELVASH_GLYPH(name, file) name,
#include "ui/icons.inc"
#undef KELVASH_GLYPH
};

// Takes its colour from the palette whenever it is drawn: that of texts, of grey ones where it is disabled.
QIcon IconOf(Glyph glyph);
// The same in the colour of a role.
QIcon IconOf(Glyph glyph, Role role);

// Gives a button its icon, in the colour of its text: of a main action's and of a destructive one's too.
void SetIcon(QAbstractButton* button, Glyph glyph);
// To be called when what its button is for has changed.
void RenewIcon(QAbstractButton* button);

void DrawGlyph(QPainter& painter, const QRect& place, Glyph glyph, const QColor& colour);

} // namespace kelvash::ui
