#include "views/controls/DisclosureButton.h"

#include <QKeyEvent>
#include <QPainter>

#include "views/accessibility/Accessibility.h"
#include "views/controls/Painting.h"
#include "views/controls/Style.h"
#include "views/controls/Symbol.h"

namespace tessel {

namespace {

constexpr int chevronSize = 11;

class AccessibleDisclosure : public AccessibleButton {
  public:
    explicit AccessibleDisclosure(DisclosureButton& button) : AccessibleButton(button, QAccessible::Button) {}

    // The label's widgets say nothing that the button's name does not.
    int childCount() const override { return 0; }

    QAccessible::State state() const override {
        QAccessible::State state = AccessibleButton::state();
        state.checkable = false;
        state.checked = false;
        state.expandable = true;
        state.expanded = button.isChecked();
        state.collapsed = !button.isChecked();
        return state;
    }
};

}  // namespace

DisclosureButton::DisclosureButton() : row(new QHBoxLayout(this)) {
    presentToScreenReaders<DisclosureButton, AccessibleDisclosure>();
    followApplicationFont(*this, [this] {
        row->setContentsMargins(scaledWithFont(chevronSize) + spacing::small, spacing::hair, spacing::tight,
                                spacing::hair);
    });
    row->setSpacing(spacing::small);
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    setCheckable(true);
    setFocusPolicy(Qt::StrongFocus);
    setCursor(Qt::PointingHandCursor);
    connect(this, &QAbstractButton::toggled, [this] {
        QAccessible::State changed;
        changed.expanded = true;
        changed.collapsed = true;
        QAccessibleStateChangeEvent event(this, changed);
        QAccessible::updateAccessibility(&event);
    });
}

void DisclosureButton::keyPressEvent(QKeyEvent* event) {
    const bool opens = event->key() == Qt::Key_Right;
    const bool closes = event->key() == Qt::Key_Left;
    if (opens || closes) {
        if (opens != isChecked()) click();
    } else if (isReturn(*event)) {
        click();
    } else {
        QAbstractButton::keyPressEvent(event);
    }
}

void DisclosureButton::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const QRect beforeLabel(spacing::hair, 0, scaledWithFont(chevronSize), height());
    paintSymbol(painter, isChecked() ? "chevron.down" : "chevron.right", beforeLabel, beforeLabel.width(),
                currentColors().secondary);
    if (showsKeyboardFocus(*this)) paintFocusRing(painter, rect(), 6);
}

}  // namespace tessel
