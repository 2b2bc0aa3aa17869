// `play` beside the stand-in game, all of it real: processes, windows under a window manager, keys,
// clipboard; where Wine is installed, with a game for Windows.
#include <gmock/gmock.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <memory>
#include <thread>

#include "cli/cli_home.h"
#include "foundation/clipboard_picture.h"
#include "foundation/desktop.h"
#include "support/built.h"
#include "support/program_run.h"

// Behind the others.
#include "support/x_client.h"

namespace kelvash::test {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::HasSubstr;

class PlayWatch : public CliHome, protected XClient {
  protected:
    PlayWatch() {
        unsetenv("KELVASH_GAME_MS");
        SetDesktop(nullptr); // the real one
        const CliRun run = Bare({"demo", (root / "demo").string()});
        EXPECT_EQ(run.status, 0) << run.Output() << run.errors;
    }
    ~PlayWatch() override { SetDesktop(&desktop); }

    // Plays "Harbour of Brass", which has two savegames, until the watch is on.
    void Play() {
        program_ = std::make_unique<RunningProgram>(ProgramStart{
            Built("bin/kelvash-cli"), {"--json", "--home", (c / "Kelvash").string(), "play", "2"}, {}, root});
        ASSERT_TRUE(Comes(&GameHasFocus));
        SleepSeconds(3); // two from the window's coming on
    }
    ProgramEnd Leave() {
        Tap(XK_Escape);
        return program_->Wait();
    }
    static void SleepSeconds(double seconds) {
        std::this_thread::sleep_for(std::chrono::duration<double>(seconds));
    }
    static bool GameHasFocus() { return TheDesktop().FocusedWindow().caption == "Tomb Raider (stand-in)"; }
    std::vector<std::string> Saves(const fs::path& folder) const {
        std::vector<std::string> names;
        std::error_code error;
        for (fs::directory_iterator at(folder, error), end; !error && at != end; at.increment(error))
            if (at->path().filename().string().starts_with("savegame."))
                names.push_back(at->path().filename());
        std::sort(names.begin(), names.end());
        return names;
    }

    const fs::path c = root / "demo" / "drive_c";
    const fs::path trle_folder = c / "Program Files" / "Core Design" / "trle";
    const fs::path level = c / "Levels" / "LEVEL_0002";
    const WindowManager manager;

  private:
    std::unique_ptr<RunningProgram> program_;
};

TEST_F(PlayWatch, KeysMoveSavegamesAndTakePictures) {
    Play();
    EXPECT_THAT(Saves(trle_folder), ElementsAre("savegame.0", "savegame.1"));
    Tap(XK_s);
    EXPECT_TRUE(Comes([this] { return Saves(trle_folder).size() == 3; }));
    SleepSeconds(2); // the saves are to lie still
    Tap(XK_F9);
    EXPECT_TRUE(Comes([this] { return Saves(level / "SAVEGAMES" / "slot1").size() == 3; }));
    EXPECT_TRUE(Comes([this] { return Saves(trle_folder).size() == 1; })) << "the newest stays";
    SleepSeconds(1);
    Tap(XK_F11);
    EXPECT_TRUE(Comes([this] { return Saves(trle_folder).size() == 3; }));
    Tap(XK_Print);
    const fs::path picture = level / "SCREENSHOTS" / "1) Harbour of Brass.jpg";
    EXPECT_TRUE(Comes([&] { return Exists(picture) && fs::file_size(picture) > 5000; }));
    EXPECT_FALSE(Exists(level / "SCREENSHOTS" / "2) Harbour of Brass.jpg")) << "one press, one picture";
    const ProgramEnd end = Leave();
    EXPECT_EQ(end.status, 0) << end.output << end.errors;
    EXPECT_THAT(end.output, HasSubstr(R"({"event":"result","ok":true,"installed":2})"));
    EXPECT_THAT(end.output, testing::Not(HasSubstr("could not be"))) << end.output;
}

TEST_F(PlayWatch, APictureOfAnotherProgramsOnTheClipboardIsTaken) {
    Play();
    const std::string picture = TheDesktop().PictureOf(TheDesktop().FocusedWindow().handle);
    ASSERT_TRUE(PutClipboardPicture(picture));
    EXPECT_TRUE(Comes([this] { return Exists(level / "SCREENSHOTS" / "1) Harbour of Brass.jpg"); }));
    ASSERT_TRUE(PutClipboardPicture(picture));
    SleepSeconds(1.5);
    EXPECT_FALSE(Exists(level / "SCREENSHOTS" / "2) Harbour of Brass.jpg")) << "the same again";
    EXPECT_EQ(Leave().status, 0);
}

TEST_F(PlayWatch, KeysForOtherWindowsAreNotItsOwn) {
    Play();
    const ::Window editor = MakeWindow(Root(), true);
    SetProcess(editor, static_cast<unsigned long>(::getpid()));
    TheDesktop().Activate(editor);
    ASSERT_TRUE(Comes([editor] { return TheDesktop().FocusedWindow().handle == editor; }));
    Tap(XK_F9);
    SleepSeconds(2);
    EXPECT_FALSE(Exists(level / "SAVEGAMES" / "slot1"));
    XDestroyWindow(display, editor);
    XSync(display, False);
    for (const DesktopWindow& window : ListTopWindows())
        if (window.caption == "Tomb Raider (stand-in)") TheDesktop().Activate(window.handle);
    ASSERT_TRUE(Comes([] { return GameHasFocus(); }));
    Tap(XK_F9);
    EXPECT_TRUE(Comes([this] { return Exists(level / "SAVEGAMES" / "slot1"); }));
    EXPECT_EQ(Leave().status, 0);
}

// --- under Wine ---

class PlayWatchUnderWine : public PlayWatch {
  protected:
    void SetUp() override {
        const fs::path game = Built("tests/standin-game.exe");
        if (!fs::exists(game)) GTEST_SKIP() << "no mingw-w64 or no Wine here";
        // Kept: it takes Wine many seconds to make.
        setenv("WINEPREFIX", (game.parent_path() / "wine-prefix").c_str(), 1);
        setenv("WINEDLLOVERRIDES", "mscoree,mshtml=", 1);
        setenv("WINEDEBUG", "-all", 1);
        ASSERT_EQ(RunProgram({"/usr/bin/wineboot", {"-i"}, {}, root}, 120).status, 0);
        for (const fs::path& folder : {trle_folder, c / "Kelvash" / "backup_trle"})
            fs::copy_file(game, folder / "tomb4.exe", fs::copy_options::overwrite_existing);
    }
};

TEST_F(PlayWatchUnderWine, KeysMoveSavegamesAndTakePictures) {
    Play();
    Tap(XK_s);
    EXPECT_TRUE(Comes([this] { return Saves(trle_folder).size() == 3; }));
    SleepSeconds(2);
    Tap(XK_F9);
    EXPECT_TRUE(Comes([this] { return Saves(level / "SAVEGAMES" / "slot1").size() == 3; }));
    Tap(XK_Print);
    const fs::path picture = level / "SCREENSHOTS" / "1) Harbour of Brass.jpg";
    EXPECT_TRUE(Comes([&] { return Exists(picture) && fs::file_size(picture) > 5000; }));
    const ProgramEnd end = Leave();
    EXPECT_EQ(end.status, 0) << end.output << end.errors;
    EXPECT_THAT(end.output, HasSubstr(R"({"event":"result","ok":true,"installed":2})"));
}

} // namespace
} // namespace kelvash::test
