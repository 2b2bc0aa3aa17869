#include "foundation/messages.h"

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

std::string FillMarks(std::string text, const MessageArgs& args) {
    for (std::size_t i = 0; i < args.size(); ++i) {
        const std::string mark = "~" + std::to_string(i + 1);
        if (const std::size_t at = text.find(mark); at != std::string::npos)
            text.replace(at, mark.size(), args[i]);
    }
    return text;
}

MessageText LoadMessage(MessageId id, const MessageArgs& args) {
    if (id.Entry() == nullptr) return {};
    const auto translated = Translated().find(id.Number());
    return {id,
            FillMarks(translated == Translated().end() ? std::string(id.Entry()->text) : translated->second,
                      args)};
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
