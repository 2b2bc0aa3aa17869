#include "support/robot.h"

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QApplication>
#include <QElapsedTimer>
#include <QFileDialog>
#include <QMessageBox>
#include <QTest>
#include <QTimer>
#include <algorithm>

#include "ui/form_support.h"

namespace kelvash::test {

namespace {

constexpr int kLookEvery = 2;       // milliseconds
constexpr int kWaitAtMost = 10'000; // milliseconds
constexpr int kToBeShown = 1000;    // milliseconds; what scrolls comes behind its window

bool IsProgress(const QWidget* window) {
    const QString name = window->objectName();
    return name == QLatin1String("Dialog_Progress") || name == QLatin1String("Dialog_Zip") ||
           name == QLatin1String("Dialog_Wait") || name == QLatin1String("Dialog_ConvertiMp3");
}

std::string Describe(const QWidget* window) {
    QString text = window->objectName() + QLatin1Char('\n') + window->windowTitle();
    if (const auto* const box = qobject_cast<const QMessageBox*>(window))
        for (const QString& part : {box->text(), box->informativeText()})
            if (!part.isEmpty()) text += QLatin1Char('\n') + part;
    return ui::WithoutWraps(text).toStdString();
}

QAbstractButton* FindButton(QWidget* window, const std::string& button) {
    for (auto* const candidate : window->findChildren<QAbstractButton*>())
        if (candidate->objectName().toStdString() == button || Plain(candidate->text()) == button)
            return candidate;
    return nullptr;
}

// On Windows events are looked after while a window is on its way to the screen, its controls not all visible
// yet. Those that never are have been hidden by name.
bool IsShown(const QWidget& widget) {
    if (!widget.isVisible()) return widget.isHidden() && widget.testAttribute(Qt::WA_WState_ExplicitShowHide);
    const auto parts = widget.findChildren<QWidget*>(Qt::FindDirectChildrenOnly);
    return std::all_of(parts.begin(), parts.end(),
                       [](const QWidget* part) { return part->isWindow() || IsShown(*part); });
}

} // namespace

std::string Plain(const QString& caption) {
    QString text = caption;
    return text.remove(QLatin1Char('&')).toStdString();
}

void Press(QWidget* window, const std::string& button) {
    QAbstractButton* const found = FindButton(window, button);
    ASSERT_NE(found, nullptr) << button << " in " << Describe(window);
    ASSERT_TRUE(QTest::qWaitFor([found] { return found->isVisible(); }, kToBeShown)) << button;
    ASSERT_TRUE(found->isEnabled()) << button;
    QTest::mouseClick(found, Qt::LeftButton);
}

void WaitUntil(const std::function<bool()>& condition) {
    QElapsedTimer since;
    since.start();
    while (!condition()) {
        ASSERT_LT(since.elapsed(), kWaitAtMost) << "waited in vain";
        QTest::qWait(1);
    }
}

Robot::Robot() {
    Arm();
}

Robot::~Robot() {
    for (const Line& line : script_)
        ADD_FAILURE() << "no window came for: " << line.when;
}

void Robot::Will(const std::string& when, Act act) {
    script_.push_back({when, std::move(act)});
}

void Robot::WillPress(const std::string& when, const std::string& button) {
    Will(when, [button](QWidget* window) { Press(window, button); });
}

void Robot::WillChooseFile(const std::string& title, const std::filesystem::path& file) {
    Will(title, [file](QWidget* window) {
        auto* const dialog = qobject_cast<QFileDialog*>(window);
        ASSERT_NE(dialog, nullptr);
        dialog->selectFile(QString::fromStdString(file.string()));
        QMetaObject::invokeMethod(dialog, "accept");
    });
}

bool Robot::HasSeen(const std::string& text) const {
    return std::any_of(seen_.begin(), seen_.end(),
                       [&](const std::string& seen) { return seen.find(text) != std::string::npos; });
}

// A new timer each time: one that is still in its handler stays silent in the loops of further windows.
void Robot::Arm() {
    QTimer::singleShot(kLookEvery, this, [this] {
        Arm();
        Look();
    });
}

void Robot::Look() {
    QWidget* const window = QApplication::activeModalWidget();
    if (window == nullptr || !window->isVisible() || !IsShown(*window) || IsProgress(window) ||
        std::find(acting_.begin(), acting_.end(), window) != acting_.end())
        return;
    const std::string text = Describe(window);
    seen_.push_back(text);
    const auto line = std::find_if(script_.begin(), script_.end(), [&](const Line& entry) {
        return text.find(entry.when) != std::string::npos;
    });
    if (line == script_.end()) {
        ADD_FAILURE() << "a window that nobody expected:\n" << text;
        window->close();
        auto* const box = qobject_cast<QMessageBox*>(window);
        if (box != nullptr && box->isVisible()) box->buttons().constLast()->click(); // it can't be closed
        return;
    }
    const Act act = std::move(line->act);
    script_.erase(line);
    acting_.push_back(window);
    act(window);
    acting_.pop_back();
}

} // namespace kelvash::test
