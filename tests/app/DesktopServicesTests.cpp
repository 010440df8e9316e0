#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusUnixFileDescriptor>
#include <QDBusVirtualObject>
#include <QStandardPaths>
#include <QWindow>
#include <cstdio>

#include "tests/app/WindowTest.h"

namespace tessel {

namespace {

using testing::ElementsAre;

/// Is on a bus of its own, to which this process is led by the variable. Shows notifications, and grants
/// every wish to stay awake.
class DesktopService : public QDBusVirtualObject {
  public:
    DesktopService(const char* variable, const QString& service, const QString& path) : name(service) {
        auto* output = popen("dbus-daemon --session --fork --print-address=1 --print-pid=1", "r");
        char address[200] = "";
        if (!output || std::fscanf(output, "%199s %d", address, &bus) != 2)
            throw std::runtime_error("no bus");
        pclose(output);
        qputenv(variable, address);
        auto connection = QDBusConnection::connectToBus(address, name);
        if (!connection.registerVirtualObject(path, this) || !connection.registerService(service))
            throw std::runtime_error(connection.lastError().message().toStdString());
    }
    ~DesktopService() override {
        QDBusConnection::disconnectFromBus(name);
        kill(bus, SIGTERM);
    }

    QString introspect(const QString&) const override { return {}; }

    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override {
        if (message.member() == "Notify" && message.signature() == "susssasa{sv}i") {
            shown.push_back(message.arguments()[3].toString().toStdString() + " | " +
                            message.arguments()[4].toString().toStdString());
            return connection.send(message.createReply(1u));
        }
        int ends[2];
        if (message.member() != "Inhibit" || pipe2(ends, O_CLOEXEC) != 0) return false;
        wishes << message.arguments();
        watched = FileDescriptor(ends[0]);
        const FileDescriptor lock(ends[1]);
        return connection.send(message.createReply(QVariant::fromValue(QDBusUnixFileDescriptor(lock.get()))));
    }

    /// Whether somebody still has the lock that was given last.
    bool isHeld() const {
        pollfd lock{.fd = watched.get(), .events = 0, .revents = 0};
        return watched.isOpen() && poll(&lock, 1, 0) == 0;
    }

    std::vector<std::string> shown;
    QList<QVariantList> wishes;

  private:
    QString name;
    pid_t bus = 0;
    FileDescriptor watched;
};

class DesktopServicesTests : public WindowTest {
  protected:
    /// Qt asks for a bus once a process.
    void SetUp() override {
        if (testing::UnitTest::GetInstance()->test_to_run_count() != 1 ||
            QStandardPaths::findExecutable("dbus-daemon").isEmpty())
            GTEST_SKIP() << "needs dbus-daemon and a process of its own";
    }

    /// Has the card written while that window, or else the program's own, is in front.
    void writeBehind(QWindow* other) {
        reader.reinsert("disk4");
        startWrite();
        auto* front = other ? other : window().windowHandle();
        front->show();
        front->requestActivate();
        until([front] { return QGuiApplication::focusWindow() == front; });
        untilIdle();
    }
};

}  // namespace

TEST_F(DesktopServicesTests, theEndOfAWriteInTheBackgroundIsToldByTheDesktop) {
    const DesktopService service("DBUS_SESSION_BUS_ADDRESS", "org.freedesktop.Notifications",
                                 "/org/freedesktop/Notifications");
    QWindow otherProgram;
    reader.setBehaviour("disk4", {.authorization = "<b> & so on", .delays = {{"unmountDisk", 0.3}}});
    writeBehind(nullptr);
    writeBehind(&otherProgram);
    reader.setBehaviour("disk4", {.delays = {{"unmountDisk", 0.3}}});
    writeBehind(&otherProgram);
    until([&] { return service.shown.size() == 2; });
    EXPECT_THAT(service.shown,
                ElementsAre("Authorizing Raw Device Failed | The authorized raw-device open failed: "
                            "&lt;b&gt; &amp; so on",
                            "SD Card Is Safe to Remove | The disk image was written and verified "
                            "successfully. Linux has ejected the SD card, so it is now safe to physically "
                            "remove it."));
}

TEST_F(DesktopServicesTests, theComputerIsKeptAwakeForTheWriteAndNoLonger) {
    const DesktopService service("DBUS_SYSTEM_BUS_ADDRESS", "org.freedesktop.login1",
                                 "/org/freedesktop/login1");
    openWriting();
    until([&] { return service.isHeld(); });
    EXPECT_EQ(
        service.wishes,
        (QList<QVariantList>{{"idle", "Velmora Tessel", "Writing and verifying an SD-card image", "block"}}));
    holds.writing.release();
    untilIdle();
    until([&] { return !service.isHeld(); });
    EXPECT_TRUE(alertTitled("SD Card Is Safe to Remove"));
}

}  // namespace tessel
