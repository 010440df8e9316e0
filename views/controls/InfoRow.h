#pragma once

#include <QWidget>

namespace tessel {

class SelectableValue;
class TextLabel;

/// Shows a title and its value on one line.
class InfoRow : public QWidget {
  public:
    explicit InfoRow(const QString& title);

    void setValue(const QString& value);
    [[nodiscard]] QString value() const;

  protected:
    void changeEvent(QEvent* event) override;

  private:
    void alignTitle();

    TextLabel* titleLabel;
    SelectableValue* valueField;
};

}  // namespace tessel
