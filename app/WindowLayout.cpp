#include "app/WindowLayout.h"

#include <QApplication>
#include <QScreen>
#include <QScrollBar>
#include <algorithm>

#include "views/controls/ScrollPane.h"
#include "views/controls/Style.h"

namespace tessel {

namespace {

constexpr QSize designed(1180, 820);
constexpr QSize designedMinimum(1080, 720);
constexpr QSize smallest(480, 400);    // down to this every control can be reached
constexpr QSize frame(12, 48);         // more than desktops put around a window
constexpr QSize unknownPanels(0, 48);  // more than most desktops keep for their panels

// Widths at the usual font.
constexpr int leftMinimum = 620;
constexpr int besideLeast = 800;  // below this one pane stands above the other
constexpr int rightMinimum = 340;
constexpr int rightMaximum = 520;

constexpr int revealedMargin = 2 * spacing::page;  // brings the head of a card along with its first control

int minimumFitting(int room, int wanted, int least) {
    return room >= wanted ? wanted : least;
}

}  // namespace

WindowSizes::Room WindowSizes::Room::on(const QScreen& screen) {
    // Wayland does not tell programs about panels.
    const bool isKnown = !QGuiApplication::platformName().startsWith("wayland") ||
                         screen.availableGeometry() != screen.geometry();
    return {screen.availableSize(), isKnown};
}

WindowSizes WindowSizes::fitting(const Room& room) {
    const QSize largest = room.size - frame - (room.isKnown ? QSize(0, 0) : unknownPanels);
    const QSize least = smallest.boundedTo(largest);
    const QSize wanted = scaledWithFont(designedMinimum);
    return {.usual = scaledWithFont(designed).boundedTo(largest),
            .minimum = room.isKnown ? QSize(minimumFitting(largest.width(), wanted.width(), least.width()),
                                            minimumFitting(largest.height(), wanted.height(), least.height()))
                                    : least,
            .largest = largest};
}

Panes::Panes(QWidget* left, QWidget* right) : leftPane(makePane(left)), rightPane(makePane(right)) {
    setChildrenCollapsible(false);
    setHandleWidth(1);
    setStretchFactor(0, 1);
    setSizes({760, 410});
    leftPane->lower();  // is read aloud first
    connect(qApp, &QApplication::focusChanged, this, &Panes::revealFocus);
}

ScrollPane* Panes::makePane(QWidget* content) {
    auto* pane = new ScrollPane(content);
    pane->setWidgetResizable(true);
    // Its place is kept free, so that nothing moves sideways when there is something to scroll.
    pane->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    addWidget(pane);
    const auto followKeyboardFocus = [this] {
        // With the mouse, the user may have scrolled the focus out of view on purpose.
        if (window()->testAttribute(Qt::WA_KeyboardFocusChange)) revealFocus();
    };
    connect(pane->verticalScrollBar(), &QScrollBar::rangeChanged, this, followKeyboardFocus,
            Qt::QueuedConnection);
    return pane;
}

void Panes::revealFocus() {
    const auto* focused = window()->focusWidget();
    // What is pressed must not move away from under the mouse.
    if (!focused || !isAncestorOf(focused) || QGuiApplication::mouseButtons() != Qt::NoButton) return;
    for (auto* around = focused->parentWidget(); around != this; around = around->parentWidget()) {
        if (auto* pane = dynamic_cast<ScrollPane*>(around)) pane->reveal(*focused, revealedMargin);
    }
}

bool Panes::event(QEvent* event) {
    if (event->type() == QEvent::ApplicationFontChange) arrange();
    return QSplitter::event(event);
}

void Panes::resizeEvent(QResizeEvent* event) {
    arrange();
    QSplitter::resizeEvent(event);
}

void Panes::arrange() {
    const int right = scaledWithFont(rightMinimum);
    const bool fitsBeside = width() >= scaledWithFont(besideLeast);
    // A splitter takes its own limits from those of its parts as it is turned.
    rightPane->setMaximumWidth(fitsBeside ? scaledWithFont(rightMaximum) : QWIDGETSIZE_MAX);
    rightPane->setMinimumWidth(fitsBeside ? right : 0);
    leftPane->setMinimumWidth(
        fitsBeside ? std::min(scaledWithFont(leftMinimum), width() - handleWidth() - right) : 0);
    if (fitsBeside == (orientation() == Qt::Horizontal)) return;
    setOrientation(fitsBeside ? Qt::Horizontal : Qt::Vertical);
    setSizes(fitsBeside ? QList{760, 410} : QList{height() * 3 / 5, height() * 2 / 5});
}

}  // namespace tessel
