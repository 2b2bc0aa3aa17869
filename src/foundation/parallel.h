// Heavy work on other threads, with order, messages and stop on the program's one thread.
//
// What runs on a worker is pure: it reads files and computes, touches no state of the program, asks and tells
// the user nothing, and writes no file. What comes of it is taken by the caller's thread, item by item in
// order; that thread looks after the interface meanwhile. No thread outlives a call.
#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <utility>
#include <vector>

namespace kelvash {

// Whether threads are worth their start, some 50 microseconds: not for a few small files.
enum class Effort { Little, Heavy };

// Done: all items were taken. Ended: one was taken with a wish to end. Stopped: the user wants that.
enum class ParallelEnd { Done, Ended, Stopped };

struct ParallelJob {
    std::size_t Count = 0;
    // How many items may be begun and not yet taken: what bounds memory. No more threads than that, nor than
    // processors, are used.
    std::size_t InFlight = 4;
    Effort Expected = Effort::Heavy;
    // False if all is to be done whatever the user wants meanwhile.
    bool CanStop = true;
};

// Runs work(i) for each item on a worker, then taken(i, whole) on this thread in the order of the items. An
// exception of the work makes `whole` false. False from `taken` ends it. Items that have been begun are
// waited for, also on a stop. With Effort::Little, or where no thread can be had, all runs on this thread.
ParallelEnd ParallelFor(const ParallelJob& job, const std::function<void(std::size_t item)>& work,
                        const std::function<bool(std::size_t item, bool whole)>& taken);

// The same for work with a result, which is handed on and forgotten; nothing for an item that failed.
template <class Work, class Taken>
ParallelEnd ParallelMap(const ParallelJob& job, const Work& work, const Taken& taken) {
    using Result = decltype(work(std::size_t{0}));
    std::vector<std::optional<Result>> results(job.Count);
    return ParallelFor(
        job, [&](std::size_t item) { results[item].emplace(work(item)); },
        [&](std::size_t item, bool) { return taken(item, std::exchange(results[item], std::nullopt)); });
}

// Runs one piece of work beside the interface where a job runs, else plainly. False for an exception.
bool Beside(const std::function<void()>& work);

} // namespace kelvash
