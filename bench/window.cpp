// The window beside an empty one, and its list with 10,000 levels: run.sh.
#include <QApplication>
#include <QImage>
#include <QProcess>
#include <QScrollBar>
#include <QTest>
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <functional>
#include <string>
#include <vector>

#include "core/archive.h"
#include "core/level_list.h"
#include "core/profile.h"
#include "foundation/drives.h"
#include "ui/Principale.h"
#include "ui/forms_user.h"
#include "ui/level_model.h"

namespace {

using namespace kelvash;
using Clock = std::chrono::steady_clock;

constexpr int kStarts = 21;
constexpr int kManyLevels = 10000;
constexpr int kPages = 40; // of pictures that are waited for

double Milliseconds(const std::function<void()>& work) {
    const auto start = Clock::now();
    work();
    return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

// Knows the longest time for which one event has kept the interface; milliseconds.
class TimedApplication final : public QApplication {
  public:
    using QApplication::QApplication;
    bool notify(QObject* receiver, QEvent* event) override {
        if (depth_ > 0) return QApplication::notify(receiver, event);
        bool done = false;
        ++depth_;
        const double time = Milliseconds([&] { done = QApplication::notify(receiver, event); });
        --depth_;
        longest = std::max(longest, time);
        return done;
    }
    double longest = 0;

  private:
    int depth_ = 0;
};

double Median(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

double TimeOfRun(const QString& program, const QStringList& arguments) {
    return Milliseconds([&] {
        if (QProcess::execute(program, arguments) != 0) std::exit(1);
    });
}

// Started in turn, so that all meet the same machine; the ratio is that of each pair.
void MeasureStart(const QString& kelvash, const QString& empty, const QString& home) {
    std::vector<double> ours, plain, text, to_plain, to_text;
    for (int i = 0; i < kStarts; ++i) {
        ours.push_back(
            TimeOfRun(kelvash, {QStringLiteral("--home"), home, QStringLiteral("--quit-when-shown")}));
        plain.push_back(TimeOfRun(empty, {}));
        text.push_back(TimeOfRun(empty, {QStringLiteral("One line of text")}));
        to_plain.push_back(ours.back() / plain.back());
        to_text.push_back(ours.back() / text.back());
    }
    const char* const row = "| start to the painted window, %s | %.1f ms | %.1f ms | %.2f | 1.3 |\n";
    std::printf(row, "above an empty one", Median(ours), Median(plain), Median(to_plain));
    std::printf(row, "above one with a line of text", Median(ours), Median(text), Median(to_text));
}

void MakeManyLevels() {
    core::profile.LastArchive = "C:\\many.kva";
    core::archive.Table = {};
    for (int code = 0; code < kManyLevels; ++code) {
        core::LevelRecord level;
        level.Code = code;
        level.Name = "Level of number " + std::to_string(code * 7919 % kManyLevels);
        core::archive.Table.Append(level);
    }
    core::archive.Header.MainFolder = core::archive.Header.SecondaryFolder = "C:\\levels";
}

// A capture of its own for each level. Their bytes are one file's: what is kept goes by path.
void MakePictures() {
    QImage capture(800, 600, QImage::Format_RGB32);
    for (int y = 0; y < capture.height(); ++y)
        for (int x = 0; x < capture.width(); ++x)
            capture.setPixel(x, y, qRgb(x * y % 256, (x + y) % 256, (x ^ y) % 256));
    const std::filesystem::path first = NativePath("C:\\capture.jpg");
    if (!capture.save(QString::fromStdString(first.string()), "jpg", 85)) std::exit(1);
    for (int code = 0; code < kManyLevels; ++code) {
        const std::filesystem::path folder = NativePath(core::ScreenshotsFolder(core::PlaceOf(code).Folder));
        std::filesystem::create_directories(folder);
        std::filesystem::create_hard_link(first, folder / "1.jpg");
    }
}

// How long it takes until the picture in the middle of a page is there, for pages far from each other;
// milliseconds.
std::vector<double> PicturePages(ui::Principale& form) {
    const auto& levels = dynamic_cast<const ui::LevelModel&>(*form.Combo_Livelli->model());
    std::vector<double> pages;
    for (int page = 0; page < kPages; ++page)
        pages.push_back(Milliseconds([&] {
            const int row = page * (kManyLevels / kPages) + 20;
            form.Combo_Livelli->scrollTo(levels.index(row), QAbstractItemView::PositionAtCenter);
            const auto is_there = [&] { return !levels.Row(row).picture.isNull(); };
            if (!QTest::qWaitFor([&] { return is_there(); }, 60000)) std::exit(1);
        }));
    return pages;
}

void PrintRow(const char* what, std::vector<double> times, double target) {
    const double worst = *std::max_element(times.begin(), times.end());
    std::printf("| %s | %.1f ms | | %.1f ms at worst | %.0f ms |\n", what, Median(times), worst, target);
}

// Frames of a list that is scrolled by two thirds of a page each.
std::vector<double> ScrollFrames(ui::Principale& form) {
    constexpr int kFrames = 200;
    QScrollBar* const bar = form.Combo_Livelli->verticalScrollBar();
    std::vector<double> frames;
    for (int i = 0; i < kFrames; ++i)
        frames.push_back(Milliseconds([&] {
            bar->setValue((i + 1) * bar->pageStep() * 2 / 3 % std::max(1, bar->maximum()));
            QCoreApplication::processEvents();
        }));
    bar->setValue(0);
    QTest::qWait(200); // the last pictures are read
    return frames;
}

double MegabytesInUse() {
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);)
        if (line.starts_with("VmRSS:")) return std::stod(line.substr(6)) / 1024;
    return 0;
}

// The longest time for which the interface stands still while levels are selected and their pictures shown.
std::vector<double> PictureSelections(ui::Principale& form) {
    auto& application = dynamic_cast<TimedApplication&>(*qApp);
    std::vector<double> stands;
    for (int i = 0; i < kStarts; ++i) {
        application.longest = 0;
        const double selection = Milliseconds(
            [&] { form.Combo_Livelli->setCurrentIndex(form.Combo_Livelli->model()->index(i * 400 + 7, 0)); });
        QTest::qWait(150); // until its pictures stand
        stands.push_back(std::max(selection, application.longest));
    }
    return stands;
}

// The same levels with pictures, by a program that sees them for the first time and by one that has them
// kept.
void MeasurePictures() {
    MakePictures();
    for (const char* const when :
         {"pictures made: until one is there", "pictures kept: until one is there"}) {
        ui::FormsUser user;
        ui::Principale form(user);
        form.show();
        form.Pul_Tiles->click();
        QTest::qWait(500);
        const std::vector<double> pages = PicturePages(form);
        PrintRow(when, pages, 100);
        PrintRow("a frame of the scrolled tiles meanwhile", ScrollFrames(form), 16);
        PrintRow("a level with pictures selected: longest stand", PictureSelections(form), 16);
        std::printf("| memory with 10,000 pictures | %.0f MB | | | 120 MB |\n", MegabytesInUse());
    }
}

void MeasureList() {
    ui::FormsUser user;
    ui::Principale form(user);
    form.show();
    QCoreApplication::processEvents();
    std::vector<double> list, select, type;
    for (int i = 0; i < kStarts; ++i)
        list.push_back(Milliseconds([&] {
            core::RefreshLevelList();
            QCoreApplication::processEvents();
        }));
    for (int i = 0; i < kStarts; ++i)
        select.push_back(Milliseconds([&] {
            form.Combo_Livelli->setCurrentIndex(form.Combo_Livelli->model()->index(i * 400 + 1, 0));
            QCoreApplication::processEvents();
        }));
    const QString typed = QStringLiteral("number 12345");
    for (const QChar letter : typed)
        type.push_back(Milliseconds([&] {
            QTest::keyClick(form.Text_Search, letter.toLatin1());
            QCoreApplication::processEvents();
        }));
    form.Text_Search->clear();
    const std::vector<double> rows = ScrollFrames(form);
    form.Pul_Tiles->click();
    const std::vector<double> tiles = ScrollFrames(form);
    PrintRow("10,000 levels listed and painted", list, 150);
    PrintRow("a frame of the scrolled list", rows, 16);
    PrintRow("a frame of the scrolled tiles", tiles, 16);
    std::printf("| memory with 10,000 levels | %.0f MB | | | 120 MB |\n", MegabytesInUse());
    PrintRow("a level selected, its folders read", select, 16);
    PrintRow("a letter typed in the filter", type, 10);
}

// A level with 2,000 archived savegames and 1,000 pictures, its page shown anew each time.
void MeasureSavegames() {
    constexpr int kSaves = 2000;
    constexpr int kShots = 1000;
    constexpr int kLevel = 7;
    const core::LevelPlace level = core::PlaceOf(kLevel);
    for (int i = 0; i < kSaves; ++i) {
        const std::filesystem::path folder =
            NativePath(core::SavegamesFolder(level.Folder) + "\\slot" + std::to_string(i / 15 + 1));
        std::filesystem::create_directories(folder);
        std::ofstream(folder / ("savegame." + std::to_string(i % 15))) << "City" << std::string(16000, '\1');
    }
    const std::filesystem::path shots = NativePath(core::ScreenshotsFolder(level.Folder));
    std::filesystem::create_directories(shots);
    for (int i = 0; i < kShots; ++i)
        std::ofstream(shots / (std::to_string(i) + ".jpg")) << "no picture";
    ui::FormsUser user;
    ui::Principale form(user);
    form.show();
    core::RefreshLevelList();
    core::SelectLevel(kLevel);
    form.ShowPanel(false);
    std::vector<double> shown;
    for (int i = 0; i < kStarts; ++i)
        shown.push_back(Milliseconds([&] { form.AggiornaDatiLivello(false); }));
    PrintRow("a level with 2,000 savegames and 1,000 pictures shown", shown, 100);
    std::vector<double> chosen;
    for (int i = 0; i < kStarts; ++i)
        chosen.push_back(Milliseconds([&] {
            form.List_SaveGameArchiviati->setCurrentRow(i * 90);
            QCoreApplication::processEvents();
        }));
    PrintRow("one of them chosen, with its picture", chosen, 50);
    std::filesystem::remove_all(NativePath(level.Folder));
}

} // namespace

int main(int argc, char** argv) {
    const TimedApplication application(argc, argv);
    if (argc != 4 && argc != 5) return 2;
    const bool savegames_alone = argc == 5 && std::string(argv[4]) == "savegames";
    const QString home = QString::fromLocal8Bit(argv[3]);
    qputenv("XDG_CACHE_HOME", (home + QStringLiteral("/cache")).toUtf8());
    std::printf("| Row | Kelvash | empty window | measured | target |\n|---|---|---|---|---|\n");
    if (!savegames_alone)
        MeasureStart(QString::fromLocal8Bit(argv[1]), QString::fromLocal8Bit(argv[2]), home);
    if (!SetAppFolder(home.toStdString())) return 1;
    MakeManyLevels();
    if (!savegames_alone) MeasureList();
    MeasureSavegames();
    if (!savegames_alone) MeasurePictures();
    return 0;
}
