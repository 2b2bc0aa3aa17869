#include "audio/encoder_progress.h"

#include "foundation/text.h"

namespace kelvash::audio {

void GestioneMadPlay(LineProgress& progress, const std::string& line, bool reset, bool& stop) {
    constexpr std::size_t kTimeLength = 9;
    constexpr int kSecondsAMinute = 60;
    if (ResetLines(progress, reset, stop) || line.size() < kTimeLength || line[3] != ':' || line[6] != ':')
        return;
    progress.done = kSecondsAMinute * LeadingNumber(line.substr(4, 2)) + LeadingNumber(line.substr(7, 2));
    ProgressPercent(progress.bar, progress.done, progress.total, Counted::Nothing);
}

void GestioneLame(LineProgress& progress, const std::string& line, bool reset, bool& stop) {
    constexpr int kWhole = 100;
    if (ResetLines(progress, reset, stop)) return;
    const std::size_t end = line.find("%)");
    const std::size_t start = end == std::string::npos ? end : line.rfind('(', end);
    if (start != std::string::npos)
        ProgressPercent(progress.bar, LeadingNumber(line.substr(start + 1, end - start - 1)), kWhole,
                        Counted::Nothing);
}

} // namespace kelvash::audio
