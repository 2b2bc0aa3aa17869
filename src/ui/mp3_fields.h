// The fields for the encoding of mp3 files that several forms have: Combo_BitRate, Combo_Canali,
// Combo_Frequenza and Label_InfoMp3, which are found by these names.
#pragma once

class QWidget;

namespace kelvash::ui {

// Fills the lists and selects what a run begins with: 24 kbit/s, mono, a frequency of the encoder's choice.
void FillMp3Settings(QWidget* form);
// Takes what is selected into audio::mp3_settings.
void ReadMp3Settings(const QWidget* form);
// Shows how large an mp3 of the selected bit rate is; without a selection the label stays.
void UpdateMp3Estimate(const QWidget* form);
// Keeps that so whenever another bit rate is selected.
void FollowMp3Estimate(QWidget* form);

} // namespace kelvash::ui
