// What the list shows of the levels beyond the Archive's record, read from their folders one by one while the
// program has nothing else to do: the newest picture, the number of savegames, whether files are packed.
#pragma once

#include <QCache>
#include <QObject>
#include <QPixmap>
#include <QSize>
#include <cstdint>
#include <deque>

#include "program/level_facts.h"

namespace kelvash::ui {

struct LevelCard {
    program::LevelFacts facts;
    QPixmap picture; // covers the size asked for; null without one
};

class LevelCards final : public QObject {
    Q_OBJECT

  public:
    explicit LevelCards(QObject* parent);

    // How large pictures are shown, in pixels of the screen. Another size reads all of them anew.
    void SetPictureSize(QSize size);
    // The level's card; null until Loaded tells that it has been read. What was asked for last is read first,
    // and what was asked for long ago not at all: the user has scrolled on.
    const LevelCard* Of(std::int32_t code);
    // Reads it anew; what was read before stands until then.
    void Renew(std::int32_t code);
    void ForgetAll();

  Q_SIGNALS:
    void Loaded(std::int32_t code);

  private:
    void LoadNext();
    void Want(std::int32_t code);

    QSize size_{80, 60};
    QCache<std::int32_t, LevelCard> ready_;
    std::deque<std::int32_t> wanted_;
    bool waiting_ = false;
};

} // namespace kelvash::ui
