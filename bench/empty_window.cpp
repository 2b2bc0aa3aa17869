// An empty window of the same modules as the program's: what a start costs without any of our own code. With
// an argument the window shows it as a line of text, which has Qt find and load its fonts.
#include <QApplication>
#include <QDBusConnection>
#include <QLabel>
#include <QTimer>
#include <cstdlib>

namespace {

class QuitWhenShown final : public QObject {
  public:
    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() == QEvent::Paint) QTimer::singleShot(0, qApp, [] { std::_Exit(0); });
        return false;
    }
};

} // namespace

int main(int argc, char** argv) {
    const QApplication application(argc, argv);
    // Named, so that the module is linked.
    if (QDBusConnection::localMachineId().isNull()) return 1;
    QLabel window;
    if (argc > 1) window.setText(QString::fromLocal8Bit(argv[1]));
    window.resize(900, 600);
    QuitWhenShown quit;
    window.installEventFilter(&quit);
    window.show();
    return QApplication::exec();
}
