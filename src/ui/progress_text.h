// What is said of a job beside its bar: how much is done, of how much, and how long it still takes.
#pragma once

#include <QString>
#include <optional>

#include "foundation/user.h"

namespace kelvash::ui {

// Estimates how long a job still takes, calmly: by its average pace, told late and in round numbers, counted
// down for as long as that is about right. A job that begins anew is one of its own.
class TimeLeft {
  public:
    // Seconds still to go; nothing as long as too little is known. `now` is the time in seconds of any clock,
    // `share` what is done of the whole, 0 to 1.
    std::optional<int> At(double now, double share);

  private:
    struct Step {
        double now;
        double share;
    };
    std::optional<Step> first_;
    double last_share_ = 0;
    std::optional<double> end_; // when the job should end, as it was told
};

// What stands beside a bar.
class ProgressWords {
  public:
    // The words of this step; nothing where others were given a moment before, so that they can be read.
    std::optional<QString> Take(const Amount& amount, double now);

  private:
    TimeLeft left_;
    std::optional<double> taken_;
};

} // namespace kelvash::ui
