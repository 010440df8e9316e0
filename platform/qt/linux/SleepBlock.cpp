#include "platform/qt/SleepBlock.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusUnixFileDescriptor>

namespace tessel {

namespace {

/// A lock of the login service, from its answer on.
class LoginLock : public TemporaryActivity {
  public:
    explicit LoginLock(const std::string& reason) {
        auto call = QDBusMessage::createMethodCall("org.freedesktop.login1", "/org/freedesktop/login1",
                                                   "org.freedesktop.login1.Manager", "Inhibit");
        call.setAutoStartService(false);
        call << "idle" << "Velmora Tessel" << QString::fromStdString(reason) << "block";
        request = std::make_unique<QDBusPendingCallWatcher>(QDBusConnection::systemBus().asyncCall(call));
        QObject::connect(request.get(), &QDBusPendingCallWatcher::finished, request.get(), [this] {
            const QDBusPendingReply<QDBusUnixFileDescriptor> answer = *request;
            if (answer.isValid()) lock = answer.value();
        });
    }

  private:
    std::unique_ptr<QDBusPendingCallWatcher> request;
    QDBusUnixFileDescriptor lock;  ///< the service watches for its closing
};

}  // namespace

std::unique_ptr<TemporaryActivity> blockSleep(const std::string& reason) {
    return std::make_unique<LoginLock>(reason);
}

}  // namespace tessel
