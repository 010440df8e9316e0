#pragma once

#include <QObject>
#include <QPlainTextEdit>
#include <QTimer>
#include <chrono>

namespace tessel {

/// Keeps the latest line of a log in view, but pauses while the user scrolls, clicks, drags or types in it.
/// It resumes by itself once the user has done none of this for the pause duration and no mouse button is
/// pressed. Only input pauses it; scrolling by the program never does. The text view owns it. Use it on the
/// main thread only.
class Coordinator : public QObject {
  public:
    /// Watches the view's input from now on. A negative pause counts as zero.
    Coordinator(QPlainTextEdit& view, std::chrono::milliseconds interactionPauseDuration);

    [[nodiscard]] bool isFollowingLatest() const { return isFollowing; }

    /// Puts the reading position back after the view was laid out anew, and follows unless it is paused.
    void handleLayout(int readingPosition);

    /// Scrolls to the latest line in the next turn of the event loop, unless the user interacts first. Does
    /// nothing while paused.
    void scheduleScrollToLatest();

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void noteUserActivity();
    void pointerInteractionBegan() { noteUserActivity(); }
    /// The pause is counted from the release of the button.
    void pointerInteractionEnded() { noteUserActivity(); }
    void scheduleResumeFollowing();
    void resumeFollowing();
    void scrollToLatest();

    QPlainTextEdit& textView;
    bool isFollowing = true;
    int scrollRequestGeneration = 0;  ///< grows with every request and interaction; older requests do nothing
    QTimer resumeTask;
};

/// Returns the position in the document of the first character in view. Unlike the scroll bar's value, it
/// means the same place after lines were added or were wrapped at another width.
[[nodiscard]] int readingPosition(const QPlainTextEdit& view);

/// Returns the position after the last character.
[[nodiscard]] int endPosition(const QPlainTextEdit& view);

/// Scrolls the line of the character at this position to the top, or as near to it as the end of the text
/// allows. A position after the end means the end.
void scrollToReadingPosition(QPlainTextEdit& view, int position);

}  // namespace tessel
