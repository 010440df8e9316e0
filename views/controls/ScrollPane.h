#pragma once

#include <QScrollArea>

namespace tessel {

/// Scrolls what does not fit into it, with slim handles, on whatever is behind it. It takes no focus, and
/// keys that its content ignores still scroll it.
class ScrollPane : public QScrollArea {
  public:
    explicit ScrollPane(QWidget* content);

    /// Scrolls no further than is needed to show this part of the content with a margin around it.
    void reveal(const QWidget& part, int margin);
};

}  // namespace tessel
