#pragma once

#include <QLineEdit>
#include <QWidget>

namespace tessel {

class TextLabel;

/// Shows a value that can be selected and copied. A value that does not fit is shortened in the middle until
/// it gets the focus, and its tool tip shows all of it. Copying gives the selected part, or the whole value
/// if nothing is selected.
class SelectableValue : public QLineEdit {
  public:
    static constexpr int textMargin = 2;  ///< the space that QLineEdit leaves beside its text, in pixels

    SelectableValue();

    /// Shows the value from its beginning.
    void setValue(const QString& value);
    [[nodiscard]] bool isElided() const;
    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

  protected:
    bool event(QEvent* event) override;
    void changeEvent(QEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

  private:
    void applyLook();
    void updateFocusPolicy();
};

/// Shows a title and its value on one line.
class InfoRow : public QWidget {
  public:
    explicit InfoRow(const QString& title);

    void setValue(const QString& value);
    [[nodiscard]] QString value() const;

  private:
    TextLabel* titleLabel;
    SelectableValue* valueField;
};

}  // namespace tessel
