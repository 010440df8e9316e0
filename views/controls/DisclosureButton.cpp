#include "views/controls/DisclosureButton.h"

#include <QAccessibleWidget>
#include <QPainter>

#include "views/controls/Accessibility.h"
#include "views/controls/Painting.h"
#include "views/controls/Style.h"
#include "views/controls/Symbol.h"

namespace tessel {

namespace {

constexpr int chevronSize = 11;

class AccessibleDisclosure : public QAccessibleWidget {
  public:
    explicit AccessibleDisclosure(DisclosureButton& button) :
        QAccessibleWidget(&button, QAccessible::Button),
        button(button) {}

    // The label's widgets say nothing that the button's name does not.
    int childCount() const override { return 0; }

    QAccessible::State state() const override {
        QAccessible::State state = QAccessibleWidget::state();
        state.expandable = true;
        state.expanded = button.isChecked();
        state.collapsed = !button.isChecked();
        return state;
    }

    QStringList actionNames() const override { return {pressAction()}; }

    void doAction(const QString& action) override {
        if (action == pressAction()) button.click();
    }

  private:
    DisclosureButton& button;
};

}  // namespace

DisclosureButton::DisclosureButton() : row(new QHBoxLayout(this)) {
    presentToScreenReaders<DisclosureButton, AccessibleDisclosure>();
    row->setContentsMargins(chevronSize + spacing::small, spacing::hair, spacing::tight, spacing::hair);
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

void DisclosureButton::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const QRect beforeLabel(spacing::hair, 0, chevronSize, height());
    paintSymbol(painter, isChecked() ? "chevron.down" : "chevron.right", beforeLabel, chevronSize,
                currentColors().secondary);
    if (showsKeyboardFocus(*this)) paintFocusRing(painter, rect(), 6);
}

}  // namespace tessel
