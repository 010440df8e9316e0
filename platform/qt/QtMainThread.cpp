#include "platform/qt/QtMainThread.h"

#include <QCoreApplication>
#include <QEvent>
#include <QObject>
#include <QTimer>
#include <chrono>
#include <deque>
#include <utility>

#include "foundation/Mutex.h"

namespace tessel {

/// The work that was posted and is not done yet. The application destroys the receiver when it ends, so a
/// thread that posts late may find it gone.
class QtMainThread::Inbox {
  public:
    using Work = std::function<void()>;

    void open(QObject* newReceiver) {
        const MutexLock lock(mutex);
        receiver = newReceiver;
    }

    /// Accepts no more work, and returns what is left.
    std::deque<Work> close() {
        const MutexLock lock(mutex);
        receiver = nullptr;
        return std::exchange(pending, {});
    }

    void put(Work work) {
        const MutexLock lock(mutex);
        if (!receiver) return;
        pending.push_back(std::move(work));
        QCoreApplication::postEvent(receiver, new QEvent(QEvent::User));
    }

    Work take() {
        const MutexLock lock(mutex);
        auto work = std::move(pending.front());
        pending.pop_front();
        return work;
    }

    void deleteReceiver() {
        const MutexLock lock(mutex);
        if (receiver) receiver->deleteLater();
    }

  private:
    Mutex mutex;
    std::deque<Work> pending __attribute__((guarded_by(mutex)));
    QObject* receiver __attribute__((guarded_by(mutex))) = nullptr;
};

/// Does one piece of work for each event that it receives.
class QtMainThread::Receiver : public QObject {
  public:
    explicit Receiver(std::shared_ptr<Inbox> inbox) :
        QObject(QCoreApplication::instance()),
        inbox(std::move(inbox)) {}
    Receiver(const Receiver&) = delete;
    Receiver& operator=(const Receiver&) = delete;
    ~Receiver() override { inbox->close(); }

  protected:
    void customEvent(QEvent*) override { inbox->take()(); }

  private:
    std::shared_ptr<Inbox> inbox;
};

QtMainThread::QtMainThread() : inbox(std::make_shared<Inbox>()) {
    inbox->open(new Receiver(inbox));
}

QtMainThread::~QtMainThread() {
    // This may run on any thread, even after the last turn of the event loop, in which case the application
    // deletes the receiver.
    inbox->deleteReceiver();
}

void QtMainThread::post(std::function<void()> work) {
    inbox->put(std::move(work));
}

void QtMainThread::postAfter(std::chrono::nanoseconds delay, std::function<void()> work) {
    QTimer::singleShot(std::chrono::ceil<std::chrono::milliseconds>(delay), Qt::PreciseTimer,
                       QCoreApplication::instance(), std::move(work));
}

void handleEventsUntil(const std::function<bool()>& isOver) {
    while (!isOver())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
}

}  // namespace tessel
