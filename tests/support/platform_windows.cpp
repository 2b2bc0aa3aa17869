#include <windows.h>

#include <cstdlib>

#include "support/built.h"
#include "support/platform.h"

namespace kelvash::test {

namespace fs = std::filesystem;

fs::path MakeTemporaryFolder() {
    static int made = 0;
    fs::path folder;
    // Process ids come again, and a folder stays as long as a program in it runs.
    do {
        folder = fs::temp_directory_path() /
                 ("kelvash-test-" + std::to_string(GetCurrentProcessId()) + "-" + std::to_string(++made));
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
    if (_wputenv_s(fs::path(name).c_str(), fs::path(value).c_str()) != 0) std::abort();
}

OrdinaryUser::OrdinaryUser() = default;

OrdinaryUser::~OrdinaryUser() = default;

} // namespace kelvash::test
