#include "ui/progress_text.h"

#include <QLocale>
#include <algorithm>
#include <cmath>

#include "ui/form_support.h"
#include "ui/messages.h"

namespace kelvash::ui {

namespace {

// What is known before is chance.
constexpr double kFirstTold = 3; // seconds
constexpr double kLeastShare = 0.01;
// The estimate told before stands while the new one isn't further from it, as a part of the larger.
constexpr double kCalm = 0.25;
constexpr double kReadable = 0.2; // seconds between two texts
constexpr int kMinute = 60;
constexpr double kMegabyte = 1024 * 1024;

// Up to whole steps, so that a job is early rather than late.
int RoundUp(double seconds) {
    const int step = seconds <= kMinute ? 5 : seconds <= 10 * kMinute ? kMinute : 5 * kMinute;
    return std::max(step, static_cast<int>(std::ceil(seconds / step)) * step);
}

std::string Number(double value) {
    return QLocale().toString(value, 'f', 0).toStdString();
}

QString DoneText(const Amount& amount) {
    if (amount.counted == Counted::Nothing || amount.total <= 1) return {};
    if (amount.counted == Counted::Items)
        return Caption(msg::kProgressItems, {Number(amount.done), Number(amount.total)});
    return Caption(msg::kProgressMegabytes,
                   {Number(amount.done / kMegabyte), Number(std::ceil(amount.total / kMegabyte))});
}

QString LeftText(std::optional<int> seconds) {
    if (!seconds) return {};
    if (*seconds < kMinute) return Caption(msg::kProgressSecondsLeft, {std::to_string(*seconds)});
    return Caption(msg::kProgressMinutesLeft, {std::to_string(*seconds / kMinute)});
}

} // namespace

std::optional<int> TimeLeft::At(double now, double share) {
    if (!first_ || share < last_share_) *this = TimeLeft();
    last_share_ = share;
    if (!first_) first_ = Step{now, share};
    const double lasted = now - first_->now, done = share - first_->share;
    if (lasted < kFirstTold || done < kLeastShare) return std::nullopt;
    const double left = lasted / done * (1 - share);
    const double told = end_.value_or(now) - now;
    if (!end_ || std::abs(left - told) > kCalm * std::max(left, told)) end_ = now + left;
    return RoundUp(*end_ - now);
}

std::optional<QString> ProgressWords::Take(const Amount& amount, double now) {
    const double share = amount.total > 0 ? amount.done / amount.total : 0;
    const std::optional<int> left = left_.At(now, share);
    if (taken_ && now - *taken_ < kReadable && share < 1) return std::nullopt;
    taken_ = now;
    const QString done = DoneText(amount), still = share < 1 ? LeftText(left) : QString();
    if (done.isEmpty() || still.isEmpty()) return done + still;
    return Caption(msg::kProgressBoth, {done.toStdString(), still.toStdString()});
}

} // namespace kelvash::ui
