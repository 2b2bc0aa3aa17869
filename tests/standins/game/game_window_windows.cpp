#include <windows.h>

#include "game_window.h"

namespace standin {

namespace {

constexpr int kWidth = 640, kHeight = 480;
constexpr COLORREF kSky = RGB(0x28, 0x50, 0x7A);

const WindowPlan* plan_shown = nullptr;
int saves = 0;

void Draw(HWND window) {
    PAINTSTRUCT paint;
    const HDC target = BeginPaint(window, &paint);
    RECT area;
    GetClientRect(window, &area);
    const HBRUSH sky = CreateSolidBrush(kSky);
    FillRect(target, &area, sky);
    DeleteObject(sky);
    SetBkMode(target, TRANSPARENT);
    SetTextColor(target, RGB(255, 255, 255));
    const std::string text =
        plan_shown->level + "\r\n\r\nS: save   Escape: leave the game\r\n\r\nSaved: " + std::to_string(saves);
    RECT place{40, 60, area.right, area.bottom};
    DrawTextA(target, text.c_str(), -1, &place, DT_LEFT);
    EndPaint(window, &paint);
}

LRESULT CALLBACK Take(HWND window, UINT message, WPARAM first, LPARAM second) {
    if (message == WM_PAINT) {
        Draw(window);
        return 0;
    }
    if (message == WM_KEYDOWN && first == VK_ESCAPE) DestroyWindow(window);
    if (message == WM_KEYDOWN && first == 'S') {
        saves += plan_shown->on_save() ? 1 : 0;
        InvalidateRect(window, nullptr, FALSE);
    }
    if (message == WM_TIMER) DestroyWindow(window);
    if (message == WM_DESTROY) PostQuitMessage(0);
    return DefWindowProcA(window, message, first, second);
}

} // namespace

bool RunWindow(const WindowPlan& plan) {
    plan_shown = &plan;
    WNDCLASSA kind{};
    kind.lpfnWndProc = Take;
    kind.hInstance = GetModuleHandleA(nullptr);
    kind.lpszClassName = "StandInGame";
    RegisterClassA(&kind);
    const HWND window =
        CreateWindowA(kind.lpszClassName, plan.title.c_str(), WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0, 0, kWidth,
                      kHeight, nullptr, nullptr, kind.hInstance, nullptr);
    if (window == nullptr) return false;
    if (plan.milliseconds >= 0) SetTimer(window, 1, static_cast<UINT>(plan.milliseconds), nullptr);
    SetForegroundWindow(window);
    MSG message;
    while (GetMessageA(&message, nullptr, 0, 0) > 0) {
        TranslateMessage(&message);
        DispatchMessageA(&message);
    }
    return true;
}

} // namespace standin
