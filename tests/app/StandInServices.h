#pragma once

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <unistd.h>

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusError>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusUnixFileDescriptor>
#include <QDBusVirtualObject>
#include <cstdio>
#include <set>
#include <stdexcept>
#include <utility>

#include "platform/FileDescriptor.h"
#include "tests/support/TemporaryFolder.h"

namespace tessel {

/// Plays the services of a desktop, which show notifications and grant every request to stay awake. They are
/// on a bus of their own, which this process finds by the environment variable.
class StandInServices : public QDBusVirtualObject {
  public:
    /// Starts the bus, which can start the services itself as well; that only leaves a mark here.
    StandInServices(const char* variable, const std::set<std::string>& services) : name(variable) {
        for (const auto& service : services)
            folder.write(service + ".service", "[D-BUS Service]\nName=" + service + "\nExec=/bin/sh -c '>" +
                                                   (folder.path() / service).string() + "; exit 1'\n");
        const auto configuration =
            folder.write("bus.conf",
                         "<busconfig><type>session</type><listen>unix:tmpdir=/tmp</listen>"
                         "<servicedir>" +
                             folder.path().string() +
                             "</servicedir>"
                             "<policy context='default'><allow own='*'/><allow eavesdrop='true'/>"
                             "<allow send_destination='*' eavesdrop='true'/></policy></busconfig>");
        const auto start = "dbus-daemon --fork --print-address=1 --print-pid=1 --config-file='" +
                           configuration.string() + "'";
        auto* output = popen(start.c_str(), "r");
        char address[200] = "";
        if (!output || std::fscanf(output, "%199s %d", address, &bus) != 2)
            throw std::runtime_error("no bus");
        pclose(output);
        qputenv(variable, address);
        if (!QDBusConnection::connectToBus(address, name)
                 .registerVirtualObject("/", this, QDBusConnection::SubPath))
            throw std::runtime_error(connection().lastError().message().toStdString());
    }
    ~StandInServices() override {
        QDBusConnection::disconnectFromBus(name);
        kill(bus, SIGTERM);
    }

    /// Makes exactly these services run.
    void run(const std::set<std::string>& services) {
        for (const auto& service : std::exchange(running, services))
            connection().unregisterService(QString::fromStdString(service));
        for (const auto& service : services)
            connection().registerService(QString::fromStdString(service));
    }

    /// Returns whether the bus was told to start the service.
    bool wasStarted(const std::string& service) const {
        return std::filesystem::exists(folder.path() / service);
    }

    QString introspect(const QString&) const override { return {}; }

    bool handleMessage(const QDBusMessage& message, const QDBusConnection&) override {
        auto call = message.path() + " " + message.interface() + "." + message.member();
        for (const auto& argument : message.arguments())
            call += argument.canConvert<QDBusArgument>()
                        ? " | reason=" + qdbus_cast<QVariantMap>(argument)["reason"].toString()
                        : " | " + argument.toString();
        calls.push_back(call.toStdString());
        unanswered << message;
        if (isAnswering) answer();
        return true;
    }

    void answer() {
        for (const auto& message : std::exchange(unanswered, {}))
            connection().send(answerTo(message));
    }

    /// Returns whether the lock that was granted last is still held.
    bool isLockHeld() const {
        pollfd lock{.fd = watched.get(), .events = 0, .revents = 0};
        return watched.isOpen() && poll(&lock, 1, 0) == 0;
    }

    std::vector<std::string> calls;  ///< "path interface.method | argument | argument"
    bool isAnswering = true;         ///< whether calls are answered at once, without answer()
    std::string refused;             ///< an interface that is not offered

  private:
    QDBusConnection connection() const { return QDBusConnection(name); }

    QDBusMessage answerTo(const QDBusMessage& message) {
        if (message.interface().toStdString() == refused)
            return message.createErrorReply(QDBusError::UnknownInterface, "");
        if (message.interface() == "org.freedesktop.portal.Inhibit")
            return message.createReply(QVariant::fromValue(QDBusObjectPath("/request/7")));
        int ends[2];
        if (message.interface() != "org.freedesktop.login1.Manager" || pipe2(ends, O_CLOEXEC) != 0)
            return message.createReply(7u);
        watched = FileDescriptor(ends[0]);
        const FileDescriptor lock(ends[1]);
        return message.createReply(QVariant::fromValue(QDBusUnixFileDescriptor(lock.get())));
    }

    TemporaryFolder folder;
    QString name;
    pid_t bus = 0;
    std::set<std::string> running;
    QList<QDBusMessage> unanswered;
    FileDescriptor watched;
};

}  // namespace tessel
