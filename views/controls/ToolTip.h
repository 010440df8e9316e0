#pragma once

#include <QString>

class QEvent;
class QWidget;

namespace tessel {

/// Turns the text into a tool tip that shows it as it is: it wraps and is never read as markup.
[[nodiscard]] QString plainToolTip(const QString& text);

/// Shows the text above the widget if the event asks for a tool tip. Returns whether it did.
bool showPlainToolTip(QWidget& widget, const QEvent& event, const QString& text);

}  // namespace tessel
