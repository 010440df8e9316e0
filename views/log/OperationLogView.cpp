#include "views/log/OperationLogView.h"

#include <QWheelEvent>
#include <algorithm>

#include "views/controls/ScrollPane.h"
#include "views/controls/Style.h"

namespace tessel {

namespace {

constexpr int textInset = 10;

QString toQString(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

}  // namespace

OperationLogView::OperationLogView(std::chrono::milliseconds interactionPauseDuration) {
    setVerticalScrollBar(new ScrollBar(Qt::Vertical, ScrollBar::Hides::whenUnused));
    coordinator = new Coordinator(*this, interactionPauseDuration);
    setAccessibleName("Operation log");
    setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    setUndoRedoEnabled(false);

    followApplicationFont(*this, [this] { setFont(styledFont(FontRole::monospaced)); });
    document()->setDocumentMargin(textInset);
    setWordWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);

    setFrameShape(QFrame::NoFrame);
    viewport()->setAutoFillBackground(false);  // what lies behind the log shows through
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
}

void OperationLogView::setLog(std::string_view text, std::size_t entryCount) {
    if (text == shownText && entryCount == lastEntryCount) return;
    lastEntryCount = entryCount;
    if (text != shownText) replaceText(text);
    coordinator->scheduleScrollToLatest();
}

void OperationLogView::resizeEvent(QResizeEvent* event) {
    const int firstVisible = readingPosition(*this);
    QPlainTextEdit::resizeEvent(event);
    coordinator->handleLayout(firstVisible);
}

void OperationLogView::wheelEvent(QWheelEvent* event) {
    event->setModifiers(event->modifiers() & ~Qt::ControlModifier);
    QPlainTextEdit::wheelEvent(event);
}

void OperationLogView::replaceText(std::string_view text) {
    const int firstVisible = readingPosition(*this);
    const int anchor = textCursor().anchor();
    const int position = textCursor().position();

    if (!shownText.empty() && text.starts_with(shownText)) {
        insertAtEnd(text.substr(shownText.size()));
    } else {
        setPlainText(toQString(text));
    }
    shownText = text;

    // This is needed after an insertion too, since a selection up to the end has grown with it.
    const int end = endPosition(*this);
    QTextCursor selection(document());
    selection.setPosition(std::min(anchor, end));
    selection.setPosition(std::min(position, end), QTextCursor::KeepAnchor);
    setTextCursor(selection);
    scrollToReadingPosition(*this, firstVisible);
}

void OperationLogView::insertAtEnd(std::string_view text) {
    QTextCursor end(document());
    end.movePosition(QTextCursor::End);
    end.insertText(toQString(text));
}

}  // namespace tessel
