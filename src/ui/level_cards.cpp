#include "ui/level_cards.h"

#include <QTimer>
#include <algorithm>

#include "foundation/user.h"
#include "ui/form_support.h"
#include "ui/picture_reading.h"

namespace kelvash::ui {

namespace {

constexpr int kKept = 24 << 10;         // KiB of pictures in memory
constexpr std::size_t kMostWanted = 64; // more than any window shows
constexpr int kAfterJobs = 100;         // milliseconds between looks whether a job still runs

// In KiB; what there is beside the picture counts as one.
int CostOf(const LevelCard& card) {
    return 1 + card.picture.width() * card.picture.height() * 4 / 1024;
}

} // namespace

LevelCards::LevelCards(QObject* parent) : QObject(parent), ready_(kKept) {}

void LevelCards::SetPictureSize(QSize size) {
    if (size == size_) return;
    size_ = size;
    ForgetAll();
}

const LevelCard* LevelCards::Of(std::int32_t code) {
    const LevelCard* const ready = ready_.object(code);
    if (ready == nullptr) Want(code);
    return ready;
}

void LevelCards::Renew(std::int32_t code) {
    if (ready_.contains(code)) Want(code);
}

void LevelCards::ForgetAll() {
    ready_.clear();
    wanted_.clear();
}

void LevelCards::Want(std::int32_t code) {
    if (std::find(wanted_.begin(), wanted_.end(), code) != wanted_.end()) return;
    wanted_.push_back(code);
    if (wanted_.size() > kMostWanted) wanted_.pop_front();
    if (waiting_) return;
    waiting_ = true;
    AfterPainting(this, [this] { LoadNext(); });
}

void LevelCards::LoadNext() {
    if (JobDepth() > 0) { // it may be in the middle of a change of what would be read
        QTimer::singleShot(kAfterJobs, this, &LevelCards::LoadNext);
        return;
    }
    waiting_ = false;
    if (wanted_.empty()) return;
    const std::int32_t code = wanted_.back();
    wanted_.pop_back();
    auto* const card = new LevelCard{program::FactsOf(code), {}};
    card->picture = QPixmap::fromImage(ReadCover(NativeText(card->facts.Picture), size_));
    ready_.insert(code, card, CostOf(*card));
    Q_EMIT Loaded(code);
    if (wanted_.empty()) return;
    waiting_ = true;
    QTimer::singleShot(0, this, &LevelCards::LoadNext);
}

} // namespace kelvash::ui
