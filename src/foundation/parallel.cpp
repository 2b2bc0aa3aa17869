#include "foundation/parallel.h"

#include <algorithm>
#include <condition_variable>
#include <exception>
#include <mutex>
#include <system_error>
#include <thread>

#include "foundation/pumping.h"
#include "foundation/user.h"

namespace kelvash {

namespace {

using Work = std::function<void(std::size_t)>;

// False for an exception, whatever it is: the item has failed.
bool DoItem(const Work& work, std::size_t item) {
    try {
        work(item);
        return true;
    } catch (...) {
        return false;
    }
}

bool IsStopped(const ParallelJob& job) {
    return StopWantedByNow() && job.CanStop;
}

// The workers of one call. They end with it.
class Crew {
  public:
    Crew(const ParallelJob& job, const Work& work) : job_(job), work_(work), states_(job.Count) {
        const std::size_t processors = std::max(1U, std::thread::hardware_concurrency());
        const std::size_t wanted = std::min({processors, job.InFlight, job.Count});
        try {
            while (threads_.size() < wanted)
                threads_.emplace_back([this] { DoItems(); });
        } catch (const std::system_error&) { // the system gives no more threads: fewer do it
        }
    }
    ~Crew() { EndItems(); }
    Crew(const Crew&) = delete;
    Crew& operator=(const Crew&) = delete;

    bool HasWorkers() const { return !threads_.empty(); }

    // Waits for an item with the interface at work. False on a stop by the user.
    bool Await(std::size_t item) {
        bool stopped = false;
        while (!stopped && !WaitShortly([&] { return states_[item] != State::Open; }))
            stopped = IsStopped(job_);
        return !stopped && !IsStopped(job_);
    }
    bool IsWhole(std::size_t item) {
        const std::lock_guard lock(mutex_);
        return states_[item] == State::Whole;
    }
    // An item has been taken: another one may begin.
    void GoOn() {
        const std::lock_guard lock(mutex_);
        ++taken_;
        may_begin_.notify_one();
    }
    // Waits for all items, whatever the user wants.
    void AwaitAll() {
        while (!WaitShortly([this] { return begun_ == job_.Count && at_work_ == 0; }))
            PumpNowAndThen();
    }

  private:
    enum class State : char { Open, Whole, Failed };

    // Begins no more, and waits for what has begun.
    void EndItems() {
        {
            const std::lock_guard lock(mutex_);
            ended_ = true;
            may_begin_.notify_all();
        }
        while (!WaitShortly([this] { return at_work_ == 0; }))
            PumpNowAndThen();
    }

    // False if it isn't so when the interface is to be looked after.
    template <class Condition>
    bool WaitShortly(Condition condition) {
        std::unique_lock lock(mutex_);
        return is_done_.wait_for(lock, kPumpInterval, condition);
    }

    std::optional<std::size_t> NextItem() {
        std::unique_lock lock(mutex_);
        may_begin_.wait(lock,
                        [this] { return ended_ || begun_ == job_.Count || begun_ < taken_ + job_.InFlight; });
        if (ended_ || begun_ == job_.Count) return std::nullopt;
        ++at_work_;
        return begun_++;
    }

    void DoItems() {
        while (const std::optional<std::size_t> item = NextItem()) {
            const bool whole = DoItem(work_, *item);
            const std::lock_guard lock(mutex_);
            states_[*item] = whole ? State::Whole : State::Failed;
            --at_work_;
            is_done_.notify_one();
            if (begun_ == job_.Count) may_begin_.notify_all();
        }
    }

    const ParallelJob& job_;
    const Work& work_;
    std::mutex mutex_; // for all below
    std::condition_variable may_begin_, is_done_;
    std::vector<State> states_;
    std::size_t begun_ = 0;
    std::size_t taken_ = 0;
    std::size_t at_work_ = 0;
    bool ended_ = false;
    std::vector<std::jthread> threads_; // the last: they end before what they use
};

ParallelEnd DoHere(const ParallelJob& job, const Work& work,
                   const std::function<bool(std::size_t, bool)>& taken) {
    for (std::size_t i = 0; i < job.Count; ++i) {
        if (IsStopped(job)) return ParallelEnd::Stopped;
        if (!taken(i, DoItem(work, i))) return ParallelEnd::Ended;
    }
    return ParallelEnd::Done;
}

} // namespace

ParallelEnd ParallelFor(const ParallelJob& job, const Work& work,
                        const std::function<bool(std::size_t item, bool whole)>& taken) {
    if (job.Expected == Effort::Little) return DoHere(job, work, taken);
    Crew crew(job, work);
    if (!crew.HasWorkers()) return DoHere(job, work, taken);
    for (std::size_t i = 0; i < job.Count; ++i) {
        if (!crew.Await(i)) return ParallelEnd::Stopped;
        if (!taken(i, crew.IsWhole(i))) return ParallelEnd::Ended;
        crew.GoOn();
    }
    return ParallelEnd::Done;
}

bool Beside(const std::function<void()>& work) {
    const Work item = [&work](std::size_t) { work(); };
    if (JobDepth() == 0) return DoItem(item, 0);
    const ParallelJob job{1, 1};
    Crew crew(job, item);
    if (!crew.HasWorkers()) return DoItem(item, 0);
    crew.AwaitAll();
    return crew.IsWhole(0);
}

} // namespace kelvash
