#include "ui/Dialog_ConvertAudio.h"

#include <QDragEnterEvent>
#include <QGridLayout>
#include <QVBoxLayout>

#include "audio/audio_facts.h"
#include "ui/Dialog_ConvertAudio_messages.h"
#include "ui/dropped_files.h"
#include "ui/form_kit.h"
#include "ui/mp3_fields.h"

namespace kelvash::ui {

using audio::ConverterMode;

namespace {

MessageId FilesTitle(ConverterMode mode) {
    switch (mode) {
        case ConverterMode::DecodeMp3:
            return msg::kConvertAudioSelectMp3;
        case ConverterMode::EncodeWave:
            return msg::kConvertAudioSelectSources;
        case ConverterMode::ConvertWave:
            break;
    }
    return msg::kConvertAudioSelectWaves;
}

} // namespace

Dialog_ConvertAudio::Dialog_ConvertAudio(QWidget* parent) : QDialog(parent) {
    setObjectName(QStringLiteral("Dialog_ConvertAudio"));
    Set_Caption_Texts();
    FillMp3Settings(this); // lists that are filled later keep the width of empty ones
    Lay();
    Connect();
}

void Dialog_ConvertAudio::Set_Caption_Texts() {
    const bool encodes = converter_.Mode == ConverterMode::EncodeWave;
    SetCaptions(this, {{this, msg::kConvertAudioCaption},
                       {Frame_Files, FilesTitle(converter_.Mode)},
                       {Pul_AddFile, msg::kConvertAudioAddFile, Glyph::AddFile},
                       {Pul_AddFolder, msg::kConvertAudioAddFolder, Glyph::NewFolder},
                       {Pul_Remove, msg::kConvertAudioRemove, Glyph::TakeOut},
                       {Frame1_Outputwav, msg::kConvertAudioOutput},
                       {Opt_StandardWav, msg::kConvertAudioStandard},
                       {Opt_22050_mono, msg::kConvertAudioSamples},
                       {Opt_Wav4bit, msg::kConvertAudio4Bit},
                       {Frame_RateMp3, msg::kConvertAudioRate},
                       {Label_BitRate, msg::kConvertAudioBitrate, Combo_BitRate},
                       {Label_Canali, msg::kConvertAudioChannels, Combo_Canali},
                       {Label_Frequenza, msg::kConvertAudioFrequency, Combo_Frequenza},
                       {Label_SourceMp3, msg::kConvertAudioSource},
                       {Label_Target, encodes ? msg::kConvertAudioTargetMp3 : msg::kConvertAudioTargetWave},
                       {Pul_SfogliaDirOut, msg::kConvertAudioBrowse, Glyph::Folder},
                       {Pul_Help, msg::kConvertAudioHelp},
                       {Pul_Converti, msg::kConvertAudioConvert, Glyph::Convert},
                       {Pul_Cancel, msg::kConvertAudioClose},
                       ControlCaption::Spoken(Pul_SfogliaDirOut, msg::kConvertAudioSpokenBrowse),
                       ControlCaption::Spoken(List_Files, msg::kConvertAudioSpokenFiles)});
}

void Dialog_ConvertAudio::Lay() {
    LayFiles();
    auto* const waves = new QVBoxLayout(Frame1_Outputwav);
    for (QRadioButton* option : {Opt_StandardWav, Opt_22050_mono, Opt_Wav4bit})
        waves->addWidget(option);
    auto* const rates = new QVBoxLayout(Frame_RateMp3);
    rates->addLayout(
        Line({Label_BitRate, Combo_BitRate, Label_Canali, Combo_Canali, Label_Frequenza, Combo_Frequenza}));
    rates->addLayout(Line({Label_InfoMp3, Label_SourceMp3}));
    auto* const target = new QHBoxLayout;
    target->addWidget(Label_DirOut, 1);
    target->addWidget(Pul_SfogliaDirOut);
    auto* const layout = new QVBoxLayout(this);
    layout->addWidget(Frame_Files, 1);
    layout->addWidget(Frame1_Outputwav);
    layout->addWidget(Frame_RateMp3);
    layout->addWidget(Label_Target);
    layout->addLayout(target);
    layout->addLayout(FootRow(this, {Pul_Help, HelpMark::Audio, Pul_Converti, Pul_Cancel}));
    layout->addStrut(fontMetrics().averageCharWidth() * 84);
    setAcceptDrops(true);
}

void Dialog_ConvertAudio::LayFiles() {
    auto* const buttons = new QVBoxLayout;
    for (QPushButton* button : {Pul_AddFile, Pul_AddFolder, Pul_Remove})
        buttons->addWidget(button);
    buttons->addStretch();
    auto* const grid = new QGridLayout(Frame_Files);
    grid->addWidget(List_Files, 0, 0);
    grid->addLayout(buttons, 0, 1);
    grid->addWidget(Label_Total, 1, 0, 1, 2);
    grid->setColumnStretch(0, 1);
    List_Files->setTextElideMode(Qt::ElideMiddle);
    List_Files->setUniformItemSizes(true);
    List_Files->setMinimumHeight(fontMetrics().height() * 10);
}

void Dialog_ConvertAudio::Connect() {
    const auto does = [this](void (*work)(audio::Converter&)) {
        return [this, work] {
            door_.Try([this, work] { work(converter_); });
            Refresh();
        };
    };
    connect(Pul_AddFile, &QPushButton::clicked, this, does(&audio::AddFile));
    connect(Pul_AddFolder, &QPushButton::clicked, this, does(&audio::AddFolder));
    connect(Pul_SfogliaDirOut, &QPushButton::clicked, this, does(&audio::ChooseTargetFolder));
    connect(Pul_Remove, &QPushButton::clicked, this, [this] {
        door_.Try([this] { audio::RemoveFile(converter_, List_Files->currentRow()); });
        Refresh();
    });
    connect(List_Files, &QListWidget::itemDoubleClicked, this, [this] {
        door_.Try([this] {
            audio::OpenAudioFile(converter_.Files.at(static_cast<std::size_t>(List_Files->currentRow())));
        });
    });
    connect(Pul_Converti, &QPushButton::clicked, this, [this] {
        bool closes = false;
        door_.Try([&] { closes = Convert(); });
        if (closes) accept();
    });
    connect(Pul_Cancel, &QPushButton::clicked, this, &Dialog_ConvertAudio::reject);
    FollowMp3Estimate(this);
}

bool Dialog_ConvertAudio::ImpostaValori(const audio::Converter& converter) {
    converter_ = converter;
    Set_Caption_Texts();
    const bool encodes = converter.Mode == ConverterMode::EncodeWave;
    Frame_RateMp3->setVisible(encodes);
    Frame1_Outputwav->setVisible(!encodes);
    Opt_StandardWav->setChecked(true);
    FillMp3Settings(this);
    Refresh();
    return audio::OpenConverter();
}

void Dialog_ConvertAudio::done(int result) {
    if (!door_.IsFree()) return;
    audio::CloseConverter();
    QDialog::done(result);
}

void Dialog_ConvertAudio::Refresh() {
    const int row = List_Files->currentRow();
    List_Files->clear();
    for (const std::string& file : converter_.Files) {
        auto* const item = new QListWidgetItem(ShownLine(audio::ListLine(file)), List_Files);
        item->setToolTip(ToolTipText(ShownLine(file)));
    }
    List_Files->setCurrentRow(std::min(row, List_Files->count() - 1));
    Label_Total->setText(FromUtf8(audio::TotalText(converter_)));
    Label_DirOut->SetPath(ShownLine(converter_.TargetFolder), Caption(msg::kConvertAudioNoTarget));
}

bool Dialog_ConvertAudio::Convert() {
    if (converter_.Mode == ConverterMode::EncodeWave) ReadMp3Settings(this);
    converter_.WaveTarget = Opt_22050_mono->isChecked() ? audio::AudioKind::TrleSamples
                            : Opt_Wav4bit->isChecked()  ? audio::AudioKind::TrleAudio
                                                        : audio::AudioKind::Standard;
    const bool closes = audio::ConvertFiles(converter_);
    Refresh();
    return closes;
}

void Dialog_ConvertAudio::dragEnterEvent(QDragEnterEvent* event) {
    if (door_.IsFree() && !DroppedFiles(event->mimeData()).empty()) event->acceptProposedAction();
}

void Dialog_ConvertAudio::dropEvent(QDropEvent* event) {
    event->acceptProposedAction();
    audio::AddFiles(converter_, DroppedFiles(event->mimeData()));
    Refresh();
}

} // namespace kelvash::ui
