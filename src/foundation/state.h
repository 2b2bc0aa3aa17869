// What lives for the whole run. There is no other mutable variable outside functions and objects, and none
// that is static inside them; checks/globals.sh looks for them. (foundation/platform is exempt: what it holds
// belongs to the process.)
#pragma once

#include <type_traits>

namespace kelvash {

// A module's state: one struct of the module's own, with the values of a fresh start as its defaults. A
// reference gives it its name, which stands in the module's header if others see it:
//
//     constinit ProfileRecord& profile = State<ProfileRecord>::Get();
//
// It goes back to the defaults with ResetProgramState, without being listed anywhere. The reference holds
// before anything runs; the state itself is made with the other variables of the program.
template <class Record>
class State {
    static_assert(std::is_class_v<Record>, "a state is known by its type, which must be the module's own");

  public:
    static constexpr Record& Get() { return held_.record; }

  private:
    struct Held {
        Record record{};
        Held();
    };
    static void Reset() { held_.record = Record(); }
    inline static Held held_;
};

// What outlives a reset, made at its first use: ports that are plugged in, registers that are filled while
// the program is loaded, what the process itself holds.
template <class Record>
class Lifelong {
  public:
    static Record& Get() {
        static Record record{};
        return record;
    }
};

// Puts every State back to that of a fresh start, for tests.
void ResetProgramState();

namespace state_detail {
void Register(void (*reset)());
} // namespace state_detail

template <class Record>
State<Record>::Held::Held() {
    state_detail::Register(&State<Record>::Reset);
}

} // namespace kelvash
