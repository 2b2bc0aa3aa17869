#include "ui/Dialog_Resize.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QVBoxLayout>

#include "companion/picture_scaling.h"
#include "companion/resize_shot.h"
#include "ui/Dialog_Resize_messages.h"
#include "ui/form_kit.h"
#include "ui/picture_reading.h"

namespace kelvash::ui {

Dialog_Resize::Dialog_Resize(QWidget* parent) : QDialog(parent) {
    setObjectName(QStringLiteral("Dialog_Resize"));
    Set_Caption_Texts();
    Fill();
    Lay();
    connect(Combo_Resize, &QComboBox::currentIndexChanged, this, &Dialog_Resize::ShowResized);
    connect(Pul_Save, &QPushButton::clicked, this, &Dialog_Resize::Save);
    connect(Pul_Cancel, &QPushButton::clicked, this, &Dialog_Resize::reject);
}

void Dialog_Resize::Set_Caption_Texts() {
    SetCaptions(this, {{this, msg::kResizeCaption},
                       {Label_Resize, msg::kResizeSize, Combo_Resize},
                       {Label_JpgQuality, msg::kResizeQuality, Combo_JpgQuality},
                       {Pul_Help, msg::kResizeHelp},
                       {Pul_Save, msg::kResizeSave, Glyph::SaveAs},
                       {Pul_Cancel, msg::kResizeClose}});
}

void Dialog_Resize::Fill() {
    for (const companion::ShotSize& size : companion::kShotSizes)
        Combo_Resize->addItem(FromUtf8(ShotSizeText(size)));
    for (const companion::ShotQuality& quality : companion::ShotQualities())
        Combo_JpgQuality->addItem(Caption(quality.Name), quality.Value);
}

void Dialog_Resize::Lay() {
    auto* const layout = new QVBoxLayout(this);
    layout->addLayout(Line({Label_Resize, Combo_Resize, Label_JpgQuality, Combo_JpgQuality}));
    layout->addWidget(Picture1, 1);
    layout->addLayout(FootRow(this, {Pul_Help, HelpMark::Screenshots, Pul_Save, Pul_Cancel}));
    Picture1->KeepNatural();
    const companion::ShotSize largest = companion::kShotSizes.front();
    Picture1->setMinimumSize(static_cast<int>(largest.Width), static_cast<int>(largest.Height));
}

bool Dialog_Resize::ImpostaValori(std::int32_t code, const std::string& path) {
    code_ = code;
    path_ = path;
    if (!companion::BeginResize(path, picture_)) return false;
    ShowResized();
    return true;
}

void Dialog_Resize::ShowResized() {
    if (picture_.Pixels.empty()) return;
    const companion::ShotSize& size =
        companion::kShotSizes.at(static_cast<std::size_t>(Combo_Resize->currentIndex()));
    resized_ = companion::Stretched(picture_, size.Width, size.Height);
    Picture1->ShowPicture(ImageOf(resized_), Caption(msg::kResizePicture));
}

void Dialog_Resize::Save() {
    static_cast<void>(companion::SaveResized(
        code_, path_, resized_, Combo_JpgQuality->currentData().toInt(),
        [](const std::string& text) { QGuiApplication::clipboard()->setText(FromUtf8(text)); }));
}

} // namespace kelvash::ui
