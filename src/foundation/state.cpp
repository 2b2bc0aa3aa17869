#include "foundation/state.h"

#include <vector>

namespace kelvash {

namespace {

struct Resets {
    std::vector<void (*)()> list;
};

} // namespace

void ResetProgramState() {
    for (void (*reset)() : Lifelong<Resets>::Get().list)
        reset();
}

namespace state_detail {
void Register(void (*reset)()) {
    Lifelong<Resets>::Get().list.push_back(reset);
}
} // namespace state_detail

} // namespace kelvash
