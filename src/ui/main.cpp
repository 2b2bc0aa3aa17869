// The window program.
#include <QApplication>
#include <QCommandLineParser>
#include <QIcon>
#include <QTimer>
#include <cstdlib>
#include <exception>
#include <iostream>
#include <utility>

#include "foundation/drive_options.h"
#include "foundation/drives.h"
#include "foundation/files.h"
#include "foundation/font_search.h"
#include "foundation/native_text.h"
#include "foundation/registration.h"
#include "program/message_tables.h"
#include "program/start_up.h"
#include "ui/Principale.h"
#include "ui/form_support.h"
#include "ui/forms_user.h"
#include "ui/messages.h"
#include "ui/own_windows.h"
#include "ui/shipped_files.h"
#include "ui/single_instance.h"
#include "ui/start_screen.h"
#include "ui/theme.h"
#include "ui/x11_wish.h"

namespace kelvash::ui {

namespace {

constexpr int kWrongUsage = 2;

struct Options {
    std::string home;
    std::vector<std::string> drives;
    std::string command_line; // tokens in quotes, as StartUp takes them
    bool demo = false;
    bool register_home = false;
    bool quit_when_shown = false;
};

Options ReadOptions(const QApplication& application) {
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral(
        "Keeps custom levels of the Tomb Raider Level Editor and swaps them into its folder."));
    parser.addHelpOption();
    parser.addVersionOption();
    const QCommandLineOption home(QStringLiteral("home"), QStringLiteral("The application's folder."),
                                  QStringLiteral("DIR"));
    const QCommandLineOption drive(QStringLiteral("drive"),
                                   QStringLiteral("Puts a drive letter on a folder: L=DIR or L=DIR,cdrom."),
                                   QStringLiteral("L=DIR"));
    const QCommandLineOption demo(QStringLiteral("demo"),
                                  QStringLiteral("Says at the first message that this is a sandbox."));
    const QCommandLineOption register_home(
        QStringLiteral("register"),
        QStringLiteral("Registers file type and menu entry although --home is given."));
    QCommandLineOption quit(QStringLiteral("quit-when-shown"));
    quit.setFlags(QCommandLineOption::HiddenFromHelp); // for timing the start
    parser.addOptions({home, drive, demo, register_home, quit});
    parser.addPositionalArgument(QStringLiteral("FILE"), QStringLiteral("An Archive (.kva) to open."),
                                 QStringLiteral("[FILE]"));
    parser.process(application);
    Options options;
    options.home = parser.value(home).toStdString();
    for (const QString& value : parser.values(drive))
        options.drives.push_back(value.toStdString());
    for (const QString& argument : parser.positionalArguments())
        options.command_line += '"' + argument.toStdString() + "\" ";
    options.demo = parser.isSet(demo);
    options.register_home = parser.isSet(register_home);
    options.quit_when_shown = parser.isSet(quit);
    return options;
}

int Complain(const std::string& fault) {
    std::cerr << "kelvash: " << fault << '\n';
    return kWrongUsage;
}

// Ends the program at once when the window has been painted.
class QuitWhenShown final : public QObject {
  public:
    using QObject::QObject;
    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() == QEvent::Paint) QTimer::singleShot(0, qApp, [] { std::_Exit(EXIT_SUCCESS); });
        return false;
    }
};

// Until Find() Qt finds no plug-ins: for small pictures that it can read by itself, the program's icon and
// those of which its style makes menu bars and frames, it would load all those for pictures, which takes
// longer than to read them.
class PlugInsLater {
  public:
    PlugInsLater() { QCoreApplication::setLibraryPaths({}); }
    ~PlugInsLater() { Find(); }
    PlugInsLater(const PlugInsLater&) = delete;
    PlugInsLater& operator=(const PlugInsLater&) = delete;

    void Find() {
        if (!paths_.isEmpty()) QCoreApplication::setLibraryPaths(std::exchange(paths_, {}));
    }

  private:
    QStringList paths_ = QCoreApplication::libraryPaths();
};

// A translated message table of the application's folder.
void TakeMessageTable() {
    const std::string table = AppFolder() + "\\messages.txt";
    if (!FileExists(table)) return;
    const program::TableLoading loading = program::LoadMessageTable(table);
    const std::string lines = program::RefusedLinesText(loading);
    if (!loading.Taken)
        TellCritical(LoadMessage(msg::kFormsTableRefused) + table +
                     (lines.empty() ? std::string() : LoadMessage(msg::kFormsTableLine, {lines})));
    else if (!lines.empty())
        ShowMessage(MessageStyle::Exclamation,
                    LoadMessageOfOthers(msg::kFormsTableLines,
                                        {table, std::to_string(loading.RefusedLines.size()), lines}));
}

// The native path of the Archive that the command line names, as another process understands it; empty if it
// names none.
std::string WishedArchive(const std::string& command_line) {
    const std::string typed = program::ParseCommandLine(command_line).Archive;
    if (typed.empty()) return {};
    const std::string path = PathFromUser(typed);
    std::error_code error;
    return TextOfNative(path.empty() ? std::filesystem::absolute(typed, error) : NativePath(path));
}

// True if this process is to show the window; a window that another one shows has been raised else.
bool IsTheWindow(SingleInstance& instance, const Options& options, int& exit_status) {
    const SingleInstance::Role role = instance.Start(WishedArchive(options.command_line));
    exit_status = role == SingleInstance::Role::NoAnswer ? EXIT_FAILURE : EXIT_SUCCESS;
    if (role == SingleInstance::Role::NoAnswer)
        TellCritical(LoadMessage(msg::kWindowDoesNotAnswer, {std::to_string(instance.Other())}));
    return role == SingleInstance::Role::First;
}

int Run(const QApplication& application) {
    const Options options = ReadOptions(application);
    if (const std::string fault = SetDrives(options.drives); !fault.empty()) return Complain(fault);
    const std::filesystem::path home =
        options.home.empty() ? DefaultAppFolder() : NativeFromUser(options.drives, options.home);
    if (home.empty()) return Complain("--home " + options.home + ": no such drive");
    PlugInsLater plug_ins;
    QApplication::setWindowIcon(QIcon(QPixmap(QStringLiteral(":/kelvash/kelvash_64.png"), "png")));
    FormsUser user;
    user.SetBeforeWaiting([&plug_ins] { plug_ins.Find(); });
    if (!SetAppFolder(home)) {
        TellCritical(LoadMessage(msg::kFormsCannotWrite) + TextOfNative(home));
        return EXIT_FAILURE;
    }
    TakeMessageTable();
    SingleInstance instance;
    if (int status = 0; !IsTheWindow(instance, options, status)) return status;
    AllowRegistration(options.home.empty() || options.register_home);
    ProvideShippedFiles();
    const OwnWindows own_windows;
    const Theme theme;
    StartScreen start_screen(user);
    const QString title_note = options.demo ? Caption(msg::kDemoNote) : QString();
    start_screen.SetTitleNote(title_note);
    user.SetBeforeWaiting([&plug_ins, &start_screen] {
        plug_ins.Find();
        start_screen.Show();
    });
    Principale window(user);
    window.SetTitleNote(title_note);
    user.SetMainWindow(&window);
    QObject::connect(&instance, &SingleInstance::Wished, &window, &Principale::TakeWish);
    const bool started = window.Load(options.command_line,
                                     [&start_screen](program::FirstStep step) { start_screen.Begin(step); });
    user.SetBeforeWaiting({});
    start_screen.Close();
    user.SetMainWindow(&window);
    if (!started) {
        window.close();
        return EXIT_SUCCESS;
    }
    QuitWhenShown quit;
    if (options.quit_when_shown) window.installEventFilter(&quit);
    AfterPainting(&window, [&plug_ins] { plug_ins.Find(); });
    window.show();
    return QApplication::exec();
}

} // namespace

} // namespace kelvash::ui

int main(int argc, char** argv) {
    const kelvash::FontSearch font_search;
    kelvash::ui::WishForX11();
    const QApplication application(argc, argv);
    kelvash::ui::ForgetWishForX11();
    QCoreApplication::setApplicationName(QStringLiteral("kelvash"));
    QCoreApplication::setApplicationVersion(QStringLiteral("1.4"));
    QGuiApplication::setDesktopFileName(QStringLiteral("kelvash"));
    kelvash::ui::TakeShippedFiles();
    try {
        return kelvash::ui::Run(application);
    } catch (const std::exception& error) {
        // Memory that ran out, or a system call that fails where it never should.
        std::cerr << "kelvash: " << error.what() << '\n';
        return EXIT_FAILURE;
    }
}
