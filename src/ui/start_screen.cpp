#include "ui/start_screen.h"

#include <QPixmap>

#include "ui/Dialog_Splash.h"
#include "ui/first_start.h"
#include "ui/form_support.h"
#include "ui/forms_user.h"

namespace kelvash::ui {

StartScreen::StartScreen(FormsUser& user) : user_(user) {}

StartScreen::~StartScreen() = default;

void StartScreen::Begin(program::FirstStep step) {
    step_ = step;
    if (page_ != nullptr)
        page_->Begin(step);
    else if (shown_)
        Show();
}

void StartScreen::Show() {
    shown_ = true;
    if (step_) {
        splash_.reset();
        page_ = std::make_unique<FirstStart>(nullptr);
        page_->setWindowTitle(TitleWith(page_->windowTitle(), title_note_));
        page_->Begin(*step_);
        page_->show();
        user_.SetMainWindow(page_.get());
    } else if (const QPixmap picture = SplashPicture(); !picture.isNull()) {
        splash_ = std::make_unique<Dialog_Splash>(picture);
        splash_->show();
    }
}

void StartScreen::Close() {
    page_.reset();
    splash_.reset();
}

} // namespace kelvash::ui
