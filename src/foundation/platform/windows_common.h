// What several windows_*.cpp share: windows.h without the names it takes from others, and wide texts.
//
// Included behind all other headers: windows.h turns names such as CopyFile into macros.
#pragma once

#include <string>
#include <string_view>

#ifndef NOMINMAX
#define NOMINMAX
#endif
#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#include <windows.h>

#undef CopyFile
#undef CreateFile
#undef DeleteFile
#undef GetMessage
#undef MoveFile
#undef ReplaceFile
#undef SendMessage

namespace kelvash::platform {

std::wstring WideFromUtf8(std::string_view text);
std::string Utf8FromWide(std::wstring_view text);

// Closes a handle at the end of a scope.
struct OwnHandle {
    HANDLE handle;
    explicit OwnHandle(HANDLE opened) : handle(opened == INVALID_HANDLE_VALUE ? nullptr : opened) {}
    OwnHandle(const OwnHandle&) = delete;
    OwnHandle& operator=(const OwnHandle&) = delete;
    ~OwnHandle() { Close(); }
    void Close() {
        if (handle != nullptr) CloseHandle(handle);
        handle = nullptr;
    }
};

} // namespace kelvash::platform
