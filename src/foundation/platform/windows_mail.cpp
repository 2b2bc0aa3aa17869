#include "foundation/native_text.h"
#include "foundation/platform/mail.h"
#include "foundation/platform/windows_common.h"
#include "foundation/text.h"
// clang-format off
#include <mapi.h> // needs what windows.h declares
// clang-format on

namespace kelvash::platform {

namespace {

// Simple MAPI takes texts of the ANSI code page.
std::string Ansi(std::string_view text) {
    return AnsiFromUtf8(text);
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
    std::string subject = Ansi(mail.Subject);
    std::string text = Ansi(mail.Text);
    std::string to = Ansi(mail.To);
    std::vector<std::string> paths;
    for (const NativeFile& file : mail.Attachments)
        paths.push_back(Ansi(TextOfNative(file)));
    std::vector<MapiFileDesc> files(paths.size());
    for (std::size_t i = 0; i < paths.size(); ++i) {
        files[i].nPosition = static_cast<ULONG>(-1); // not within the text
        files[i].lpszPathName = paths[i].data();
    }
    MapiRecipDesc recipient{};
    recipient.ulRecipClass = MAPI_TO;
    recipient.lpszName = to.data();
    MapiMessage message{};
    message.lpszSubject = subject.data();
    message.lpszNoteText = text.data();
    message.nRecipCount = to.empty() ? 0 : 1;
    message.lpRecips = to.empty() ? nullptr : &recipient;
    message.nFileCount = static_cast<ULONG>(files.size());
    message.lpFiles = files.empty() ? nullptr : files.data();
    const ULONG result = send(0, 0, &message, MAPI_DIALOG | MAPI_LOGON_UI | MAPI_NEW_SESSION, 0);
    return result == SUCCESS_SUCCESS || result == MAPI_E_USER_ABORT;
}

} // namespace kelvash::platform
