#include "platform/qt/SleepBlock.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingReply>

namespace tessel {

SleepBlock::SleepBlock(const std::string& reason) {
    auto call = QDBusMessage::createMethodCall("org.freedesktop.login1", "/org/freedesktop/login1",
                                               "org.freedesktop.login1.Manager", "Inhibit");
    call.setAutoStartService(false);
    call << "sleep:idle" << "Velmora Tessel" << QString::fromStdString(reason) << "block";
    request = std::make_unique<QDBusPendingCallWatcher>(QDBusConnection::systemBus().asyncCall(call));
    QObject::connect(request.get(), &QDBusPendingCallWatcher::finished, request.get(), [this] {
        const QDBusPendingReply<QDBusUnixFileDescriptor> answer = *request;
        if (answer.isValid()) lock = answer.value();
    });
}

}  // namespace tessel
