#include "foundation/zip_progress.h"

#include "foundation/fragments.h"
#include "foundation/messages.h"
#include "foundation/text.h"

namespace kelvash {

namespace {

// True if that was all there is to do with this call.
bool Reset(LineProgress& progress, bool reset, bool& stop) {
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

void CountLines(LineProgress& progress, const std::string& line, const Fragment& word) {
    if (line.find(LoadFragment(word)) == std::string::npos) return;
    ++progress.done;
    if (!progress.only_count) ProgressPercent(progress.bar, progress.done, progress.total);
}

} // namespace

void GestioneUnzip(LineProgress& progress, const std::string& line, bool reset, bool& stop) {
    if (!Reset(progress, reset, stop)) CountLines(progress, line, fragment::kZipInflating);
}

void GestioneZip(LineProgress& progress, const std::string& line, bool reset, bool& stop) {
    if (!Reset(progress, reset, stop)) CountLines(progress, line, fragment::kZipAdding);
}

void GestioneMadPlay(LineProgress& progress, const std::string& line, bool reset, bool& stop) {
    constexpr std::size_t kTimeLength = 9;
    constexpr int kSecondsAMinute = 60;
    if (Reset(progress, reset, stop) || line.size() < kTimeLength || line[3] != ':' || line[6] != ':') return;
    progress.done = kSecondsAMinute * LeadingNumber(line.substr(4, 2)) + LeadingNumber(line.substr(7, 2));
    ProgressPercent(progress.bar, progress.done, progress.total);
}

void GestioneLame(LineProgress& progress, const std::string& line, bool reset, bool& stop) {
    constexpr int kWhole = 100;
    if (Reset(progress, reset, stop)) return;
    const std::size_t end = line.find("%)");
    const std::size_t start = end == std::string::npos ? end : line.rfind('(', end);
    if (start != std::string::npos)
        ProgressPercent(progress.bar, LeadingNumber(line.substr(start + 1, end - start - 1)), kWhole);
}

} // namespace kelvash
