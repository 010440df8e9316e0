#include "views/log/LatestLineFollower.h"

#include <QGuiApplication>
#include <QMouseEvent>
#include <QScrollBar>
#include <algorithm>

#include "views/log/ReadingPosition.h"

namespace tessel {

using namespace std::chrono_literals;

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

bool LatestLineFollower::eventFilter(QObject* /*watched*/, QEvent* event) {
    switch (event->type()) {
        case QEvent::MouseButtonPress:
        case QEvent::MouseButtonDblClick:
        case QEvent::MouseButtonRelease:
        case QEvent::Wheel:
        case QEvent::KeyPress:
        case QEvent::ContextMenu:
            noteUserActivity();
            break;
        case QEvent::MouseMove:
            if (static_cast<QMouseEvent*>(event)->buttons() != Qt::NoButton) noteUserActivity();
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
