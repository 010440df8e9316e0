#include "views/controls/ColorScheme.h"

#include <QApplication>
#include <QStyleHints>

namespace tessel {

QPalette darkPalette() {
    QPalette palette(QColor("#2b2d30"), QColor("#26282b"));
    palette.setColor(QPalette::Base, QColor("#1c1e20"));
    palette.setColor(QPalette::AlternateBase, QColor("#242629"));
    palette.setColor(QPalette::WindowText, QColor("#e6e7e9"));
    palette.setColor(QPalette::Text, QColor("#e6e7e9"));
    palette.setColor(QPalette::ButtonText, QColor("#e6e7e9"));
    palette.setColor(QPalette::ToolTipBase, QColor("#3a3d41"));
    palette.setColor(QPalette::ToolTipText, QColor("#e6e7e9"));
    palette.setColor(QPalette::PlaceholderText, QColor("#9a9da1"));
    palette.setColor(QPalette::Highlight, QColor("#3574d6"));
    palette.setColor(QPalette::HighlightedText, Qt::white);
    return palette;
}

void followColorScheme() {
#if QT_VERSION >= QT_VERSION_CHECK(6, 5, 0)
    if (!qgetenv("XDG_CURRENT_DESKTOP").split(':').contains("GNOME")) return;
    const auto apply = [](Qt::ColorScheme wanted) {
        QApplication::setPalette(QPalette());  // the toolkit's own
        const bool isDark = QApplication::palette().window().color().lightness() < 128;
        if (wanted == Qt::ColorScheme::Dark && !isDark) QApplication::setPalette(darkPalette());
    };
    const auto* hints = QGuiApplication::styleHints();
    apply(hints->colorScheme());
    QObject::connect(hints, &QStyleHints::colorSchemeChanged, qApp, apply);
#endif
}

}  // namespace tessel
