#include "views/accessibility/Accessibility.h"

namespace tessel {

void announce(QWidget& notification, [[maybe_unused]] const QString& text) {
#if QT_VERSION >= QT_VERSION_CHECK(6, 8, 0)
    QAccessibleAnnouncementEvent event(&notification, text);
#else
    QAccessibleEvent event(&notification, QAccessible::ObjectShow);
#endif
    QAccessible::updateAccessibility(&event);
}

}  // namespace tessel
