#include "foundation/strangers_files.h"

#include <gmock/gmock.h>

#include "support/foundation_home.h"
#include "support/scripted_user.h"

namespace kelvash {
namespace {

using test::MakeFile;

TEST(OpenableAddress, IsAWebSiteOrAnEmailAddress) {
    for (const auto& [text, address] : std::initializer_list<std::pair<const char*, const char*>>{
             {"http://www.x.org", "http://www.x.org"},
             {" HTTPS://x.org/a?b=c&d#e ", "HTTPS://x.org/a?b=c&d#e"},
             {"http://user@x.org:8080/", "http://user@x.org:8080/"},
             {"www.x.org", "http://www.x.org"},
             {"www.x.org:8080/a", "http://www.x.org:8080/a"},
             {"x.org/levels", "http://x.org/levels"},
             {"http://x.org/my level.zip", "http://x.org/my%20level.zip"},
             {"http://x.org/\"><i>", "http://x.org/%22%3E%3Ci%3E"},
             {"mailto:ann@a.org", "mailto:ann@a.org"},
             {"mailto:Ann A <ann@a.org>", "mailto:Ann%20A%20%3Cann@a.org%3E"}})
        EXPECT_EQ(OpenableAddress(text), address) << text;
}

TEST(OpenableAddress, IsNothingElse) {
    for (const std::string& text : {std::string(),
                                    std::string("   "),
                                    std::string("file:///etc/passwd"),
                                    std::string("FILE:x"),
                                    std::string("javascript:alert(1)"),
                                    std::string("smb://host/x"),
                                    std::string("ftp://x.org"),
                                    std::string("ms-settings:x"),
                                    std::string("data:text/html,x"),
                                    std::string("/usr/bin/xterm"),
                                    std::string("./x.sh"),
                                    std::string("../x.y"),
                                    std::string("~/x.sh"),
                                    std::string("C:\\x.exe"),
                                    std::string("C:/x.exe"),
                                    std::string("\\\\server\\share\\x.exe"),
                                    std::string("http:\\\\x.org"),
                                    std::string("http:///etc/passwd"),
                                    std::string("http://"),
                                    std::string("http:x.org"),
                                    std::string("mailto:"),
                                    std::string("--version"),
                                    std::string("-x.org"),
                                    std::string("nohost"),
                                    std::string("http://x.org/\nfile:///etc/passwd"),
                                    std::string("http://x.org/\0", 14),
                                    std::string("http://x.org/\x1B[2J"),
                                    std::string("http://x.org/\u202Egro.y"),
                                    std::string("http://x.org/\xFF"),
                                    std::string("x .org")})
        EXPECT_FALSE(OpenableAddress(text)) << text;
}

class ProgramFiles : public test::FoundationHome {};

TEST_F(ProgramFiles, AreKnownByTheirExtension) {
    for (const char* name : {"setup.exe",  "a.COM",     "a.bat", "a.cmd", "a.pif", "a.scr",  "a.lnk",
                             "a.desktop",  "a.sh",      "a.msi", "a.vbs", "a.js",  "a.ps1",  "a.jar",
                             "a.AppImage", "a.txt.exe", "a.hta", "a.reg", "a.url", "a.exe. "})
        EXPECT_TRUE(IsProgramFile(std::string("C:\\") + name)) << name;
    for (const char* name : {"readme.txt", "a.htm", "a.doc", "a.rtf", "a.pdf", "load.bmp", "city.tr4",
                             "noextension", "exe", "a.exe.txt"})
        EXPECT_FALSE(IsProgramFile(std::string("C:\\") + name)) << name;
}

TEST_F(ProgramFiles, AreKnownByTheirFirstBytes) {
    for (const char* bytes :
         {"MZ\x90",
          "\x7F"
          "ELF\x02",
          "#!/bin/sh\n", "\xCF\xFA\xED\xFE", "\n[Desktop Entry]\nExec=x", "\xEF\xBB\xBF#!/bin/sh"}) {
        MakeFile(drive / "readme.txt", bytes);
        EXPECT_TRUE(IsProgramFile("C:\\readme.txt")) << bytes;
    }
    for (const char* bytes : {"", "M", "Mz", "# A level", "The Maze", "<html>"}) {
        MakeFile(drive / "readme.txt", bytes);
        EXPECT_FALSE(IsProgramFile("C:\\readme.txt")) << bytes;
    }
}

} // namespace
} // namespace kelvash
