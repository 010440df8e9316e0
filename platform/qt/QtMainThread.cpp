#include "platform/qt/QtMainThread.h"

#include <QCoreApplication>
#include <QEvent>
#include <deque>
#include <mutex>
#include <utility>

namespace tessel {

/// Does one piece of work for each event that it receives.
class QtMainThread::Receiver : public QObject {
  public:
    using QObject::QObject;

    void add(std::function<void()> work) {
        const std::lock_guard lock(mutex);
        pending.push_back(std::move(work));
    }

  protected:
    void customEvent(QEvent*) override {
        const auto work = next();
        work();
    }

  private:
    std::function<void()> next() {
        const std::lock_guard lock(mutex);
        auto work = std::move(pending.front());
        pending.pop_front();
        return work;
    }

    std::mutex mutex;
    std::deque<std::function<void()>> pending;
};

QtMainThread::QtMainThread() : receiver(new Receiver(QCoreApplication::instance())) {}

QtMainThread::~QtMainThread() {
    // Here may be any thread, and the last turn of the event loop may be over: then the application deletes
    // it.
    receiver->deleteLater();
}

void QtMainThread::post(std::function<void()> work) {
    receiver->add(std::move(work));
    QCoreApplication::postEvent(receiver, new QEvent(QEvent::User));
}

}  // namespace tessel
