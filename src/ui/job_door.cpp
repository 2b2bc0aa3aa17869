#include "ui/job_door.h"

#include <QApplication>
#include <QWidget>
#include <utility>

#include "foundation/user.h"

namespace kelvash::ui {

namespace {

constexpr int kLookMillis = 50;

} // namespace

JobDoor::JobDoor(QWidget* form, std::function<bool()> is_ready)
    : form_(form), is_ready_(std::move(is_ready)), depth_(JobDepth()) {
    timer_.setSingleShot(true);
    connect(&timer_, &QTimer::timeout, this, &JobDoor::Look);
}

bool JobDoor::IsFree() const {
    return JobDepth() == depth_;
}

bool JobDoor::Try(const Work& work) {
    if (!IsFree()) {
        Q_EMIT Refused();
        return false;
    }
    const JobScope job;
    work();
    return true;
}

void JobDoor::WhenFree(Work work) {
    waiting_.push_back(std::move(work));
    if (!timer_.isActive()) timer_.start(0);
}

bool JobDoor::MayInterrupt() const {
    const QWidget* const modal = QApplication::activeModalWidget();
    return IsFree() && (!is_ready_ || is_ready_()) && (modal == nullptr || modal == form_) &&
           QApplication::activePopupWidget() == nullptr;
}

void JobDoor::Look() {
    if (MayInterrupt()) {
        const Work work = std::move(waiting_.front());
        waiting_.pop_front();
        Try(work);
    }
    if (!waiting_.empty()) timer_.start(kLookMillis);
}

} // namespace kelvash::ui
