// File type and menu entries as files of the user's data folder, and the registry file of a Wine prefix.
#include "foundation/registration.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>

#include "foundation/drives.h"
#include "support/foundation_home.h"

namespace kelvash {
namespace {

namespace fs = std::filesystem;
using test::BytesOf;
using test::Exists;
using test::MakeFile;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

class PosixRegistration : public test::FoundationHome {
  protected:
    fs::path applications = root / "data" / "applications";
};

TEST_F(PosixRegistration, AFileTypeIsAMimeTypeAndAnEntry) {
    EXPECT_TRUE(
        RegisterFileType(".kva", "TR Custom Level Archive", "C:\\Kelvash\\lara.ico", "C:\\Kelvash\\kelvash"));
    const std::string package = BytesOf(root / "data" / "mime" / "packages" / "kelvash-kva.xml");
    EXPECT_EQ(package,
              "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
              "<mime-info xmlns=\"http://www.freedesktop.org/standards/shared-mime-info\">\n"
              "  <mime-type type=\"application/x-kelvash-kva\">\n"
              "    <comment>TR Custom Level Archive</comment>\n"
              "    <glob pattern=\"*.kva\"/>\n"
              "  </mime-type>\n"
              "</mime-info>\n");
    EXPECT_EQ(BytesOf(applications / "kelvash-kva.desktop"),
              "[Desktop Entry]\nType=Application\nName=Kelvash\nComment=TR Custom Level Archive\nExec=\"" +
                  (home / "kelvash").string() + "\" %f\nIcon=" + (home / "lara.ico").string() +
                  "\nMimeType=application/x-kelvash-kva;\nNoDisplay=true\nTerminal=false\n");
}

TEST_F(PosixRegistration, ADescriptionIsEscaped) {
    EXPECT_TRUE(RegisterFileType(".KVA", "<a> & \"b\"", "C:\\i", "C:\\p"));
    EXPECT_THAT(BytesOf(root / "data" / "mime" / "packages" / "kelvash-kva.xml"),
                HasSubstr("<comment>&lt;a&gt; &amp; &quot;b&quot;</comment>"));
}

TEST_F(PosixRegistration, AnExtensionIsADotAndLetters) {
    for (const char* extension : {"", ".", "kva", ".k/../../x", ".a b", ".\"", ".é"})
        EXPECT_FALSE(RegisterFileType(extension, "d", "C:\\i", "C:\\p")) << extension;
    EXPECT_FALSE(Exists(root / "data"));
}

TEST_F(PosixRegistration, AFailedWriteIsAFailure) {
    MakeFile(root / "data", "a file in the way");
    EXPECT_FALSE(RegisterFileType(".kva", "d", "C:\\i", "C:\\p"));
    EXPECT_FALSE(CreateShortcut(SpecialFolderId::Programs, "C:\\Kelvash", "x", "Kelvash 1.4", ""));
}

TEST_F(PosixRegistration, AShortcutToAProgramStartsIt) {
    MakeFile(home / "kelvash", "#!/bin/sh\n");
    fs::permissions(home / "kelvash", fs::perms::owner_all);
    EXPECT_TRUE(
        CreateShortcut(SpecialFolderId::Programs, "C:\\Kelvash", "C:\\Kelvash\\kelvash", "Kelvash 1.4", ""));
    EXPECT_EQ(BytesOf(applications / "Kelvash 1.4.desktop"),
              "[Desktop Entry]\nType=Application\nName=Kelvash 1.4\nExec=\"" + (home / "kelvash").string() +
                  "\"\nPath=" + home.string() + "\nTerminal=false\n");
    EXPECT_NE(fs::status(applications / "Kelvash 1.4.desktop").permissions() & fs::perms::owner_exec,
              fs::perms::none);
}

TEST_F(PosixRegistration, AShortcutToAWindowsProgramStartsItThroughWine) {
    MakeFile(drive / "trle" / "tomb4.exe", "MZ");
    EXPECT_TRUE(CreateShortcut(SpecialFolderId::Programs, "C:\\trle", "tomb4.exe",
                               "Core Design\\Tomb Raider Level Editor\\Setup Tomb Raider",
                               " -setup \"a b\""));
    EXPECT_THAT(
        BytesOf(applications / "Core Design" / "Tomb Raider Level Editor" / "Setup Tomb Raider.desktop"),
        HasSubstr("\nExec=\"wine\" \"" + (drive / "trle" / "tomb4.exe").string() +
                  "\" \"-setup\" \"a b\"\nPath=" + (drive / "trle").string() + "\n"));
}

TEST_F(PosixRegistration, AShortcutToADocumentOpensIt) {
    MakeFile(drive / "trle" / "manual" / "manual_eng.pdf", "x");
    EXPECT_TRUE(CreateShortcut(SpecialFolderId::Desktop, "C:\\trle", "manual\\manual_eng.pdf", "Manual", ""));
    EXPECT_THAT(BytesOf(root / "Desktop" / "Manual.desktop"),
                HasSubstr("\nExec=\"xdg-open\" \"" + (drive / "trle" / "manual" / "manual_eng.pdf").string() +
                          "\"\n"));
}

TEST_F(PosixRegistration, ACommandIsQuotedTwice) {
    MakeFile(drive / "a$b`c\"d%e", "MZ");
    EXPECT_TRUE(CreateShortcut(SpecialFolderId::Desktop, "C:", "a$b`c\"d%e", "Name", "C:\\x"));
    EXPECT_THAT(BytesOf(root / "Desktop" / "Name.desktop"),
                HasSubstr("/a\\\\$b\\\\`c\\\\\"d%%e\" \"C:\\\\\\\\x\"\n"));
}

TEST_F(PosixRegistration, ACaptionWithForbiddenCharactersIsMadeSafe) {
    MakeFile(drive / "x", "MZ");
    EXPECT_TRUE(CreateShortcut(SpecialFolderId::Desktop, "C:", "x", "a?b|c", ""));
    EXPECT_TRUE(Exists(root / "Desktop" / "a b c.desktop"));
}

// --- the registry of a Wine prefix ---

constexpr const char* kKey = "SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\App Paths\\winroomedit.exe";

constexpr const char* kRegistry = R"(WINE REGISTRY Version 2
;; All keys relative to \\Machine

#arch=win64

[Software\\Classes\\.avi] 1700000000
#time=1da1234567890ab
@="avifile"

[Software\\Microsoft\\Windows\\CurrentVersion\\App Paths\\winroomedit.exe] 1700000000
#time=1da1234567890ab
@="C:\\trle\\winroomedit.exe"
"Path"="C:\\trle"

[Software\\Test\\Escapes \[x\]] 1700000000
"a \"b\""="caff\x00e8 \x20ac \xd83d\xde00\t\1012"

[Software\\Test\\Binary] 1700000000
"A"=hex:01,02,\
  03,04
"B"=dword:00000007
"C"=str(2):"%windir%\\x"

[Software\\Wow6432Node\\Test\\Twin] 1700000000
@="of 32 bits"

[System\\Test] 1700000000
@="no twin"
)";

class WineRegistry : public test::FoundationHome {
  protected:
    WineRegistry() : file(root / "prefix" / "system.reg") {
        MakeFile(file, kRegistry);
        test::SetEnvironment("WINEPREFIX", (root / "prefix").string());
    }
    fs::path file;
};

TEST_F(WineRegistry, AKeyIsFoundWithoutCase) {
    EXPECT_EQ(ReadRegistryValue(kKey), "C:\\trle\\winroomedit.exe");
    EXPECT_EQ(ReadRegistryValue("system\\TEST"), "no twin");
    EXPECT_EQ(ReadRegistryValue("Software\\Test"), "");
    EXPECT_EQ(ReadRegistryValue(""), "");
}

TEST_F(WineRegistry, EscapesAreRead) {
    EXPECT_EQ(ReadRegistryValue("Software\\Test\\Escapes [x]"), "caffè € 😀\tA2");
}

TEST_F(WineRegistry, TheFirstTextIsTheValue) {
    EXPECT_EQ(ReadRegistryValue("Software\\Test\\Binary"), "%windir%\\x");
}

TEST_F(WineRegistry, TheTwinOf32BitProgramsIsLookedAtSecond) {
    EXPECT_EQ(ReadRegistryValue("Software\\Test\\Twin"), "of 32 bits");
    EXPECT_EQ(ReadRegistryValue("Test\\Twin"), "");
}

TEST_F(WineRegistry, AValueEndsAtItsNul) {
    MakeFile(file, "WINE REGISTRY Version 2\n\n[A] 1\n@=\"one\\0two\"\n");
    EXPECT_EQ(ReadRegistryValue("A"), "one");
}

TEST_F(WineRegistry, BrokenFilesGiveNothing) {
    std::string rubbish;
    for (unsigned i = 0; i < 300000; ++i)
        rubbish += static_cast<char>(i * 7919 >> 3 & 0xFF);
    for (const std::string& bytes :
         {std::string(), std::string("["), std::string("[A"), std::string("[A\\"), std::string("[A] 1\n@="),
          std::string("[A] 1\n@=\""), std::string("[A] 1\n@=\"x"), std::string("[A] 1\n@=\"x\\"),
          std::string("[A] 1\n\"name=\"x\"\n"), std::string("[A] 1\n@\n\"\n=\n"), rubbish,
          "[" + std::string(10000000, '\\') + "]\n", "[A] 1\n@=\"" + std::string(1000000, 'x') + "\"\n"}) {
        MakeFile(file, bytes);
        EXPECT_EQ(ReadRegistryValue("A"), "") << bytes.substr(0, 40);
    }
}

TEST_F(WineRegistry, EveryCutOfAFileIsRead) {
    const std::string whole = kRegistry;
    for (std::size_t length = 0; length < whole.size(); length += 3) {
        MakeFile(file, whole.substr(0, length));
        const std::string value = ReadRegistryValue(kKey);
        EXPECT_TRUE(value.empty() || value == "C:\\trle\\winroomedit.exe" || value == "C:\\trle") << length;
    }
}

TEST_F(WineRegistry, AFolderInItsPlaceIsNoRegistry) {
    fs::remove(file);
    fs::create_directory(file);
    EXPECT_EQ(ReadRegistryValue(kKey), "");
    EXPECT_TRUE(WriteRegistryValues(kKey, "a", "Path", "b"));
}

TEST_F(WineRegistry, WithoutAPrefixThereIsNothingToWrite) {
    test::SetEnvironment("WINEPREFIX", (root / "none").string());
    EXPECT_EQ(ReadRegistryValue(kKey), "");
    EXPECT_TRUE(WriteRegistryValues(kKey, "a", "Path", "b"));
    EXPECT_FALSE(Exists(root / "none"));
}

TEST_F(WineRegistry, ANewKeyIsAppended) {
    fs::permissions(file, fs::perms(0640));
    EXPECT_TRUE(WriteRegistryValues("Software\\New [1]\\\"x\"", "Z:\\caffè\\a\"b", "Path", "Z:\\😀"));
    EXPECT_EQ(ReadRegistryValue("software\\new [1]\\\"x\""), "Z:\\caffè\\a\"b");
    const std::string bytes = BytesOf(file);
    EXPECT_THAT(bytes, StartsWith(kRegistry));
    EXPECT_THAT(bytes, HasSubstr("\n[Software\\\\New \\[1\\]\\\\\"x\"] 1"));
    EXPECT_THAT(bytes, HasSubstr("\n#time=1d"));
    EXPECT_THAT(bytes, HasSubstr("\n@=\"Z:\\\\caff\\x00e8\\\\a\\\"b\"\n\"Path\"=\"Z:\\\\\\xd83d\\xde00\"\n"));
    EXPECT_EQ(fs::status(file).permissions(), fs::perms(0640));
    EXPECT_FALSE(Exists(root / "prefix" / "system.reg.kelvash"));
}

TEST_F(WineRegistry, AnOldKeyIsReplacedAndItsOtherValuesStay) {
    MakeFile(file,
             "WINE REGISTRY Version 2\n\n[Software\\\\A] 5\n#time=5\n@=hex:01,\\\n  02\n"
             "\"Other\"=dword:00000001\n\"PATH\"=\"old\"\n\n[Software\\\\B] 5\n@=\"b\"\n\"Path\"=\"keep\"\n");
    EXPECT_TRUE(WriteRegistryValues("SOFTWARE\\a", "new", "Path", "folder"));
    const std::string bytes = BytesOf(file);
    EXPECT_THAT(bytes, HasSubstr("@=\"new\"\n\"Path\"=\"folder\"\n\"Other\"=dword:00000001\n\n"
                                 "[Software\\\\B] 5\n@=\"b\"\n\"Path\"=\"keep\"\n"));
    EXPECT_THAT(bytes, Not(HasSubstr("\"old\"")));
    EXPECT_THAT(bytes, Not(HasSubstr("hex")));
    EXPECT_THAT(bytes, Not(HasSubstr("  02")));
    EXPECT_EQ(ReadRegistryValue("Software\\A"), "new");
}

TEST_F(WineRegistry, ValuesThatStandAreNotWrittenAgain) {
    const auto old = fs::file_time_type::clock::now() - std::chrono::hours(1);
    fs::last_write_time(file, old);
    EXPECT_TRUE(WriteRegistryValues(kKey, "C:\\trle\\winroomedit.exe", "path", "C:\\trle"));
    EXPECT_EQ(fs::last_write_time(file), old);
    EXPECT_EQ(BytesOf(file), kRegistry);
}

TEST_F(WineRegistry, WhatIsNoRegistryIsLeftAlone) {
    for (const std::string& bytes : {std::string(), std::string("something else\n"),
                                     "WINE REGISTRY Version 2\n" + std::string(100000, 'x') + "\n"}) {
        MakeFile(file, bytes);
        EXPECT_FALSE(WriteRegistryValues("A", "a", "Path", "b"));
        EXPECT_EQ(BytesOf(file), bytes);
        EXPECT_FALSE(Exists(root / "prefix" / "system.reg.kelvash"));
    }
}

// A process that looks like the server of a prefix: by its name and the lock that it holds open.
class RunningServer {
  public:
    RunningServer(const fs::path& prefix, const fs::path& temporary) {
        struct stat status {};
        if (::stat(prefix.c_str(), &status) != 0) std::abort();
        char name[64];
        std::snprintf(name, sizeof name, "server-%llx-%llx", static_cast<unsigned long long>(status.st_dev),
                      static_cast<unsigned long long>(status.st_ino));
        const fs::path lock = temporary / name / "lock";
        MakeFile(lock, "");
        int ready[2];
        if (::pipe(ready) != 0) std::abort();
        child_ = ::fork();
        if (child_ == 0) {
            ::prctl(PR_SET_PDEATHSIG, SIGKILL);
            ::prctl(PR_SET_NAME, "wineserver64");
            if (::open(lock.c_str(), O_RDWR) < 0 || ::write(ready[1], "x", 1) != 1) ::_exit(1);
            ::pause();
            ::_exit(0);
        }
        char byte = 0;
        EXPECT_EQ(::read(ready[0], &byte, 1), 1);
        ::close(ready[0]);
        ::close(ready[1]);
    }
    ~RunningServer() { End(); }
    RunningServer(const RunningServer&) = delete;
    RunningServer& operator=(const RunningServer&) = delete;

    void End() {
        if (child_ <= 0) return;
        ::kill(child_, SIGKILL);
        ::waitpid(child_, nullptr, 0);
        child_ = 0;
    }

  private:
    pid_t child_ = 0;
};

TEST_F(WineRegistry, AServerOfAnotherPrefixDoesNotMatter) {
    fs::create_directories(root / "other");
    const RunningServer server(root / "other", root / "tmp");
    EXPECT_TRUE(WriteRegistryValues("Software\\New", "a", "Path", "b"));
}

TEST_F(WineRegistry, ARunningServerKeepsItsRegistry) {
    RunningServer server(root / "prefix", root / "tmp");
    EXPECT_FALSE(WriteRegistryValues("Software\\New", "a", "Path", "b"));
    EXPECT_EQ(BytesOf(file), kRegistry);
    EXPECT_TRUE(WriteRegistryValues(kKey, "C:\\trle\\winroomedit.exe", "Path", "C:\\trle")); // stands already
    server.End();
    EXPECT_TRUE(WriteRegistryValues("Software\\New", "a", "Path", "b"));
    EXPECT_EQ(ReadRegistryValue("Software\\New"), "a");
}

} // namespace
} // namespace kelvash
