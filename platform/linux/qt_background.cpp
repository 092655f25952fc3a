#include "platform/linux/qt_background.h"

#include <utility>

namespace norvane {

namespace {

constexpr int maxWorks = 8; // at once; the program rarely has more than two
constexpr int idleMilliseconds = 1000;

} // namespace

QtBackground::QtBackground() {
    pool_.setMaxThreadCount(maxWorks);
    pool_.setExpiryTimeout(idleMilliseconds);
}

QtBackground::~QtBackground() { pool_.waitForDone(); }

bool QtBackground::waitForDone() {
    constexpr int patienceMilliseconds = 1000;
    return pool_.waitForDone(patienceMilliseconds);
}

void QtBackground::post(std::function<Completion()> work) {
    pool_.start([this, work = std::move(work)] {
        QMetaObject::invokeMethod(&mainThread_, work(), Qt::QueuedConnection);
    });
}

} // namespace norvane
