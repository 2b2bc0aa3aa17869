// An empty window of the same modules as the program's: what a start costs without any of our own code.
#include <QApplication>
#include <QDBusConnection>
#include <QTimer>
#include <QWidget>

namespace {

class QuitWhenShown final : public QObject {
  public:
    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() == QEvent::Paint) QTimer::singleShot(0, qApp, [] { QCoreApplication::exit(); });
        return false;
    }
};

} // namespace

int main(int argc, char** argv) {
    const QApplication application(argc, argv);
    // Named, so that the module is linked.
    if (QDBusConnection::localMachineId().isNull()) return 1;
    QWidget window;
    window.resize(900, 600);
    QuitWhenShown quit;
    window.installEventFilter(&quit);
    window.show();
    return QApplication::exec();
}
