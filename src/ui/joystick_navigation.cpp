#include "ui/joystick_navigation.h"

#include <QApplication>
#include <QTimer>

#include "companion/settings.h"
#include "companion/watcher.h"
#include "core/profile.h"
#include "foundation/desktop.h"
#include "ui/Dialog_ScreenShot.h"
#include "ui/Principale.h"
#include "ui/screenshot_panel.h"

namespace kelvash::ui {

namespace {

constexpr int kLookMillis = 150;
constexpr int kDeadBand = 1000; // of an axis, on both sides of its rest

// By the low byte of the button mask.
constexpr std::uint32_t kFirst = 1, kSaveGames = 2, kPlay = 4, kScreenShots = 8, kLowByte = 0xFF;

// At the end of this event: what begins so may last, and the joystick is to close what it has opened.
void Click(QAbstractButton* button) {
    QMetaObject::invokeMethod(button, &QAbstractButton::click, Qt::QueuedConnection);
}

} // namespace

JoystickNavigation::JoystickNavigation(Principale& window) : window_(window) {
    window.Timer_Joystick->setInterval(kLookMillis);
    connect(window.Timer_Joystick, &QTimer::timeout, this, &JoystickNavigation::Tick);
}

void JoystickNavigation::Tick() {
    if (!core::profile.EnableJoystick || companion::IsWatching()) return;
    QWidget* const active = QApplication::activeWindow();
    auto* const zoom = qobject_cast<Dialog_ScreenShot*>(active);
    if (active != &window_ && zoom == nullptr) return;
    JoystickState joystick;
    if (!TheDesktop().ReadJoystick(core::profile.JoystickId, joystick)) return;
    if (!HeedButtons(joystick.buttons & kLowByte, zoom)) HeedAxes(joystick.x, joystick.y);
}

// The first of them that is pressed; the others wait. True if any is.
bool JoystickNavigation::HeedButtons(std::uint32_t buttons, QWidget* zoom) {
    if ((buttons & kPlay) != 0)
        Click(window_.Pul_Play);
    else if ((buttons & kScreenShots) != 0)
        Click(window_.Pul_ScreenShots);
    else if ((buttons & kSaveGames) != 0)
        Click(window_.Pul_SaveGames);
    else if ((buttons & kFirst) != 0)
        HeedFirstButton(zoom);
    return buttons != 0;
}

void JoystickNavigation::HeedFirstButton(QWidget* zoom) {
    if (zoom != nullptr)
        QMetaObject::invokeMethod(zoom, &QWidget::close, Qt::QueuedConnection);
    else if (!window_.Frame_ScreenShots->isHidden())
        QMetaObject::invokeMethod(window_.Command(MenuEntry::mnu_Zoom), &QAction::trigger,
                                  Qt::QueuedConnection);
    else if (!window_.List_SaveGameArchiviati->selectedItems().isEmpty())
        Click(window_.Pul_RestoreSaveGame);
}

// Up and down go through the levels, left and right through what is shown of one.
void JoystickNavigation::HeedAxes(int x, int y) {
    const int across = x - companion::joystick_rest.X;
    const int down = y - companion::joystick_rest.Y;
    if (std::abs(across) > kDeadBand) {
        if (window_.Frame_ScreenShots->isHidden())
            MoveSavegame(across > 0);
        else
            window_.Shots().MoveCursor(across > 0 ? 1 : -1);
    } else if (std::abs(down) > kDeadBand) {
        Click(down >= 0 ? window_.Pul_Dopo : window_.Pul_Prima);
    }
}

// From the last savegame to the first, and back.
void JoystickNavigation::MoveSavegame(bool forward) {
    QListWidget* const list = window_.List_SaveGameArchiviati;
    const int count = list->count();
    if (count == 0) return;
    const int current = list->selectedItems().isEmpty() ? -1 : list->currentRow();
    const int next = forward ? (current + 1) % count : current <= 0 ? count - 1 : current - 1;
    list->setCurrentRow(next);
}

} // namespace kelvash::ui
