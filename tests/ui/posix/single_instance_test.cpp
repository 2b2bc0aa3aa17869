// A second start of the real program beside a window, and a window beside a game.
#include "ui/single_instance.h"

#include <gmock/gmock.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <QDialog>
#include <QLocalSocket>
#include <QMenuBar>
#include <QProcess>

#include "companion/game.h"
#include "core/change.h"
#include "core/ports.h"
#include "intake/messages.h"
#include "support/built.h"
#include "ui/Principale_messages.h"
#include "ui/principale_home.h"

namespace kelvash::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

namespace fs = std::filesystem;

class SecondWindow : public PrincipaleHome {
  protected:
    SecondWindow() {
        EXPECT_TRUE(core::WriteArchive("C:\\Kelvash\\test.kva"));
        core::ArchiveContents other = core::archive;
        while (other.Table.Size() > 2)
            other.Table.Remove(2);
        EXPECT_TRUE(core::WriteArchiveFile("C:\\Kelvash\\other.kva", other));
        QObject::connect(&instance, &ui::SingleInstance::Wished, &form, &ui::Principale::TakeWish);
        QObject::connect(&instance, &ui::SingleInstance::Wished,
                         [this](const std::string& archive) { wishes.push_back(archive); });
    }
    // Starts the program in this home.
    void Launch(QProcess& process, QStringList words) const {
        words = QStringList{QStringLiteral("--home"), QString::fromStdString(home.string()),
                            QStringLiteral("--drive"), QString::fromStdString("C=" + drive.string())} +
                words;
        process.start(QString::fromStdString(test::Built("bin/kelvash").string()), words);
    }
    int RunAnother(const QStringList& words = {}) const {
        QProcess process;
        Launch(process, words);
        WaitUntil([&] { return process.state() == QProcess::NotRunning; });
        return process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
    }
    fs::path Socket() const { return RuntimeFolder() / (FolderIdentity("C:\\Kelvash") + ".socket"); }
    // What becomes of a message: true if it was answered.
    bool IsAnswered(const QByteArray& message) const {
        QLocalSocket socket;
        socket.connectToServer(QString::fromStdString(Socket().string()));
        EXPECT_TRUE(socket.waitForConnected());
        socket.write(message);
        WaitUntil([&] { return socket.state() == QLocalSocket::UnconnectedState; });
        return socket.bytesAvailable() > 0;
    }

    ui::SingleInstance instance;
    std::vector<std::string> wishes;
};

TEST_F(SecondWindow, RaisesTheFirstAndEnds) {
    ASSERT_EQ(instance.Start(""), ui::SingleInstance::Role::First);
    form.showMinimized();
    EXPECT_EQ(RunAnother(), 0);
    EXPECT_THAT(wishes, ElementsAre(""));
    EXPECT_FALSE(form.isMinimized());
    EXPECT_EQ(core::profile.LastArchive, "C:\\Kelvash\\test.kva");
}

TEST_F(SecondWindow, HandsItsArchiveOver) {
    ASSERT_EQ(instance.Start(""), ui::SingleInstance::Role::First);
    Type("alpha");
    EXPECT_EQ(RunAnother({QString::fromStdString((home / "other.kva").string())}), 0);
    WaitUntil([&] { return core::profile.LastArchive == "C:\\Kelvash\\other.kva"; });
    EXPECT_TRUE(form.Text_Search->text().isEmpty()) << "what was sought in the former one";
    EXPECT_EQ(Current(), "- TRLE: Original configuration - (*)");
    EXPECT_EQ(form.windowTitle().toStdString(), "Kelvash: 2 (other.kva levels)");
    EXPECT_EQ(RunAnother({QStringLiteral("C:\\Kelvash\\test.kva")}), 0);
    WaitUntil([&] { return core::profile.LastArchive == "C:\\Kelvash\\test.kva"; });
}

TEST_F(SecondWindow, TellsOfAnArchiveThatIsNoneAndKeepsTheFormer) {
    ASSERT_EQ(instance.Start(""), ui::SingleInstance::Role::First);
    robot.WillPress("Error loading archive: C:\\Kelvash\\gone.kva", "OK");
    EXPECT_EQ(RunAnother({QStringLiteral("C:\\Kelvash\\gone.kva")}), 0);
    WaitUntil([&] { return robot.HasSeen("gone.kva"); });
    EXPECT_EQ(core::profile.LastArchive, "C:\\Kelvash\\test.kva");
}

TEST_F(SecondWindow, WaitsTillNoBoxIsOpen) {
    ASSERT_EQ(instance.Start(""), ui::SingleInstance::Role::First);
    robot.Will("busy", [this](QWidget* window) {
        EXPECT_EQ(RunAnother({QString::fromStdString((home / "other.kva").string())}), 0);
        QTest::qWait(500);
        EXPECT_EQ(core::profile.LastArchive, "C:\\Kelvash\\test.kva");
        window->close();
    });
    QDialog box(&form);
    box.setObjectName(QStringLiteral("busy"));
    box.exec();
    WaitUntil([&] { return core::profile.LastArchive == "C:\\Kelvash\\other.kva"; });
}

TEST_F(SecondWindow, TakesThePlaceOfOneThatCrashed) {
    QProcess crashed;
    Launch(crashed, {});
    WaitUntil([&] { return Exists(Socket()); });
    crashed.kill();
    ASSERT_TRUE(crashed.waitForFinished());
    ASSERT_TRUE(Exists(Socket()));
    EXPECT_EQ(instance.Start(""), ui::SingleInstance::Role::First);
    EXPECT_EQ(RunAnother(), 0);
    EXPECT_THAT(wishes, ElementsAre(""));
}

TEST_F(SecondWindow, SocketIsTheUsersAlone) {
    ASSERT_EQ(instance.Start(""), ui::SingleInstance::Role::First);
    EXPECT_EQ(fs::status(Socket()).permissions() & (fs::perms::group_all | fs::perms::others_all),
              fs::perms::none);
}

TEST_F(SecondWindow, HeedsNoNonsense) {
    ASSERT_EQ(instance.Start(""), ui::SingleInstance::Role::First);
    for (const QByteArray& message :
         {QByteArray("GET / HTTP/1.1\r\n\r\n"), QByteArray("KELVASH1\xFF\xFF\xFF\xFF", 12),
          QByteArray("KELVASH1\x01\0\0\0ab", 14), QByteArray("KELVASH1\x03\0\0\0a\0b", 15),
          QByteArray("KELVASH1\x02\0\0\0\xFF\xFE", 14), QByteArray(100000, 'K')})
        EXPECT_FALSE(IsAnswered(message)) << message.left(20).toStdString();
    EXPECT_FALSE(IsAnswered("KELVA")) << "half a message is waited for no longer than some seconds";
    EXPECT_THAT(wishes, IsEmpty());
    EXPECT_TRUE(IsAnswered(QByteArray("KELVASH1\0\0\0\0", 12)));
}

TEST_F(SecondWindow, KnowsAFirstThatDoesNotAnswer) {
    int ends[2];
    ASSERT_EQ(pipe(ends), 0);
    const pid_t first = fork();
    if (first == 0) {
        FolderLock lock;
        LockHolder holder;
        const bool taken = lock.Take("C:\\Kelvash", LockKind::Window, "", holder) == LockResult::Taken;
        if (taken && write(ends[1], "t", 1) == 1) pause();
        _exit(1);
    }
    char answer = 0;
    ASSERT_EQ(read(ends[0], &answer, 1), 1);
    EXPECT_EQ(instance.Start(""), ui::SingleInstance::Role::NoAnswer);
    EXPECT_EQ(instance.Other(), first);
    kill(first, SIGKILL);
    waitpid(first, nullptr, 0);
}

// --- a window beside other programs ---

TEST_F(SecondWindow, TellsWhoIsAtWorkAndGoesOn) {
    int ends[2];
    ASSERT_EQ(pipe(ends), 0);
    const pid_t other = fork();
    if (other == 0) {
        const core::Change change(msg::kDoingExport, core::kAll);
        if (change && write(ends[1], "t", 1) == 1) pause();
        _exit(1);
    }
    char answer = 0;
    ASSERT_EQ(read(ends[0], &answer, 1), 1);
    robot.WillPress("Another Kelvash (ui_tests, process " + std::to_string(other) +
                        ") is using this application's folder: exporting a level",
                    "OK");
    Choose(Entry::mnu_AddLevel);
    EXPECT_FALSE(Exists(levels / "LEVEL_0004"));
    kill(other, SIGKILL);
    waitpid(other, nullptr, 0);
    EXPECT_TRUE(form.Pul_Play->isEnabled());
}

TEST_F(SecondWindow, AddsAndCancelsBesideALevelThatAnotherProgramAdded) {
    core::ArchiveContents newer = core::archive;
    core::LevelRecord level;
    level.Code = 4;
    level.Name = "Delta";
    newer.Table.Append(level);
    ASSERT_TRUE(core::WriteArchiveFile("C:\\Kelvash\\test.kva", newer));
    MakeFile(levels / "LEVEL_0004" / "FILES" / "delta.tr4", "delta");
    robot.WillPress("Dialog_NewLevel", "Pul_Cancel");
    Choose(Entry::mnu_AddLevel);
    EXPECT_EQ(BytesOf(levels / "LEVEL_0004" / "FILES" / "delta.tr4"), "delta");
    EXPECT_FALSE(Exists(levels / "LEVEL_0005"));
    EXPECT_THAT(Shown(), testing::Contains("Delta"));
}

class WindowBesideAGame : public PrincipaleHome {
  protected:
    WindowBesideAGame() {
        EXPECT_TRUE(core::WriteArchive("C:\\Kelvash\\test.kva"));
        EXPECT_TRUE(core::WriteProfile());
        fs::copy_file("/bin/sleep", trle / "tomb4.exe", fs::copy_options::overwrite_existing);
        game_ = fork();
        if (game_ == 0) {
            if (chdir(trle.c_str()) == 0) execl("./tomb4.exe", "tomb4.exe", "60", nullptr);
            _exit(127);
        }
        WaitUntil([&] { return core::FindGame() == game_; });
    }
    ~WindowBesideAGame() override { EndGame(); }
    void EndGame() {
        if (game_ <= 0) return;
        kill(game_, SIGKILL);
        waitpid(game_, nullptr, 0);
        game_ = 0;
    }
    pid_t game_ = 0;
};

TEST_F(WindowBesideAGame, KnowsTheGameOfAnEarlierRun) {
    ASSERT_TRUE(form.Load(""));
    EXPECT_FALSE(form.menuBar()->isEnabled());
    EXPECT_EQ(form.Label_Info->text().toStdString(), LoadMessage(msg::kMainPlaying));
    EndGame();
    WaitUntil([&] { return form.menuBar()->isEnabled(); });
}

TEST_F(WindowBesideAGame, AsksBeforeItCloses) {
    ASSERT_TRUE(form.Load(""));
    robot.WillPress("The game is running. Kelvash won't see its end when it is closed now.", "No");
    EXPECT_FALSE(form.close());
    EXPECT_TRUE(form.isVisible());
    robot.WillPress("The game is running. Kelvash won't see its end when it is closed now.", "Yes");
    EXPECT_TRUE(form.close());
}

TEST_F(WindowBesideAGame, SwapsNothingWhileOneRunsThatItDidNotStart) {
    robot.WillPress("The game is running: end it first", "OK");
    Press(&form, "Pul_Play");
    EXPECT_TRUE(form.menuBar()->isEnabled());
    EXPECT_FALSE(Exists(trle / "Kelvash.txt"));
}

} // namespace
} // namespace kelvash::test
