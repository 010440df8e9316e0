#include "rehearsal/window/Pictures.h"

#include <QApplication>
#include <QDialog>
#include <QPainter>
#include <QScrollBar>
#include <map>
#include <utility>

#include "views/controls/Style.h"

namespace tessel {

namespace {

constexpr QSize tile(683, 740);    // half of a 1366 x 768 screen
constexpr double largeText = 1.4;  // what desktops call large text

QPalette highContrastPalette() {
    QPalette palette(Qt::black, Qt::black);
    palette.setColor(QPalette::Base, Qt::black);
    palette.setColor(QPalette::AlternateBase, Qt::black);
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::ToolTipText,
                            QPalette::PlaceholderText})
        palette.setColor(role, Qt::white);
    palette.setColor(QPalette::Highlight, Qt::yellow);
    palette.setColor(QPalette::HighlightedText, Qt::black);
    return palette;
}

}  // namespace

Pictures::Pictures(ContentView& window, std::filesystem::path folder) :
    window(window),
    folder(std::move(folder)) {
    std::filesystem::create_directories(this->folder);
}

void Pictures::take(const QString& stage) const {
    const auto usualSize = window.size();
    const auto usualPalette = QApplication::palette();
    const std::pair<QString, QPalette> palettes[] = {
        {"light", usualPalette}, {"dark", darkPalette()}, {"high-contrast", highContrastPalette()}};
    std::map<QScrollBar*, int> scrollPositions;
    for (auto* bar : window.findChildren<QScrollBar*>())
        scrollPositions[bar] = bar->value();
    const auto returnToUsualSize = [&] {
        window.fitInto({largeScreen});
        window.resize(usualSize);
        QApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
        for (const auto [bar, position] : scrollPositions)
            bar->setValue(position);
    };
    for (const auto& [name, palette] : palettes) {
        QApplication::setPalette(palette);
        save(stage + "-" + name);
        window.resize(window.minimumSize());
        save(stage + "-" + name + "-minimum");
        window.fitInto({smallScreen});
        save(stage + "-" + name + "-small-screen");
        window.resize(tile);
        save(stage + "-" + name + "-tile");
        returnToUsualSize();
    }
    QApplication::setPalette(usualPalette);
    const QFont usualFont = QApplication::font();
    QFont largeFont = usualFont;
    largeFont.setPointSizeF(usualFont.pointSizeF() * largeText);
    QApplication::setFont(largeFont);
    save(stage + "-large-text");
    QApplication::setFont(usualFont);
    returnToUsualSize();
}

void Pictures::save(const QString& name) const {
    // New palettes and layouts reach the widgets through posted events.
    QApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
    auto picture = window.grab();
    QPainter painter(&picture);
    for (auto* widget : QApplication::topLevelWidgets()) {
        if (!widget->isVisible() || !dynamic_cast<QDialog*>(widget)) continue;
        painter.fillRect(window.rect(), QColor(0, 0, 0, 70));
        const auto dialog = widget->grab();
        const QPoint corner((window.width() - widget->width()) / 2, (window.height() - widget->height()) / 2);
        painter.drawPixmap(corner, dialog);
    }
    painter.end();
    picture.save(QString::fromStdString((folder / (name.toStdString() + ".png")).string()));
}

}  // namespace tessel
