#include "platform/qt/Notification.h"

#include <QDBusConnection>
#include <QDBusMessage>

namespace tessel {

void showNotification(const Desktop::Notification& notification) {
    constexpr uint replacesNone = 0;
    constexpr int shownAsLongAsUsual = -1;
    auto call =
        QDBusMessage::createMethodCall("org.freedesktop.Notifications", "/org/freedesktop/Notifications",
                                       "org.freedesktop.Notifications", "Notify");
    call << "Velmora Tessel" << replacesNone << "velmora-tessel" << QString::fromStdString(notification.title)
         << QString::fromStdString(notification.text).toHtmlEscaped()  // the text is read as markup
         << QStringList() << QVariantMap{{"desktop-entry", "velmora-tessel"}} << shownAsLongAsUsual;
    // The window says the same, so a desktop that shows no notifications costs nobody anything.
    QDBusConnection::sessionBus().send(call);
}

}  // namespace tessel
