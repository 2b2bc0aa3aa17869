#include <cstdlib>

#include "foundation/platform/mail.h"
#include "foundation/platform/posix_common.h"

namespace kelvash::platform {

namespace {

// xdg-email hands over and ends; one that waits for the mail's end is left to itself.
constexpr double kPatience = 20; // seconds

// The mail program is the user's, so it keeps the user's language.
std::string OwnLanguage() {
    const char* language = std::getenv("LC_ALL");
    return std::string("LC_ALL=") + (language == nullptr ? "" : language);
}

std::string WithPlainLineEnds(std::string text) {
    std::erase(text, '\r');
    return text;
}

} // namespace

bool SendMail(const NativeMail& mail) {
    const NativeFile env = FindOnPath("env");
    const NativeFile mailer = FindOnPath("xdg-email");
    if (env.empty() || mailer.empty()) return false;
    Arguments words = {OwnLanguage(),
                       mailer.string(),
                       "--utf8",
                       "--subject",
                       mail.Subject,
                       "--body",
                       WithPlainLineEnds(mail.Text)};
    for (const NativeFile& file : mail.Attachments)
        words.insert(words.end(), {"--attach", file.string()});
    const SpawnRequest request{env, words, "/", Window::Hidden};
    Process process;
    if (Spawn(request, process, nullptr) != SpawnResult::Started) return false;
    int exit_code = 0;
    const bool ended = WaitFor(process, kPatience, &exit_code);
    Release(process);
    return !ended || exit_code == 0;
}

} // namespace kelvash::platform
