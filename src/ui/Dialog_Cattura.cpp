#include "ui/Dialog_Cattura.h"

#include <QVBoxLayout>

#include "companion/shot_capture.h"
#include "core/profile.h"
#include "ui/Dialog_Cattura_messages.h"
#include "ui/form_kit.h"
#include "ui/picture_reading.h"

namespace kelvash::ui {

Dialog_Cattura::Dialog_Cattura(QWidget* parent) : QDialog(parent) {
    setObjectName(QStringLiteral("Dialog_Cattura"));
    Set_Caption_Texts();
    Lay();
    Check_AutoSave->setChecked(!core::profile.PromptCapture);
    connect(Check_AutoSave, &QCheckBox::toggled, this,
            [](bool checked) { companion::SetCaptureAsks(!checked); });
    connect(Pul_Save, &QPushButton::clicked, this, &Dialog_Cattura::Save);
    connect(Pul_Cancel, &QPushButton::clicked, this, &Dialog_Cattura::reject);
}

void Dialog_Cattura::Set_Caption_Texts() {
    SetCaptions(this, {{this, msg::kCatturaCaption},
                       {Check_AutoSave, msg::kCatturaAutoSave},
                       {Pul_Help, msg::kCatturaHelp},
                       {Pul_Save, msg::kCatturaSave, Glyph::SaveAs},
                       {Pul_Cancel, msg::kCatturaCancel}});
}

void Dialog_Cattura::Lay() {
    auto* const layout = new QVBoxLayout(this);
    layout->addWidget(Picture1, 1);
    layout->addWidget(Check_AutoSave);
    layout->addLayout(FootRow(this, {Pul_Help, HelpMark::Screenshots, Pul_Save, Pul_Cancel}));
    Picture1->KeepNatural();
    const int letter = fontMetrics().averageCharWidth();
    resize(letter * 100, fontMetrics().lineSpacing() * 32);
}

void Dialog_Cattura::ImpostaValori(std::int32_t code, const swap::Picture& picture) {
    code_ = code;
    picture_ = picture;
    Picture1->ShowPicture(ImageOf(picture_), Caption(msg::kCatturaPicture));
}

void Dialog_Cattura::Save() {
    std::string path;
    const companion::SaveCaptureEnd end = companion::SaveCapture(code_, picture_, path);
    if (end == companion::SaveCaptureEnd::Again) return;
    if (end == companion::SaveCaptureEnd::Saved) SavedPath = path;
    done(end == companion::SaveCaptureEnd::Saved ? Accepted : Rejected);
}

} // namespace kelvash::ui
