#pragma once

#include <QAbstractButton>
#include <QHBoxLayout>

namespace tessel {

/// Opens and closes what is below it. It shows a chevron, then a label made of any widgets. Checked means
/// open, and screen readers announce it as expandable. Space and Return do what a click does; the right arrow
/// opens and the left one closes.
class DisclosureButton : public QAbstractButton {
  public:
    DisclosureButton();

    /// Takes the label's widgets, laid out left to right. Clicks on them count as clicks on the button.
    [[nodiscard]] QHBoxLayout& label() { return *row; }

    [[nodiscard]] QSize sizeHint() const override { return row->sizeHint(); }

  protected:
    void keyPressEvent(QKeyEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

  private:
    QHBoxLayout* row;
};

}  // namespace tessel
