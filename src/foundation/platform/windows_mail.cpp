#include "foundation/platform/mail.h"
#include "foundation/platform/windows_common.h"
// clang-format off
#include <mapi.h> // needs what windows.h declares
// clang-format on

namespace kelvash::platform {

namespace {

// Simple MAPI takes texts of the system's own code page; `whole` tells whether all letters are in it.
std::string InCodePage(std::wstring_view wide, bool& whole) {
    const auto length = static_cast<int>(wide.size());
    BOOL lost = FALSE;
    const int size = WideCharToMultiByte(CP_ACP, 0, wide.data(), length, nullptr, 0, nullptr, &lost);
    std::string text(static_cast<std::size_t>(size), '\0');
    WideCharToMultiByte(CP_ACP, 0, wide.data(), length, text.data(), size, nullptr, nullptr);
    whole = lost == FALSE;
    return text;
}

std::string InCodePage(std::wstring_view wide) {
    bool ignored = false;
    return InCodePage(wide, ignored);
}

// A path with letters that the code page lacks goes by its short one.
std::string PathInCodePage(const NativeFile& file) {
    bool whole = false;
    std::string path = InCodePage(file.native(), whole);
    if (whole) return path;
    std::wstring other(GetShortPathNameW(file.c_str(), nullptr, 0), L'\0');
    other.resize(GetShortPathNameW(file.c_str(), other.data(), static_cast<DWORD>(other.size())));
    return other.empty() ? path : InCodePage(other);
}

LPMAPISENDMAIL MailProcedure() {
    const HMODULE library = LoadLibraryW(L"mapi32.dll");
    if (library == nullptr) return nullptr;
    // Through a pointer without a type: the two function types differ.
    void* const address = reinterpret_cast<void*>(GetProcAddress(library, "MAPISendMail"));
    return reinterpret_cast<LPMAPISENDMAIL>(address);
}

} // namespace

bool SendMail(const NativeMail& mail) {
    const LPMAPISENDMAIL send = MailProcedure();
    if (send == nullptr) return false;
    std::string subject = InCodePage(WideFromUtf8(mail.Subject));
    std::string text = InCodePage(WideFromUtf8(mail.Text));
    std::vector<std::string> paths;
    std::vector<std::string> names; // to be shown
    for (const NativeFile& file : mail.Attachments) {
        paths.push_back(PathInCodePage(file));
        names.push_back(InCodePage(file.filename().native()));
    }
    std::vector<MapiFileDesc> files(paths.size());
    for (std::size_t i = 0; i < paths.size(); ++i) {
        files[i].nPosition = static_cast<ULONG>(-1); // not within the text
        files[i].lpszPathName = paths[i].data();
        files[i].lpszFileName = names[i].data();
    }
    MapiMessage message{};
    message.lpszSubject = subject.data();
    message.lpszNoteText = text.data();
    message.nFileCount = static_cast<ULONG>(files.size());
    message.lpFiles = files.empty() ? nullptr : files.data();
    const ULONG result = send(0, 0, &message, MAPI_DIALOG | MAPI_LOGON_UI | MAPI_NEW_SESSION, 0);
    return result == SUCCESS_SUCCESS || result == MAPI_E_USER_ABORT;
}

} // namespace kelvash::platform
