#include "swap/marker.h"

#include "core/profile.h"
#include "foundation/files.h"
#include "foundation/messages.h"
#include "foundation/text.h"

namespace kelvash::swap {

namespace {

// Far above what the longest work list makes; a larger file is none of ours.
constexpr std::size_t kLongestMarker = std::size_t{4} << 20;
constexpr int kCodeDigits = 4;

std::string FieldLine(MessageId tag, const std::string& value) {
    return LoadMessage(tag, {}) + value + "#" + kLineBreak;
}

} // namespace

std::string MarkerText(const Marker& marker, bool with_lists) {
    std::string text;
    for (const MessageId comment :
         {MessageId::kMarkerComment1, MessageId::kMarkerComment2, MessageId::kMarkerComment3})
        text += LoadMessage(comment, {}) + kLineBreak;
    text += std::string(" ") + kLineBreak;
    text += FieldLine(MessageId::kMarkerLevelCode, ZeroPadded(marker.Code, kCodeDigits));
    text += FieldLine(MessageId::kMarkerLevelName, std::string(Trim(marker.Name)));
    if (!with_lists) return text;
    text += FieldLine(MessageId::kMarkerOverwritten, Join(marker.Overwritten, "|"));
    text += FieldLine(MessageId::kMarkerCopied, Join(marker.Copied, "|"));
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

std::string MarkerPath() {
    return core::TrleFolder() + LoadMessage(MessageId::kMarkerName, {});
}

std::string ReadMarker() {
    return Utf8FromAnsi(ReadFileStart(MarkerPath(), kLongestMarker).value_or(std::string()));
}

bool WriteMarker(const Marker& marker, bool with_lists) {
    return ReplaceFileBytes(MarkerPath(), AnsiFromUtf8(MarkerText(marker, with_lists)), Flush::No);
}

std::int32_t CurrentLevelCode() {
    return LeadingNumber(MarkerField(LoadMessage(MessageId::kMarkerLevelCode, {}), ReadMarker()));
}

} // namespace kelvash::swap
