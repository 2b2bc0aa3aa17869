#include "ui/mp3_fields.h"

#include <QComboBox>
#include <QLabel>

#include "audio/mp3_settings.h"
#include "ui/form_support.h"

namespace kelvash::ui {

namespace {

QComboBox* Combo(const QWidget* form, const char* name) {
    return form->findChild<QComboBox*>(QString::fromLatin1(name));
}

QComboBox* Bitrates(const QWidget* form) {
    return Combo(form, "Combo_BitRate");
}

} // namespace

void FillMp3Settings(QWidget* form) {
    constexpr int kUsualBitrate = 9, kUsualChannels = 1;
    QComboBox* const bitrates = Bitrates(form);
    QComboBox* const channels = Combo(form, "Combo_Canali");
    QComboBox* const frequencies = Combo(form, "Combo_Frequenza");
    for (QComboBox* combo : {bitrates, channels, frequencies})
        combo->clear();
    for (const std::int32_t bitrate : audio::kMp3Bitrates)
        bitrates->addItem(QString::number(bitrate));
    for (const std::int16_t count : audio::kMp3Channels)
        channels->addItem(FromUtf8(audio::ChannelsText(count)), count);
    for (const std::int32_t frequency : audio::kMp3Frequencies)
        frequencies->addItem(FromUtf8(audio::FrequencyText(frequency)), frequency);
    bitrates->setCurrentIndex(kUsualBitrate);
    channels->setCurrentIndex(kUsualChannels);
    frequencies->setCurrentIndex(0);
    UpdateMp3Estimate(form);
}

void ReadMp3Settings(const QWidget* form) {
    audio::mp3_settings.Mp3Bitrate = Bitrates(form)->currentText().toInt();
    audio::mp3_settings.Mp3Channels =
        static_cast<std::int16_t>(Combo(form, "Combo_Canali")->currentData().toInt());
    audio::mp3_settings.Mp3Frequency = Combo(form, "Combo_Frequenza")->currentData().toInt();
}

void UpdateMp3Estimate(const QWidget* form) {
    const QComboBox* const bitrates = Bitrates(form);
    if (bitrates->currentIndex() < 0) return;
    form->findChild<QLabel*>(QStringLiteral("Label_InfoMp3"))
        ->setText(FromUtf8(audio::Mp3EstimateText(bitrates->currentText().toInt())));
}

void FollowMp3Estimate(QWidget* form) {
    QObject::connect(Bitrates(form), &QComboBox::currentIndexChanged, form,
                     [form] { UpdateMp3Estimate(form); });
}

} // namespace kelvash::ui
