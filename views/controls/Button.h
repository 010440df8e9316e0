#pragma once

#include <QKeySequence>
#include <QPushButton>

namespace tessel {

/// Shows a symbol before its text.
class Button : public QPushButton {
  public:
    enum class Look { prominent, bordered, destructive, destructiveProminent };
    enum class Size { small, regular, large };
    struct Fields {
        QString text;
        QString symbol;  ///< may be empty
        Look look = Look::bordered;
        Size size = Size::regular;
        QKeySequence key;  ///< presses it too, as its tool tip says; may be empty
    };

    explicit Button(const Fields& fields);

    /// Puts a dot onto the symbol, or takes it away, to say that there is something new.
    void setDot(bool dot);

    /// Returns the words of a tool tip, followed by the button's key.
    [[nodiscard]] QString withKey(const QString& words) const;

    [[nodiscard]] QSize sizeHint() const override;
    /// Leaves room for a few letters: a button that has to shrink shortens its text.
    [[nodiscard]] QSize minimumSizeHint() const override;

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    [[nodiscard]] bool isProminent() const;
    [[nodiscard]] int symbolSize() const;
    [[nodiscard]] int contentWidth() const;
    [[nodiscard]] QColor ink() const;
    void paintBackground(QPainter& painter) const;
    void paintContent(QPainter& painter) const;
    void paintDot(QPainter& painter) const;

    QString symbol;
    Look look;
    Size size;
    bool hasDot = false;
};

}  // namespace tessel
