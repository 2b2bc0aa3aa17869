// The main form beside the running game: the cover over the desktop, the timers by which the watcher works,
// and the lists as they are when something has come to them.
#pragma once

#include <QObject>
#include <QPointer>
#include <QTimer>
#include <string>

#include "core/archive.h"
#include "ui/Dialog_Blank.h"

namespace kelvash::ui {

class Principale;

class WatchWindow final : public QObject {
    Q_OBJECT

  public:
    // Gives the watcher what it asks of a window (companion::watch_calls), until it is gone.
    explicit WatchWindow(Principale& window);
    ~WatchWindow() override;
    WatchWindow(const WatchWindow&) = delete;
    WatchWindow& operator=(const WatchWindow&) = delete;

    // A game runs: ticks and looks at the keys until it has ended.
    void Begin();
    // Ticks at the end of this event: a timer doesn't fire again while what it has called still works, and
    // the game's end is to be seen under the question for a picture's name.
    void TickSoon();
    // Null while it isn't shown.
    Dialog_Blank* Cover() const { return cover_; }

  private:
    void Tick();
    void ShowCover();
    void CloseCover();
    void ShowAfterGame();
    std::string AskPictureName(const core::LevelPlace& level, const std::string& picture);
    void ShowPictures(const core::LevelPlace& level, const std::string& path);

    Principale& window_;
    QPointer<Dialog_Blank> cover_;
    QTimer poll_;
    bool tick_is_due_ = false;
};

} // namespace kelvash::ui
