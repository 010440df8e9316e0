#pragma once

#include <QPushButton>
#include <functional>

#include "model/VisibleDisks.h"

namespace tessel {

/// Heads a sortable column. The active heading shows the direction, and screen readers say it.
class SortableDiskHeader : public QPushButton {
  public:
    /// `action` is called with this heading's own field.
    SortableDiskHeader(const QString& title, DiskSortField field, std::function<void(DiskSortField)> action);

    void display(DiskSortField activeField, bool ascending);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

  protected:
    void changeEvent(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

  private:
    DiskSortField field;
    QString chevron;  ///< names the symbol of the direction; is empty when another column is active
};

}  // namespace tessel
