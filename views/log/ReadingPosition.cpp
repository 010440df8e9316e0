#include "views/log/ReadingPosition.h"

#include <QAbstractTextDocumentLayout>
#include <QPlainTextEdit>
#include <QScrollBar>
#include <QTextBlock>
#include <algorithm>

namespace tessel {

int readingPosition(const QPlainTextEdit& view) {
    return view.cursorForPosition({0, 0}).position();
}

int endPosition(const QPlainTextEdit& view) {
    // The count includes the line break that ends every document.
    return view.document()->characterCount() - 1;
}

void scrollToReadingPosition(QPlainTextEdit& view, int position) {
    position = std::min(position, endPosition(view));
    const QTextDocument& document = *view.document();
    const QTextBlock block = document.findBlock(position);

    // Lines are laid out only when they come into view, but the number of this one is needed now. The range
    // of the scroll bar may be older than the layout, so it is computed anew.
    QAbstractTextDocumentLayout& layout = *document.documentLayout();
    layout.blockBoundingRect(block);
    layout.documentSizeChanged(layout.documentSize());

    const int lineInBlock = block.layout()->lineForTextPosition(position - block.position()).lineNumber();
    view.verticalScrollBar()->setValue(block.firstLineNumber() + lineInBlock);
}

}  // namespace tessel
