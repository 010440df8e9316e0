#pragma once

#include <QObject>
#include <QPlainTextEdit>
#include <QTimer>
#include <chrono>

namespace tessel {

/// Keeps the last line of a log in view, except while the person who reads it works in the view: scrolling,
/// pressing, dragging or typing pauses the following. It resumes by itself once nothing of that has happened
/// for the pause duration and no mouse button is pressed.
///
/// Only input events pause; scrolls by the program never do. Owned by the view; main thread only.
class LatestLineFollower : public QObject {
  public:
    /// Watches the view's input from now on. A negative pause counts as zero.
    LatestLineFollower(QPlainTextEdit& view, std::chrono::milliseconds interactionPauseDuration);

    [[nodiscard]] bool isFollowingLatest() const { return isFollowing; }

    /// Scrolls to the last line when the event loop turns next, unless the person interacts first. Does
    /// nothing while paused.
    void scheduleScrollToLatest();

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void noteUserActivity();
    void resumeFollowingIfIdle();

    QPlainTextEdit& view;
    bool isFollowing = true;
    int scrollRequestGeneration = 0;  // every request and interaction begins one; older requests do nothing
    QTimer resumeTimer;               // restarted by every interaction
};

}  // namespace tessel
