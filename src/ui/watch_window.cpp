#include "ui/watch_window.h"

#include <optional>
#include <utility>

#include "companion/game.h"
#include "companion/watch_calls.h"
#include "companion/watcher.h"
#include "core/level_list.h"
#include "foundation/desktop.h"
#include "swap/picture_codec.h"
#include "ui/Dialog_Cattura.h"
#include "ui/Principale.h"
#include "ui/screenshot_panel.h"
#include "ui/watch_window_messages.h"

namespace kelvash::ui {

using companion::watch_calls;

WatchWindow::WatchWindow(Principale& window) : window_(window) {
    poll_.setInterval(companion::kPollMillis);
    poll_.setTimerType(Qt::PreciseTimer);
    connect(&poll_, &QTimer::timeout, this, &companion::PollKeys);
    watch_calls.ShowCover = [this] { ShowCover(); };
    watch_calls.CloseCover = [this] { CloseCover(); };
    watch_calls.CoverWindow = [this] { return cover_ == nullptr ? 0 : std::uintptr_t{cover_->winId()}; };
    watch_calls.MayChangeFiles = [this] { return window_.IsFree(); };
    watch_calls.AskPictureName = [this](const auto& level, const auto& picture) {
        return AskPictureName(level, picture);
    };
    watch_calls.ShowPictures = [this](const auto& level, const auto& path) { ShowPictures(level, path); };
    watch_calls.ShowAfterGame = [this] { ShowAfterGame(); };
    watch_calls.TakeFocus = [this] {
        window_.activateWindow();
        window_.Combo_Livelli->setFocus();
    };
}

WatchWindow::~WatchWindow() {
    watch_calls = companion::WatchCalls();
    delete cover_;
}

void WatchWindow::Begin() {
    window_.Timer1->start();
    poll_.start();
}

void WatchWindow::TickSoon() {
    if (!std::exchange(tick_is_due_, true))
        QMetaObject::invokeMethod(this, &WatchWindow::Tick, Qt::QueuedConnection);
}

void WatchWindow::Tick() {
    tick_is_due_ = false;
    if (companion::Tick()) return;
    window_.Timer1->stop();
    poll_.stop();
}

void WatchWindow::ShowCover() {
    delete cover_;
    cover_ = new Dialog_Blank;
    cover_->ImpostaValori(window_);
    connect(cover_, &Dialog_Blank::Closed, this, [this] { window_.SetPlaying(false); });
    window_.SetPlaying(true);
    cover_->showFullScreen();
}

void WatchWindow::CloseCover() {
    // It tells only once that it is closed, and a game that was found running has none.
    if (cover_ == nullptr || !cover_->isVisible()) window_.SetPlaying(false);
    if (cover_ == nullptr) return;
    cover_->close();
    cover_->deleteLater();
    cover_ = nullptr;
}

// Closing the game brings the level's new savegames and the mark of the level that is in.
void WatchWindow::ShowAfterGame() {
    core::RefreshLevelList();
    window_.Shots().ShowLast();
}

// The page that the new picture is on, if its level is shown: the last one, but for names that are sorted
// between others ("10)" stands before "2)").
void WatchWindow::ShowPictures(const core::LevelPlace& level, const std::string& path) {
    if (core::SelectedLevel() != level.Code) return;
    window_.AggiornaDatiLivello(true);
    window_.Shots().ShowLast();
    window_.Shots().ShowPairOf(path);
}

// Over the game, which gets the keys back behind it.
std::string WatchWindow::AskPictureName(const core::LevelPlace& level, const std::string& picture) {
    const std::optional<swap::Picture> decoded = swap::DecodePicture(picture);
    if (!decoded) {
        companion::TellAfterGame(LoadMessage(msg::kWatchUnreadable));
        return {};
    }
    Dialog_Cattura form(nullptr);
    form.ImpostaValori(level.Code, *decoded);
    QTimer::singleShot(0, &form, [&form] {
        form.raise();
        TheDesktop().Activate(std::uintptr_t{form.winId()});
    });
    form.exec();
    if (companion::game.GameProcess.id != 0) TheDesktop().Activate(companion::ShownGameWindow());
    return form.SavedPath;
}

} // namespace kelvash::ui
