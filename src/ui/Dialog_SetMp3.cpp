#include "ui/Dialog_SetMp3.h"

#include <QVBoxLayout>

#include "ui/Dialog_SetMp3_messages.h"
#include "ui/form_kit.h"
#include "ui/mp3_fields.h"

namespace kelvash::ui {

Dialog_SetMp3::Dialog_SetMp3(QWidget* parent) : QDialog(parent) {
    setObjectName(QStringLiteral("Dialog_SetMp3"));
    Set_Caption_Texts();
    Lay();
    FollowMp3Estimate(this);
    connect(Pul_Restore, &QPushButton::clicked, this, [this] { FillMp3Settings(this); });
    connect(Pul_TestMp3, &QPushButton::clicked, this, [this] {
        door_.Try([this] {
            ReadMp3Settings(this);
            audio::TestMp3Encoding();
        });
    });
    connect(Pul_Start, &QPushButton::clicked, this, [this] {
        ReadMp3Settings(this);
        accept();
    });
    connect(Pul_Cancel, &QPushButton::clicked, this, &Dialog_SetMp3::reject);
}

void Dialog_SetMp3::Set_Caption_Texts() {
    SetCaptions(this, {{this, msg::kSetMp3Caption},
                       {Label_Note, msg::kSetMp3Note},
                       {Label_BitRate, msg::kSetMp3Bitrate, Combo_BitRate},
                       {Label_Canali, msg::kSetMp3Channels, Combo_Canali},
                       {Label_Frequenza, msg::kSetMp3Frequency, Combo_Frequenza},
                       {Label_SourceMp3, msg::kSetMp3Source},
                       {Pul_Restore, msg::kSetMp3Restore, Glyph::Restore},
                       {Pul_TestMp3, msg::kSetMp3Test, Glyph::Sound},
                       {Check_InsertUtiliy, msg::kSetMp3Utility},
                       {Pul_Help, msg::kSetMp3Help},
                       {Pul_Start, msg::kSetMp3Start, Glyph::Mp3},
                       {Pul_Cancel, msg::kSetMp3Cancel}});
}

void Dialog_SetMp3::Lay() {
    auto* const layout = new QVBoxLayout(this);
    layout->addLayout(
        Line({Label_BitRate, Combo_BitRate, Label_Canali, Combo_Canali, Label_Frequenza, Combo_Frequenza}));
    layout->addLayout(Line({Label_InfoMp3, Label_SourceMp3}));
    layout->addLayout(Line({Pul_Restore}));
    layout->addWidget(Label_Note);
    layout->addLayout(Line({Pul_TestMp3}));
    layout->addWidget(Check_InsertUtiliy);
    layout->addStretch();
    layout->addLayout(FootRow(this, {Pul_Help, HelpMark::Audio, Pul_Start, Pul_Cancel}));
    layout->addStrut(fontMetrics().averageCharWidth() * 72);
    Explain(Label_Note);
}

void Dialog_SetMp3::ImpostaValori(const audio::Mp3Choice& choice) {
    FillMp3Settings(this);
    Check_InsertUtiliy->setChecked(choice.InsertUtility);
}

} // namespace kelvash::ui
