#pragma once

#include <QLineEdit>

namespace tessel {

/// A value that can be selected and copied. When it does not fit, it is shortened in the middle until it gets
/// the focus, and its tool tip is the whole value; copying always gives the whole value or the selected part
/// of it.
class SelectableValue : public QLineEdit {
  public:
    static constexpr int textMargin = 2;  ///< pixels that a QLineEdit leaves free at each side of its text

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

}  // namespace tessel
