#include <algorithm>

#include "cli/commands.h"
#include "cli/demo.h"
#include "cli/messages.h"
#include "foundation/drive_options.h"
#include "foundation/drives.h"
#include "foundation/messages.h"
#include "foundation/registration.h"
#include "swap/backup_messages.h"

namespace kelvash::cli {

namespace fs = std::filesystem;

namespace {

// The path text by which another run reaches a place: on a drive of the options, or on Z:, the whole file
// system. The sandbox's own C: is only known to runs with its home.
std::string PathForOthers(const fs::path& native) {
    const std::string on_drive = DosPath(native);
    if (!on_drive.empty() || native.has_root_name()) return on_drive;
    std::string text = "Z:" + native.generic_string();
    std::replace(text.begin(), text.end(), '/', '\\');
    return text;
}

} // namespace

Result Demo(Session& session) {
    AllowRegistration(false); // a sandbox is known nowhere
    const std::string yes = "yes";
    session.user.Preset({{.id = msg::kOriginalNeeded, .answer = yes},
                         {.id = msg::kFullBackupQuestion, .answer = yes},
                         {.id = msg::kBackupNoRoom, .answer = yes}});
    Result result;
    const fs::path folder = NativeFromUser(session.options.drives, session.options.path);
    std::error_code error;
    const fs::path whole = fs::weakly_canonical(fs::absolute(folder, error), error);
    Sandbox sandbox;
    // Asked before the sandbox's own drives are taken.
    const std::string base = PathForOthers(whole);
    result.ok = !folder.empty() &&
                MakeSandbox(whole, session.options.first_run ? SandboxState::Untouched : SandboxState::Ready,
                            sandbox);
    const auto text = [&](const fs::path& path) {
        if (path.empty()) return std::string();
        std::string rest = "\\" + path.lexically_relative(whole).generic_string();
        std::replace(rest.begin(), rest.end(), '/', '\\');
        return base + rest;
    };
    result.fields = {
        {"home", text(sandbox.home)}, {"trle", text(sandbox.trle)}, {"zips", text(sandbox.zips)}};
    // A person goes on in a shell, which knows no drives.
    if (result.ok)
        result.plain = LoadMessage(msg::kCliDemoHome) + ": " + sandbox.home.string() + "\n" +
                       LoadMessage(msg::kCliDemoTrle) + ": " + sandbox.trle.string() + "\n" +
                       LoadMessage(msg::kCliDemoZips) + ": " + sandbox.zips.string() + "\n";
    return result;
}

} // namespace kelvash::cli
