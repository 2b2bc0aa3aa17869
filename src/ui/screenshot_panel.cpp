#include "ui/screenshot_panel.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QKeyEvent>
#include <initializer_list>

#include "companion/screenshots.h"
#include "companion/shot_commands.h"
#include "companion/shot_files.h"
#include "companion/shot_mail.h"
#include "core/level_list.h"
#include "foundation/files.h"
#include "program/level_view.h"
#include "ui/Dialog_Resize.h"
#include "ui/Dialog_ScreenShot.h"
#include "ui/Principale.h"
#include "ui/Principale_messages.h"
#include "ui/picture_reading.h"
#include "ui/screenshot_panel_messages.h"

namespace kelvash::ui {

namespace {

void CopyToClipboard(const std::string& text) {
    QGuiApplication::clipboard()->setText(FromUtf8(text));
}

} // namespace

ScreenshotPanel::ScreenshotPanel(Principale& window) : QObject(&window), window_(window) {
    const auto turn = [this](QPushButton* button, void (companion::ShotPages::*how)()) {
        connect(button, &QPushButton::clicked, this, [this, how] {
            (pages_.*how)();
            Draw();
        });
    };
    turn(window.Pul_PrimoShot, &companion::ShotPages::First);
    turn(window.Pul_PrimaScreenShot, &companion::ShotPages::Previous);
    turn(window.Pul_DopoScreenShot, &companion::ShotPages::Next);
    turn(window.Pul_UltimoShot, &companion::ShotPages::Last);
    for (PictureView* image : {window.Image1, window.Image2}) {
        image->setFocusPolicy(Qt::StrongFocus);
        image->installEventFilter(this);
    }
}

void ScreenshotPanel::ShowLevel(const program::LevelView& level, bool keep_image) {
    pages_.ImageNames = level.Screenshots;
    hint_ = level.FolderMissing ? LoadMessage(msg::kMainLevelMissing) + level.Folder : std::string();
    if (!keep_image) pages_.SelectedSide = 0;
    ShowFrom(keep_image ? pages_.FirstShownImage : 0);
}

void ScreenshotPanel::ShowFrom(std::size_t first) {
    pages_.ShowFrom(first);
    Draw();
}

void ScreenshotPanel::ShowLast() {
    pages_.Last();
    Draw();
}

void ScreenshotPanel::ShowPairOf(const std::string& path) {
    pages_.Select(path);
    Draw();
}

bool ScreenshotPanel::MoveCursor(int step) {
    const std::size_t at = pages_.FirstShownImage + static_cast<std::size_t>(pages_.SelectedSide);
    if (step < 0 ? at == 0 : at + 1 >= pages_.ImageCount()) return false;
    const std::string next = pages_.ImageNames[step < 0 ? at - 1 : at + 1];
    pages_.Select(next);
    Draw();
    return true;
}

void ScreenshotPanel::DrawPicture(PictureView* view, std::size_t index) const {
    const bool there = index < pages_.ImageCount();
    view->ShowFile(there ? NativeText(pages_.ImageNames[index]) : QString(), {});
}

void ScreenshotPanel::Draw() {
    const std::size_t first = pages_.FirstShownImage;
    const std::size_t count = pages_.ImageCount();
    DrawPicture(window_.Image1, first);
    DrawPicture(window_.Image2, first + 1);
    if (count == 0) {
        const std::string standing_in = companion::DefaultScreenshot();
        const bool shows = hint_.empty() && FileExists(standing_in);
        window_.Image1->ShowFile(shows ? NativeText(standing_in) : QString(),
                                 hint_.empty() ? Caption(msg::kPanelNoImage) : ShownText(hint_));
    }
    window_.Image2->setVisible(first + 1 < count || count > 2);
    KeepFocus();
    for (QPushButton* button : {window_.Pul_PrimoShot, window_.Pul_PrimaScreenShot})
        button->setEnabled(pages_.CanGoBack());
    for (QPushButton* button : {window_.Pul_DopoScreenShot, window_.Pul_UltimoShot})
        button->setEnabled(pages_.CanGoOn());
    for (QPushButton* button : {window_.Pul_PrimoShot, window_.Pul_PrimaScreenShot,
                                window_.Pul_DopoScreenShot, window_.Pul_UltimoShot})
        button->setVisible(count > 0);
    SelectSide(pages_.SelectedSide);
}

// A button that goes grey at the last page, or the first, hands its focus to the one of the other way: the
// form would give it to some control elsewhere.
void ScreenshotPanel::KeepFocus() {
    const auto hand_on = [](std::initializer_list<QPushButton*> greying, QPushButton* to) {
        for (const QPushButton* button : greying)
            if (button->hasFocus()) {
                to->setEnabled(true);
                to->setFocus();
            }
    };
    if (!pages_.CanGoOn() && pages_.CanGoBack())
        hand_on({window_.Pul_DopoScreenShot, window_.Pul_UltimoShot}, window_.Pul_PrimaScreenShot);
    if (!pages_.CanGoBack() && pages_.CanGoOn())
        hand_on({window_.Pul_PrimoShot, window_.Pul_PrimaScreenShot}, window_.Pul_DopoScreenShot);
}

// Where there is no right picture the left one is selected.
void ScreenshotPanel::SelectSide(int side) {
    const std::size_t shown = pages_.ImageCount() - std::min(pages_.FirstShownImage, pages_.ImageCount());
    pages_.SelectedSide = side == 1 && shown > 1 ? 1 : 0;
    window_.Image1->SetSelected(shown > 1 && pages_.SelectedSide == 0);
    window_.Image2->SetSelected(shown > 1 && pages_.SelectedSide == 1);
}

bool ScreenshotPanel::TakeKey(int key) {
    switch (key) {
        case Qt::Key_Return:
        case Qt::Key_Enter:
        case Qt::Key_Space:
            window_.Command(MenuEntry::mnu_Zoom)->trigger();
            return true;
        case Qt::Key_Delete:
            window_.Command(MenuEntry::mnu_DeleteShot)->trigger();
            return true;
        case Qt::Key_Left:
        case Qt::Key_Right:
            if (MoveCursor(key == Qt::Key_Left ? -1 : 1))
                (pages_.SelectedSide == 0 ? window_.Image1 : window_.Image2)->setFocus();
            return true;
        default:
            return false;
    }
}

bool ScreenshotPanel::eventFilter(QObject* watched, QEvent* event) {
    switch (event->type()) {
        case QEvent::MouseButtonPress:
        case QEvent::FocusIn:
            SelectSide(watched == window_.Image2 ? 1 : 0);
            return false;
        case QEvent::FocusOut:
            static_cast<QWidget*>(watched)->update();
            return false;
        case QEvent::MouseButtonDblClick: // behind the event: its window goes on with it
            QMetaObject::invokeMethod(
                this, [this] { window_.Command(MenuEntry::mnu_Zoom)->trigger(); }, Qt::QueuedConnection);
            return true;
        case QEvent::KeyPress:
            return TakeKey(static_cast<const QKeyEvent*>(event)->key());
        default:
            return false;
    }
}

void ScreenshotPanel::Add() {
    std::string added;
    if (!companion::AddScreenshot(core::SelectedLevel(), added)) return;
    window_.AggiornaDatiLivello(true);
    ShowPairOf(added);
}

void ScreenshotPanel::OpenEditor() const {
    static_cast<void>(companion::OpenShotEditor(pages_.SelectedImage())); // it has told what failed
}

void ScreenshotPanel::CopyPath() const {
    companion::CopyShotPath(pages_.SelectedImage(), CopyToClipboard);
}

void ScreenshotPanel::CopyImage() const {
    const std::optional<swap::Picture> picture = companion::ReadShotOrTell(pages_.SelectedImage());
    if (!picture) return;
    QGuiApplication::clipboard()->setImage(ImageOf(*picture));
    window_.Say(Caption(msg::kPanelCopied));
}

void ScreenshotPanel::ShowProperty() const {
    companion::ShowShotProperty(pages_.SelectedImage());
}

void ScreenshotPanel::Delete() {
    if (companion::DeleteShot(core::SelectedLevel(), pages_.SelectedImage()))
        window_.AggiornaDatiLivello(true);
}

void ScreenshotPanel::Rename() {
    std::string path = pages_.SelectedImage();
    if (!companion::RenameShot(core::SelectedLevel(), path)) return;
    window_.AggiornaDatiLivello(true);
    ShowPairOf(path);
}

void ScreenshotPanel::Resize() {
    Dialog_Resize form(&window_);
    if (!form.ImpostaValori(core::SelectedLevel(), pages_.SelectedImage())) return;
    form.exec();
    window_.AggiornaDatiLivello(true);
}

void ScreenshotPanel::Save() {
    if (companion::SaveShotAs(core::SelectedLevel(), pages_.SelectedImage()))
        window_.AggiornaDatiLivello(true);
}

void ScreenshotPanel::Mail() const {
    // It has told what failed.
    static_cast<void>(companion::MailScreenshot(core::SelectedLevel(), pages_.SelectedImage()));
}

void ScreenshotPanel::Zoom() const {
    Dialog_ScreenShot form(&window_);
    if (form.ImpostaValori(pages_.SelectedImage())) form.exec();
}

} // namespace kelvash::ui
