#include "foundation/messages.h"

#include <map>

#include "foundation/state.h"

namespace kelvash {

namespace {

struct Texts {
    Translation Translated;
};

Translation& Translated() {
    return State<Texts>::Get().Translated;
}

} // namespace

// That a mark which an argument brings is filled in its turn is meant.
std::string FillMarks(std::string text, const MessageArgs& args) {
    for (std::size_t i = 0; i < args.size(); ++i) {
        const std::string mark = "~" + std::to_string(i + 1);
        if (const std::size_t at = text.find(mark); at != std::string::npos)
            text.replace(at, mark.size(), args[i]);
    }
    return text;
}

namespace {

std::string TextOf(MessageId id) {
    const auto translated = Translated().find(id.Number());
    return translated == Translated().end() ? std::string(id.Entry()->text) : translated->second;
}

} // namespace

MessageText LoadMessage(MessageId id, const MessageArgs& args) {
    if (id.Entry() == nullptr) return {};
    return {id, FillMarks(TextOf(id), args)};
}

MessageText LoadMessageOfOthers(MessageId id, const MessageArgs& args) {
    if (id.Entry() == nullptr) return {};
    std::string text = TextOf(id);
    std::map<std::size_t, std::size_t> marks; // where they begin, and whose they are
    for (std::size_t i = 0; i < args.size(); ++i) {
        const std::string mark = "~" + std::to_string(i + 1);
        std::size_t at = text.find(mark);
        while (marks.count(at) != 0)
            at = text.find(mark, at + 1);
        if (at != std::string::npos) marks.emplace(at, i);
    }
    for (auto mark = marks.rbegin(); mark != marks.rend(); ++mark)
        text.replace(mark->first, 1 + std::to_string(mark->second + 1).size(), args[mark->second]);
    return {id, std::move(text)};
}

std::string LoadFragment(const Fragment& fragment, const MessageArgs& args) {
    return FillMarks(std::string(fragment.text), args);
}

std::optional<Harm> HarmOf(MessageId id) {
    return id.Entry() == nullptr ? std::nullopt : id.Entry()->harm;
}

bool AsksPassword(MessageId id) {
    return id.Entry() != nullptr && id.Entry()->password;
}

void SetTranslation(Translation translation) {
    Translated() = std::move(translation);
}

} // namespace kelvash
