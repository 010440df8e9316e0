#include "views/controls/CardHeading.h"

#include <QVBoxLayout>

#include "views/controls/SymbolLabel.h"

namespace tessel {

QVBoxLayout* cardHeading(const QString& symbol, const QString& title, const QString& explanation) {
    auto* heading = new QVBoxLayout;
    heading->setSpacing(spacing::tight);
    heading->addWidget(new SymbolLabel(symbol, title, {.font = FontRole::headline, .weight = QFont::Bold}));
    heading->addWidget(wrappedLabel(explanation, {.font = FontRole::caption, .tone = Tone::secondary}));
    heading->addStretch();
    return heading;
}

}  // namespace tessel
