#include "foundation/line_progress.h"

namespace kelvash {

bool ResetLines(LineProgress& progress, bool reset, bool& stop) {
    if (!reset) {
        stop = TheUser().StopRequested();
        return false;
    }
    progress.done = 0;
    progress.bar.percent = 0;
    TheUser().SetLabel(progress.bar.place, {});
    TheUser().SetBar(progress.bar.place, 0);
    stop = false;
    return true;
}

} // namespace kelvash
