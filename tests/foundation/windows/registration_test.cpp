// The registry and the shell's links.
#include "foundation/registration.h"

#include <gtest/gtest.h>
#include <windows.h>

#include "foundation/drives.h"
#include "support/foundation_home.h"

namespace kelvash {
namespace {

namespace fs = std::filesystem;

constexpr const wchar_t* kTestKey = L"Software\\Kelvash test";

std::wstring Default(HKEY root, const std::wstring& path) {
    wchar_t text[512];
    DWORD size = sizeof text;
    return RegGetValueW(root, path.c_str(), L"", RRF_RT_REG_SZ, nullptr, text, &size) == ERROR_SUCCESS
               ? std::wstring(text)
               : std::wstring(L"(none)");
}

class WindowsRegistration : public test::FoundationHome {
  protected:
    ~WindowsRegistration() override {
        RegDeleteTreeW(HKEY_LOCAL_MACHINE, kTestKey);
        for (const wchar_t* name : {L".kelvash-test", L"Kelvash è test"})
            RegDeleteTreeW(HKEY_CLASSES_ROOT, name);
    }
};

TEST_F(WindowsRegistration, ValuesThatAreWrittenCanBeRead) {
    EXPECT_TRUE(WriteRegistryValues("Software\\Kelvash test\\a.exe", "C:\\trlè\\a.exe", "Path", "C:\\trlè"));
    EXPECT_EQ(ReadRegistryValue("SOFTWARE\\kelvash test\\A.EXE"), "C:\\trlè\\a.exe");
    EXPECT_TRUE(WriteRegistryValues("Software\\Kelvash test\\a.exe", "short", "Path", "x"));
    EXPECT_EQ(ReadRegistryValue("Software\\Kelvash test\\a.exe"), "short");
}

TEST_F(WindowsRegistration, WhatIsNoTextIsEmpty) {
    HKEY key = nullptr;
    ASSERT_EQ(RegCreateKeyW(HKEY_LOCAL_MACHINE, kTestKey, &key), ERROR_SUCCESS);
    const DWORD number = 7;
    RegSetValueExW(key, L"Number", 0, REG_DWORD, reinterpret_cast<const BYTE*>(&number), sizeof number);
    EXPECT_EQ(ReadRegistryValue("Software\\Kelvash test"), "");
    RegDeleteValueW(key, L"Number");
    // A text without a NUL at its end, and one that goes on behind it.
    RegSetValueExW(key, L"Text", 0, REG_SZ, reinterpret_cast<const BYTE*>(L"ab"), 4);
    EXPECT_EQ(ReadRegistryValue("Software\\Kelvash test"), "ab");
    RegSetValueExW(key, L"Text", 0, REG_SZ, reinterpret_cast<const BYTE*>(L"ab\0cd"), 12);
    EXPECT_EQ(ReadRegistryValue("Software\\Kelvash test"), "ab");
    RegCloseKey(key);
}

TEST_F(WindowsRegistration, AFileTypeHasItsKeys) {
    EXPECT_TRUE(RegisterFileType(".kelvash-test", "Kelvash è test", "C:\\k\\lara.ico", "C:\\k\\kelvash.exe"));
    EXPECT_EQ(Default(HKEY_CLASSES_ROOT, L".kelvash-test"), L"Kelvash \u00E8 test");
    EXPECT_EQ(Default(HKEY_CLASSES_ROOT, L"Kelvash \u00E8 test"), L"Kelvash \u00E8 test");
    EXPECT_EQ(Default(HKEY_CLASSES_ROOT, L"Kelvash \u00E8 test\\DefaultIcon"), L"C:\\k\\lara.ico");
    EXPECT_EQ(Default(HKEY_CLASSES_ROOT, L"Kelvash \u00E8 test\\shell\\open\\command"),
              L"C:\\k\\kelvash.exe \"%1\"");
    EXPECT_FALSE(RegisterFileType("kelvash-test", "x", "y", "z"));
}

TEST_F(WindowsRegistration, AShortcutIsALink) {
    ResetDrives();
    ASSERT_TRUE(SetAppFolder(home));
    test::MakeFile(home / "tool.exe", "MZ");
    EXPECT_TRUE(CreateShortcut(SpecialFolderId::Programs, AppFolder(), "tool.exe",
                               "Kelvash test\\Sub\\Kelvash 1.4", "-setup"));
    const fs::path folder = NativePath(SpecialFolder(SpecialFolderId::Programs)) / "Kelvash test";
    const std::string link = test::BytesOf(folder / "Sub" / "Kelvash 1.4.lnk");
    EXPECT_EQ(link.substr(0, 4), std::string_view("L\0\0\0", 4)); // a link's head
    fs::remove_all(folder);
}

} // namespace
} // namespace kelvash
