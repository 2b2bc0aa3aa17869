#include <algorithm>
#include <memory>

#include "cli/command.h"
#include "cli/demo.h"
#include "cli/messages.h"
#include "foundation/drive_options.h"
#include "foundation/drives.h"
#include "foundation/messages.h"
#include "foundation/native_text.h"
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
    std::string text = "Z:" + GenericTextOf(native);
    std::replace(text.begin(), text.end(), '/', '\\');
    return text;
}

struct DemoRun {
    std::string folder;
    bool first_run = false; // leave the first start to the user
    // What has become of it.
    bool made = false;
    Sandbox sandbox{};
    fs::path whole{};
    std::string base{}; // the path text of `whole`

    std::string TextOf(const fs::path& path) const {
        if (path.empty()) return {};
        std::string rest = "\\" + GenericTextOf(path.lexically_relative(whole));
        std::replace(rest.begin(), rest.end(), '/', '\\');
        return base + rest;
    }
};

bool MakeDemo(Session& session, DemoRun& demo) {
    AllowRegistration(false); // a sandbox is known nowhere
    const std::string yes = "yes";
    session.user.Preset({{.id = msg::kOriginalNeeded, .answer = yes},
                         {.id = msg::kFullBackupQuestion, .answer = yes},
                         {.id = msg::kBackupNoRoom, .answer = yes}});
    const fs::path folder = NativeFromUser(session.options.drives, demo.folder);
    std::error_code error;
    demo.whole = fs::weakly_canonical(fs::absolute(folder, error), error);
    // Asked before the sandbox's own drives are taken.
    demo.base = PathForOthers(demo.whole);
    const SandboxState state = demo.first_run ? SandboxState::Untouched : SandboxState::Ready;
    demo.made = !folder.empty() && MakeSandbox(demo.whole, state, demo.sandbox);
    return demo.made;
}

// A person goes on in a shell, which knows no drives.
std::string DemoLines(const DemoRun& demo) {
    if (!demo.made) return {};
    return LoadMessage(msg::kCliDemoHome) + ": " + TextOfNative(demo.sandbox.home) + "\n" +
           LoadMessage(msg::kCliDemoTrle) + ": " + TextOfNative(demo.sandbox.trle) + "\n" +
           LoadMessage(msg::kCliDemoZips) + ": " + TextOfNative(demo.sandbox.zips) + "\n";
}

} // namespace

Command DemoCommand() {
    const auto demo = std::make_shared<DemoRun>();
    return {.name = "demo",
            .about =
                "Makes a sandbox in an empty folder: a stand-in TRLE folder and game, an application's "
                "folder with an Archive, and a folder of level zips",
            .arguments = {PathArgument("DIR", demo->folder),
                          {.name = "--first-run",
                           .value = &demo->first_run,
                           .about = "Leaves the program's first start to you: no TRLE folder is chosen, no "
                                    "backup made"}},
            .run = [demo](Session& session) { return MakeDemo(session, *demo); },
            .fields = {{.name = "home",
                        .heading = msg::kCliHome,
                        .value = [demo] { return demo->TextOf(demo->sandbox.home); }},
                       TrleField([demo] { return demo->TextOf(demo->sandbox.trle); }),
                       {.name = "zips",
                        .heading = msg::kCliZips,
                        .value = [demo] { return demo->TextOf(demo->sandbox.zips); }}},
            .plain = [demo] { return DemoLines(*demo); }};
}

} // namespace kelvash::cli
