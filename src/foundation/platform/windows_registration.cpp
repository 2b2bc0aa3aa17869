#include <algorithm>
#include <system_error>

#include "foundation/drives.h"
#include "foundation/platform/platform.h"
#include "foundation/platform/windows_common.h"

// Behind windows.h.
#include <objbase.h>
#include <shlobj.h>

namespace kelvash::platform {

namespace fs = std::filesystem;

namespace {

constexpr int kNewestFamily = 6;
constexpr DWORD kLongestName = 16384;

struct OwnKey {
    HKEY key = nullptr;
    OwnKey() = default;
    OwnKey(const OwnKey&) = delete;
    OwnKey& operator=(const OwnKey&) = delete;
    ~OwnKey() {
        if (key != nullptr) RegCloseKey(key);
    }
};

// An empty name is that of the key's default value.
bool SetText(HKEY key, const wchar_t* name, std::string_view text) {
    const std::wstring wide = WideFromUtf8(text);
    return RegSetValueExW(key, name, 0, REG_SZ, reinterpret_cast<const BYTE*>(wide.c_str()),
                          static_cast<DWORD>((wide.size() + 1) * sizeof(wchar_t))) == ERROR_SUCCESS;
}

bool SetDefault(HKEY root, const std::wstring& path, std::string_view text) {
    OwnKey key;
    return RegCreateKeyExW(root, path.c_str(), 0, nullptr, 0, KEY_SET_VALUE, nullptr, &key.key, nullptr) ==
               ERROR_SUCCESS &&
           SetText(key.key, L"", text);
}

// A class for all users where that is allowed, else for this one.
bool SetClass(std::string_view path, std::string_view text) {
    const std::wstring wide = WideFromUtf8(path);
    return SetDefault(HKEY_CLASSES_ROOT, wide, text) ||
           SetDefault(HKEY_CURRENT_USER, L"Software\\Classes\\" + wide, text);
}

// COM for the length of a scope.
struct ComScope {
    HRESULT result = CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
    ComScope() = default;
    ComScope(const ComScope&) = delete;
    ComScope& operator=(const ComScope&) = delete;
    ~ComScope() {
        if (SUCCEEDED(result)) CoUninitialize();
    }
};

// An interface of COM, released at the end.
template <class Interface>
struct Own {
    Interface* it = nullptr;
    Own() = default;
    Own(const Own&) = delete;
    Own& operator=(const Own&) = delete;
    ~Own() {
        if (it != nullptr) it->Release();
    }
};

} // namespace

bool RegisterFileType(std::string_view extension, std::string_view description, std::string_view icon,
                      std::string_view program) {
    const std::string type(description);
    return extension.size() > 1 && extension.front() == '.' && SetClass(extension, description) &&
           SetClass(type + "\\DefaultIcon", icon) &&
           SetClass(type + "\\shell\\open\\command", std::string(program) + " \"%1\"") &&
           SetClass(type, description);
}

bool CreateShortcut(const NativeFile& folder, const NativeFile& target_folder, const NativeFile& target,
                    std::string_view caption, std::string_view arguments) {
    std::error_code error;
    fs::create_directories(folder, error);
    const ComScope com;
    Own<IShellLinkW> link;
    Own<IPersistFile> file;
    const std::wstring words = WideFromUtf8(arguments);
    const fs::path place = folder / (WideFromUtf8(caption) + L".lnk");
    return SUCCEEDED(CoCreateInstance(CLSID_ShellLink, nullptr, CLSCTX_INPROC_SERVER, IID_IShellLinkW,
                                      reinterpret_cast<void**>(&link.it))) &&
           SUCCEEDED(link.it->SetPath(target.c_str())) && SUCCEEDED(link.it->SetArguments(words.c_str())) &&
           SUCCEEDED(link.it->SetWorkingDirectory(target_folder.c_str())) &&
           SUCCEEDED(link.it->QueryInterface(IID_IPersistFile, reinterpret_cast<void**>(&file.it))) &&
           SUCCEEDED(file.it->Save(place.c_str(), TRUE));
}

std::string ReadRegistryValue(std::string_view key) {
    OwnKey opened;
    const std::wstring path = WideFromUtf8(key);
    if (path.empty() ||
        RegOpenKeyExW(HKEY_LOCAL_MACHINE, path.c_str(), 0, KEY_QUERY_VALUE, &opened.key) != ERROR_SUCCESS)
        return {};
    DWORD longest = 0;
    RegQueryInfoKeyW(opened.key, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                     &longest, nullptr, nullptr);
    std::wstring name(kLongestName, L'\0');
    std::wstring text(longest / sizeof(wchar_t) + 1, L'\0');
    DWORD name_size = kLongestName;
    auto size = static_cast<DWORD>(text.size() * sizeof(wchar_t));
    DWORD type = 0;
    if (RegEnumValueW(opened.key, 0, name.data(), &name_size, nullptr, &type,
                      reinterpret_cast<BYTE*>(text.data()), &size) != ERROR_SUCCESS ||
        (type != REG_SZ && type != REG_EXPAND_SZ))
        return {};
    text.resize(std::min(text.find(L'\0'), size / sizeof(wchar_t)));
    return Utf8FromWide(text);
}

bool WriteRegistryValues(std::string_view key, std::string_view default_value, std::string_view name,
                         std::string_view value) {
    OwnKey made;
    return RegCreateKeyExW(HKEY_LOCAL_MACHINE, WideFromUtf8(key).c_str(), 0, nullptr, 0, KEY_SET_VALUE,
                           nullptr, &made.key, nullptr) == ERROR_SUCCESS &&
           SetText(made.key, L"", default_value) && SetText(made.key, WideFromUtf8(name).c_str(), value);
}

// The true version: the plain question is answered with what the program was built for.
int WindowsVersion() {
    using Question = LONG(WINAPI*)(OSVERSIONINFOW*);
    const HMODULE library = GetModuleHandleW(L"ntdll.dll");
    const FARPROC address = library == nullptr ? nullptr : GetProcAddress(library, "RtlGetVersion");
    if (address == nullptr) return 0;
    OSVERSIONINFOW version{};
    version.dwOSVersionInfoSize = sizeof version;
    const auto question = reinterpret_cast<Question>(reinterpret_cast<void*>(address));
    return question(&version) == 0 ? std::min(static_cast<int>(version.dwMajorVersion), kNewestFamily) : 0;
}

} // namespace kelvash::platform
