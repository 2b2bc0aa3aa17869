#include "audio/encoder_progress.h"

#include <algorithm>

#include "foundation/text.h"

namespace kelvash::audio {

namespace {

void ShowPart(LineProgress& progress, double done, double total) {
    const double whole = total == 0 ? 1 : total;
    ProgressPercent(progress.bar, progress.from + progress.share * (std::min(done, whole) / whole), 1,
                    Counted::Nothing);
}

} // namespace

void GestioneMadPlay(LineProgress& progress, const std::string& line, bool reset, bool& stop) {
    constexpr std::size_t kTimeLength = 9;
    constexpr int kSecondsAMinute = 60;
    if (ResetLines(progress, reset, stop) || line.size() < kTimeLength || line[3] != ':' || line[6] != ':')
        return;
    progress.done = kSecondsAMinute * LeadingNumber(line.substr(4, 2)) + LeadingNumber(line.substr(7, 2));
    ShowPart(progress, progress.done, progress.total);
}

void GestioneLame(LineProgress& progress, const std::string& line, bool reset, bool& stop) {
    constexpr int kWhole = 100;
    if (ResetLines(progress, reset, stop)) return;
    const std::size_t end = line.find("%)");
    const std::size_t start = end == std::string::npos ? end : line.rfind('(', end);
    if (start != std::string::npos)
        ShowPart(progress, LeadingNumber(line.substr(start + 1, end - start - 1)), kWhole);
}

} // namespace kelvash::audio
