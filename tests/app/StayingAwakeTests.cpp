#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <unistd.h>

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusUnixFileDescriptor>
#include <QDBusVirtualObject>
#include <QStandardPaths>
#include <cstdio>

#include "tests/app/WindowTest.h"

namespace tessel {

namespace {

/// A login service on a system bus of its own, which grants every wish. Qt asks for the system bus once a
/// process, so it is to be made before anybody else asks.
class LoginService : public QDBusVirtualObject {
  public:
    LoginService() {
        auto* output = popen("dbus-daemon --session --fork --print-address=1 --print-pid=1", "r");
        char address[200] = "";
        if (!output || std::fscanf(output, "%199s %d", address, &bus) != 2)
            throw std::runtime_error("no bus");
        pclose(output);
        qputenv("DBUS_SYSTEM_BUS_ADDRESS", address);
        auto connection = QDBusConnection::connectToBus(address, "login");
        if (!connection.registerVirtualObject("/org/freedesktop/login1", this) ||
            !connection.registerService("org.freedesktop.login1"))
            throw std::runtime_error(connection.lastError().message().toStdString());
    }
    ~LoginService() override {
        QDBusConnection::disconnectFromBus("login");
        kill(bus, SIGTERM);
    }

    QString introspect(const QString&) const override { return {}; }

    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override {
        if (message.member() != "Inhibit") return false;
        wishes << message.arguments();
        int ends[2];
        if (pipe2(ends, O_CLOEXEC) != 0) return false;
        watched = FileDescriptor(ends[0]);
        const FileDescriptor lock(ends[1]);
        return connection.send(message.createReply(QVariant::fromValue(QDBusUnixFileDescriptor(lock.get()))));
    }

    /// Whether somebody still has the lock that was given last.
    bool isHeld() const {
        pollfd lock{.fd = watched.get(), .events = 0, .revents = 0};
        return watched.isOpen() && poll(&lock, 1, 0) == 0;
    }

    QList<QVariantList> wishes;

  private:
    pid_t bus = 0;
    FileDescriptor watched;
};

using StayingAwakeTests = WindowTest;

}  // namespace

TEST_F(StayingAwakeTests, theComputerIsKeptAwakeForTheWriteAndNoLonger) {
    if (testing::UnitTest::GetInstance()->test_to_run_count() > 1)
        GTEST_SKIP() << "needs a process of its own";
    if (QStandardPaths::findExecutable("dbus-daemon").isEmpty()) GTEST_SKIP() << "dbus-daemon is missing";
    LoginService loginService;
    openWriting();
    until([&] { return loginService.isHeld(); });
    EXPECT_EQ(loginService.wishes.size(), 1);
    EXPECT_EQ(loginService.wishes.front(), (QVariantList{"sleep:idle", "Velmora Tessel",
                                                         "Writing and verifying an SD-card image", "block"}));
    holds.writing.release();
    untilIdle();
    EXPECT_TRUE(alertTitled("SD Card Is Safe to Remove"));
    until([&] { return !loginService.isHeld(); });
    EXPECT_TRUE(alertTitled("SD Card Is Safe to Remove"));
}

}  // namespace tessel
