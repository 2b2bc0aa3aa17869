#include "trle_state/marker.h"

#include <algorithm>

#include "foundation/files.h"
#include "foundation/messages.h"
#include "foundation/path.h"
#include "foundation/text.h"
#include "trle_state/file_stamp.h"
#include "trle_state/fragments.h"
#include "trle_state/surroundings.h"

namespace kelvash::trle_state {

namespace {

// Far above what the longest work list makes; a larger file is none of ours.
constexpr std::size_t kLongestMarker = std::size_t{4} << 20;
constexpr int kCodeDigits = 4;

std::string FieldLine(const Fragment& tag, const std::string& value) {
    return LoadFragment(tag) + value + "#" + kLineBreak;
}

std::string ListLine(const Fragment& tag, std::vector<std::string> entries) {
    std::erase_if(entries, [](const std::string& entry) {
        return entry.find_first_of("#|") != std::string::npos || Utf8FromAnsi(AnsiFromUtf8(entry)) != entry;
    });
    return FieldLine(tag, Join(entries, "|"));
}

bool IsInstallTarget(const std::string& entry) {
    if (!StaysInside(entry) || IsGameProgram(entry)) return false;
    const std::string folder = FolderOf(entry);
    return folder.empty() || EqualNoCase(folder, LoadFragment(fragment::kMarkerDataFolder)) ||
           EqualNoCase(folder, LoadFragment(fragment::kMarkerAudioFolder));
}

} // namespace

bool IsGameProgram(std::string_view target) {
    return EqualNoCase(target, LoadFragment(fragment::kGameProgram));
}

Marker MarkerOf(const SwapRecord& record) {
    Marker marker{record.Owner.Code, record.Owner.Name, {}, {}};
    for (const RecordedFile& file : record.Overwritten)
        marker.Overwritten.push_back(file.Target);
    for (const RecordedFile& file : record.Copied)
        marker.Copied.push_back(file.Target);
    return marker;
}

std::string MarkerName(std::string_view name) {
    std::string text(Trim(name));
    std::replace(text.begin(), text.end(), '#', ' ');
    return std::string(Trim(Utf8FromAnsi(AnsiFromUtf8(text))));
}

std::string MarkerText(const Marker& marker, bool with_lists) {
    std::string text;
    for (const Fragment& comment :
         {fragment::kMarkerComment1, fragment::kMarkerComment2, fragment::kMarkerComment3})
        text += LoadFragment(comment) + kLineBreak;
    text += std::string(" ") + kLineBreak;
    text += FieldLine(fragment::kMarkerLevelCode, ZeroPadded(marker.Code, kCodeDigits));
    text += FieldLine(fragment::kMarkerLevelName, MarkerName(marker.Name));
    if (!with_lists) return text;
    text += ListLine(fragment::kMarkerOverwritten, marker.Overwritten);
    text += ListLine(fragment::kMarkerCopied, marker.Copied);
    return text;
}

std::string MarkerField(std::string_view tag, std::string_view text) {
    const std::size_t at = FindNoCase(text, tag);
    if (at == std::string_view::npos) return {};
    const std::string_view behind = text.substr(at + tag.size());
    return std::string(Trim(behind.substr(0, behind.find('#'))));
}

std::vector<std::string> MarkerList(std::string_view tag, std::string_view text) {
    return Split(MarkerField(tag, text), '|');
}

std::vector<std::string> CleanMarkerList(std::string_view tag, std::string_view text) {
    std::vector<std::string> entries = MarkerList(tag, text);
    std::erase_if(entries, [](const std::string& entry) { return !IsInstallTarget(entry); });
    return entries;
}

std::string MarkerPath() {
    return TrleFolder() + LoadFragment(fragment::kMarkerName);
}

std::string ReadMarkerBytes() {
    return ReadFileStart(MarkerPath(), kLongestMarker).value_or(std::string());
}

std::string ReadMarker() {
    return Utf8FromAnsi(ReadMarkerBytes());
}

bool WriteMarker(const Marker& marker, bool with_lists, std::string& hash) {
    const std::string bytes = AnsiFromUtf8(MarkerText(marker, with_lists));
    hash = HashOfBytes(bytes);
    return ReplaceFileBytes(MarkerPath(), bytes, Flush::No);
}

void RepairMarker(SwapRecord record) {
    if (HashOfBytes(ReadMarkerBytes()) == record.MarkerHash) return;
    // Nothing depends on it: while the level's files stand the record holds without a marker.
    if (WriteMarker(MarkerOf(record), true, record.MarkerHash)) static_cast<void>(WriteSwapRecord(record));
}

} // namespace kelvash::trle_state
