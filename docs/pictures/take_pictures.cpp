// Opens every form on a sandbox and keeps a picture of each, light and dark: take_pictures HOME FOLDER.
#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QMessageBox>
#include <QPixmap>
#include <QTimer>
#include <filesystem>
#include <functional>

#include "audio/audio_job.h"
#include "audio/mp3_choice.h"
#include "cd/cd_access.h"
#include "cd/messages.h"
#include "companion/savegame_notes.h"
#include "companion/shot_files.h"
#include "core/archive.h"
#include "core/level_list.h"
#include "core/profile.h"
#include "foundation/drives.h"
#include "foundation/files.h"
#include "intake/messages.h"
#include "intake/new_level.h"
#include "program/messages.h"
#include "program/start_up.h"
#include "swap/backup.h"
#include "swap/backup_messages.h"
#include "swap/compression_messages.h"
#include "trle/find_trle.h"
#include "trle/messages.h"
#include "ui/Dialog_Autore.h"
#include "ui/Dialog_Cattura.h"
#include "ui/Dialog_ConvertAudio.h"
#include "ui/Dialog_ConvertiMp3.h"
#include "ui/Dialog_GetDir.h"
#include "ui/Dialog_InputTesto.h"
#include "ui/Dialog_InsertCd_messages.h"
#include "ui/Dialog_PrefArc.h"
#include "ui/Dialog_Progress.h"
#include "ui/Dialog_Restore.h"
#include "ui/Dialog_Settings.h"
#include "ui/Dialog_Splash.h"
#include "ui/Dialog_TrovaTrle_messages.h"
#include "ui/Dialog_Wait.h"
#include "ui/Dialog_Zip.h"
#include "ui/Principale.h"
#include "ui/first_start.h"
#include "ui/form_kit.h"
#include "ui/forms_user.h"
#include "ui/help.h"
#include "ui/look.h"
#include "ui/messages.h"
#include "ui/savegame_panel.h"
#include "ui/screenshot_panel.h"
#include "ui/shipped_files.h"
#include "ui/theme.h"

namespace {

using namespace kelvash;
using namespace kelvash::ui;

constexpr int kSettle = 700; // milliseconds until a window stands and its pictures are read

class Camera {
  public:
    explicit Camera(std::filesystem::path folder) : folder_(std::move(folder)) {}

    // In the light and in the dark.
    void Take(QWidget* window, const std::string& name) const {
        for (const bool dark : {false, true}) {
            Theme::SetDark(dark);
            Wait();
            const std::filesystem::path file = folder_ / (name + (dark ? "_dark.png" : ".png"));
            window->grab().save(QString::fromStdString(file.string()));
        }
        Theme::SetDark(false);
    }
    // Takes the modal window that `open` brings up, and closes it.
    void TakeModal(const std::string& name, const std::function<void()>& open) const {
        QTimer::singleShot(kSettle, qApp, [this, name] {
            QWidget* const window = QApplication::activeModalWidget();
            if (window == nullptr) std::exit(EXIT_FAILURE);
            Take(window, name);
            Close(window);
            // A question without a harmless answer is ended by its buttons alone.
            if (auto* const box = qobject_cast<QMessageBox*>(window); box != nullptr && box->isVisible())
                box->done(QMessageBox::NoButton);
        });
        open();
    }

  private:
    // Some forms ask before they close, in a loop of their own.
    static void Close(QWidget* window) {
        QTimer while_asked;
        while_asked.setSingleShot(true);
        QObject::connect(&while_asked, &QTimer::timeout, [] {
            const auto* const question = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
            QAbstractButton* const yes = question != nullptr ? question->button(QMessageBox::Yes) : nullptr;
            if (yes != nullptr) yes->click();
        });
        while_asked.start(kSettle);
        window->close();
    }
    static void Wait() {
        QEventLoop loop;
        QTimer::singleShot(kSettle, &loop, &QEventLoop::quit);
        loop.exec();
    }
    std::filesystem::path folder_;
};

void TakeMainForm(const Camera& camera, Principale& form) {
    core::SelectLevel(1);
    camera.Take(&form, "principale");
    form.Pul_Tiles->click();
    camera.Take(&form, "principale_tiles");
    form.Pul_List->click();
    core::SelectLevel(2);
    form.Pul_SaveGames->click();
    form.Savegames().Archive();
    static_cast<void>(companion::WriteNote("C:\\Levels\\LEVEL_0002\\savegames\\slot1\\savegame.1",
                                           "The crane's switch is behind the third boiler."));
    form.List_SaveGameArchiviati->setCurrentRow(1);
    camera.Take(&form, "principale_savegames");
    camera.TakeModal("dialog_listsavegame", [&] { form.Command(MenuEntry::mnu_ExportSavegame)->trigger(); });
    form.Pul_ScreenShots->click();
    camera.TakeModal("dialog_keys", [&] { form.Command(MenuEntry::mnu_Keys)->trigger(); });
    camera.TakeModal("about", [&] { form.Command(MenuEntry::mnu_About)->trigger(); });
}

// The questions of a first start, each answered by closing it.
void TakeFirstStart(const Camera& camera, FormsUser& user) {
    const std::string trle = core::profile.TrleFolder;
    camera.TakeModal("dialog_trovatrle", [&] {
        trle::TrleFolderChoice choice{LoadMessage(msg::kFindTrleCaption), trle};
        static_cast<void>(ShowForm(choice));
    });
    camera.TakeModal("question_original", [&] {
        user.Ask(Buttons::YesNo, MessageStyle::Question,
                 LoadMessage(msg::kOriginalNeeded) + kLineBreak +
                     LoadMessage(msg::kOriginalQuestion, {trle}) + kLineBreak +
                     LoadMessage(msg::kOriginalNote));
    });
    camera.TakeModal("question_backup", [&] {
        user.Ask(Buttons::YesNo, MessageStyle::Question,
                 LoadMessage(msg::kFullBackupQuestion, {kLineBreak, kLineBreak}));
    });
    camera.TakeModal("dialog_newarc", [&] {
        program::FirstArchiveChoice choice{LoadMessage(msg::kNewArcCaption)};
        static_cast<void>(ShowForm(choice));
    });
    camera.TakeModal("dialog_getdir", [&] {
        user.ChooseFolder(LoadMessage(msg::kTrovaBrowseTitle), core::profile.TrleFolder);
    });
    camera.TakeModal("dialog_getdir_note", [&] {
        Dialog_GetDir folders(nullptr);
        folders.ImpostaValori({}, core::profile.TrleFolder);
        folders.Text_Path->setText(QStringLiteral("audio"));
        folders.exec();
    });
    camera.TakeModal("dialog_insertcd", [&] {
        cd::CdDriveChoice choice{LoadMessage(msg::kCdRequestCaption), LoadMessage(msg::kInsertCd) + "2",
                                 "E:"};
        static_cast<void>(ShowForm(choice));
    });
}

// What is said of a job that has come so far in so many seconds.
QString WordsOf(const Amount& amount, double seconds) {
    ProgressWords words;
    words.Take({0, amount.total, amount.counted}, 0);
    return words.Take(amount, seconds).value_or(QString());
}

// What stands where there is nothing to show, and the page of the first start.
void TakeEmptyPages(const Camera& camera, Principale& form) {
    const core::ArchiveState archive = core::archive;
    const auto close = [] {
        core::archive = core::ArchiveState();
        core::RefreshLevelList();
    };
    FirstStart page(nullptr);
    page.Begin(program::FirstStep::Backup);
    page.resize(page.width(), page.heightForWidth(page.width()));
    close();
    camera.Take(&form, "empty_archive");
    core::archive = archive;
    core::RefreshLevelList();
    page.show();
    camera.Take(&page, "first_start");
    page.hide();
    core::SelectLevel(4);
    camera.Take(&form, "empty_screenshots");
    form.Pul_SaveGames->click();
    core::profile.TrleFolder.push_back('-');
    form.AggiornaDatiLivello(false);
    camera.Take(&form, "empty_trle");
    core::profile.TrleFolder.pop_back();
    form.Pul_ScreenShots->click();
}

void TakeSmallForms(const Camera& camera, FormsUser& user, Principale& form) {
    Dialog_Splash splash(SplashPicture());
    splash.show();
    camera.Take(&splash, "dialog_splash");
    splash.hide();
    Dialog_Progress progress(&form);
    progress.setWindowTitle(Caption(msg::kFullCaption));
    SayOrHide(progress.Label_Info, Caption(msg::kFullCopying, {core::profile.TrleFolder}));
    progress.ProgressBar1->setValue(42);
    constexpr double kMegabyte = 1024 * 1024;
    progress.Label_Amount->setText(WordsOf({101 * kMegabyte, 240 * kMegabyte, Counted::Bytes}, 38));
    progress.show();
    camera.Take(&progress, "dialog_progress");
    progress.hide();
    Dialog_Zip zip(&form);
    zip.setWindowTitle(Caption(msg::kDecompressCaption));
    SayOrHide(zip.Label_Info, Caption(msg::kUnzippingFile, {"harbour.tr4.zl"}));
    zip.ZlibTool1->setValue(65);
    zip.Label_Amount->setText(WordsOf({13, 20, Counted::Items}, 2));
    zip.show();
    camera.Take(&zip, "dialog_zip");
    zip.hide();
    Dialog_Wait wait(&form);
    wait.Label_Mex->setText(Caption(msg::kRemovingOldBackup));
    wait.show();
    camera.Take(&wait, "dialog_wait");
    wait.hide();
    camera.TakeModal("dialog_restore", [&] { Dialog_Restore(user, &form).exec(); });
    camera.TakeModal("dialog_settings", [&] {
        Dialog_Settings settings(&form);
        settings.ImpostaValori();
        settings.exec();
    });
    camera.TakeModal("dialog_inputtesto", [&] {
        Dialog_InputTesto input(&form);
        input.ImpostaValori("Insert / Change savegame description",
                            "The crane's switch is behind the third boiler.");
        input.exec();
    });
}

void TakeLevelForms(const Camera& camera, Principale& form) {
    camera.TakeModal("dialog_newlevel", [] { intake::AddLevel("C:\\zips\\The Lantern Caves.zip"); });
    core::SelectLevel(1);
    camera.TakeModal("dialog_newlevel_properties", [] { intake::ShowProperty(); });
    camera.TakeModal("dialog_autore", [&] { form.Command(MenuEntry::mnu_ShowAutoreInfo)->trigger(); });
    camera.TakeModal("dialog_prefarc", [&] { form.Command(MenuEntry::mnu_PrefArchive)->trigger(); });
    Dialog_Progress progress(&form);
    progress.ImpostaValori(true);
    progress.setWindowTitle(Caption(msg::kAddUnzipping, {"Clockwork Pass.zip"}));
    progress.ProgressBar1->setValue(58);
    progress.Label_Amount->setText(WordsOf({58, 100, Counted::Nothing}, 22));
    progress.show();
    camera.Take(&progress, "dialog_progress_stop");
    progress.hide();
}

void TakeScreenshotForms(const Camera& camera, Principale& form) {
    core::SelectLevel(1);
    camera.TakeModal("dialog_screenshot", [&] { form.Command(MenuEntry::mnu_Zoom)->trigger(); });
    camera.TakeModal("dialog_resize", [&] { form.Command(MenuEntry::mnu_ResizeSave)->trigger(); });
    const auto picture = companion::ReadShot(form.Shots().Pages().SelectedImage());
    if (!picture) std::exit(EXIT_FAILURE);
    camera.TakeModal("dialog_cattura", [&] {
        core::profile.PromptCapture = true;
        Dialog_Cattura capture(&form);
        capture.ImpostaValori(1, *picture);
        capture.exec();
    });
}

void TakeAudioForms(const Camera& camera, FormsUser& user, Principale& form) {
    const std::string tracks = core::profile.TrleFolder + "\\audio";
    camera.TakeModal("dialog_convertaudio", [&] {
        Dialog_ConvertAudio converter(&form);
        if (!converter.ImpostaValori({.Mode = audio::ConverterMode::ConvertWave,
                                      .Files = ListFiles(tracks, "00*.wav"),
                                      .TargetFolder = "C:\\music"}))
            std::exit(EXIT_FAILURE);
        converter.exec();
    });
    camera.TakeModal("dialog_convertaudio_mp3", [&] {
        Dialog_ConvertAudio converter(&form);
        if (!converter.ImpostaValori({.Mode = audio::ConverterMode::EncodeWave,
                                      .Files = ListFiles(tracks, "00*.wav"),
                                      .TargetFolder = "C:\\music"}))
            std::exit(EXIT_FAILURE);
        converter.exec();
    });
    camera.TakeModal("dialog_setmp3", [] {
        audio::Mp3Choice choice;
        static_cast<void>(ShowForm(choice));
    });
    audio::AudioJob job;
    Dialog_ConvertiMp3 worker(user, job, &form);
    worker.Label_Log->setText(QStringLiteral("[12\\54]  Decode \"012.mp3\" --> WAV ~ stereo 16 bits"));
    worker.ProgressBar1->setValue(21);
    worker.Timer1->blockSignals(true);
    worker.show();
    camera.Take(&worker, "dialog_convertimp3");
    worker.hide();
}

void TakeHelp(const Camera& camera, Principale& form) {
    camera.TakeModal("dialog_testo", [&] { ShowHelp(&form, HelpMark::FirstStart); });
    QTimer::singleShot(kSettle, qApp, [&camera] {
        QWidget* const viewer = QApplication::activeModalWidget();
        camera.TakeModal("dialog_indice",
                         [&] { viewer->findChild<QPushButton*>(QStringLiteral("Pul_Index"))->click(); });
        viewer->close();
    });
    ShowHelp(&form, HelpMark::FirstStart);
}

} // namespace

int main(int argc, char** argv) {
    const QApplication application(argc, argv);
    if (argc != 3 || !SetAppFolder(argv[1])) return 2;
    TakeShippedFiles();
    TakeLook(false);
    ProvideShippedFiles();
    const Camera camera(argv[2]);
    FormsUser user;
    Principale form(user);
    user.SetMainWindow(&form);
    if (!form.Load({})) return EXIT_FAILURE;
    const std::filesystem::path disc = std::filesystem::path(argv[1]) / "disc";
    std::filesystem::create_directories(disc);
    if (!SetDrive('E', disc, DriveType::CdRom)) return EXIT_FAILURE;
    form.show();
    TakeMainForm(camera, form);
    TakeEmptyPages(camera, form);
    TakeFirstStart(camera, user);
    TakeSmallForms(camera, user, form);
    TakeLevelForms(camera, form);
    TakeScreenshotForms(camera, form);
    TakeAudioForms(camera, user, form);
    TakeHelp(camera, form);
    return 0;
}
