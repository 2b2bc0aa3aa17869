#include "foundation/drives.h"
#include "foundation/platform/platform.h"
#include "foundation/platform/windows_common.h"
#include "foundation/text.h"

// Behind windows.h.
#include <tlhelp32.h>

#include <algorithm>

namespace kelvash::platform {

namespace fs = std::filesystem;

namespace {

constexpr DWORD kLongestPath = 32768;

NativeFile ProgramOf(DWORD process) {
    const OwnHandle handle(OpenProcess(PROCESS_QUERY_LIMITED_INFORMATION, FALSE, process));
    if (handle.handle == nullptr) return {};
    std::wstring path(kLongestPath, L'\0');
    DWORD length = kLongestPath;
    path.resize(QueryFullProcessImageNameW(handle.handle, 0, path.data(), &length) == 0 ? 0 : length);
    return path;
}

} // namespace

std::int64_t FindProcessOf(const NativeFile& program) {
    const std::string wanted = Utf8FromWide(program.filename().native());
    const OwnHandle all(CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0));
    PROCESSENTRY32W entry{};
    entry.dwSize = sizeof entry;
    if (all.handle == nullptr) return 0;
    for (BOOL more = Process32FirstW(all.handle, &entry); more != 0;
         more = Process32NextW(all.handle, &entry)) {
        std::error_code error;
        if (EqualNoCase(Utf8FromWide(entry.szExeFile), wanted) &&
            fs::equivalent(ProgramOf(entry.th32ProcessID), program, error))
            return entry.th32ProcessID;
    }
    return 0;
}

// What is open can't be opened for oneself alone. Who has it open can't be asked.
bool HoldsOpen(std::int64_t, const std::vector<std::string>& files) {
    return std::any_of(files.begin(), files.end(), [](const std::string& text) {
        const NativeFile file = NativePath(text);
        const HANDLE handle = CreateFileW(file.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING,
                                          FILE_ATTRIBUTE_NORMAL, nullptr);
        if (handle == INVALID_HANDLE_VALUE) return GetLastError() == ERROR_SHARING_VIOLATION;
        CloseHandle(handle);
        return false;
    });
}

} // namespace kelvash::platform
