#include "platform/qt/DesktopServices.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusPendingCallWatcher>
#include <QDBusUnixFileDescriptor>
#include <functional>
#include <limits>
#include <memory>
#include <utility>
#include <vector>

namespace tessel {

namespace {

constexpr auto methodCall = QDBusMessage::createMethodCall;

constexpr auto programName = "Velmora Tessel";

/// The flag of session managers and of the portal that keeps a session from counting as idle, after which
/// they would put the computer to sleep. The flag against suspending would also block a suspend that the user
/// requests.
constexpr uint idleFlag = 8;

/// A service that may decide when the computer falls asleep.
struct Service {
    QDBusConnection bus;
    QDBusMessage request;
    QString answer;  ///< the D-Bus signature of the answer
    /// The call that gives back what was granted; empty for a descriptor, which only has to be closed.
    std::function<QDBusMessage(const QVariant& granted)> giveBack;
};

Service loginService(const QString& reason) {
    auto request = methodCall("org.freedesktop.login1", "/org/freedesktop/login1",
                              "org.freedesktop.login1.Manager", "Inhibit");
    request.setAutoStartService(false);
    request << "idle" << programName << reason << "block";
    return {QDBusConnection::systemBus(), request, "h", nullptr};
}

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
    return {QDBusConnection::sessionBus(), request, "o", close};
}

/// Returns a service of the session that answers a request with a number, which gives the grant back.
Service numberingService(QDBusMessage request, const QString& giveBack) {
    request.setAutoStartService(false);
    const auto call = [request, giveBack](const QVariant& granted) {
        return methodCall(request.service(), request.path(), request.interface(), giveBack) << granted;
    };
    return {QDBusConnection::sessionBus(), request, "u", call};
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
        if (!service.giveBack) return;
        auto call = service.giveBack(granted);
        call.setAutoStartService(false);
        service.bus.send(call);
    }

  private:
    Service service;
    QVariant granted;
};

/// Asks every service that may decide, since each desktop has its own: GNOME, MATE and Cinnamon heed only
/// their session manager, KDE and Xfce their power manager, and a computer without any of these the locks of
/// the login service. A portal grants the request even if nothing behind it fulfils it, so its answer is no
/// reason to leave out the others. Being asked twice harms none of them.
///
/// A grant that arrives after this object is destroyed is given back at once.
class SleepBlock : public TemporaryActivity {
  public:
    explicit SleepBlock(const QString& reason) {
        for (const auto& service :
             {loginService(reason), portal(reason), sessionManager(reason), powerManager(reason)})
            ask(service);
    }

  private:
    using Grants = std::vector<std::unique_ptr<Grant>>;

    void ask(const Service& service) {
        // The call outlives this object, however late its answer comes, because a late grant must be given
        // back.
        constexpr int withoutLimit = std::numeric_limits<int>::max();
        auto* request = new QDBusPendingCallWatcher(service.bus.asyncCall(service.request, withoutLimit),
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
    return std::make_unique<SleepBlock>(QString::fromStdString(reason));
}

}  // namespace tessel
