#include "views/controls/InfoRow.h"

#include <QEvent>
#include <QHBoxLayout>

#include "views/controls/SelectableValue.h"
#include "views/controls/TextLabel.h"

namespace tessel {

namespace {

constexpr int titleWidth = 72;

}  // namespace

InfoRow::InfoRow(const QString& title) :
    titleLabel(new TextLabel(title, {.font = FontRole::caption, .tone = Tone::secondary})),
    valueField(new SelectableValue) {
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(spacing::small - SelectableValue::textMargin);
    row->addWidget(titleLabel);
    row->addWidget(valueField, 1);
    valueField->setAccessibleName(title);
    alignTitle();
}

void InfoRow::setValue(const QString& value) {
    valueField->setValue(value);
}

QString InfoRow::value() const {
    return valueField->text();
}

void InfoRow::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::ApplicationFontChange) alignTitle();
}

void InfoRow::alignTitle() {
    titleLabel->setFixedWidth(scaledWithFont(titleWidth));
}

}  // namespace tessel
