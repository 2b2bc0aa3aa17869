// What the list shows of the levels beyond the Archive's record, read from their folders one by one while the
// program has nothing else to do: the newest picture, the number of savegames, whether files are packed.
// Pictures are decoded beside the interface, and kept on the disk for the next time.
#pragma once

#include <QCache>
#include <QObject>
#include <QPixmap>
#include <QSize>
#include <cstdint>
#include <deque>
#include <memory>
#include <unordered_set>

#include "program/level_facts.h"
#include "ui/cover_cache.h"
#include "ui/look.h"

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
    // The same for each at the next asking for it.
    void RenewAll();
    void ForgetAll();

  Q_SIGNALS:
    void Loaded(std::int32_t code);

  private:
    void Want(std::int32_t code);
    void LoadNext();
    void Insert(std::int32_t code, const program::LevelFacts& facts, const QImage& picture);

    QSize size_ = picture::kRow;
    QCache<std::int32_t, LevelCard> ready_;
    std::unordered_set<std::int32_t> stale_; // of those that are ready
    std::deque<std::int32_t> wanted_;
    std::shared_ptr<CoverCache> covers_;
    int generation_ = 0; // of what is kept: what was begun for an older one isn't wanted any more
    bool waiting_ = false;
};

} // namespace kelvash::ui
