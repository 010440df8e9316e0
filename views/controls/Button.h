#pragma once

#include <QPushButton>

namespace tessel {

/// A button with a symbol and a text.
class Button : public QPushButton {
  public:
    enum class Look { prominent, bordered, destructive, destructiveProminent };
    enum class Size { small, regular, large };
    struct Fields {
        QString text;
        QString symbol;  ///< may be empty
        Look look = Look::bordered;
        Size size = Size::regular;
    };

    explicit Button(const Fields& fields);

    QSize sizeHint() const override;
    /// Enough for a few letters: a button that may shrink shortens its text.
    QSize minimumSizeHint() const override;

  protected:
    void changeEvent(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

  private:
    bool isProminent() const;
    void applyFont();
    int symbolSize() const;
    int contentWidth() const;
    QColor ink() const;
    void paintBackground(QPainter& painter) const;
    void paintContent(QPainter& painter) const;

    QString symbol;
    Look look;
    Size size;
};

}  // namespace tessel
