#include "views/controls/TextLabel.h"

#include <QEvent>
#include <QVBoxLayout>

#include "views/accessibility/Accessibility.h"

namespace tessel {

namespace {

/// Large texts are headings, between which a screen reader can jump.
class AccessibleLabel : public QAccessibleWidget {
  public:
    explicit AccessibleLabel(TextLabel& label) : QAccessibleWidget(&label), label(label) {}

    QAccessible::Role role() const override {
        const FontRole font = label.look().font;
        const bool isLarge = font == FontRole::title || font == FontRole::headline;
        return isLarge ? QAccessible::Heading : QAccessible::StaticText;
    }

    QString text(QAccessible::Text which) const override {
        const QString given = QAccessibleWidget::text(which);
        return which == QAccessible::Name && given.isEmpty() ? label.text() : given;
    }

  private:
    TextLabel& label;
};

}  // namespace

TextLabel::TextLabel(const QString& text, const TextLook& look) : currentLook(look) {
    presentToScreenReaders<TextLabel, AccessibleLabel>();
    setText(text);
    setTextFormat(Qt::PlainText);
    // Otherwise a label in a button would take the button's colour.
    setForegroundRole(QPalette::WindowText);
    TextLabel::applyLook();
}

void TextLabel::setLook(const TextLook& look) {
    if (look != currentLook) {
        currentLook = look;
        applyLook();
    }
}

void TextLabel::changeEvent(QEvent* event) {
    QLabel::changeEvent(event);
    if (event->type() == QEvent::PaletteChange || event->type() == QEvent::ApplicationFontChange) applyLook();
}

void TextLabel::applyLook() {
    setFont(styledFont(currentLook.font, currentLook.weight));
    const QColor color = currentColors().of(currentLook.tone);
    // Setting a palette is itself a change of palette, which would lead here again.
    if (palette().color(QPalette::WindowText) != color) {
        QPalette tinted = palette();
        tinted.setColor(QPalette::WindowText, color);
        setPalette(tinted);
    }
}

TextLabel* wrappedLabel(const QString& text, const TextLook& look) {
    auto* label = new TextLabel(text, look);
    label->setWordWrap(true);
    return label;
}

QVBoxLayout* stackedTexts(QWidget* above, QWidget* below) {
    auto* column = new QVBoxLayout;
    column->setSpacing(1);
    column->addStretch();
    column->addWidget(above);
    column->addWidget(below);
    column->addStretch();
    return column;
}

}  // namespace tessel
