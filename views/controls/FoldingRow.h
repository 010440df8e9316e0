#pragma once

#include <QLayout>

namespace tessel {

/// Lays two parts out side by side, or one below the other where there is too little room for that. It never
/// asks for more room than the folded parts need, so that whatever surrounds it settles at every size.
class FoldingRow : public QLayout {
  public:
    struct Options {
        int besideSpacing = 0;
        int belowSpacing = 0;
        /// The width below which it folds, as designed for the default font. 0 stands for what the parts
        /// would like to have.
        int narrowWidth = 0;
    };

    /// Takes both parts over. The first gets all the width that the second doesn't need; if the second can
    /// use more than it needs, they share the width evenly.
    FoldingRow(QLayout* first, QLayout* second, const Options& options);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSize() const override;
    [[nodiscard]] Qt::Orientations expandingDirections() const override { return Qt::Horizontal; }
    [[nodiscard]] bool hasHeightForWidth() const override { return true; }
    [[nodiscard]] int heightForWidth(int width) const override;
    void setGeometry(const QRect& bounds) override;

    [[nodiscard]] int count() const override { return 2; }
    [[nodiscard]] QLayoutItem* itemAt(int index) const override;

  private:
    /// Both parts are there from the beginning and stay.
    void addItem(QLayoutItem*) override { Q_UNREACHABLE(); }
    QLayoutItem* takeAt(int) override { return nullptr; }

    [[nodiscard]] bool folds(int width) const;
    [[nodiscard]] int secondWidth(int width) const;

    QLayout* first;
    QLayout* second;
    Options options;
};

}  // namespace tessel
