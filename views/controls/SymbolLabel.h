#pragma once

#include "views/controls/TextLabel.h"

namespace tessel {

/// A symbol and a wrapped text in the same colour; the symbol stands before the first line.
class SymbolLabel : public TextLabel {
  public:
    SymbolLabel(const QString& symbol, const QString& text, const TextLook& look);

    void setSymbol(const QString& name);

  protected:
    void paintEvent(QPaintEvent* event) override;
    void applyLook() override;

  private:
    [[nodiscard]] int symbolSize() const;
    void makeRoomForSymbol();

    QString symbol;
};

}  // namespace tessel
