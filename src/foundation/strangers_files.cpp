#include "foundation/strangers_files.h"

#include <algorithm>
#include <array>

#include "foundation/files.h"
#include "foundation/fragments.h"
#include "foundation/messages.h"
#include "foundation/path.h"
#include "foundation/process.h"
#include "foundation/text.h"
#include "foundation/texts.h"
#include "foundation/user.h"

namespace kelvash {

namespace {

bool HasProgramExtension(const std::string& path) {
    std::string name = FileNameOf(path);
    name.resize(name.find_last_not_of(". ") + 1); // Windows drops what follows
    const std::string extension = ExtensionOf(name);
    const std::vector<std::string> programs = Split(LoadFragment(fragment::kProgramExtensions), '|');
    return std::any_of(programs.begin(), programs.end(),
                       [&](const std::string& program) { return EqualNoCase(extension, program); });
}

// Programs of Windows, Linux and macOS, scripts, and starters of a desktop.
bool BeginsAsProgram(const std::string& path) {
    constexpr std::size_t kStarterRange = 64;
    constexpr std::array<std::string_view, 10> kBeginnings = {"MZ",
                                                              "ZM",
                                                              "\x7F"
                                                              "ELF",
                                                              "#!",
                                                              "\xFE\xED\xFA\xCE",
                                                              "\xFE\xED\xFA\xCF",
                                                              "\xCE\xFA\xED\xFE",
                                                              "\xCF\xFA\xED\xFE",
                                                              "\xCA\xFE\xBA\xBE",
                                                              "\xEF\xBB\xBF#!"};
    const std::string start = ReadFileStart(path, kStarterRange).value_or(std::string());
    return start.find("[Desktop Entry]") != std::string::npos ||
           std::any_of(kBeginnings.begin(), kBeginnings.end(),
                       [&](std::string_view beginning) { return start.starts_with(beginning); });
}

// What stands before the first ":", if it can be a scheme and no part of a path or host comes first.
std::string_view SchemeOf(std::string_view address) {
    const std::size_t colon = address.find(':');
    if (colon == std::string_view::npos || address.find_first_of("/?#@") < colon) return {};
    return address.substr(0, colon);
}

bool BeginsWithHost(std::string_view text) {
    const std::string_view host = text.substr(0, text.find_first_of("/?#:"));
    const auto is_usual = [](unsigned char c) {
        return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '-' ||
               c == '.' || c == '_' || c >= 0x80;
    };
    return !host.empty() && host.front() != '.' && host.front() != '-' &&
           host.find('.') != std::string_view::npos && std::all_of(host.begin(), host.end(), is_usual);
}

std::string Encoded(std::string_view address) {
    constexpr std::string_view kNever = " \"<>^`{|}";
    constexpr std::string_view kDigits = "0123456789ABCDEF";
    std::string encoded;
    for (const char c : address) {
        if (kNever.find(c) == std::string_view::npos) {
            encoded += c;
            continue;
        }
        const auto byte = static_cast<unsigned char>(c);
        encoded += {'%', kDigits[byte >> 4], kDigits[byte & 15]};
    }
    return encoded;
}

} // namespace

bool IsProgramFile(const std::string& path) {
    return HasProgramExtension(path) || BeginsAsProgram(path);
}

std::optional<std::string> OpenableAddress(std::string_view text) {
    const std::string_view address = Trim(text);
    if (address.find('\\') != std::string_view::npos || CleanLine(address) != address) return std::nullopt;
    const std::string_view scheme = SchemeOf(address);
    const std::string_view behind = scheme.empty() ? std::string_view() : address.substr(scheme.size() + 1);
    if (EqualNoCase(scheme, "http") || EqualNoCase(scheme, "https")) {
        const bool has_host = behind.size() > 2 && behind.starts_with("//") && behind[2] != '/';
        return has_host ? std::optional(Encoded(address)) : std::nullopt;
    }
    if (EqualNoCase(scheme, "mailto")) return behind.empty() ? std::nullopt : std::optional(Encoded(address));
    if (!scheme.empty() && !StartsWithNoCase(scheme, "www.")) return std::nullopt;
    return BeginsWithHost(address) ? std::optional("http://" + Encoded(address)) : std::nullopt;
}

Opening OpenStrangersFile(const std::string& path) {
    if (!FileExists(path)) return Opening::Failed;
    if (IsProgramFile(path) &&
        !AskYesNo(MessageStyle::Exclamation,
                  LoadMessageOfOthers(msg::kRunProgramQuestion, {kLineBreak + path, kLineBreak})))
        return Opening::NotWanted;
    return OpenDocument(path, {}, Window::Normal, {}) ? Opening::Opened : Opening::Failed;
}

Opening OpenStrangersAddress(const std::string& text) {
    const std::optional<std::string> address = OpenableAddress(text);
    // A mail program may take the fields behind a "?" for files to attach.
    const auto has_fields = [](const std::string& mail) {
        return StartsWithNoCase(mail, "mailto:") && mail.find('?') != std::string::npos;
    };
    if (!address || has_fields(*address)) {
        TellCritical(LoadMessage(msg::kAddressRefused) + text);
        return Opening::NotWanted;
    }
    if (!AskYesNo(MessageStyle::Question, LoadMessage(msg::kOpenAddressQuestion, {kLineBreak + *address})))
        return Opening::NotWanted;
    return OpenDocument(*address, {}, Window::Normal, {}) ? Opening::Opened : Opening::Failed;
}

} // namespace kelvash
