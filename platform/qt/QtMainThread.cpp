#include "platform/qt/QtMainThread.h"

#include <QCoreApplication>
#include <QEvent>
#include <QObject>
#include <deque>
#include <mutex>
#include <utility>

namespace tessel {

/// What was posted. A thread that is late with it may find the application gone, and the receiver with it.
struct QtMainThread::Inbox {
    std::mutex mutex;
    std::deque<std::function<void()>> pending;
    QObject* receiver = nullptr;
};

/// Does one piece of work for each event that it receives.
class QtMainThread::Receiver : public QObject {
  public:
    explicit Receiver(std::shared_ptr<Inbox> inbox) :
        QObject(QCoreApplication::instance()),
        inbox(std::move(inbox)) {}
    Receiver(const Receiver&) = delete;
    Receiver& operator=(const Receiver&) = delete;

    ~Receiver() override {
        std::deque<std::function<void()>> undone;  // to be destroyed here, and without the lock
        const std::lock_guard lock(inbox->mutex);
        undone.swap(inbox->pending);
        inbox->receiver = nullptr;
    }

  protected:
    void customEvent(QEvent*) override {
        const auto work = next();
        work();
    }

  private:
    std::function<void()> next() {
        const std::lock_guard lock(inbox->mutex);
        auto work = std::move(inbox->pending.front());
        inbox->pending.pop_front();
        return work;
    }

    std::shared_ptr<Inbox> inbox;
};

QtMainThread::QtMainThread() : inbox(std::make_shared<Inbox>()) {
    inbox->receiver = new Receiver(inbox);
}

QtMainThread::~QtMainThread() {
    // Here may be any thread, and the last turn of the event loop may be over: then the application deletes
    // the receiver.
    const std::lock_guard lock(inbox->mutex);
    if (inbox->receiver) inbox->receiver->deleteLater();
}

void QtMainThread::post(std::function<void()> work) {
    const std::lock_guard lock(inbox->mutex);
    if (!inbox->receiver) return;
    inbox->pending.push_back(std::move(work));
    QCoreApplication::postEvent(inbox->receiver, new QEvent(QEvent::User));
}

void handleEventsUntil(const std::function<bool()>& isOver) {
    while (!isOver())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
}

}  // namespace tessel
