#pragma once

#include <QObject>
#include <QPlainTextEdit>
#include <QTimer>
#include <chrono>

namespace tessel {

/// Keeps the latest line of a log in view, but pauses when the reader scrolls, clicks, drags or types in
/// the view. It resumes by itself once the reader has done none of this for the pause duration
/// and no mouse button is pressed.
///
/// Only input events pause it; scrolling by the program never does. The view owns it. Use it on the main
/// thread only.
class LatestLineFollower : public QObject {
  public:
    /// Watches the view's input from now on. A negative pause counts as zero.
    LatestLineFollower(QPlainTextEdit& view, std::chrono::milliseconds interactionPauseDuration);

    [[nodiscard]] bool isFollowingLatest() const { return isFollowing; }

    /// Scrolls to the latest line in the next turn of the event loop, unless the reader interacts first. Does
    /// nothing while paused.
    void scheduleScrollToLatest();

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void noteUserActivity();
    void resumeFollowingIfIdle();

    QPlainTextEdit& view;
    bool isFollowing = true;
    int scrollRequestGeneration = 0;  // grows with every request and interaction; older requests do nothing
    QTimer resumeTimer;               // is restarted by every interaction
};

}  // namespace tessel
