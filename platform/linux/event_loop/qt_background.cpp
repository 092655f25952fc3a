#include "platform/linux/event_loop/qt_background.h"

#include <QCoreApplication>
#include <QEvent>
#include <utility>

#include "platform/linux/crashes/alternate_signal_stack.h"

namespace norvane {

namespace {

constexpr int maxWorks = 8; // at once; the program rarely has more than two
constexpr int idleMilliseconds = 1000;
constexpr auto completionEvent = QEvent::User;

/// The oldest one.
template <class Function>
Function take(std::deque<Function>& queue, std::mutex& mutex) {
    const std::lock_guard guard(mutex);
    Function function = std::move(queue.front());
    queue.pop_front();
    return function;
}

} // namespace

QtBackground::QtBackground() {
    pool_.setMaxThreadCount(maxWorks);
    pool_.setExpiryTimeout(idleMilliseconds);
}

QtBackground::~QtBackground() {
    pool_.waitForDone();
    const std::lock_guard guard(mutex_); // hands over all that the works have done
    works_.clear();
    completions_.clear();
}

bool QtBackground::waitForDone() {
    constexpr int patienceMilliseconds = 1000;
    return pool_.waitForDone(patienceMilliseconds);
}

void QtBackground::post(std::function<Completion()> work) {
    {
        const std::lock_guard guard(mutex_);
        works_.push_back(std::move(work));
    }
    pool_.start([this] { runWork(); });
}

void QtBackground::runWork() {
    thread_local const AlternateSignalStack stack;
    Completion completion = take(works_, mutex_)();
    {
        const std::lock_guard guard(mutex_);
        completions_.push_back(std::move(completion));
    }
    QCoreApplication::postEvent(&receiver_, new QEvent(completionEvent));
}

void QtBackground::runCompletion() { take(completions_, mutex_)(); }

bool QtBackground::Receiver::event(QEvent* event) {
    if (event->type() != completionEvent)
        return QObject::event(event);
    background_.runCompletion();
    return true;
}

} // namespace norvane
