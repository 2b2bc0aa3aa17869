// What the library tells of a level, drawn and spoken.
#pragma once

#include <QPixmap>
#include <QString>
#include <cstdint>
#include <vector>

#include "ui/look.h"

namespace kelvash::ui {

struct LevelRow {
    std::int32_t code = 0;
    QString name; // with the list's mark for the level that is in TRLE
    QString line; // author, size, savegames, note
    QPixmap picture;
    bool in_trle = false;
    bool packed = false;
    std::int32_t cd = 0; // 0: on disk
};

// The level that stands for the game without any.
bool IsOriginal(const LevelRow& level);
// The line below the name.
QString LineOf(const LevelRow& level);

struct LevelBadge {
    QString word;
    Role role;
};
// Where the level is and how it is kept, the most important word first.
std::vector<LevelBadge> BadgesOf(const LevelRow& level);

// What a screen reader says of a row behind its name: the badges, then the line.
QString SpokenOf(const LevelRow& level);

} // namespace kelvash::ui
