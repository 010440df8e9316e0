#pragma once

#include <QAbstractButton>
#include <QAccessibleWidget>

#include "views/accessibility/Accessibility.h"

namespace tessel {

/// Presents something that can be clicked to screen readers. Its action does what a click does, and like a
/// click it does nothing on a control that is disabled, hidden or behind a dialog that waits for an answer.
class AccessibleControl : public QAccessibleWidget {
  public:
    using QAccessibleWidget::QAccessibleWidget;

    [[nodiscard]] QStringList actionNames() const override;
    /// Returns before the click, which may lead to anything.
    void doAction(const QString& action) override;

  protected:
    virtual void click() = 0;

  private:
    [[nodiscard]] QString clickAction() const;
    [[nodiscard]] bool canBeClicked() const;
};

/// Presents a button of any kind. It is named by its text unless it has an accessible name.
class AccessibleButton : public AccessibleControl {
  public:
    AccessibleButton(QAbstractButton& button, QAccessible::Role role);

    [[nodiscard]] QString text(QAccessible::Text which) const override;
    [[nodiscard]] QAccessible::State state() const override;

  protected:
    void click() override { button.click(); }

    QAbstractButton& button;
};

/// Lets screen readers operate each `Widget`, which is a button.
template <typename Widget, QAccessible::Role itsRole>
void presentButtonToScreenReaders() {
    struct Interface : AccessibleButton {
        explicit Interface(Widget& button) : AccessibleButton(button, itsRole) {}
    };
    presentToScreenReaders<Widget, Interface>();
}

}  // namespace tessel
