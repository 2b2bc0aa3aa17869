// A long job on the entry of the task bar, told on a bus of the test's own.
#include <gmock/gmock.h>

#include <QGuiApplication>
#include <QProcess>

#include "foundation/user.h"
#include "support/ui_home.h"

namespace kelvash::test {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

class TaskBar : public UiHome<TestHome> {
  protected:
    TaskBar() {
        former_ = qgetenv("DBUS_SESSION_BUS_ADDRESS");
        bus_.start(QStringLiteral("dbus-daemon"), {QStringLiteral("--session"), QStringLiteral("--nofork"),
                                                   QStringLiteral("--print-address")});
        EXPECT_TRUE(bus_.waitForReadyRead());
        qputenv("DBUS_SESSION_BUS_ADDRESS", bus_.readLine().trimmed());
        listener_.start(QStringLiteral("dbus-monitor"),
                        {QStringLiteral("--session"),
                         QStringLiteral("type='signal',interface='com.canonical.Unity.LauncherEntry'")});
        // Before that it doesn't listen.
        WaitUntil([this] { return Heard().find("NameAcquired") != std::string::npos; });
        QGuiApplication::setDesktopFileName(QStringLiteral("kelvash"));
        forms.SetPatience(0);
        forms.SetClock([this] { return now; });
    }
    ~TaskBar() override {
        qputenv("DBUS_SESSION_BUS_ADDRESS", former_);
        for (QProcess* process : {&listener_, &bus_}) {
            process->terminate();
            process->waitForFinished();
        }
    }
    TaskBar(const TaskBar&) = delete;
    TaskBar& operator=(const TaskBar&) = delete;

    // All that has come until now.
    std::string Heard() {
        listener_.waitForReadyRead(1);
        return (heard_ += listener_.readAll()).toStdString();
    }
    void WaitFor(const std::string& text) {
        WaitUntil([&] { return Heard().find(text) != std::string::npos; });
    }
    double now = 0;

  private:
    QByteArray former_;
    QByteArray heard_;
    QProcess bus_;
    QProcess listener_;
};

TEST_F(TaskBar, ShowsALongJobAndItsEnd) {
    {
        ProgressDialog job(BarPlace::ProgressDialog, "Copying");
        ProgressPercent(job.bar, 10, 100);
        now = 3;
        {
            ProgressDialog part(BarPlace::ZipDialog, "a part");
            ProgressPercent(part.bar, 99, 100);
        }
        ProgressPercent(job.bar, 25, 100);
        WaitFor("double 0.25");
        EXPECT_THAT(Heard(), AllOf(HasSubstr("member=Update"), HasSubstr("\"application://kelvash.desktop\""),
                                   HasSubstr("\"progress-visible\""), HasSubstr("boolean true"),
                                   Not(HasSubstr("double 0.1\n")), Not(HasSubstr("double 0.99"))));
        EXPECT_THAT(Heard(), Not(HasSubstr("boolean false")));
    }
    WaitFor("boolean false");
}

} // namespace
} // namespace kelvash::test
