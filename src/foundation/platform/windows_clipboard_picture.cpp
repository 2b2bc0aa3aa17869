#include <cstring>
#include <optional>
#include <string_view>
#include <utility>

#include "foundation/clipboard_bitmap.h"
#include "foundation/clipboard_picture.h"
#include "foundation/platform/windows_common.h"

namespace kelvash::platform {

namespace {

constexpr std::size_t kMostBytes = std::size_t{160} << 20;
// Others hold the clipboard for moments only.
constexpr ULONGLONG kPatience = 200; // milliseconds
constexpr DWORD kPause = 10;         // milliseconds
// Who holds it longer than that won't let go of it.
constexpr ULONGLONG kHolderPatience = 5000; // milliseconds

struct Clipboard {
    OwnWindow own_window = nullptr; // of the interface
    HWND window = nullptr;          // of this file
    DWORD held_at = 0;              // the clipboard's number when it couldn't be opened
    ULONGLONG held_since = 0;
};

Clipboard& Own() {
    static Clipboard clipboard;
    return clipboard;
}

// What is put on the clipboard needs an owner; a window for messages alone is one.
HWND OwnerWindow() {
    HWND& window = Own().window;
    if (window == nullptr)
        window =
            CreateWindowExW(0, L"STATIC", L"Kelvash", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr, nullptr);
    return window;
}

// True while the interface of this program owns the clipboard.
bool IsOwn() {
    const HWND owner = GetClipboardOwner();
    DWORD process = 0;
    if (owner != nullptr) GetWindowThreadProcessId(owner, &process);
    return Own().own_window != nullptr && process == GetCurrentProcessId() && owner != Own().window;
}

// What is to be said of a clipboard that somebody else holds open.
ClipboardContent HeldBySomebody() {
    Clipboard& own = Own();
    const DWORD number = GetClipboardSequenceNumber();
    if (own.held_since == 0 || number != std::exchange(own.held_at, number))
        own.held_since = GetTickCount64();
    if (GetTickCount64() - own.held_since < kHolderPatience) return ClipboardContent::Slow;
    own.held_since = 0;
    return ClipboardContent::Failed;
}

// The clipboard, open for as long as this lives.
class OpenedClipboard {
  public:
    OpenedClipboard() {
        const ULONGLONG start = GetTickCount64();
        while (!(open_ = OpenClipboard(OwnerWindow()) != 0) && GetTickCount64() - start < kPatience)
            ::Sleep(kPause);
    }
    ~OpenedClipboard() {
        if (open_) CloseClipboard();
    }
    OpenedClipboard(const OpenedClipboard&) = delete;
    OpenedClipboard& operator=(const OpenedClipboard&) = delete;
    explicit operator bool() const { return open_; }

  private:
    bool open_ = false;
};

} // namespace

} // namespace kelvash::platform

namespace kelvash {

std::uint64_t ClipboardChange() {
    return GetClipboardSequenceNumber();
}

ClipboardPicture ReadClipboardPicture() {
    if (platform::IsOwn() || IsClipboardFormatAvailable(CF_DIB) == 0) return {};
    const platform::OpenedClipboard clipboard;
    if (!clipboard) return {platform::HeldBySomebody(), {}};
    platform::Own().held_since = 0;
    const HANDLE handle = GetClipboardData(CF_DIB);
    const auto* const bytes = handle == nullptr ? nullptr : static_cast<const char*>(GlobalLock(handle));
    if (bytes == nullptr) return {ClipboardContent::Failed, {}};
    const std::string_view dib(bytes, GlobalSize(handle));
    ClipboardPicture picture{ClipboardContent::Failed, {}};
    if (dib.size() <= platform::kMostBytes)
        if (std::optional<std::string> file = FileOfDib(dib))
            picture = {ClipboardContent::Picture, std::move(*file)};
    GlobalUnlock(handle);
    return picture;
}

void EmptyClipboard() {
    const platform::OpenedClipboard clipboard;
    if (clipboard) ::EmptyClipboard();
}

// All that can fail comes before the clipboard is emptied.
bool PutClipboardPicture(std::string bitmap) {
    const std::optional<std::string> dib = DibOfFile(bitmap);
    const HGLOBAL memory = dib ? GlobalAlloc(GMEM_MOVEABLE, dib->size()) : nullptr;
    if (memory == nullptr) return false;
    if (void* const bytes = GlobalLock(memory); bytes != nullptr) {
        std::memcpy(bytes, dib->data(), dib->size());
        GlobalUnlock(memory);
        const platform::OpenedClipboard clipboard;
        if (clipboard && ::EmptyClipboard() != 0 && SetClipboardData(CF_DIB, memory) != nullptr)
            return true; // the memory is the system's own from now on
    }
    GlobalFree(memory);
    return false;
}

void TakeOwnWindow(OwnWindow window) {
    platform::Own().own_window = window;
}

} // namespace kelvash
