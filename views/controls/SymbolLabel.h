#pragma once

#include "views/controls/TextLabel.h"

namespace tessel {

/// Shows a symbol before the first line of a wrapped text, both in the same colour.
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
