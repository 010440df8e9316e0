#include "views/log/Coordinator.h"

#include <QAbstractTextDocumentLayout>
#include <QGuiApplication>
#include <QMouseEvent>
#include <QScrollBar>
#include <QTextBlock>
#include <algorithm>
#include <array>

namespace tessel {

using namespace std::chrono_literals;

namespace {

/// Returns whether these mouse buttons select or scroll. Others do so nowhere, but for the middle one, which
/// scrolls where it is pressed on a scroll bar.
bool isInteraction(Qt::MouseButtons buttons, const QObject* watched) {
    return buttons & Qt::LeftButton ||
           (buttons & Qt::MiddleButton && dynamic_cast<const QScrollBar*>(watched));
}

/// Returns whether the key does nothing by itself.
bool isModifier(int key) {
    constexpr std::array modifiers{Qt::Key_Control, Qt::Key_Shift,    Qt::Key_Alt,     Qt::Key_AltGr,
                                   Qt::Key_Meta,    Qt::Key_CapsLock, Qt::Key_NumLock, Qt::Key_ScrollLock,
                                   Qt::Key_Super_L, Qt::Key_Super_R,  Qt::Key_Hyper_L, Qt::Key_Hyper_R};
    return std::ranges::find(modifiers, key) != modifiers.end();
}

}  // namespace

Coordinator::Coordinator(QPlainTextEdit& view, std::chrono::milliseconds interactionPauseDuration) :
    QObject(&view),
    textView(view) {
    for (QWidget* source :
         {static_cast<QWidget*>(&view), view.viewport(), static_cast<QWidget*>(view.verticalScrollBar())})
        source->installEventFilter(this);

    resumeTask.setSingleShot(true);
    resumeTask.setTimerType(Qt::PreciseTimer);  // since other timers may fire early
    resumeTask.setInterval(std::max(interactionPauseDuration, 0ms));
    resumeTask.callOnTimeout(this, [this] { resumeFollowing(); });
}

bool Coordinator::eventFilter(QObject* watched, QEvent* event) {
    switch (event->type()) {
        case QEvent::MouseButtonPress:
        case QEvent::MouseButtonDblClick:
            if (isInteraction(static_cast<QMouseEvent*>(event)->button(), watched)) pointerInteractionBegan();
            break;
        case QEvent::MouseButtonRelease:
            if (isInteraction(static_cast<QMouseEvent*>(event)->button(), watched)) pointerInteractionEnded();
            break;
        case QEvent::MouseMove:
            if (isInteraction(static_cast<QMouseEvent*>(event)->buttons(), watched)) noteUserActivity();
            break;
        case QEvent::KeyPress:
            if (!isModifier(static_cast<QKeyEvent*>(event)->key())) noteUserActivity();
            break;
        case QEvent::Wheel:
            noteUserActivity();
            break;
        default:
            break;
    }
    return false;
}

void Coordinator::noteUserActivity() {
    isFollowing = false;
    ++scrollRequestGeneration;
    scheduleResumeFollowing();
}

void Coordinator::scheduleResumeFollowing() {
    resumeTask.start();
}

void Coordinator::resumeFollowing() {
    // The application is asked because a menu, a dialog or a drag may have received the release instead of
    // the view.
    if (QGuiApplication::mouseButtons() != Qt::NoButton) return scheduleResumeFollowing();
    isFollowing = true;
    scheduleScrollToLatest();
}

void Coordinator::handleLayout(int readingPosition) {
    scrollToReadingPosition(textView, readingPosition);
    scheduleScrollToLatest();
}

void Coordinator::scheduleScrollToLatest() {
    if (!isFollowing) return;
    QTimer::singleShot(0ms, this, [this, generation = ++scrollRequestGeneration] {
        if (generation == scrollRequestGeneration) scrollToLatest();
    });
}

void Coordinator::scrollToLatest() {
    scrollToReadingPosition(textView, endPosition(textView));
}

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
