#pragma once

#include <QAccessibleWidget>
#include <QLineEdit>

namespace tessel {

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
