#include "app/Panes.h"

#include <QApplication>
#include <QScrollBar>
#include <algorithm>

#include "views/controls/ScrollPane.h"
#include "views/controls/Style.h"

namespace tessel {

namespace {

constexpr int leftMinimum = 620;
constexpr int rightMinimum = 340;
constexpr int revealedMargin = 2 * spacing::page;  // brings the head of a card along with its first control

}  // namespace

Panes::Panes(QWidget* left, QWidget* right) : QSplitter(Qt::Horizontal), leftPane(makePane(left)) {
    auto* rightPane = makePane(right);
    rightPane->setMinimumWidth(rightMinimum);
    rightPane->setMaximumWidth(520);
    setChildrenCollapsible(false);
    setStretchFactor(0, 1);
    setSizes({760, 410});
    leftPane->lower();  // is read aloud first
    // Waits until the pane itself has scrolled, which is to a text cursor that may be scrolled away.
    connect(qApp, &QApplication::focusChanged, this, &Panes::revealFocus, Qt::QueuedConnection);
}

ScrollPane* Panes::makePane(QWidget* content) {
    auto* pane = new ScrollPane(content);
    pane->setWidgetResizable(true);
    addWidget(pane);
    const auto followKeyboardFocus = [this] {
        // Whoever uses the mouse may have scrolled the focus out of view on purpose.
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

void Panes::resizeEvent(QResizeEvent* event) {
    leftPane->setMinimumWidth(std::min(leftMinimum, width() - handleWidth() - rightMinimum));
    QSplitter::resizeEvent(event);
}

}  // namespace tessel
