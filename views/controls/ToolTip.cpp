#include "views/controls/ToolTip.h"

#include <QHelpEvent>
#include <QTextDocument>
#include <QToolTip>

namespace tessel {

QString plainToolTip(const QString& text) {
    return Qt::convertFromPlainText(text);
}

bool showPlainToolTip(QWidget& widget, const QEvent& event, const QString& text) {
    if (event.type() != QEvent::ToolTip) return false;
    QToolTip::showText(static_cast<const QHelpEvent&>(event).globalPos(), plainToolTip(text), &widget);
    return true;
}

}  // namespace tessel
