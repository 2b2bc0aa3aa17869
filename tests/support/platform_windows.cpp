#include <windows.h>

#include <cstdlib>

#include "foundation/native_text.h"
#include "support/built.h"
#include "support/platform.h"

namespace kelvash::test {

namespace fs = std::filesystem;

fs::path MakeTemporaryFolder() {
    static const fs::path all = fs::temp_directory_path(); // before a test lives elsewhere
    static int made = 0;
    fs::path folder;
    // Process ids come again, and a folder stays as long as a program in it runs.
    do {
        folder =
            all / ("kelvash-test-" + std::to_string(GetCurrentProcessId()) + "-" + std::to_string(++made));
    } while (!fs::create_directory(folder));
    return fs::canonical(folder);
}

fs::path Built(const fs::path& program) {
    std::wstring own(MAX_PATH, L'\0');
    own.resize(GetModuleFileNameW(nullptr, own.data(), MAX_PATH));
    fs::path path = fs::path(own).parent_path().parent_path() / program;
    return path.replace_extension(".exe");
}

int Slowness() {
    return 1;
}

void SetEnvironment(const std::string& name, const std::string& value) {
    if (_wputenv_s(NativeFromText(name).c_str(), NativeFromText(value).c_str()) != 0) std::abort();
}

void LiveBelow(const fs::path& folder) {
    fs::create_directories(folder / "run");
    for (const char* name : {"TMP", "TEMP"})
        SetEnvironment(name, TextOfNative(folder / "run"));
    SetEnvironment("USERPROFILE", TextOfNative(folder));
}

std::uint64_t LinksOf(const fs::path& file) {
    const HANDLE handle = CreateFileW(file.c_str(), FILE_READ_ATTRIBUTES,
                                      FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                      OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    BY_HANDLE_FILE_INFORMATION information{};
    const bool known =
        handle != INVALID_HANDLE_VALUE && GetFileInformationByHandle(handle, &information) != 0;
    if (handle != INVALID_HANDLE_VALUE) CloseHandle(handle);
    return known ? information.nNumberOfLinks : 0;
}

OrdinaryUser::OrdinaryUser() = default;

OrdinaryUser::~OrdinaryUser() = default;

} // namespace kelvash::test
