// The forms of the audio converter.
#include <gmock/gmock.h>

#include <QApplication>
#include <QTest>
#include <QTimer>

#include "audio/audio_job.h"
#include "audio/mp3_choice.h"
#include "audio/mp3_settings.h"
#include "support/audio_tools.h"
#include "support/sound_bytes.h"
#include "ui/Dialog_ConvertAudio.h"
#include "ui/Dialog_ConvertiMp3.h"
#include "ui/Dialog_SetMp3.h"
#include "ui/principale_home.h"

namespace kelvash::test {
namespace {

using audio::AudioKind;
using testing::HasSubstr;
using ui::Dialog_ConvertAudio;
using ui::Dialog_SetMp3;

class AudioForms : public PrincipaleHome {
  protected:
    AudioForms() {
        MakeFile(drive / "music/a.wav", WaveBytes(1, 2, 44100, 16, 4410));
        MakeFile(drive / "music/b.wav", WaveBytes(1, 1, 22050, 8, 100));
        MakeFile(drive / "music/c.mp3", Mp3Bytes(10));
        std::filesystem::create_directories(drive / "out");
    }
    // A script in which the named part of a folder's form is worked.
    void WillChooseFolder(const std::string& path) {
        robot.Will("Dialog_GetDir", [path](QWidget* window) {
            auto* const text = window->findChild<QLineEdit*>(QStringLiteral("Text_PathDir"));
            ASSERT_NE(text, nullptr);
            text->setText(QString::fromStdString(path));
            Press(window, "Pul_Ok");
        });
    }
    static std::string Line(const Dialog_ConvertAudio& open, int row) {
        return open.List_Files->item(row)->text().toStdString();
    }
};

TEST_F(AudioForms, ConvertAudioShowsWhatItsPurposeNeeds) {
    Dialog_ConvertAudio open(nullptr);
    ASSERT_TRUE(open.ImpostaValori({.Mode = audio::ConverterMode::DecodeMp3}));
    EXPECT_EQ(open.Frame_Files->title().toStdString(), " Select mp3 files to decode");
    EXPECT_FALSE(open.Frame1_Outputwav->isHidden());
    EXPECT_TRUE(open.Frame_RateMp3->isHidden());
    EXPECT_EQ(Plain(open.Label_Target->text()), " Choose target folder where save converted wav files ");
    ASSERT_TRUE(open.ImpostaValori({.Mode = audio::ConverterMode::ConvertWave}));
    EXPECT_EQ(open.Frame_Files->title().toStdString(), " Select wav files to convert");
    EXPECT_EQ(Plain(open.Opt_StandardWav->text()),
              " 44100 Hz 16 bit stereo (Not compatible with Tomb Raider)");
    EXPECT_EQ(Plain(open.Opt_22050_mono->text()),
              " 22050 Hz 16 bit mono (Compatible with [sound\\samples] folder)");
    EXPECT_EQ(Plain(open.Opt_Wav4bit->text()), " 44100 Hz 4 bit stereo (Compatible with [audio] folder )");
    ASSERT_TRUE(open.ImpostaValori({.Mode = audio::ConverterMode::EncodeWave}));
    EXPECT_EQ(open.Frame_Files->title().toStdString(), " Select wav files to encode");
    EXPECT_TRUE(open.Frame1_Outputwav->isHidden());
    EXPECT_FALSE(open.Frame_RateMp3->isHidden());
    EXPECT_EQ(Plain(open.Label_Target->text()), " Choose target folder where save mp3 files ");
}

TEST_F(AudioForms, TheTemporaryFolderLivesAsLongAsTheForm) {
    MakeFile(home / "_audio_temp/old.wav", "left");
    Dialog_ConvertAudio open(nullptr);
    ASSERT_TRUE(open.ImpostaValori({.Mode = audio::ConverterMode::ConvertWave}));
    EXPECT_TRUE(Exists(home / "_audio_temp"));
    EXPECT_FALSE(Exists(home / "_audio_temp/old.wav"));
    open.done(0);
    EXPECT_FALSE(Exists(home / "_audio_temp"));
}

TEST_F(AudioForms, AFolderOfWavesIsListedAndConverted) {
    robot.Will("Dialog_ConvertAudio", [this](QWidget* window) {
        auto& open = *qobject_cast<Dialog_ConvertAudio*>(window);
        robot.WillPress("Please, set target folder", "OK");
        Press(&open, "Pul_Converti");
        WillChooseFolder("C:\\out");
        Press(&open, "Pul_SfogliaDirOut");
        robot.WillPress("No audio files to convert", "OK");
        Press(&open, "Pul_Converti");
        WillChooseFolder("C:\\music");
        Press(&open, "Pul_AddFolder");
        ASSERT_EQ(open.List_Files->count(), 2);
        EXPECT_EQ(Line(open, 0), "a.wav    44100Hz stereo 16 bits");
        EXPECT_EQ(Line(open, 1), "b.wav    22050Hz mono 8 bits");
        EXPECT_EQ(open.Label_Total->text().toStdString(), "2 files (17 Kb)");
        open.List_Files->setCurrentRow(1);
        robot.WillPress("Are you sure to remove file: b.wav", "Yes");
        Press(&open, "Pul_Remove");
        EXPECT_EQ(open.List_Files->count(), 1);
        open.Opt_Wav4bit->setChecked(true);
        robot.WillPress("Do you want listen audio file 'a.wav' ?", "No");
        robot.WillPress("Do you want exit from Audio Converter tool?", "Yes");
        Press(&open, "Pul_Converti");
    });
    Choose(Entry::mnu_ConvertWav);
    EXPECT_EQ(BytesOf(drive / "out/a.wav").substr(20, 4), Little(0x00020002, 4));
    EXPECT_FALSE(Exists(home / "_audio_temp"));
}

TEST_F(AudioForms, AnMp3IsListedAsOne) {
    robot.Will("Dialog_ConvertAudio", [this](QWidget* window) {
        auto& open = *qobject_cast<Dialog_ConvertAudio*>(window);
        robot.WillPress("No file selected", "OK");
        Press(&open, "Pul_Remove");
        WillChooseFolder("C:\\music");
        Press(&open, "Pul_AddFolder");
        ASSERT_EQ(open.List_Files->count(), 1);
        EXPECT_EQ(Line(open, 0), "c.mp3    ---- MP3 ----");
        Press(&open, "Pul_Cancel");
    });
    Choose(Entry::mnu_DecodeMp3);
}

TEST_F(AudioForms, TheWorkerStopsTheRunningTool) {
    PutScript(home, "madplay.exe", "touch started; exec sleep 60");
    audio::AudioJob job;
    job.Files = {"C:\\music\\c.mp3"};
    job.TargetFolder = "C:\\out";
    job.TargetKind = AudioKind::Standard;
    robot.WillPress("Break user: conversion cancelled", "OK");
    QTimer look;
    QObject::connect(&look, &QTimer::timeout, [&] {
        auto* const worker = qobject_cast<ui::Dialog_ConvertiMp3*>(QApplication::activeModalWidget());
        if (worker == nullptr || !Exists(home / "_temp_mp3_1" / "started")) return;
        look.stop();
        EXPECT_EQ(worker->windowTitle().toStdString(), " Audio conversion in progress");
        EXPECT_EQ(worker->Label_Log->text().toStdString(),
                  "[1\\1]  Decode \"c.mp3\" --> WAV ~ stereo 16 bits");
        Press(worker, "Pul_Stop");
    });
    look.start(10);
    EXPECT_FALSE(audio::ConvertAudioFiles(job));
    EXPECT_TRUE(job.Stopped);
}

TEST_F(AudioForms, SetMp3BeginsWithTheSmallestSound) {
    Dialog_SetMp3 open(nullptr);
    open.ImpostaValori();
    open.show();
    EXPECT_EQ(open.windowTitle().toStdString(), " Encoding wav files in mp3 format");
    EXPECT_EQ(open.Combo_BitRate->count(), 12);
    EXPECT_EQ(open.Combo_BitRate->currentText(), QStringLiteral("24"));
    EXPECT_EQ(open.Combo_Canali->currentText(), QStringLiteral("mono"));
    EXPECT_EQ(open.Combo_Canali->itemText(0), QStringLiteral("stereo"));
    EXPECT_EQ(open.Combo_Frequenza->count(), 8);
    EXPECT_EQ(open.Combo_Frequenza->currentText(), QStringLiteral("Automatic"));
    EXPECT_EQ(open.Label_InfoMp3->text().toStdString(), "6.75 %");
    open.Combo_BitRate->setCurrentIndex(0);
    EXPECT_EQ(open.Label_InfoMp3->text().toStdString(), "36.00 %");
    open.Combo_BitRate->setCurrentIndex(-1);
    EXPECT_EQ(open.Label_InfoMp3->text().toStdString(), "36.00 %");
    Press(&open, "Pul_Restore");
    EXPECT_EQ(open.Combo_BitRate->currentText(), QStringLiteral("24"));
}

TEST_F(AudioForms, SetMp3HandsOnWhatIsChosen) {
    audio::Mp3Choice choice;
    robot.Will("Dialog_SetMp3", [](QWidget* window) {
        auto& open = *qobject_cast<Dialog_SetMp3*>(window);
        open.Combo_BitRate->setCurrentIndex(3);
        open.Combo_Canali->setCurrentIndex(0);
        open.Combo_Frequenza->setCurrentIndex(3);
        open.Check_InsertUtiliy->setChecked(true);
        Press(&open, "Pul_Start");
    });
    EXPECT_TRUE(ShowForm(choice));
    EXPECT_TRUE(choice.InsertUtility);
    EXPECT_EQ(audio::mp3_settings.Mp3Bitrate, 80);
    EXPECT_EQ(audio::mp3_settings.Mp3Channels, 2);
    EXPECT_EQ(audio::mp3_settings.Mp3Frequency, 22050);
    robot.WillPress("Dialog_SetMp3", "Pul_Cancel");
    EXPECT_FALSE(ShowForm(choice));
}

} // namespace
} // namespace kelvash::test
