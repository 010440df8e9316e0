#include "views/alerts/AlertDialog.h"

#include <QGridLayout>
#include <QHBoxLayout>

#include "views/accessibility/Accessibility.h"
#include "views/controls/SymbolView.h"
#include "views/controls/TextLabel.h"

namespace tessel {

namespace {

constexpr int symbolSize = 40;
constexpr int textWidth = 420;

}  // namespace

AlertDialog::AlertDialog(const Fields& fields, QWidget* window) : QDialog(window) {
    presentToScreenReadersAs<AlertDialog, QAccessible::AlertMessage>();
    setAttribute(Qt::WA_DeleteOnClose);
    setAttribute(Qt::WA_KeyboardFocusChange);  // shows at once which button the Return key presses
    setWindowTitle(fields.message);
    setAccessibleName(fields.message);

    auto* symbol = new SymbolView({.symbol = fields.symbol, .tone = fields.symbolTone, .size = symbolSize});
    symbol->setAccessibleName(fields.symbolDescription);
    auto* message = wrappedLabel(fields.message, {.font = FontRole::headline, .weight = QFont::Bold});
    auto* text = wrappedLabel(fields.informativeText, {.font = FontRole::body});
    text->setFixedWidth(scaledWithFont(textWidth));
    text->setTextInteractionFlags(Qt::TextSelectableByMouse);

    auto* grid = new QGridLayout(this);
    grid->setContentsMargins(20, 20, 20, spacing::page);
    grid->setHorizontalSpacing(spacing::page);
    grid->setVerticalSpacing(spacing::small);
    grid->addWidget(symbol, 0, 0, 2, 1, Qt::AlignTop);
    grid->addWidget(message, 0, 1);
    grid->addWidget(text, 1, 1);
    grid->setRowMinimumHeight(2, spacing::small);
    grid->addWidget(makeButtons(fields.actions), 3, 0, 1, 2);
    grid->setSizeConstraint(QLayout::SetFixedSize);
}

void AlertDialog::showEvent(QShowEvent* event) {
    QDialog::showEvent(event);
    QAccessibleEvent alert(this, QAccessible::Alert);
    QAccessible::updateAccessibility(&alert);
}

QWidget* AlertDialog::makeButtons(const std::vector<Action>& actions) {
    auto* buttons = new QWidget;
    auto* row = new QHBoxLayout(buttons);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(spacing::small);
    row->addStretch();
    bool isSafe = true;
    for (const auto& action : actions) {
        auto* button = new Button({.text = action.title, .look = action.look});
        button->setDefault(isSafe);
        if (isSafe) button->setFocus();
        connect(button, &Button::clicked, this, [this, act = action.act] {
            close();
            if (act) act();
        });
        row->addWidget(button);
        isSafe = false;
    }
    return buttons;
}

}  // namespace tessel
