#include "cli/answers.h"

#include <algorithm>
#include <array>
#include <fstream>
#include <limits>
#include <nlohmann/json.hpp>

#include "foundation/native_text.h"

namespace kelvash::cli {

namespace {

using nlohmann::json;

constexpr std::uint64_t kLargestId = std::numeric_limits<std::int32_t>::max();

// Nothing if the file can't be read.
std::optional<std::string> BytesOf(const std::filesystem::path& file) {
    std::ifstream stream(file, std::ios::binary);
    std::string bytes;
    std::array<char, 4096> piece;
    while (stream) {
        stream.read(piece.data(), piece.size());
        bytes.append(piece.data(), static_cast<std::size_t>(stream.gcount()));
    }
    if (!stream.eof()) return std::nullopt;
    return bytes;
}

// Empty if the value is a whole entry, which is added then.
std::string AddEntry(const json& value, std::vector<AnswerEntry>& entries) {
    if (!value.is_object()) return "is no object";
    AnswerEntry entry;
    bool has_box = false;
    bool has_answer = false;
    for (const auto& [key, member] : value.items()) {
        if (key == "when" && member.is_string()) {
            entry.when = member.get<std::string>();
            has_box = true;
        } else if (key == "id" && member.is_number_unsigned() && member.get<std::uint64_t>() <= kLargestId) {
            entry.id = MessageId(member.get<std::int32_t>());
            has_box = true;
        } else if (key == "answer" && member.is_string()) {
            entry.answer = member.get<std::string>();
            has_answer = true;
        } else if (key == "times" && member.is_number_unsigned()) {
            entry.times = static_cast<int>(std::min<std::uint64_t>(member.get<std::uint64_t>(), 1'000'000));
        } else {
            return "has a bad or unknown \"" + key + "\"";
        }
    }
    if (!has_box || !has_answer) return "lacks \"when\" or \"id\", or \"answer\"";
    if (entry.id != kNoMessage && !entry.when.empty()) return "has both \"when\" and \"id\"";
    entries.push_back(std::move(entry));
    return {};
}

bool Fits(const AnswerEntry& entry, const BoxSigns& box) {
    if (entry.id != kNoMessage) return entry.id == box.id;
    return std::any_of(box.shown.begin(), box.shown.end(), [&](std::string_view text) {
        return text.find(entry.when) != std::string_view::npos;
    });
}

bool IsUsedUp(AnswerEntry& entry, const BoxSigns& box) {
    if (entry.times != 0) return entry.used >= entry.times;
    std::string shown;
    for (const std::string_view text : box.shown)
        shown.append(text).push_back('\0');
    return ++entry.given[shown] > kMostRepeats;
}

} // namespace

std::optional<std::string> TakeAnswer(std::vector<AnswerEntry>& entries, const BoxSigns& box) {
    for (AnswerEntry& entry : entries) {
        if (!Fits(entry, box) || IsUsedUp(entry, box)) continue;
        ++entry.used;
        return entry.answer;
    }
    return std::nullopt;
}

std::string ReadAnswers(const std::filesystem::path& file, std::vector<AnswerEntry>& entries) {
    const std::string name = "answers file " + TextOfNative(file);
    const std::optional<std::string> bytes = BytesOf(file);
    if (!bytes) return name + " can't be read";
    const json list = json::parse(*bytes, nullptr, false);
    if (list.is_discarded()) return name + " is no JSON";
    if (!list.is_array()) return name + " is no JSON array";
    for (std::size_t i = 0; i < list.size(); ++i)
        if (const std::string fault = AddEntry(list[i], entries); !fault.empty())
            return name + ": entry " + std::to_string(i + 1) + " " + fault;
    return {};
}

} // namespace kelvash::cli
