// Notifications and requests to stay awake, as services on a bus receive them.

#include <sys/socket.h>
#include <sys/un.h>

#include <QStandardPaths>
#include <QWindow>

#include "platform/qt/DesktopServices.h"
#include "tests/app/StandInServices.h"
#include "tests/app/WindowTest.h"

namespace tessel {

namespace {

using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::EndsWith;
using testing::StartsWith;
using testing::UnorderedElementsAreArray;

class DesktopServicesTests : public WindowTest {
  protected:
    /// Skips the test unless the process is its own, because Qt looks for a bus once per process.
    void SetUp() override {
        if (testing::UnitTest::GetInstance()->test_to_run_count() != 1 ||
            QStandardPaths::findExecutable("dbus-daemon").isEmpty())
            GTEST_SKIP() << "needs dbus-daemon and a process of its own";
    }

    /// Writes the card while that window, or else the program's own, is in front.
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

/// A request to stay awake, and the call that gives it back.
struct Wish {
    std::string service;
    std::string wish;
    std::string end = {};  ///< empty where a lock is closed instead
};

const Wish login{"org.freedesktop.login1",
                 "/org/freedesktop/login1 org.freedesktop.login1.Manager.Inhibit | idle | Velmora "
                 "Tessel | Writing | block"};
const Wish portal{"org.freedesktop.portal.Desktop",
                  "/org/freedesktop/portal/desktop org.freedesktop.portal.Inhibit.Inhibit |  | 8 | "
                  "reason=Writing",
                  "/request/7 org.freedesktop.portal.Request.Close"};
const Wish sessionManager{"org.gnome.SessionManager",
                          "/org/gnome/SessionManager org.gnome.SessionManager.Inhibit | velmora-tessel "
                          "| 0 | Writing | 8",
                          "/org/gnome/SessionManager org.gnome.SessionManager.Uninhibit | 7"};
const Wish powerManager{"org.freedesktop.PowerManagement",
                        "/org/freedesktop/PowerManagement/Inhibit "
                        "org.freedesktop.PowerManagement.Inhibit.Inhibit | Velmora Tessel | Writing",
                        "/org/freedesktop/PowerManagement/Inhibit "
                        "org.freedesktop.PowerManagement.Inhibit.UnInhibit | 7"};

const std::set<std::string> sessionServices{portal.service, sessionManager.service, powerManager.service};

}  // namespace

TEST_F(DesktopServicesTests, theEndOfAWriteInTheBackgroundIsToldByTheDesktop) {
    StandInServices services("DBUS_SESSION_BUS_ADDRESS", {});
    services.run({"org.freedesktop.Notifications"});
    QWindow otherProgram;
    reader.setBehaviour("disk4", {.authorization = "<b> & so on", .delays = {{"unmountDisk", 0.3}}});
    writeBehind(nullptr);
    writeBehind(&otherProgram);
    reader.setBehaviour("disk4", {.delays = {{"unmountDisk", 0.3}}});
    writeBehind(&otherProgram);
    until([&] { return services.calls.size() == 2; });
    const std::string call =
        "/org/freedesktop/Notifications org.freedesktop.Notifications.Notify | Velmora "
        "Tessel | 0 | velmora-tessel | ";
    EXPECT_THAT(
        services.calls,
        ElementsAre(StartsWith(call + "Authorizing Raw Device Failed | The authorized raw-device open "
                                      "failed: &lt;b&gt; &amp; so on | "),
                    StartsWith(call + "SD Card Is Safe to Remove | The disk image was written and verified "
                                      "successfully. Linux has ejected the SD card, so it is now safe to "
                                      "physically remove it. | ")));
}

TEST_F(DesktopServicesTests, theComputerIsKeptAwakeForTheWriteAndNoLonger) {
    StandInServices services("DBUS_SYSTEM_BUS_ADDRESS", {});
    services.run({login.service});
    openWriting();
    until([&] { return services.isLockHeld(); });
    EXPECT_THAT(services.calls,
                ElementsAre(EndsWith(
                    ".Inhibit | idle | Velmora Tessel | Writing and verifying an SD-card image | block")));
    holds.writing.release();
    untilIdle();
    until([&] { return !services.isLockHeld(); });
    EXPECT_TRUE(alertTitled("SD Card Is Safe to Remove"));
}

TEST_F(DesktopServicesTests, aBusThatDoesNotAnswerHoldsUpNoWrite) {
    const auto path = folder.path() / "bus";
    const FileDescriptor bus(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
    sockaddr_un address{.sun_family = AF_UNIX, .sun_path = {}};
    path.string().copy(address.sun_path, sizeof address.sun_path - 1);
    ASSERT_EQ(bind(bus.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
    ASSERT_EQ(listen(bus.get(), 1), 0);
    qputenv("DBUS_SYSTEM_BUS_ADDRESS", "unix:path=" + QByteArray::fromStdString(path.string()));
    openReady();
    startWrite();
    untilIdle();
    EXPECT_TRUE(alertTitled("SD Card Is Safe to Remove"));
}

TEST_F(DesktopServicesTests, everyServiceThatMayDecideIsAskedToStayAwakeAndReleased) {
    StandInServices computer("DBUS_SYSTEM_BUS_ADDRESS", {login.service});
    StandInServices session("DBUS_SESSION_BUS_ADDRESS", sessionServices);
    const Wish refusedPortal{portal.service, portal.wish};
    const struct {
        const char* desktop;
        std::vector<Wish> wishes;
        const char* refused = "";
    } cases[] = {
        {"GNOME", {login, portal, sessionManager}},
        {"KDE", {login, portal, powerManager}},
        {"MATE", {login, sessionManager}},
        {"Xfce", {login, powerManager}},
        {"a window manager", {login}},
        {"no login service", {sessionManager}},
        {"a portal that can't", {refusedPortal, sessionManager}, "org.freedesktop.portal.Inhibit"},
        {"nothing", {}},
    };
    const auto calls = [&] {
        auto all = computer.calls;
        all.insert(all.end(), session.calls.begin(), session.calls.end());
        return all;
    };
    for (const auto& [desktop, wishes, refused] : cases) {
        for (const bool isAnsweredInTime : {true, false}) {
            SCOPED_TRACE(std::string(desktop) + (isAnsweredInTime ? "" : ", dropped before the answers"));
            std::vector<std::string> expected;
            for (auto* services : {&computer, &session}) {
                services->calls.clear();
                services->isAnswering = isAnsweredInTime;
                services->refused = refused;
                std::set<std::string> running;
                for (const auto& [service, wish, end] : wishes) {
                    if ((service == login.service) != (services == &computer)) continue;
                    running.insert(service);
                    expected.emplace_back(wish);
                }
                services->run(running);
            }

            auto block = blockSleep("Writing");
            until([&] { return calls().size() >= expected.size(); });
            QTest::qWait(50);  // for the answers
            EXPECT_THAT(calls(), ElementsAreArray(expected));
            block.reset();
            for (auto* services : {&computer, &session})
                services->answer();

            for (const auto& wish : wishes)
                if (!wish.end.empty()) expected.emplace_back(wish.end);
            until([&] { return calls().size() >= expected.size() && !computer.isLockHeld(); });
            EXPECT_THAT(calls(), UnorderedElementsAreArray(expected));
        }
    }
    // A service that has ended is not started again for the end of the activity.
    session.run({sessionManager.service});
    auto block = blockSleep("Writing");
    until([&] { return !session.calls.empty(); });
    session.answer();
    QTest::qWait(50);
    session.run({});
    block.reset();
    QTest::qWait(50);
    // Only a portal is started for the request.
    EXPECT_TRUE(session.wasStarted(portal.service));
    EXPECT_FALSE(session.wasStarted(sessionManager.service));
    EXPECT_FALSE(session.wasStarted(powerManager.service));
    EXPECT_FALSE(computer.wasStarted(login.service));
}

}  // namespace tessel
