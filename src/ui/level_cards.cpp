#include "ui/level_cards.h"

#include <QTimer>
#include <algorithm>

#include "foundation/cache_folder.h"
#include "foundation/native_text.h"
#include "foundation/user.h"
#include "ui/form_support.h"
#include "ui/fragments.h"
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

LevelCards::LevelCards(QObject* parent) : QObject(parent), ready_(kKept) {
    const std::filesystem::path folder = CacheFolder() / LoadFragment(fragment::kCoversFolder);
    covers_ = std::make_shared<CoverCache>(FromUtf8(GenericTextOf(folder)));
}

void LevelCards::SetPictureSize(QSize size) {
    if (size == size_) return;
    size_ = size;
    ForgetAll();
}

const LevelCard* LevelCards::Of(std::int32_t code) {
    const LevelCard* const ready = ready_.object(code);
    if (ready == nullptr || stale_.erase(code) > 0) Want(code);
    return ready;
}

void LevelCards::Renew(std::int32_t code) {
    if (ready_.contains(code)) Want(code);
}

void LevelCards::RenewAll() {
    const QList<std::int32_t> ready = ready_.keys();
    stale_ = {ready.begin(), ready.end()};
}

void LevelCards::ForgetAll() {
    ++generation_;
    ready_.clear();
    stale_.clear();
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
    waiting_ = !wanted_.empty();
    if (!waiting_) return;
    const std::int32_t code = wanted_.back();
    wanted_.pop_back();
    const program::LevelFacts facts = program::FactsOf(code);
    if (facts.Picture.empty()) {
        Insert(code, facts, {});
        return;
    }
    const auto take = [this, code, facts, generation = generation_](const QImage& picture) {
        if (generation == generation_)
            Insert(code, facts, picture);
        else
            LoadNext();
    };
    ReadCoverBeside(this, NativeText(facts.Picture), size_, covers_, take);
}

void LevelCards::Insert(std::int32_t code, const program::LevelFacts& facts, const QImage& picture) {
    auto* const card = new LevelCard{facts, QPixmap::fromImage(picture)};
    ready_.insert(code, card, CostOf(*card));
    Q_EMIT Loaded(code);
    QTimer::singleShot(0, this, &LevelCards::LoadNext);
}

} // namespace kelvash::ui
