#include "ui/task_bar.h"

#include <QWidget>

// Behind Qt's own headers, which its macros would change.
#include <objbase.h>
#include <shobjidl.h>

namespace kelvash::ui {

namespace {

// Null where the system has none.
ITaskbarList3* TaskBar() {
    static ITaskbarList3* const kTaskBar = [] {
        ITaskbarList3* made = nullptr;
        if (FAILED(CoCreateInstance(CLSID_TaskbarList, nullptr, CLSCTX_INPROC_SERVER, IID_ITaskbarList3,
                                    reinterpret_cast<void**>(&made))))
            return static_cast<ITaskbarList3*>(nullptr);
        if (SUCCEEDED(made->HrInit())) return made;
        made->Release();
        return static_cast<ITaskbarList3*>(nullptr);
    }();
    return kTaskBar;
}

} // namespace

void ShowOnTaskBar(const QWidget* window, std::optional<int> percent) {
    constexpr ULONGLONG kWhole = 100;
    if (window == nullptr || !window->isVisible() || TaskBar() == nullptr) return;
    const auto handle = reinterpret_cast<HWND>(window->winId());
    if (percent)
        TaskBar()->SetProgressValue(handle, static_cast<ULONGLONG>(*percent), kWhole);
    else
        TaskBar()->SetProgressState(handle, TBPF_NOPROGRESS);
}

} // namespace kelvash::ui
