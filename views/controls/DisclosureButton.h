#pragma once

#include <QAbstractButton>
#include <QHBoxLayout>

namespace tessel {

/// The line that opens and closes what is below it: a chevron, then a label of any widgets. Checked means
/// open; screen readers hear it as expandable. Toggle it by setChecked, listen to `clicked` or `toggled`.
class DisclosureButton : public QAbstractButton {
  public:
    DisclosureButton();

    /// Where the label's widgets go, left to right. Clicks on them count as clicks on the button.
    [[nodiscard]] QHBoxLayout& label() { return *row; }

    [[nodiscard]] QSize sizeHint() const override { return row->sizeHint(); }

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    QHBoxLayout* row;
};

}  // namespace tessel
