#include <cstring>
#include <string_view>

#include "foundation/clipboard_picture.h"
#include "foundation/platform/windows_common.h"

namespace kelvash::platform {

namespace {

constexpr std::size_t kFileHead = 14;
constexpr std::size_t kInfoHead = 40;
constexpr std::size_t kMostBytes = std::size_t{160} << 20;
// Others hold the clipboard for moments only.
constexpr int kTries = 20;
constexpr DWORD kPause = 10; // milliseconds

struct Clipboard {
    OwnWindow own_window = nullptr; // of the interface
    HWND window = nullptr;          // of this file
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

// The clipboard, open for as long as this lives.
class OpenedClipboard {
  public:
    OpenedClipboard() {
        for (int i = 0; i < kTries && !open_; ++i) {
            if (i > 0) ::Sleep(kPause);
            open_ = OpenClipboard(OwnerWindow()) != 0;
        }
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

std::uint32_t NumberAt(std::string_view bytes, std::size_t at) {
    std::uint32_t number = 0;
    std::memcpy(&number, bytes.data() + at, sizeof number);
    return number;
}

// Where the pixels of a bitmap without a file's head begin: behind head, masks and palette.
std::size_t PixelOffset(std::string_view dib) {
    const std::size_t head = NumberAt(dib, 0);
    const std::uint32_t bits = NumberAt(dib, 14) & 0xFFFF;
    const std::uint32_t packing = NumberAt(dib, 16);
    std::size_t colours = NumberAt(dib, 32);
    if (colours == 0 && bits <= 8) colours = std::size_t{1} << bits;
    const std::size_t masks = packing == BI_BITFIELDS && head == kInfoHead ? 12 : 0;
    return kFileHead + head + masks + colours * 4;
}

// A file's bytes of what the clipboard holds.
std::string FileOf(std::string_view dib) {
    std::string file = "BM";
    const auto add = [&file](std::size_t number) {
        const auto value = static_cast<std::uint32_t>(number);
        file.append(reinterpret_cast<const char*>(&value), sizeof value);
    };
    add(kFileHead + dib.size());
    add(0);
    add(PixelOffset(dib));
    return file.append(dib);
}

} // namespace

} // namespace kelvash::platform

namespace kelvash {

std::uint64_t ClipboardChange() {
    return GetClipboardSequenceNumber();
}

ClipboardPicture ReadClipboardPicture() {
    if (platform::IsOwn() || IsClipboardFormatAvailable(CF_DIB) == 0) return {};
    const platform::OpenedClipboard clipboard;
    const HANDLE handle = clipboard ? GetClipboardData(CF_DIB) : nullptr;
    const auto* const bytes = handle == nullptr ? nullptr : static_cast<const char*>(GlobalLock(handle));
    if (bytes == nullptr) return {ClipboardContent::Failed, {}};
    const std::string_view dib(bytes, GlobalSize(handle));
    ClipboardPicture picture{ClipboardContent::Failed, {}};
    if (dib.size() >= platform::kInfoHead && dib.size() <= platform::kMostBytes)
        picture = {ClipboardContent::Picture, platform::FileOf(dib)};
    GlobalUnlock(handle);
    return picture;
}

void EmptyClipboard() {
    const platform::OpenedClipboard clipboard;
    if (clipboard) ::EmptyClipboard();
}

bool PutClipboardPicture(std::string bitmap) {
    if (bitmap.size() <= platform::kFileHead + platform::kInfoHead) return false;
    const std::string_view dib = std::string_view(bitmap).substr(platform::kFileHead);
    const platform::OpenedClipboard clipboard;
    if (!clipboard || ::EmptyClipboard() == 0) return false;
    const HGLOBAL memory = GlobalAlloc(GMEM_MOVEABLE, dib.size());
    if (memory == nullptr) return false;
    std::memcpy(GlobalLock(memory), dib.data(), dib.size());
    GlobalUnlock(memory);
    if (SetClipboardData(CF_DIB, memory) != nullptr) return true; // the system's own from now on
    GlobalFree(memory);
    return false;
}

void TakeOwnWindow(OwnWindow window) {
    platform::Own().own_window = window;
}

} // namespace kelvash
