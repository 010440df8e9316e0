#include <QWindow>

#include "tests/app/PrivateService.h"
#include "tests/app/WindowTest.h"

namespace tessel {

namespace {

using testing::ElementsAre;

/// A desktop that shows notifications.
class NotificationService : public PrivateService {
  public:
    NotificationService() :
        PrivateService("DBUS_SESSION_BUS_ADDRESS", "org.freedesktop.Notifications",
                       "/org/freedesktop/Notifications") {}

    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override {
        if (message.member() != "Notify" || message.signature() != "susssasa{sv}i") return false;
        shown.push_back(message.arguments()[3].toString().toStdString() + " | " +
                        message.arguments()[4].toString().toStdString());
        return connection.send(message.createReply(1u));
    }

    std::vector<std::string> shown;
};

class NotificationTests : public WindowTest {
  protected:
    /// Has the card written while that window, or else the program's own, is in front.
    void writeBehind(QWindow* other) {
        reader.reinsert("disk4");
        openReady();
        click(button("Write Disk Image"));
        click(button("Erase and Write to disk4"));
        auto* front = other ? other : window().windowHandle();
        front->show();
        front->requestActivate();
        until([front] { return QGuiApplication::focusWindow() == front; });
        untilIdle();
    }
};

}  // namespace

TEST_F(NotificationTests, theEndOfAWriteInTheBackgroundIsToldByTheDesktop) {
    if (!PrivateService::isPossible()) GTEST_SKIP() << "needs dbus-daemon and a process of its own";
    NotificationService service;
    QWindow otherProgram;
    reader.setBehaviour("disk4", {.authorization = "<b> & so on", .delays = {{"unmountDisk", 0.3}}});
    writeBehind(nullptr);
    writeBehind(&otherProgram);
    reader.setBehaviour("disk4", {.delays = {{"unmountDisk", 0.3}}});
    writeBehind(&otherProgram);
    until([&] { return service.shown.size() == 2; });
    EXPECT_THAT(
        service.shown,
        ElementsAre("Authorizing Raw Device Failed | The authorized raw-device open failed: &lt;b&gt; "
                    "&amp; so on",
                    "SD Card Is Safe to Remove | The disk image was written and verified "
                    "successfully. Linux has ejected the SD card, so it is now safe to physically "
                    "remove it."));
}

}  // namespace tessel
