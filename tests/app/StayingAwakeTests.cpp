#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <QDBusUnixFileDescriptor>

#include "tests/app/PrivateService.h"
#include "tests/app/WindowTest.h"

namespace tessel {

namespace {

/// A login service that grants every wish.
class LoginService : public PrivateService {
  public:
    LoginService() :
        PrivateService("DBUS_SYSTEM_BUS_ADDRESS", "org.freedesktop.login1", "/org/freedesktop/login1") {}

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
    FileDescriptor watched;
};

using StayingAwakeTests = WindowTest;

}  // namespace

TEST_F(StayingAwakeTests, theComputerIsKeptAwakeForTheWriteAndNoLonger) {
    if (!PrivateService::isPossible()) GTEST_SKIP() << "needs dbus-daemon and a process of its own";
    LoginService loginService;
    openWriting();
    until([&] { return loginService.isHeld(); });
    EXPECT_EQ(loginService.wishes.size(), 1);
    EXPECT_EQ(loginService.wishes.front(),
              (QVariantList{"idle", "Velmora Tessel", "Writing and verifying an SD-card image", "block"}));
    holds.writing.release();
    untilIdle();
    EXPECT_TRUE(alertTitled("SD Card Is Safe to Remove"));
    until([&] { return !loginService.isHeld(); });
    EXPECT_TRUE(alertTitled("SD Card Is Safe to Remove"));
}

}  // namespace tessel
