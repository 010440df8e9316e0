#include "views/alerts/AlertDialog.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QScreen>
#include <algorithm>

#include "views/accessibility/Accessibility.h"
#include "views/controls/Painting.h"
#include "views/controls/ScrollPane.h"
#include "views/controls/Symbol.h"
#include "views/controls/TextLabel.h"

namespace tessel {

namespace {

constexpr int symbolSize = 40;
constexpr int textWidth = 420;
constexpr int margin = 20;

}  // namespace

AlertDialog::AlertDialog(const Fields& fields, QWidget* window) : QDialog(window) {
    presentToScreenReadersAs<AlertDialog, QAccessible::AlertMessage>();
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowTitle(fields.message);
    setAccessibleName(fields.message);

    auto* symbol = new SymbolView({.symbol = fields.symbol, .tone = fields.symbolTone, .size = symbolSize});
    symbol->setAccessibleName(fields.symbolDescription);
    auto* message = wrappedLabel(fields.message, {.font = FontRole::headline, .weight = QFont::Bold});
    auto* text = wrappedLabel(fields.informativeText, {.font = FontRole::body});
    text->setFocusPolicy(Qt::ClickFocus);  // a click beside the buttons takes the focus from a dangerous one
    textPane = new ScrollPane(text);
    followApplicationFont(*text, [this, text] {
        text->setFont(styledFont(FontRole::body));  // the label itself follows later
        const QSize room = screen()->availableSize();
        const int width = std::min(scaledWithFont(textWidth), room.width() * 2 / 3);
        const int height = text->heightForWidth(width);
        const bool isTooLong = height > room.height() / 2;
        text->setFixedSize(width, height);
        textPane->setFixedSize(isTooLong ? QSize(width + ScrollBar::thickness, room.height() / 2)
                                         : QSize(width, height));
    });

    auto* grid = new QGridLayout(this);
    grid->setContentsMargins(margin, margin, margin, spacing::page);
    grid->setHorizontalSpacing(spacing::page);
    grid->setVerticalSpacing(spacing::small);
    grid->addWidget(symbol, 0, 0, 2, 1, Qt::AlignTop);
    grid->addWidget(message, 0, 1);
    grid->addWidget(textPane, 1, 1);
    grid->setRowMinimumHeight(2, spacing::small);
    grid->addWidget(makeButtons(fields.actions), 3, 0, 1, 2);
    grid->setSizeConstraint(QLayout::SetFixedSize);
    // Qt takes note of it only where the button has its dialog around it.
    safeButton->setDefault(true);
    safeButton->setFocus();
}

/// Return presses the button that has the focus, or else the safe one; Qt would make any button the default
/// one once it has had the focus. Page Up and Page Down scroll the text.
void AlertDialog::keyPressEvent(QKeyEvent* event) {
    auto& scrollBar = *textPane->verticalScrollBar();
    if (event->key() == Qt::Key_PageUp) return scrollBar.triggerAction(QScrollBar::SliderPageStepSub);
    if (event->key() == Qt::Key_PageDown) return scrollBar.triggerAction(QScrollBar::SliderPageStepAdd);
    if (!isReturn(*event)) return QDialog::keyPressEvent(event);
    auto* focused = dynamic_cast<Button*>(focusWidget());
    (focused ? focused : safeButton)->click();
}

void AlertDialog::showEvent(QShowEvent* event) {
    QDialog::showEvent(event);
    // Qt clears this as it shows a window; with it, the button that Return presses is marked at once.
    setAttribute(Qt::WA_KeyboardFocusChange);
    QAccessibleEvent alert(this, QAccessible::Alert);
    QAccessible::updateAccessibility(&alert);
}

QWidget* AlertDialog::makeButtons(const std::vector<Action>& actions) {
    auto* buttons = new QWidget;
    auto* row = new QHBoxLayout(buttons);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(spacing::small);
    row->addStretch();
    for (const auto& action : actions) {
        auto* button = new Button({.text = action.title, .look = action.look});
        button->setAutoDefault(false);
        if (!safeButton) safeButton = button;
        connect(button, &Button::clicked, this, [this, act = action.act] {
            close();
            if (act) act();
        });
        row->addWidget(button);
    }
    return buttons;
}

}  // namespace tessel
