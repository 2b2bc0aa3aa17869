#include "core/path_field.h"

#include "core/change_messages.h"
#include "foundation/bytes.h"
#include "foundation/messages.h"
#include "foundation/text.h"
#include "foundation/user.h"

namespace kelvash::core {

bool CanKeepPath(std::string_view path) {
    return FitText(path, kPathWidth) == path;
}

MessageText FaultOfPath(std::string_view path) {
    if (CanKeepPath(path)) return {};
    const std::string text(path);
    const std::string ansi = AnsiFromUtf8(path);
    if (Utf8FromAnsi(ansi) != path) return LoadMessage(msg::kPathCharacters, {text});
    if (ansi.size() > kPathWidth) return LoadMessage(msg::kPathLength, {text});
    return LoadMessage(msg::kPathBlanks, {text});
}

bool CheckPath(std::string_view path) {
    if (CanKeepPath(path)) return true;
    TellCritical(FaultOfPath(path));
    return false;
}

bool CanKeepText(std::string_view text, std::size_t width) {
    return FitText(text, width) == text;
}

bool CheckText(std::string_view text, std::size_t width) {
    if (CanKeepText(text, width)) return true;
    const bool is_known = Utf8FromAnsi(AnsiFromUtf8(text)) == text;
    TellCritical(is_known ? LoadMessage(msg::kTextLength, {std::to_string(width), std::string(text)})
                          : LoadMessage(msg::kTextCharacters, {std::string(text)}));
    return false;
}

} // namespace kelvash::core
