// Any bytes as a marker: its entries, where they are taken, never leave the folder they are relative to.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <string>

#include "foundation/path.h"
#include "foundation/text.h"
#include "trle_state/marker.h"

namespace {

void Require(bool truth) {
    if (!truth) std::abort();
}

// What a file system makes of an entry: also with the blanks and dots at the ends of names gone, as Windows
// has it.
bool Climbs(const std::string& entry) {
    if (entry.empty() || entry.front() != '\\') return true;
    int depth = 0;
    for (std::string name : kelvash::Split(entry.substr(1), '\\')) {
        const bool up =
            name.size() >= 2 && name.starts_with("..") && name.find_first_not_of(". ") == std::string::npos;
        depth += up ? -1 : 1;
        if (depth < 0 || name.find_first_of(std::string("/:\0", 3)) != std::string::npos) return true;
    }
    return false;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string bytes(reinterpret_cast<const char*>(data), size);
    const std::string text = kelvash::Utf8FromAnsi(bytes);
    static_cast<void>(kelvash::LeadingNumber(kelvash::trle_state::MarkerField("#LEVEL_CODE=", text)));
    for (const char* tag : {"#COPIED_FILES=", "#OVERWROTEN_FILES="}) {
        const std::string field = kelvash::trle_state::MarkerField(tag, text);
        Require(field.find('#') == std::string::npos);
        for (const std::string& entry : kelvash::trle_state::MarkerList(tag, text)) {
            Require(entry.find('|') == std::string::npos);
            Require(!kelvash::StaysInside(entry) || !Climbs(entry));
        }
    }
    // The raw bytes as one entry too.
    Require(!kelvash::StaysInside(bytes) || !Climbs(bytes));
    return 0;
}
