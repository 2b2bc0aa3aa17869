// Jobs in the window: their progress windows, the events that they pump, and the input that they let through.
#include <QApplication>
#include <QEvent>
#include <QLabel>
#include <QProgressBar>
#include <QThread>
#include <QWindow>
#include <algorithm>
#include <utility>

#include "ui/Dialog_Progress.h"
#include "ui/Dialog_Wait.h"
#include "ui/Dialog_Zip.h"
#include "ui/form_kit.h"
#include "ui/form_runners.h"
#include "ui/form_support.h"
#include "ui/forms_user.h"
#include "ui/task_bar.h"

namespace kelvash::ui {

namespace {

// A window that comes and goes within this time would only flicker.
constexpr int kPatience = 250;
// A job is long enough for the task bar after that many seconds.
constexpr double kLong = 2;

std::function<double()> SystemClock() {
    QElapsedTimer since;
    since.start();
    return [since] { return static_cast<double>(since.elapsed()) / 1000; };
}

bool IsInput(QEvent::Type type) {
    switch (type) {
        case QEvent::MouseButtonPress:
        case QEvent::MouseButtonRelease:
        case QEvent::MouseButtonDblClick:
        case QEvent::Wheel:
        case QEvent::KeyPress:
        case QEvent::KeyRelease:
        case QEvent::ShortcutOverride:
        case QEvent::Shortcut:
        case QEvent::ContextMenu:
        case QEvent::TouchBegin:
        case QEvent::DragEnter:
        case QEvent::Drop:
        case QEvent::Close:
            return true;
        default:
            return false;
    }
}

// Input by which a user wants something done.
bool IsWish(QEvent::Type type) {
    return type == QEvent::MouseButtonPress || type == QEvent::KeyPress || type == QEvent::Shortcut ||
           type == QEvent::Close || type == QEvent::Drop;
}

} // namespace

struct FormsUser::Progress {
    BarPlace place;
    std::unique_ptr<QDialog> window;
    QLabel* label = nullptr;
    QProgressBar* bar = nullptr; // none in a wait window
    QLabel* amount = nullptr;    // nor this
    ProgressWords words;
    QElapsedTimer since;
};

FormsUser::FormsUser() : old_user_(SetUser(this)), patience_(kPatience), now_(SystemClock()) {
    qApp->installEventFilter(this);
    AddFormRunners(*this);
}

FormsUser::~FormsUser() {
    SetUser(old_user_);
}

bool TakesInputWhileBusy(const QObject* watched) {
    QWidget* const modal = QApplication::activeModalWidget();
    if (modal == nullptr) return false;
    if (const auto* const widget = qobject_cast<const QWidget*>(watched))
        return widget == modal || modal->isAncestorOf(widget);
    // Events pass through their window first.
    return modal->windowHandle() != nullptr && watched == static_cast<QObject*>(modal->windowHandle());
}

FormsUser::Progress* FormsUser::Find(BarPlace place) {
    const auto found = std::find_if(open_.rbegin(), open_.rend(),
                                    [place](const auto& progress) { return progress->place == place; });
    return found == open_.rend() ? nullptr : found->get();
}

void FormsUser::OpenProgress(BarPlace place, const std::string& caption) {
    auto progress = std::make_unique<Progress>();
    progress->place = place;
    if (place == BarPlace::WaitDialog) {
        auto window = std::make_unique<Dialog_Wait>(WindowOnTop());
        progress->label = window->Label_Mex;
        progress->window = std::move(window);
    } else if (place == BarPlace::ZipDialog) {
        auto window = std::make_unique<Dialog_Zip>(WindowOnTop());
        progress->label = window->Label_Info;
        progress->bar = window->ZlibTool1;
        progress->amount = window->Label_Amount;
        progress->window = std::move(window);
    } else {
        auto window = std::make_unique<Dialog_Progress>(WindowOnTop());
        window->ImpostaValori(place == BarPlace::StoppableDialog);
        connect(window.get(), &Dialog_Progress::StopWanted, this, [this] { stop_requested_ = true; });
        progress->label = window->Label_Info;
        progress->bar = window->ProgressBar1;
        progress->amount = window->Label_Amount;
        progress->window = std::move(window);
    }
    if (!caption.empty()) progress->window->setWindowTitle(ShownLine(caption));
    progress->since.start();
    open_.push_back(std::move(progress));
    Show(*open_.back());
}

void FormsUser::CloseProgress(BarPlace place) {
    const auto found = std::find_if(open_.rbegin(), open_.rend(),
                                    [place](const auto& progress) { return progress->place == place; });
    if (found != open_.rend()) open_.erase(std::next(found).base());
}

void FormsUser::Show(Progress& progress) {
    if (!progress.window->isVisible()) {
        if (progress.since.elapsed() < patience_) return;
        progress.window->show();
    }
    PumpEvents();
}

void FormsUser::SetLabel(BarPlace place, const std::string& text) {
    if (Progress* const progress = Find(place)) {
        SayOrHide(progress->label, WrappedText(text));
        Show(*progress);
    }
    if (const Display* const display = FindDisplay(place)) display->label->setText(ShownText(text));
}

void FormsUser::SetBar(BarPlace place, int percent) {
    if (Progress* const progress = Find(place)) {
        if (progress->bar != nullptr) progress->bar->setValue(percent);
        Show(*progress);
    }
    if (const Display* const display = FindDisplay(place)) {
        display->set_bar(percent);
        if (percent == 0 && display->set_words) display->set_words({}); // idle, or about to begin
    }
    ShowOnTaskBar(place, percent);
}

void FormsUser::SetAmount(BarPlace place, const Amount& amount) {
    if (Progress* const progress = Find(place); progress != nullptr && progress->amount != nullptr)
        if (const auto words = progress->words.Take(amount, now_())) progress->amount->setText(*words);
    if (Display* const display = FindDisplay(place); display != nullptr && display->set_words)
        if (const auto words = display->words.Take(amount, now_())) display->set_words(*words);
}

// The outermost bar of a job leads: those within it come and go.
void FormsUser::ShowOnTaskBar(BarPlace place, int percent) {
    if (JobDepth() == 0 || now_() - job_began_ < kLong) return;
    if (!open_.empty() && open_.front()->place != place) return;
    on_task_bar_ = true;
    ui::ShowOnTaskBar(main_window_, percent);
}

void FormsUser::LeaveTaskBar() {
    if (std::exchange(on_task_bar_, false)) ui::ShowOnTaskBar(main_window_, std::nullopt);
}

FormsUser::Display* FormsUser::FindDisplay(BarPlace place) {
    const auto found = std::find_if(displays_.rbegin(), displays_.rend(),
                                    [place](const Display& display) { return display.place == place; });
    return found == displays_.rend() ? nullptr : &*found;
}

void FormsUser::AddDisplay(Display display) {
    displays_.push_back(std::move(display));
}

void FormsUser::RemoveDisplay(const QObject* label) {
    std::erase_if(displays_, [label](const Display& display) { return display.label == label; });
}

void FormsUser::JobBegan() {
    if (job_loops_.empty()) job_began_ = now_();
    job_loops_.push_back(QThread::currentThread()->loopLevel());
    if (!JobCanStop()) stop_requested_ = false;
}

void FormsUser::JobEnded() {
    if (!job_loops_.empty()) job_loops_.pop_back(); // it may have begun under another user
    if (job_loops_.empty()) LeaveTaskBar();
    if (!JobCanStop()) stop_requested_ = false;
}

// A window that waits for the user runs a loop of its own within that of its job.
bool FormsUser::JobWaits() {
    return !job_loops_.empty() && QThread::currentThread()->loopLevel() > job_loops_.back();
}

void FormsUser::PumpEvents() {
    if (before_waiting_ && since_before_.elapsed() >= patience_) BeforeWaiting();
    ++pumping_;
    QCoreApplication::processEvents();
    --pumping_;
}

bool FormsUser::eventFilter(QObject* watched, QEvent* event) {
    // A box that a job opens runs a loop of its own in which it alone is the modal window: nothing is lost.
    if (pumping_ == 0 || !IsInput(event->type()) || TakesInputWhileBusy(watched)) return false;
    event->ignore();
    if (IsWish(event->type()) && qobject_cast<const QWidget*>(watched) != nullptr) Q_EMIT InputRefused();
    return true;
}

} // namespace kelvash::ui
