#include "views/controls/ScrollPane.h"

#include "views/controls/ScrollBar.h"

namespace tessel {

ScrollPane::ScrollPane(QWidget* content) {
    setFrameShape(QFrame::NoFrame);
    setFocusPolicy(Qt::NoFocus);
    setVerticalScrollBar(new ScrollBar(Qt::Vertical));
    setHorizontalScrollBar(new ScrollBar(Qt::Horizontal));
    setWidget(content);
    viewport()->setAutoFillBackground(false);
    content->setAutoFillBackground(false);
}

void ScrollPane::reveal(const QWidget& part, int margin) {
    const QRect bounds(part.mapTo(widget(), QPoint()), part.size());
    ensureVisible(bounds.center().x(), bounds.center().y(), bounds.width() / 2 + margin,
                  bounds.height() / 2 + margin);
}

}  // namespace tessel
