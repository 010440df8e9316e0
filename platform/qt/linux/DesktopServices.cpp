#include "platform/qt/DesktopServices.h"

#include <gio/gio.h>
#include <gio/gunixfdlist.h>

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusPendingCallWatcher>
#include <functional>
#include <limits>
#include <memory>
#include <utility>
#include <vector>

#include "foundation/Errors.h"
#include "foundation/Release.h"
#include "platform/FileDescriptor.h"
#include "platform/concurrency/Background.h"

namespace tessel {

namespace {

constexpr auto methodCall = QDBusMessage::createMethodCall;

constexpr auto programName = "Velmora Tessel";

/// The flag of session managers and of the portal that keeps a session from counting as idle, after which
/// they would put the computer to sleep. The flag against suspending would also block a suspend that the user
/// requests.
constexpr uint idleFlag = 8;

/// A service of the session that may decide when the computer falls asleep.
struct Service {
    QDBusMessage request;
    QString answer;  ///< the D-Bus signature of the answer
    std::function<QDBusMessage(const QVariant& granted)> giveBack;
};

/// Returns the only service that may be started for this: a desktop that has a portal starts it with its
/// first call.
Service portal(const QString& reason) {
    auto request = methodCall("org.freedesktop.portal.Desktop", "/org/freedesktop/portal/desktop",
                              "org.freedesktop.portal.Inhibit", "Inhibit");
    constexpr auto noWindow = "";
    request << noWindow << idleFlag << QVariantMap{{"reason", reason}};
    const auto close = [service = request.service()](const QVariant& granted) {
        const auto object = granted.value<QDBusObjectPath>().path();
        return methodCall(service, object, "org.freedesktop.portal.Request", "Close");
    };
    return {request, "o", close};
}

/// Returns a service of the session that answers a request with a number, which gives the grant back.
Service numberingService(QDBusMessage request, const QString& giveBack) {
    request.setAutoStartService(false);
    const auto call = [request, giveBack](const QVariant& granted) {
        return methodCall(request.service(), request.path(), request.interface(), giveBack) << granted;
    };
    return {request, "u", call};
}

Service sessionManager(const QString& reason) {
    auto request = methodCall("org.gnome.SessionManager", "/org/gnome/SessionManager",
                              "org.gnome.SessionManager", "Inhibit");
    constexpr uint noWindow = 0;
    request << "velmora-tessel" << noWindow << reason << idleFlag;
    return numberingService(request, "Uninhibit");
}

Service powerManager(const QString& reason) {
    auto request = methodCall("org.freedesktop.PowerManagement", "/org/freedesktop/PowerManagement/Inhibit",
                              "org.freedesktop.PowerManagement.Inhibit", "Inhibit");
    request << programName << reason;
    return numberingService(request, "UnInhibit");
}

/// A grant of a service, which is given back when this object is destroyed.
class Grant {
  public:
    Grant(const Service& service, QVariant granted) : service(service), granted(std::move(granted)) {}
    Grant(const Grant&) = delete;
    Grant& operator=(const Grant&) = delete;
    ~Grant() {
        auto call = service.giveBack(granted);
        call.setAutoStartService(false);
        QDBusConnection::sessionBus().send(call);
    }

  private:
    Service service;
    QVariant granted;
};

template <typename T>
using Object = std::unique_ptr<T, Release<g_object_unref>>;
using Variant = std::unique_ptr<GVariant, Release<g_variant_unref>>;
using Text = std::unique_ptr<char, Release<g_free>>;

/// Returns the login service's lock against sleep, which ends when it is closed. It is not open where there
/// is no such service. Blocks until the system bus answers.
FileDescriptor requestLoginLock(const std::string& reason) {
    const Text address{g_dbus_address_get_for_bus_sync(G_BUS_TYPE_SYSTEM, nullptr, nullptr)};
    if (!address) return {};
    // NOLINTNEXTLINE(clang-analyzer-optin.core.EnumCastOutOfRange): the flags are meant to be combined.
    constexpr auto flags = static_cast<GDBusConnectionFlags>(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                                             G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION);
    const Object<GDBusConnection> bus{
        g_dbus_connection_new_for_address_sync(address.get(), flags, nullptr, nullptr, nullptr)};
    if (!bus) return {};
    GUnixFDList* received = nullptr;
    const Variant answer{g_dbus_connection_call_with_unix_fd_list_sync(
        bus.get(), "org.freedesktop.login1", "/org/freedesktop/login1", "org.freedesktop.login1.Manager",
        "Inhibit", g_variant_new("(ssss)", "idle", programName, reason.c_str(), "block"),
        G_VARIANT_TYPE("(h)"), G_DBUS_CALL_FLAGS_NO_AUTO_START, G_MAXINT, nullptr, &received, nullptr,
        nullptr)};
    if (!answer || !received) return {};
    const Object<GUnixFDList> descriptors{received};
    gint32 index = 0;
    g_variant_get(answer.get(), "(h)", &index);
    return FileDescriptor(g_unix_fd_list_get(descriptors.get(), index, nullptr));
}

/// The login service's lock, requested on a thread of its own: Qt would connect to the system bus on the
/// thread that serves every bus, so that one that doesn't answer would hold up the window.
class LoginLock {
  public:
    explicit LoginLock(const std::string& reason) {
        try {
            startThread([reason, kept = std::weak_ptr(lock)] {
                auto granted = requestLoginLock(reason);
                if (const auto stillWanted = kept.lock()) *stillWanted = std::move(granted);
            }).detach();
        } catch (const PlatformError&) {
            return;  // the computer may then fall asleep
        }
    }

  private:
    std::shared_ptr<FileDescriptor> lock = std::make_shared<FileDescriptor>();
};

/// Asks every service that may decide, since each desktop has its own: GNOME, MATE and Cinnamon heed only
/// their session manager, KDE and Xfce their power manager, and a computer without any of these the locks of
/// the login service. A portal grants the request even if nothing behind it fulfils it, so its answer is no
/// reason to leave out the others. Being asked twice harms none of them.
///
/// A grant that arrives after this object is destroyed is given back at once.
class SleepBlock : public TemporaryActivity {
  public:
    explicit SleepBlock(const std::string& reason) : loginLock(reason) {
        const auto text = QString::fromStdString(reason);
        for (const auto& service : {portal(text), sessionManager(text), powerManager(text)})
            ask(service);
    }

  private:
    using Grants = std::vector<std::unique_ptr<Grant>>;

    void ask(const Service& service) {
        // The call outlives this object, however late its answer comes, because a late grant must be given
        // back.
        constexpr int withoutLimit = std::numeric_limits<int>::max();
        auto* request = new QDBusPendingCallWatcher(
            QDBusConnection::sessionBus().asyncCall(service.request, withoutLimit),
            QCoreApplication::instance());
        const auto take = [request, service, kept = std::weak_ptr(grants)] {
            request->deleteLater();
            const QDBusMessage answer = request->reply();
            if (answer.type() != QDBusMessage::ReplyMessage || answer.signature() != service.answer) return;
            auto grant = std::make_unique<Grant>(service, answer.arguments().first());
            if (const auto stillWanted = kept.lock()) stillWanted->push_back(std::move(grant));
        };
        QObject::connect(request, &QDBusPendingCallWatcher::finished, request, take);
    }

    LoginLock loginLock;
    std::shared_ptr<Grants> grants = std::make_shared<Grants>();
};

}  // namespace

void showNotification(const Desktop::Notification& notification) {
    constexpr uint replacesNone = 0;
    constexpr int shownAsLongAsUsual = -1;
    auto call =
        QDBusMessage::createMethodCall("org.freedesktop.Notifications", "/org/freedesktop/Notifications",
                                       "org.freedesktop.Notifications", "Notify");
    call << programName << replacesNone << "velmora-tessel" << QString::fromStdString(notification.title)
         << QString::fromStdString(notification.text).toHtmlEscaped()  // the text is read as markup
         << QStringList() << QVariantMap{{"desktop-entry", "velmora-tessel"}} << shownAsLongAsUsual;
    // The window says the same, so the user misses nothing on a desktop that shows no notifications.
    QDBusConnection::sessionBus().send(call);
}

void showDockProgress(std::optional<double> progress) {
    auto update = QDBusMessage::createSignal("/com/canonical/unity/launcherentry/1",
                                             "com.canonical.Unity.LauncherEntry", "Update");
    update << "application://velmora-tessel.desktop"
           << QVariantMap{{"progress", progress.value_or(0)}, {"progress-visible", progress.has_value()}};
    QDBusConnection::sessionBus().send(update);
}

std::unique_ptr<TemporaryActivity> blockSleep(const std::string& reason) {
    return std::make_unique<SleepBlock>(reason);
}

}  // namespace tessel
