#include "views/log/LatestLineFollower.h"

#include <QGuiApplication>
#include <QMouseEvent>
#include <QScrollBar>
#include <algorithm>

#include "views/log/ReadingPosition.h"

namespace tessel {

using namespace std::chrono_literals;

namespace {

/// Tells whether these mouse buttons select or scroll. Others do so nowhere, but for the middle one, which
/// scrolls where it is pressed on a scroll bar.
bool isInteraction(Qt::MouseButtons buttons, const QObject* watched) {
    return buttons & Qt::LeftButton ||
           (buttons & Qt::MiddleButton && dynamic_cast<const QScrollBar*>(watched));
}

}  // namespace

LatestLineFollower::LatestLineFollower(QPlainTextEdit& view,
                                       std::chrono::milliseconds interactionPauseDuration) :
    QObject(&view),
    view(view) {
    for (QWidget* source :
         {static_cast<QWidget*>(&view), view.viewport(), static_cast<QWidget*>(view.verticalScrollBar())})
        source->installEventFilter(this);

    resumeTimer.setSingleShot(true);
    resumeTimer.setTimerType(Qt::PreciseTimer);  // since other timers may fire early
    resumeTimer.setInterval(std::max(interactionPauseDuration, 0ms));
    resumeTimer.callOnTimeout(this, [this] { resumeFollowingIfIdle(); });
}

bool LatestLineFollower::eventFilter(QObject* watched, QEvent* event) {
    switch (event->type()) {
        case QEvent::MouseButtonPress:
        case QEvent::MouseButtonDblClick:
        case QEvent::MouseButtonRelease:
            if (isInteraction(static_cast<QMouseEvent*>(event)->button(), watched)) noteUserActivity();
            break;
        case QEvent::MouseMove:
            if (isInteraction(static_cast<QMouseEvent*>(event)->buttons(), watched)) noteUserActivity();
            break;
        case QEvent::Wheel:
        case QEvent::KeyPress:
            noteUserActivity();
            break;
        default:
            break;
    }
    return false;
}

void LatestLineFollower::noteUserActivity() {
    isFollowing = false;
    ++scrollRequestGeneration;
    resumeTimer.start();
}

void LatestLineFollower::resumeFollowingIfIdle() {
    // The application is asked because a menu, a dialog or a drag may have received the release instead of
    // the view.
    if (QGuiApplication::mouseButtons() != Qt::NoButton) return noteUserActivity();
    isFollowing = true;
    scheduleScrollToLatest();
}

void LatestLineFollower::scheduleScrollToLatest() {
    if (!isFollowing) return;
    QTimer::singleShot(0ms, this, [this, generation = ++scrollRequestGeneration] {
        if (generation == scrollRequestGeneration) scrollToReadingPosition(view, endPosition(view));
    });
}

}  // namespace tessel
