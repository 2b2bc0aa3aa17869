#include "zip/zip_progress.h"

#include "foundation/messages.h"
#include "zip/fragments.h"

namespace kelvash::zip {

namespace {

void CountLines(LineProgress& progress, const std::string& line, const Fragment& word) {
    if (line.find(LoadFragment(word)) == std::string::npos) return;
    ++progress.done;
    if (!progress.only_count) ProgressPercent(progress.bar, progress.done, progress.total);
}

} // namespace

void GestioneUnzip(LineProgress& progress, const std::string& line, bool reset, bool& stop) {
    if (!ResetLines(progress, reset, stop)) CountLines(progress, line, fragment::kZipInflating);
}

void GestioneZip(LineProgress& progress, const std::string& line, bool reset, bool& stop) {
    if (!ResetLines(progress, reset, stop)) CountLines(progress, line, fragment::kZipAdding);
}

} // namespace kelvash::zip
