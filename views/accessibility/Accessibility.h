#pragma once

#include <QAbstractButton>
#include <QAccessibleWidget>
#include <QLineEdit>
#include <QWidget>

namespace tessel {

/// Lets screen readers learn about each `Widget` from an `Interface` that is made for it. Call it first in
/// the constructor of the widget, before it has a text or anything else to tell: from then on it is presented
/// as what it was at that moment.
template <typename Widget, typename Interface>
void presentToScreenReaders() {
    QAccessible::installFactory([](const QString&, QObject* object) -> QAccessibleInterface* {
        auto* widget = dynamic_cast<Widget*>(object);
        return widget ? new Interface(*widget) : nullptr;
    });
}

/// Presents each `Widget` to screen readers in the given role. Its name is the accessible one, or the title
/// of a window.
template <typename Widget, QAccessible::Role itsRole>
void presentToScreenReadersAs() {
    struct Interface : QAccessibleWidget {
        explicit Interface(Widget& widget) : QAccessibleWidget(&widget, itsRole) {}
    };
    presentToScreenReaders<Widget, Interface>();
}

/// Has screen readers say the text at once, whatever has the focus. The widget shows it and is presented as a
/// notification, which older ones say when it appears.
void announce(QWidget& notification, const QString& text);

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

/// Presents a line of text that can be selected and copied, but not edited, to screen readers. Qt would call
/// it editable.
class AccessibleValue : public QAccessibleWidget, public QAccessibleTextInterface {
  public:
    explicit AccessibleValue(QLineEdit& line);

    void* interface_cast(QAccessible::InterfaceType type) override;
    [[nodiscard]] QAccessible::State state() const override;

    void selection(int index, int* start, int* end) const override;
    [[nodiscard]] int selectionCount() const override;
    void addSelection(int start, int end) override;
    void removeSelection(int index) override;
    void setSelection(int index, int start, int end) override;
    [[nodiscard]] int cursorPosition() const override;
    void setCursorPosition(int position) override;
    [[nodiscard]] QString text(int start, int end) const override;
    [[nodiscard]] QString text(QAccessible::Text which) const override;
    [[nodiscard]] int characterCount() const override;
    [[nodiscard]] QRect characterRect(int offset) const override;
    [[nodiscard]] int offsetAtPoint(const QPoint& point) const override;
    void scrollToSubstring(int start, int end) override;
    QString attributes(int offset, int* start, int* end) const override;

  private:
    QLineEdit& line;
};

}  // namespace tessel
